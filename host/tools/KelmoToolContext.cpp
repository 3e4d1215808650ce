#include "host/tools/KelmoToolContext.h"

#include <maya/MEvent.h>
#include <maya/MEventMessage.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>

#include "host/ml/InterfaceProcedures.h"
#include "host/nodes/Finders.h"
#include "host/nodes/NodeTypes.h"
#include "host/tools/KelmoToolLocator.h"
#include "host/tools/Tablet.h"
#include "host/tools/ToolLocators.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

void Error(const MString& text) {
    MGlobal::displayError("KelmoToolContext: " + text);
}

void RefreshViews() {
    if (M3dView::numberOf3dViews() > 0) M3dView::active3dView().refresh(true, false);
}

}  // namespace

KelmoToolContext::KelmoToolContext() : dagMod_(std::make_unique<MDagModifier>()) {
    setTitleString("Sculpt Tool");
}

KelmoToolContext::~KelmoToolContext() {
    if (m_activeContext == this) toolOffCleanup();
}

MLNode* KelmoToolContext::node() const {
    if (m_activeContext == this)
        return brushNode_.isValid() ? MLNode::FromObject(brushNode()) : nullptr;
    MObject current, shape;
    return FindWorkingKelmoNode(current, shape) ? MLNode::FromObject(current) : nullptr;
}

MPlug KelmoToolContext::Plug(N::Member attribute) const {
    const MLNode* at = node();
    return at ? at->plug(attribute) : MPlug();
}

bool KelmoToolContext::Put(N::Member attribute, const char* name, double value) const {
    MPlug plug = Plug(attribute);
    if (!plug.isNull() && plug.setValue(value)) return true;
    Error(MString("can not find the ") + name + " plug\n");
    return false;
}

bool KelmoToolContext::Send(int command, int label, bool quiet) {
    MPlug number = Plug(&N::m_moCommnad),
          execute = Plug(quiet ? &N::m_moExecute0 : &N::m_moExecute);
    if (number.isNull()) return Error("can not find command plug\n"), false;
    if (execute.isNull()) return Error("can not find exe plug\n"), false;
    return number.setValue(command) && execute.setValue(label);
}

void KelmoToolContext::toolOnSetup(MEvent&) {
    m_activeContext = this;
    setHelpString("Sculpt Tool");
    RunIfKnown("KelmoToolContextHotkeys", "on");
    onSelection_ = MEventMessage::addEventCallback(
        "SelectionChanged",
        [](void* tool) { static_cast<KelmoToolContext*>(tool)->FollowSelection(); }, this);
    if (!TakeNode()) Error("can not find Kelmo node.");
}

/// False where there is no node.
bool KelmoToolContext::TakeNode() {
    MObject found, shape;
    if (!FindWorkingKelmoNode(found, shape)) return false;
    brushNode_ = MObjectHandle(found);
    Send(183, 1);
    Send(132, 1);
    RefreshViews();
    Send(0, 1);
    TakeSpaces(*node());
    MakeLocator();
    LoadTablet();
    events_.Add(*this);
    updateCursor();
    return true;
}

void KelmoToolContext::MakeLocator() {
    brushLocator_ = MObjectHandle(CreateToolLocator(*dagMod_));
    if (!brushLocator_.isValid()) return MGlobal::displayError("Can not create Brush");
    const int mode = brushMode();
    SetGlobMode(mode);
    SetBrushShape(brushLocator_, mode);
}

void KelmoToolContext::LoadTablet() {
    const bool changed = GetTabletPrefChanged(), tried = Tablet_Loaded() || Tablet_Failed();
    if (!LNode::prefDoUseTablet || (tried && !changed)) return;
    if (!Tablet_Load()) MGlobal::displayWarning("Can not load tablet stuff\n");
}

void KelmoToolContext::toolOffCleanup() {
    RunIfKnown("KelmoToolContextHotkeys", "off");
    MMessage::removeCallback(onSelection_);
    LeaveNode();
    dragging_ = resizing_ = resizeKey_ = false;
    SetModifiers(false, false, false);
    resizeStencil = rotateStencil = reopacStencil = trackStencil = trackRefImage = false;
    m_activeContext = nullptr;
    MGlobal::executeCommand("selectMode -object");
}

/// A stroke that is under way ends, and stays.
void KelmoToolContext::LeaveNode() {
    FinishStroke();
    DeleteLocators();
    if (brushNode_.isValid()) Send(1, 1);
    events_.Remove();
    brushNode_ = brushLocator_ = brushLocator2_ = MObjectHandle();
}

void KelmoToolContext::DeleteLocators() {
    if (!DeleteToolLocator(*dagMod_, brushLocator_)) Error("Can not delete locator");
    if (!DeleteToolLocator(*dagMod_, brushLocator2_)) Error("Can not delete Brush");
    dagMod_ = std::make_unique<MDagModifier>();
}

void KelmoToolContext::FollowSelection() {
    MObject found, shape;
    if (dragging_ || following_ || !FindWorkingKelmoNode(found, shape)) return;
    if (brushNode_.isValid() && found == brushNode()) return;
    following_ = true;
    LeaveNode();
    TakeNode();
    following_ = false;
}

void KelmoToolContext::updateCursor() {
    setCursor(IsPaintTransformMode(brushMode()) ? MCursor::crossHairCursor
                                                : MCursor::defaultCursor);
}

MStatus KelmoToolContext::doEnterRegion(MEvent&) {
    updateCursor();
    events_.Add(*this);
    SetVisibility2(brushLocator_, true);
    return MS::kSuccess;
}

}  // namespace VantrelSDK
