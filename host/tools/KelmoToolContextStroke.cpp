#include <maya/MEvent.h>
#include <maya/MFnMatrixData.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>

#include <algorithm>

#include "host/ml/InterfaceProcedures.h"
#include "host/tools/KelmoToolContext.h"
#include "host/tools/KelmoToolLocator.h"
#include "host/tools/ToolLocators.h"

// A press, what is dragged, a release.

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

constexpr double kSmallestSize = 0.0001;
/// What a pixel is worth of a stencil's size and opacity.
constexpr double kStencilSizeStep = 0.001, kStencilOpacityStep = 0.01;
/// What a node answers of its tracks: how many it may have, and a kind of them.
constexpr int kMostTracks = 800, kFlexorTrack = 2;

bool Fail(const char* text) {
    MGlobal::displayError(MString("KelmoToolContext: ") + text);
    return false;
}

bool PutMatrix(MPlug plug, const MMatrix& matrix) {
    return !plug.isNull() && plug.setValue(MFnMatrixData().create(matrix));
}

}  // namespace

bool KelmoToolContext::IsDragMode() const {
    const int mode = brushMode();
    return IsSculptTransformMode(mode) && mode != 0;
}

MStatus KelmoToolContext::doPress(MEvent& event) {
    short x = 0, y = 0;
    event.getPosition(x, y);
    SetModifiers(event.isModifierShift(), event.isModifierControl());
    trackStencil = trackRefImage = false;
    MLNode* node = this->node();
    M3dView view = M3dView::active3dView();
    const bool reopened = node && !node->IsSculpting() && Send(0, 1) && node->IsSculpting();
    if (reopened || !events_.Covers(view)) onMouseMove(view, x, y);
    xdrag_[0] = xdrag_[1] = x;
    ydrag_[0] = ydrag_[1] = y;
    if (brushMode() == kCloneMode) SetClone(event, x, y);
    resizing_ = resizeKey_;
    const bool other = resizing_ || resizeStencil || rotateStencil || reopacStencil;
    if (other || event.mouseButton() != MEvent::kLeftMouse || event.isModifierMiddleMouseButton())
        return MPxContext::doPress(event);
    if (!node || !node->IsSculpting()) return Fail("no deformer node\n"), MS::kFailure;
    if (!brushLocator_.isValid()) return Fail("no locator node\n"), MS::kFailure;
    if (BeginStroke(*node)) return MS::kSuccess;
    EndStroke();
    return MS::kFailure;
}

/// With Ctrl the source is set; the next stroke copies from as far away as it begins.
void KelmoToolContext::SetClone(const MEvent& event, short x, short y) {
    using L = KelmoToolLocator;
    if (event.isModifierControl() && !event.isModifierShift()) {
        L::doSetClone = 1;
        L::cursor0x = x;
        L::cursor0y = y;
        L::offsetx = L::offsety = 0;
    } else if (L::doSetClone == 1) {
        L::doSetClone = 0;
        L::offsetx = static_cast<short>(x - L::cursor0x);
        L::offsety = static_cast<short>(y - L::cursor0y);
    }
}

/// Tells why when there is no stroke.
bool KelmoToolContext::BeginStroke(MLNode& node) {
    FinishStroke();
    const MFnTransform locator(brushLocator_.objectRef());
    const MVector place = locator.getTranslation(MSpace::kTransform);
    const MPlug matrix = locator.findPlug("matrix"), brush = node.plug(&N::m_moBrush);
    if (matrix.isNull()) return Fail("can not retrieve matrix attribute\n");
    if (brush.isNull()) return Fail("can not retrieve brush attribute\n");
    if (brush.isDestination()) return Fail("can not connect locator\n");
    dagMod_ = std::make_unique<MDagModifier>();
    if (IsDragMode()) MakeSecondLocator(place);
    if (!PutStart(place)) return false;
    Send(111, 1, true);
    Send(112, 1, true);
    TakeSpaces(node);
    if (!PutMatrix(node.plug(&N::m_moBrushadj),
                   transformGeom_ ? geomMatrix_.inverse() : MMatrix()) ||
        !PutMatrix(node.plug(&N::m_moWorldToObj), worldToObj_))
        return Fail("can not find worldToObj plug");
    dagMod_->connect(matrix, brush);
    dragging_ = true;
    resizing_ = resizeKey_ = false;
    MGlobal::executeCommand("KelmoStroke", false, true);
    MLNode::brushView = &KelmoToolLocator::brush();
    const MStatus connected = dagMod_->doIt();
    MLNode::brushView = nullptr;
    return connected || Fail("can not connect locator\n");
}

/// Stays where the press was, while the first one is dragged.
void KelmoToolContext::MakeSecondLocator(const MVector& place) {
    brushLocator2_ = MObjectHandle(CreateToolLocator(*dagMod_));
    if (!brushLocator2_.isValid()) return;
    MFnTransform(brushLocator2_.objectRef()).setTranslation(place, MSpace::kTransform);
    SetBrushShape(brushLocator2_, brushMode());
    SetVisibility2(brushLocator2_, true);
    SetVisibility2(brushLocator_, false);
}

bool KelmoToolContext::PutStart(const MVector& place) {
    return Put(&N::m_moStartX, "startX", place.x) && Put(&N::m_moStartY, "startY", place.y) &&
           Put(&N::m_moStartZ, "startZ", place.z);
}

MStatus KelmoToolContext::doDrag(MEvent& event) {
    short x = 0, y = 0;
    event.getPosition(x, y);
    SetModifiers(event.isModifierShift(), event.isModifierControl());
    M3dView view = M3dView::active3dView();
    if (!events_.Covers(view)) onMouseMove(view, x, y);
    if (resizing_ || resizeKey_)
        SetVisibility2(brushLocator_, true);
    else if (IsPaintTransformMode(brushMode()))
        SetVisibility2(brushLocator_, false);
    xdrag_[0] = xdrag_[1];
    ydrag_[0] = ydrag_[1];
    xdrag_[1] = x;
    ydrag_[1] = y;
    const double dx = xdrag_[1] - xdrag_[0], dy = ydrag_[0] - ydrag_[1];
    DragStencil(dx + dy);
    if (resizing_ || resizeKey_) Resize(view, dx, dy);
    return MS::kSuccess;
}

void KelmoToolContext::Resize(const M3dView& view, double dx, double dy) {
    const int width = view.portWidth(), height = view.portHeight();
    const double before = getToolSize();
    if (width <= 0 || height <= 0) return;
    const double size = std::max(before + dx / width + dy / height, kSmallestSize);
    if (before > 0) KelmoToolLocator::setRadius(KelmoToolLocator::getRadius() * size / before);
    setToolSize(size, -1);
    RunIfKnown("KelmoToolContextUpdateIconSize");
    M3dView(view).refresh(true, false);
}

void KelmoToolContext::DragStencil(double by) {
    const auto numberOf = [this](N::Member attribute) { return Plug(attribute).asDouble(); };
    if (rotateStencil) {
        Put(&N::m_moProjectiveRot, "projectiveRot", numberOf(&N::m_moProjectiveRot) + by);
        RunIfKnown("KelmoToolContextUpdateProjPatternRot");
    }
    if (resizeStencil) {
        for (unsigned i = 0; i < 2; ++i) {
            MPlug side = Plug(&N::m_moProjectiveSize).child(i);
            const double size = side.asDouble() + by * kStencilSizeStep;
            if (size > 0) side.setValue(size);
        }
        RunIfKnown("KelmoToolContextUpdateProjPatternSize");
    }
    if (reopacStencil) {
        const double opacity = numberOf(&N::m_moProjectiveOpac) + by * kStencilOpacityStep;
        Put(&N::m_moProjectiveOpac, "projectiveOpac", std::clamp(opacity, 0., 1.));
        RunIfKnown("KelmoToolContextUpdateProjPatternOpac");
    }
}

MStatus KelmoToolContext::doRelease(MEvent& event) {
    if (event.mouseButton() != MEvent::kLeftMouse) return MPxContext::doRelease(event);
    SetModifiers(event.isModifierShift(), event.isModifierControl());
    if (Plug(&N::m_moCsAutokey).asBool()) KeyFlexor();
    FinishStroke();
    SetVisibility2(brushLocator_, true);
    resizing_ = resizeKey_ = false;
    FollowSelection();
    return MPxContext::doRelease(event);
}

/// On a flexor's track the stroke is a key.
void KelmoToolContext::KeyFlexor() {
    MPlug answer = Plug(&N::m_moParam0);
    constexpr int kAsk = -2;
    answer.setValue(kAsk);
    Send(42, 245);
    const int track = answer.asInt();
    if (track < 0 || track >= kMostTracks) return;
    Send(37, 2450);
    if (answer.asInt() == kFlexorTrack) Send(177, 2456);
}

void KelmoToolContext::EndStroke() {
    dragging_ = false;
    MPlug brush = Plug(&N::m_moBrush);
    const MPlug source = brush.isNull() ? MPlug() : brush.source();
    if (!source.isNull() && source.node() == brushLocator_.objectRef()) {
        dagMod_->disconnect(source, brush);
        if (!dagMod_->doIt()) Fail("can not disconnect locator\n");
    }
    SetVisibility2(brushLocator_, true);
    if (!DeleteToolLocator(*dagMod_, brushLocator2_))
        MGlobal::displayWarning("Can not delete Brush");
    brushLocator2_ = MObjectHandle();
}

void KelmoToolContext::FinishStroke() {
    if (dragging_) EndStroke();
}

void KelmoToolContext::abortAction() {
    // Which ends it first.
    if (dragging_) MGlobal::executeCommand("undo");
}

}  // namespace VantrelSDK
