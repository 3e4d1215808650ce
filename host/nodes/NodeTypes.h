#pragma once

#include <maya/MTypeId.h>

namespace VantrelSDK {

// Names and numbers by which scenes know what the module brings. They never change.

inline constexpr char kKelmoNodeName[] = "Kelmo", kKelmoNode2Name[] = "KelmoND",
                      kKelmoHelperName[] = "KelmoHelper";
inline constexpr unsigned kKelmoNodeId = 1059261, kKelmoNode2Id = 1059272, kKelmoHelperId = 1059273;
inline constexpr char kSurfaceShapeName[] = "KelmoSurface";
inline constexpr unsigned kSurfaceShapeId = 1059265;
inline constexpr char kToolLocatorName[] = "kelmoTool";
inline constexpr unsigned kToolLocatorId = 1059263;
inline constexpr char kBlindDataName[] = "KelmoBlindData",
                      kSurfaceCallbackName[] = "KelmoSurfaceCallback",
                      kStencilCallbackName[] = "KelmoStencilCallback",
                      kRefImageCallbackName[] = "KelmoRefImageCallback";
inline constexpr unsigned kBlindDataId = 1059262, kSurfaceCallbackId = 1059266,
                          kStencilCallbackId = 1059267, kRefImageCallbackId = 1059268;

}  // namespace VantrelSDK
