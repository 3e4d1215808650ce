#pragma once

#include <maya/M3dView.h>
#include <maya/MBoundingBox.h>
#include <maya/MDrawRequest.h>
#include <maya/MPxData.h>

#include "host/gl/DisplaySettings.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

class MLDisplayCache;
class MLNode;

/// What a refresh asks a surface to do, in the lower half of a request's token.
enum class SurfaceDraw {
    kVertices,
    kWireframe,
    kWireframe_dirty,
    kIsoLines,
    kIsoLines_dirty,
    kShaded,
    kShaded_dirty,
    kFlatShaded,
    kBoundingBox,
    kLightDepth,
    kUnBindLightDepth,
    kSSAO,
    kUnBindSSAO,
    kNormals,
    kTangents,
    kSkin,
    kVectors,
};

/// The value that hands a node to the shape that draws it. Nothing of it is kept in scenes.
class KelmoSurfaceCallback : public MPxData {
  public:
    KelmoSurfaceCallback() = default;
    explicit KelmoSurfaceCallback(MLNode* node) : kelmo(node) {}

    static void* creator() { return new KelmoSurfaceCallback; }
    void copy(const MPxData& other) override;
    MTypeId typeId() const override { return MTypeId(kSurfaceCallbackId); }
    MString name() const override { return kSurfaceCallbackName; }

    /// Of the active level; null outside a session.
    MLDisplayCache* cache() const;
    /// The surface's; without a cache one that is large enough for most.
    MBoundingBox getBoundingBox() const;
    DisplaySettings getSettings() const;
    /// Which face has which material, where that is due.
    void FindMaterials() const;
    int getDisplayLvl() const;
    bool getIsStroking() const;
    /// The display is to be drawn anew as a whole, until somebody says otherwise.
    bool getDisplayDirty() const;
    void setDisplayDirty(bool dirty);

    void draw(const MDrawRequest& request, M3dView& view) const;

    /// Borrowed; null on a value that nobody has set.
    MLNode* kelmo = nullptr;
};

}  // namespace VantrelSDK
