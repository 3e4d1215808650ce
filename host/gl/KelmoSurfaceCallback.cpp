#include "host/gl/KelmoSurfaceCallback.h"

#include <exception>

#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

using Draw = void (MLDisplayCache::*)(const MDrawRequest&, M3dView&);

struct Row {
    SurfaceDraw what;
    Draw draw;
    const char* failed;
};
// Vertices, flat faces and the bounding box are never asked for.
constexpr Row kRows[] = {
    {SurfaceDraw::kWireframe, &MLDisplayCache::DrawWireframe, ""},
    {SurfaceDraw::kWireframe_dirty, &MLDisplayCache::DrawWireframe_dirty, ""},
    {SurfaceDraw::kIsoLines, &MLDisplayCache::DrawIsoLines, "!!! exception in DrawIsoLines !!!"},
    {SurfaceDraw::kIsoLines_dirty, &MLDisplayCache::DrawIsoLines_dirty,
     "!!! exception in DrawIsoLines_dirty !!!"},
    {SurfaceDraw::kShaded, &MLDisplayCache::DrawShaded, "!!! exception in DrawShaded !!!"},
    {SurfaceDraw::kShaded_dirty, &MLDisplayCache::DrawShaded_dirty,
     "!!! exception in DrawShaded_dirty !!!"},
    {SurfaceDraw::kLightDepth, &MLDisplayCache::RenderAndBindLightDepth, ""},
    {SurfaceDraw::kSSAO, &MLDisplayCache::RenderAndBindSSAO, ""},
    {SurfaceDraw::kNormals, &MLDisplayCache::DrawNormals, "!!! exception in DrawNormals !!!"},
    {SurfaceDraw::kTangents, &MLDisplayCache::DrawTangents, "!!! exception in DrawTangent !!!"},
    {SurfaceDraw::kSkin, &MLDisplayCache::DrawSkin, "!!! exception in DrawSkin !!!"},
    {SurfaceDraw::kVectors, &MLDisplayCache::DrawVectors, "!!! exception in DrawVectors !!!"},
};

}  // namespace

void KelmoSurfaceCallback::copy(const MPxData& other) {
    if (other.typeId() == typeId()) kelmo = static_cast<const KelmoSurfaceCallback&>(other).kelmo;
}

MLDisplayCache* KelmoSurfaceCallback::cache() const {
    return kelmo ? static_cast<MLDisplayCache*>(kelmo->ldisplayCache()) : nullptr;
}

MBoundingBox KelmoSurfaceCallback::getBoundingBox() const {
    MLDisplayCache* shown = cache();
    if (!shown || shown->GetNumVerts() == 0)
        return MBoundingBox(MPoint(-100, -100, -100), MPoint(100, 100, 100));
    LPoint3 min, max;
    shown->GetBBox(min, max);
    return MBoundingBox(MPoint(min.x, min.y, min.z), MPoint(max.x, max.y, max.z));
}

DisplaySettings KelmoSurfaceCallback::getSettings() const {
    return kelmo ? DisplaySettings::Of(*kelmo) : DisplaySettings();
}

void KelmoSurfaceCallback::FindMaterials() const {
    if (kelmo) kelmo->FindMaterials();
}

int KelmoSurfaceCallback::getDisplayLvl() const {
    return cache() ? cache()->level() : 0;
}

bool KelmoSurfaceCallback::getIsStroking() const {
    return kelmo && kelmo->IsStroking();
}

bool KelmoSurfaceCallback::getDisplayDirty() const {
    return kelmo && kelmo->displyDirtied;
}

void KelmoSurfaceCallback::setDisplayDirty(bool dirty) {
    if (kelmo) kelmo->displyDirtied = dirty;
}

void KelmoSurfaceCallback::draw(const MDrawRequest& request, M3dView& view) const {
    MLDisplayCache* shown = cache();
    if (!GLInitialised() || !shown) return;
    const auto what = static_cast<SurfaceDraw>(request.token() & 0xffff);
    if (what == SurfaceDraw::kUnBindLightDepth) return shown->UnBindLightDepth();
    if (what == SurfaceDraw::kUnBindSSAO) return shown->UnBindSSAO();
    for (const Row& row : kRows) {
        if (row.what != what) continue;
        try {
            (shown->*row.draw)(request, view);
        } catch (const std::exception&) {
            Log(row.failed);
        }
    }
}

}  // namespace VantrelSDK
