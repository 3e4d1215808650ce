#pragma once

#include "maya/MFloatArray.h"
#include "maya/MFloatMatrix.h"
#include "maya/MFloatPointArray.h"
#include "maya/MFloatVectorArray.h"
#include "maya/MStatus.h"
#include "maya/MString.h"

/// What the renderer knows of materials.
class MRenderUtil {
  public:
    /// The colour of a plug ("file1.outColor") in `samples` places: that of a file texture, as it
    /// is placed, or one colour that nothing feeds. It needs the UVs, one of each a sample; places,
    /// normals, tangents, filter sizes, camera and shadows are for networks that are shaded, which
    /// this host does not do. kFailure, and empty results, for such a plug, for one that is not
    /// there, and for an image that can't be read; kInvalidParameter without UVs.
    static MStatus sampleShadingNetwork(MString plug, int samples, bool useShadowMaps,
                                        bool reuseMaps, MFloatMatrix& camera,
                                        MFloatPointArray* points, MFloatArray* us, MFloatArray* vs,
                                        MFloatVectorArray* normals, MFloatPointArray* refPoints,
                                        MFloatVectorArray* tangentUs, MFloatVectorArray* tangentVs,
                                        MFloatArray* filterSizes, MFloatVectorArray& colors,
                                        MFloatVectorArray& transparencies);
};
