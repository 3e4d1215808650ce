#include "host/tools/KelmoSelCtx.h"

#include <maya/MEvent.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include <cstdlib>

#include "host/commands/NodeProtocol.h"
#include "host/ml/MLMeshObject.h"
#include "host/nodes/Finders.h"
#include "host/tools/KelmoToolLocator.h"
#include "host/tools/ToolLocators.h"
#include "host/tools/ViewRay.h"

namespace VantrelSDK {

namespace {

/// Pixels that a click may slip by.
constexpr int kSlip = 2;

/// The polygons of a mesh that are selected.
std::set<int> SelectedOf(const MObject& shape) {
    MSelectionList list;
    MGlobal::getActiveSelectionList(list);
    std::set<int> polygons;
    for (unsigned i = 0; i < list.length(); ++i) {
        MDagPath path;
        MObject component;
        if (!list.getDagPath(i, path, component) || ShapeOf(path.node()) != shape ||
            component.apiType() != MFn::kMeshPolygonComponent)
            continue;
        MIntArray elements;
        MFnSingleIndexedComponent(component).getElements(elements);
        for (unsigned e = 0; e < elements.length(); ++e) polygons.insert(elements[e]);
    }
    return polygons;
}

/// The selection: polygons, or the mesh as a whole for none.
MSelectionList ListOf(const MObject& shape, const std::set<int>& polygons) {
    MSelectionList list;
    MDagPath path;
    MDagPath::getAPathTo(shape, path);
    MIntArray elements;
    for (const int p : polygons) elements.append(p);
    MFnSingleIndexedComponent component;
    const MObject made =
        polygons.empty() ? MObject() : component.create(MFn::kMeshPolygonComponent);
    if (!made.isNull()) component.addElements(elements);
    list.add(path, made);
    return list;
}

MPlug LevelOf(const MObjectHandle& node) {
    return MFnDependencyNode(node.objectRef()).findPlug("numRenderSubdivLvls");
}

}  // namespace

void KelmoSelCtx::toolOnSetup(MEvent&) {
    setHelpString("Click or drag over polygons to select them");
    setCursor(MCursor::handCursor);
    edits_ = std::make_unique<MDagModifier>();
    locator_ = MObjectHandle(CreateToolLocator(*edits_));
    events_.Add(*this);
    if (!TakeMesh()) MGlobal::displayError("KelmoSelectContext: can not find Kelmo node.");
}

void KelmoSelCtx::toolOffCleanup() {
    events_.Remove();
    ShowLevel();
    DeleteToolLocator(*edits_, locator_);
    locator_ = MObjectHandle();
    edits_.reset();
    picker_.reset();
    MGlobal::executeCommand("selectMode -object");
}

void KelmoSelCtx::ShowBase() {
    if (lowered_ != kelmo_) ShowLevel();
    MPlug level = LevelOf(kelmo_);
    if (level.asInt() <= 0) return;
    lowered_ = kelmo_;
    level_ = level.asInt();
    level.setValue(0);
}

void KelmoSelCtx::ShowLevel() {
    if (lowered_.isValid()) LevelOf(lowered_).setValue(level_);
    lowered_ = MObjectHandle();
}

/// The mesh as it is shown now. False where the tool has none to work on, which is told.
bool KelmoSelCtx::TakeMesh() {
    picker_.reset();
    if (!kelmo_.isValid()) return false;
    NodeProtocol(kelmo_.objectRef()).Run(2);
    ShowBase();
    const MObject shape = FindOutputShape(kelmo_.objectRef());
    const MLNode* node = MLNode::FromObject(kelmo_.objectRef());
    if (shape.isNull() || !node) return false;
    picker_ = std::make_unique<MeshPicker>(shape);
    if (node->meshObject() && node->meshObject()->GetNumPolys() == picker_->numPolygons())
        return true;
    picker_.reset();
    MGlobal::displayWarning(
        "KelmoSelectContext: the mesh is shown at another level than its base, whose polygons are"
        " selected; turn off forceRenderTopLevel");
    return false;
}

void KelmoSelCtx::onMouseMove(M3dView& view, short x, short y) {
    MeshPicker::Hit hit;
    const ViewRay ray = RayAt(view, x, y);
    const bool over = picker_ && picker_->Pick(ray.origin, ray.dir, hit);
    SetVisibility2(locator_, over);
    if (!over || !locator_.isValid()) return;
    KelmoToolLocator::setViewDir(ray.dir);
    KelmoToolLocator::setUpDir(ray.dir ^ ViewRight(view));
    KelmoToolLocator::setRadius(RadiusAt(view, x, y, hit.point));
    MFnTransform(locator_.objectRef()).setTranslation(hit.point - MPoint(), MSpace::kTransform);
}

void KelmoSelCtx::onMouseLeave() {
    SetVisibility2(locator_, false);
}

double KelmoSelCtx::RadiusAt(M3dView& view, short x, short y, const MPoint& place) const {
    return WorldSize(view, x, y, place, MLNode::FromObject(kelmo_.objectRef())->getToolSize());
}

MStatus KelmoSelCtx::doPress(MEvent& event) {
    if (event.mouseButton() != MEvent::kLeftMouse || !TakeMesh()) return MS::kFailure;
    how_ = event.isModifierShift()     ? How::kAdd
           : event.isModifierControl() ? How::kRemove
                                       : How::kReplace;
    event.getPosition(pressx_, pressy_);
    before_ = SelectedOf(picker_->shape());
    selected_ = how_ == How::kReplace ? std::set<int>() : before_;
    Take(pressx_, pressy_, false);
    return MS::kSuccess;
}

MStatus KelmoSelCtx::doDrag(MEvent& event) {
    short x = 0, y = 0;
    event.getPosition(x, y);
    const bool slipped = std::abs(x - pressx_) <= kSlip && std::abs(y - pressy_) <= kSlip;
    if (picker_ && !slipped) Take(x, y, true);
    return MS::kSuccess;
}

MStatus KelmoSelCtx::doRelease(MEvent& event) {
    if (event.mouseButton() == MEvent::kLeftMouse && picker_) Commit();
    return MS::kSuccess;
}

void KelmoSelCtx::Take(short x, short y, bool drag) {
    M3dView view = M3dView::active3dView();
    const ViewRay ray = RayAt(view, x, y);
    MeshPicker::Hit hit;
    if (picker_->Pick(ray.origin, ray.dir, hit)) {
        std::set<int> found{hit.polygon};
        if (drag) picker_->AddNear(hit.point, RadiusAt(view, x, y, hit.point), ray.dir, found);
        for (const int p : found)
            how_ == How::kRemove ? selected_.erase(p), 0 : (selected_.insert(p), 0);
    }
    Show();
}

void KelmoSelCtx::Show() const {
    MGlobal::setActiveSelectionList(ListOf(picker_->shape(), selected_));
}

/// What a drag selected becomes one step of undo.
void KelmoSelCtx::Commit() {
    MGlobal::setActiveSelectionList(ListOf(picker_->shape(), before_));
    if (selected_.empty()) NodeProtocol(kelmo_.objectRef()).Ask(116);
    MStringArray names;
    ListOf(picker_->shape(), selected_).getSelectionStrings(names);
    MString script = "select -r";
    for (const MString& name : names) script += " " + name;
    MGlobal::executeCommand(script, false, true);
}

}  // namespace VantrelSDK
