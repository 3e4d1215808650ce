#include "host/gl/KelmoSurfaceShapeUI.h"

#include <maya/MDrawInfo.h>
#include <maya/MDrawRequestQueue.h>
#include <maya/MGlobal.h>

#include <vector>

#include "core/sculpt/LNode.h"
#include "host/gl/KelmoSurfaceCallback.h"
#include "host/gl/KelmoSurfaceShape.h"
#include "host/gl/MLDisplayCache.h"
#include "host/tools/ToolEvents.h"

namespace VantrelSDK {

namespace {

/// The parts of a picture, whole or, `dirty`, what has changed of them; the last brings them
/// together.
void AddGeometry(std::vector<int>& tokens, int mode, bool dirty) {
    const auto add = [&](SurfaceDraw whole) {
        tokens.push_back(static_cast<int>(whole) + (dirty ? 1 : 0));
    };
    if (mode >= 2) add(SurfaceDraw::kShaded);
    if (mode != 2) add(SurfaceDraw::kIsoLines);
    if (mode == 1 || mode == 4) add(SurfaceDraw::kWireframe);
    tokens.back() |= dirty ? MLDisplayCache::kCompose : MLDisplayCache::kKeep;
}

std::vector<int> Tokens(const DisplaySettings& settings, bool dirty) {
    std::vector<int> tokens;
    const auto add = [&](bool wanted, SurfaceDraw what) {
        if (wanted) tokens.push_back(static_cast<int>(what));
    };
    const int mode = settings.mode >= 0 && settings.mode <= 4 ? settings.mode : 0;
    const bool shaded = mode >= 2;
    add(shaded && settings.shadow, SurfaceDraw::kLightDepth);
    add(shaded && settings.ssao, SurfaceDraw::kSSAO);
    if (dirty && shaded && settings.ssao) tokens.back() |= MLDisplayCache::kPart;
    AddGeometry(tokens, mode, dirty);
    add(shaded && settings.shadow, SurfaceDraw::kUnBindLightDepth);
    add(shaded && settings.ssao, SurfaceDraw::kUnBindSSAO);
    add(settings.underNormals, SurfaceDraw::kNormals);
    add(settings.underTangents, SurfaceDraw::kTangents);
    add(settings.underVectors, SurfaceDraw::kVectors);
    add(settings.underSkin, SurfaceDraw::kSkin);
    return tokens;
}

}  // namespace

bool KelmoSurfaceShapeUI::m_dopix = false;

bool KelmoSurfaceShapeUI::IsDirty(const MDrawInfo& info, KelmoSurfaceCallback& callback,
                                  const DisplaySettings& settings) {
    MLDisplayCache* cache = callback.cache();
    const Look look{settings, callback.getDisplayLvl()};
    const bool stroking = callback.getIsStroking();
    const bool full = !(look == last_) || (wasStroking_ && !stroking) ||
                      callback.getDisplayDirty() || (cache && !stroking && cache->IsMaskPending());
    last_ = look;
    wasStroking_ = stroking;
    callback.setDisplayDirty(false);
    if (full && cache) cache->DropCaches();
    return m_dopix && cache && !settings.transforming &&
           cache->HasCacheFor(info.view(), info.inclusiveMatrix());
}

void KelmoSurfaceShapeUI::getDrawRequests(const MDrawInfo& info, bool, MDrawRequestQueue& queue) {
    const auto* shape = static_cast<KelmoSurfaceShape*>(surfaceShape());
    if (!shape) MGlobal::displayError("KelmoSurfaceShapeUI: surfaceShape is NULL");
    KelmoSurfaceCallback* callback = shape ? shape->getDisplayCallback() : nullptr;
    if (shape && !callback)
        MGlobal::displayError("KelmoSurfaceShapeUI: surface display callback is NULL");
    DisplaySettings settings;
    settings.mode = 0;
    bool dirty = false;
    if (callback) {
        M3dView view = info.view();
        view.beginGL();
        const bool full = MLDisplayCache::InitGLSL(false);
        callback->FindMaterials();
        settings = callback->getSettings();
        const auto& shared = MLDisplayCache::shared();
        settings.transforming = IsAltOptionKeyPressed();
        settings.shaders &= full;
        settings.shadow &= settings.shaders && shared.shadow.IsInitOK();
        settings.ssao &= settings.shaders && shared.ssao.IsInitOK() && shared.ssaodepth.IsInitOK();
        m_dopix = LNode::prefDoPix == 1 && !settings.affectTexture && !settings.affectTexStencil;
        dirty = IsDirty(info, *callback, settings);
        if (callback->cache()) callback->cache()->SetSettings(settings);
        view.endGL();
    }
    for (const int token : Tokens(settings, dirty)) {
        MDrawRequest request = info.getPrototype(*this);
        request.setToken(token);
        request.setDisplayStyle(settings.mode < 2 ? M3dView::kWireFrame : M3dView::kGouraudShaded);
        queue.add(request);
    }
}

void KelmoSurfaceShapeUI::draw(const MDrawRequest& request, M3dView& view) const {
    const auto* shape = static_cast<KelmoSurfaceShape*>(surfaceShape());
    if (!shape) return MGlobal::displayError("KelmoSurfaceShapeUI: surfaceShape is NULL");
    const KelmoSurfaceCallback* callback = shape->getDisplayCallback();
    if (!callback)
        return MGlobal::displayError("KelmoSurfaceShapeUI: surface display callback is NULL");
    if (callback->kelmo) callback->draw(request, view);
}

}  // namespace VantrelSDK
