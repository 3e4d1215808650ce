#include <maya/MFnMatrixData.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>

#include <algorithm>

#include "host/ml/InterfaceProcedures.h"
#include "host/nodes/GeometryLine.h"
#include "host/tools/KelmoToolContext.h"
#include "host/tools/KelmoToolLocator.h"
#include "host/tools/ToolLocators.h"

// Where the brush is while the pointer moves.

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

/// Where a node further on moves the whole object. False where there is none.
bool HasTransfromGeometryNodeConnected(const MLNode& node, MMatrix& matrix) {
    for (const MPlug& input : GeometryBelow(node.outputPlug())) {
        const MFnDependencyNode below(input.node());
        if (below.typeName() != "transformGeometry") continue;
        matrix = MFnMatrixData(below.findPlug("transform").asMObject()).matrix();
        return true;
    }
    return false;
}

}  // namespace

void toCenterCoords(const M3dView& view, short x, short y, double& screenx, double& screeny) {
    const auto share = [](int at, int size) {
        const int half = std::max(size / 2, 1);
        return std::clamp(double(at - size / 2) / half, -1., 1.);
    };
    screenx = share(x, view.portWidth());
    screeny = share(y, view.portHeight());
}

/// Of the node's object: what hover and stroke go through.
void KelmoToolContext::TakeSpaces(MLNode& node) {
    geomMatrix_ = MMatrix();
    transformGeom_ = HasTransfromGeometryNodeConnected(node, geomMatrix_);
    node.GetObjToWorld(objToWorld_, true);
    worldToObj_ = objToWorld_.inverse();
}

void KelmoToolContext::onMouseMove(M3dView& view, short x, short y) {
    MLNode* at = node();
    if (resizing_ || resizeKey_ || !at || !brushLocator_.isValid() || view.portWidth() <= 0) return;
    ShowMarks(x, y);
    const ViewRay ray = RayAt(view, x, y);
    double screenx = 0, screeny = 0;
    toCenterCoords(view, x, y, screenx, screeny);
    if (!Put(&N::m_moScreenx, "screenx", screenx) || !Put(&N::m_moScreeny, "screeny", screeny))
        return;
    if (!dragging_) TakeSpaces(*at);
    const bool dragMode = dragging_ && IsDragMode();
    // The frame of the brush, before the place that makes a step of it.
    if (!dragMode) {
        KelmoToolLocator::setViewDir(ray.dir);
        KelmoToolLocator::setUpDir(ray.dir ^ ViewRight(view));
    }
    const MPoint place = PlaceAt(ray);
    if (!dragMode) KelmoToolLocator::setRadius(WorldSize(view, x, y, place, getToolSize()));
    if (!trackStencil && !trackRefImage)
        MFnTransform(brushLocator_.objectRef())
            .setTranslation(place - MPoint(), MSpace::kTransform);
}

void KelmoToolContext::onMouseLeave() {
    if (!dragging_) SetVisibility2(brushLocator_, false);
}

void KelmoToolContext::ShowMarks(short x, short y) {
    using L = KelmoToolLocator;
    const int mode = brushMode();
    SetGlobMode(mode);
    SetBrushShape(brushLocator_, mode);
    L::smallCross = mode == kCloneMode;
    L::smallCross2 = LiesOnSurface(mode);
    if (L::smallCross) {
        L::cursorx = x;
        L::cursory = y;
    }
    if (!dragging_)
        SetVisibility2(brushLocator_, !IsAltOptionKeyPressed() && !trackStencil && !trackRefImage);
    else if (IsDragMode())
        SetVisibility2(brushLocator_, false);
}

/// A dragging brush stays with what it took hold of.
bool KelmoToolContext::WantsHit() const {
    return !dragging_ || Plug(&N::m_moAffectTexture).asBool() ||
           (IsPaintTransformMode(brushMode()) && !Plug(&N::m_moPorjEditMush).asBool());
}

/// Asks the node where a ray of the object's own space hits it; it leaves the normal in
/// `brushNorm`. False for a ray that misses.
bool KelmoToolContext::PutRay(const ViewRay& ray, MPoint& point, MVector& normal) {
    const struct {
        N::Member attribute;
        const char* name;
        double value;
    } plugs[] = {
        {&N::m_moRayPosX, "rayPosX", ray.origin.x}, {&N::m_moRayPosY, "rayPosY", ray.origin.y},
        {&N::m_moRayPosZ, "rayPosZ", ray.origin.z}, {&N::m_moRayDirX, "rayDirX", ray.dir.x},
        {&N::m_moRayDirY, "rayDirY", ray.dir.y},    {&N::m_moRayDirZ, "rayDirZ", ray.dir.z}};
    for (const auto& plug : plugs)
        if (!Put(plug.attribute, plug.name, plug.value)) return false;
    // A look at the surface leaves it as it is: views keep their pictures.
    if (!Send(5, 555, true) || Plug(&N::m_moParam0).asInt() == 0) return false;
    for (unsigned i = 0; i < 3; ++i) {
        point[i] = Plug(plugs[i].attribute).asDouble();
        normal[i] = Plug(&N::m_moBrushNorm).child(i).asDouble();
    }
    return true;
}

/// Where the brush goes for a ray of the world: on the surface, or on beside it as deep as it was.
MPoint KelmoToolContext::PlaceAt(const ViewRay& ray) {
    const MMatrix toWorld = transformGeom_ ? geomMatrix_ * objToWorld_ : objToWorld_;
    const MMatrix toObject = toWorld.inverse();
    const ViewRay own{ray.origin * toObject, (ray.dir * toObject).normal()};
    MPoint point;
    MVector normal;
    if (WantsHit() && PutRay(own, point, normal)) {
        // A normal goes by the inverse, transposed.
        KelmoToolLocator::setNormDir(normal * toObject.transpose());
        return point * toWorld;
    }
    if (!dragging_ || !IsDragMode()) KelmoToolLocator::setNormDir(ray.dir);
    const MVector former =
        MPoint(MFnTransform(brushLocator_.objectRef()).getTranslation(MSpace::kTransform)) -
        ray.origin;
    // Rays side by side begin side by side: only the way along them is depth.
    return ray.origin + ray.dir * (ray.parallel ? former * ray.dir : former.length());
}

void KelmoToolContext::BeforeMove() {
    if (!IsKnown("KelmoGetFalloffCurve2")) return;
    const MString curve = MGlobal::executeCommandStringResult("KelmoGetFalloffCurve2");
    if (curve == rampOld_) return;
    rampOld_ = curve;
    RunIfKnown("KelmoUpdateBrushPreview");
}

}  // namespace VantrelSDK
