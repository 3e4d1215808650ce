#include "host/ml/MLNode.h"

#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MPlugArray.h>
#include <maya/MPxNode.h>
#include <maya/MSelectionList.h>

#include <algorithm>
#include <climits>
#include <set>
#include <utility>

#include "core/sculpt/LNodeRecord.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/MLDynMask.h"
#include "host/ml/MLColorDelta.h"
#include "host/ml/MLFalloffCache.h"
#include "host/ml/MLMaterialSet.h"
#include "host/ml/MLMesh.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLMorphKey.h"
#include "host/ml/MLPatternCollection.h"
#include "host/ml/MLProgressCallback.h"
#include "host/nodes/GeometryLine.h"
#include "host/nodes/KelmoMorphControl2.h"
#include "host/nodes/KelmoSelMessage.h"
#include "host/nodes/NodeJournal.h"
#include "host/nodes/SurfaceDisplay.h"
#include "host/tools/Tablet.h"

namespace VantrelSDK {

namespace {

constexpr unsigned kFalloffSamples = 40;
constexpr int kMostRounds = 1000;

LPoint3 Single(const MPoint& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}
LPoint3 Single(const MVector& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// The mesh that a plug feeds, through what stands between; invalid unless there is exactly one.
MDagPath ShapeFedBy(const MPlug& output) {
    MDagPath found;
    int count = 0;
    for (const MPlug& input : GeometryBelow(output))
        if (input.node().hasFn(MFn::kMesh) && ++count == 1)
            MDagPath::getAPathTo(input.node(), found);
    return count == 1 ? found : MDagPath();
}

}  // namespace

MLNode::MLNode(int workers) : LNode(workers), masks_(MakeMasks()) {
    for (const auto& mask : masks_) AddMask(mask.get());
}

MLNode::~MLNode() {
    journal.reset();
    if (IsSculpting()) KelmoSelMessage::DeregisterCallbacks();
}

const BrushView* MLNode::brushView = nullptr;
bool MLNode::offontimechange = false;
int MLNode::offbrushmode = 0;

MLNode* MLNode::FromObject(const MObject& node) {
    return dynamic_cast<MLNode*>(MFnDependencyNode(node).userNode());
}

MString MLNode::GetDefMorphName(unsigned index) {
    return LTargetLists::GetDefMorphName(static_cast<int>(index));
}

void MLNode::Error(const MString& text) const {
    MGlobal::displayError(MString(NameOf(nodeClass())) + ": " + text);
}

MLMeshObject* MLNode::meshObject() const {
    return static_cast<MLMeshObject*>(lobject());
}

bool MLNode::Init(const MObject& mesh, bool restored) {
    if (restored && meshObject()) {
        bool changed = false;
        meshObject()->StorePoly2Faces(mesh);
        if (!meshObject()->Update(changed, mesh, -1)) return false;
        meshObject()->UpdateBases();
    } else {
        if (LNode::Init(std::make_unique<MLMeshObject>(this, mesh)) != 0 || !CreateDelta())
            return false;
    }
    if (colorDelta()) colorDelta()->readInput(mesh);
    NeedAnimControls();
    UpdateFalloffs();
    return true;
}

bool MLNode::CreateColorDelta() {
    if (!lobject() || lobject()->IsEmpty()) return false;
    _lcolorDelta() = std::make_unique<MLColorDelta>(this, *lobject()->GetOrigGeom());
    return true;
}

MLColorDelta* MLNode::colorDelta() const {
    return static_cast<MLColorDelta*>(lcolorDelta());
}

bool MLNode::EvaluateFrame(float seconds, int levels) {
    LMorphDelta* delta = GetDelta();
    const bool plays = PlaysFrames(), played = std::exchange(framePlayed_, plays);
    // When nothing plays any more, the last frame goes.
    if (!delta || (!plays && !played)) return false;
    if (levels < 0 || levels >= delta->GetOrigMesh()->GetNumSubivLevels()) levels = INT_MAX;
    const int ticks = FrameTicks(seconds);
    const bool valid = delta->valid0() <= delta->valid1();
    if (valid && ticks == ltime() && levels <= frameLevels_) return false;
    frameLevels_ = levels;
    frameUntold_ = true;
    if (IsSculpting()) TellFrame();
    return SetTime(ticks, levels == INT_MAX ? -1 : levels);
}

/// A frame is what time has passed; one that a key was made at is the key's, which was taken up to
/// the next tick.
int MLNode::FrameTicks(float seconds) const {
    const LControlCollection* tracks = GetAnimControls();
    for (int i = 0; tracks && i < tracks->NumMorphCtrls(); ++i)
        if (tracks->GetMorphCtrl(i)->GetKeyByTime(TicksUp(seconds), 0)) return TicksUp(seconds);
    return TicksCut(seconds);
}

/// No journal can play what a session goes on from, when that was a frame.
void MLNode::TellFrame() {
    if (std::exchange(frameUntold_, false)) SurfaceReplaced();
}

void MLNode::TracksChanged() {
    SurfaceReplaced();
    // Evaluate again; the older node counts otherwise.
    plug(&NodeAttributes::m_moCommnad).setValue(nodeClass() == NodeClass::kNode ? 240 : 243);
    plug(&NodeAttributes::m_moExecute).setValue(1);
}

std::unique_ptr<LControlCollection> MLNode::MakeAnimControls() {
    return std::make_unique<KelmoControlCollection>(*this);
}

void MLNode::RaiseLevels() {
    const LSubdivMesh* delta = GetDeltaMesh();
    if (!delta || !lobject()) return;
    if (framePlayed_ && frameLevels_ != INT_MAX) {
        frameLevels_ = INT_MAX;
        SetTime(ltime(), -1);
    }
    if (lobject()->GetOrigGeom()->GetNumSubivLevels() == delta->GetNumSubivLevels()) return;
    lobject()->Update(nullptr, delta, -1);
    lobject()->SetActiveSubdivLevel(delta->GetActiveLevel());
}

void MLNode::UpdateFalloffs() {
    const auto update = [this](std::unique_ptr<LFalloffCache>& cache, NodeAttributes::Member ramp) {
        if (cache)
            cache->Compute();
        else
            cache = std::make_unique<MLFalloffCache>(*this, ramp, kFalloffSamples);
    };
    update(_lfalloff1(), &NodeAttributes::m_moFalloff);
    update(_lfalloff2(), &NodeAttributes::m_moFalloff2);
}

bool MLNode::InitSculpt() {
    if (!lobject()) return false;
    const int active = GetDeltaMesh() ? GetDeltaMesh()->GetActiveLevel() : 0;
    RaiseLevels();
    lobject()->SetActiveSubdivLevel(active);
    TakeWorldMatrices();
    plug(&NodeAttributes::m_moInTime).getValue(sculptTime);
    const bool was = IsSculpting();
    if (!LNode::InitSculpt()) return false;
    if (!was) UpdateMaterials();
    TellFrame();
    if (!was) KelmoSelMessage::RegisterCallbacks();
    KelmoSelMessage::Update();
    ShowSurface(*this);
    return true;
}

void MLNode::UpdateComponentSelection() {
    if (!meshObject()) return;
    const MDagPath shape = ShapeFedBy(outputPlug());
    MSelectionList list;
    MGlobal::getActiveSelectionList(list);
    std::set<int> polygons, vertices;
    for (unsigned i = 0; i < list.length(); ++i) {
        MDagPath path;
        MObject component;
        if (!list.getDagPath(i, path, component) || component.isNull()) continue;
        path.extendToShape();
        if (!(path == shape)) continue;
        MIntArray elements;
        MFnSingleIndexedComponent(component).getElements(elements);
        const bool whole = component.apiType() == MFn::kMeshPolygonComponent;
        if (!whole && component.apiType() != MFn::kMeshVertComponent) continue;
        for (unsigned e = 0; e < elements.length(); ++e)
            (whole ? polygons : vertices).insert(elements[e]);
    }
    meshObject()->SelectPolygons(polygons, vertices);
    _luseSelected() = !polygons.empty() || !vertices.empty();
}

std::unique_ptr<LDisplayCache> MLNode::MakeDisplayCache() {
    return std::make_unique<MLDisplayCache>(this, lthGrp());
}

void MLNode::FinishSculpt(bool keep) {
    if (IsSculpting()) {
        displayGeomChanged = true;
        KelmoSelMessage::DeregisterCallbacks();
        HideSurface(*this);
        SetMtlSet(nullptr);
    }
    LNode::FinishSculpt(keep);
}

bool MLNode::InitTransform(const MPoint& pos, const MVector& view, const MVector& orth,
                           const MVector& normal, float sx, float sy, float radius, int mode,
                           bool force) {
    AimMask();
    return InitTransform(Single(pos), Single(view), Single(-orth), Single(normal), LPoint2(sx, sy),
                         radius, mode, force);
}

/// The mask is looked up through the view that is worked in, as it is when a stroke begins.
void MLNode::AimMask() {
    const int active = getActiveMask();
    if (!getUseMasks() || active < 0 || active >= static_cast<int>(masks_.size())) return;
    MStatus status;
    const M3dView view = M3dView::active3dView(&status);
    if (!status) return;
    MMatrix toWorld;
    GetObjToWorld(toWorld, false);
    masks_[static_cast<size_t>(active)]->Aim(view, toWorld);
}

void MLNode::UpdateMask(int index) {
    if (index < 0 || index >= static_cast<int>(masks_.size())) return;
    masks_[static_cast<size_t>(index)]->Forget();
    displyDirtied = true;
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    if (status) view.refresh();
}

bool MLNode::Transform(const MPoint& pos, float sx, float sy, const MVector& normal) {
    return Transform(Single(pos), LPoint2(sx, sy), Single(normal));
}

bool MLNode::IntersectRay(const MPoint& origin, const MVector& dir, MPoint& point,
                          MVector& normal) {
    LOctTree::RayHit hit;
    if (!loctTree() || !loctTree()->TraceRay(Single(origin), Single(dir), hit)) return false;
    const LPoint3 p = Single(origin) + Single(dir) * hit.t,
                  n = lmeshCache()->GetFaceNormal(hit.face);
    point = MPoint(p.x, p.y, p.z);
    normal = MVector(n.x, n.y, n.z);
    return true;
}

void MLNode::GetObjToWorld(MMatrix& matrix, bool fresh) const {
    if (IsSculpting() && !fresh) {
        matrix = objToWorld_;
        return;
    }
    const MDagPath shape = ShapeFedBy(outputPlug());
    matrix = shape.isValid() ? shape.inclusiveMatrix() : MMatrix();
}

void MLNode::GetWorldToObj(MMatrix& matrix, bool fresh) const {
    if (IsSculpting() && !fresh) {
        matrix = worldToObj_;
        return;
    }
    GetObjToWorld(matrix, true);
    matrix = matrix.inverse();
}

void MLNode::TakeWorldMatrices() {
    GetObjToWorld(objToWorld_, true);
    worldToObj_ = objToWorld_.inverse();
}

MLPatternCollection* MLNode::patterns() const {
    return static_cast<MLPatternCollection*>(lpatterns());
}

bool MLNode::loadPatterns() {
    if (!patterns()) _lpatterns() = std::make_unique<MLPatternCollection>(this);
    if (std::exchange(patternsLoded_, true) || patterns()->GetNumPatterns() > 0) return true;
    if (!patterns()->LoadPatterns("userpatterns.cfg", false) &&
        !patterns()->LoadPatterns("patterns.cfg", true))
        MGlobal::displayError(
            "Kelmo: none of 'patterns.cfg' or 'userpatterns.cfg' is found in expected location.");
    return true;
}

int MLNode::WriteTo(LBlindData* stream) {
    // The patterns live in the user's list, not in the record.
    if (patterns()) patterns()->SavePatterns("userpatterns.cfg");
    RaiseLevels();
    LNodeRecord record(*this, {});
    const int code = record.WriteTo(stream);
    if (code != 0) MGlobal::displayError(record.Message().c_str());
    return code;
}

int MLNode::ReadFrom(LBlindData* stream) {
    LNodeRecord record(*this, [this] { return std::make_unique<MLMeshObject>(this); });
    const int code = record.ReadFrom(stream);
    if (code != 0) MGlobal::displayError(record.Message().c_str());
    return code;
}

std::unique_ptr<LProgressCallback> MLNode::getProgressCallbck() {
    return std::make_unique<MLProgressCallback>();
}

int MLNode::getTransformMode(bool modifiers) const {
    int mode = 0;
    const MPlug stored = plug(&NodeAttributes::m_moSculptMode);
    if (stored.isNull()) Error("can not grab the sculptMode plug\n");
    if (!stored.getValue(mode)) Error("can not get value from sculptMode plug\n");
    if (IsShiftPressed()) return GetShiftMode(mode);
    return modifiers && IsCtrlPressed() ? GetCtrlMode(mode) : mode;
}

float MLNode::penPressure() const {
    if (playedPressure >= 0) return playedPressure;
    return prefDoUseTablet && Tablet_Loaded() ? Tablet_GetNormalPressure() : 1;
}

float MLNode::getBrushPaintPressure(bool tablet) const {
    const MPlug all = plug(&NodeAttributes::m_moPaintPressMult);
    const int mode = getTransformMode(false);
    if (all.isNull()) Error("null PaintPressMult plug");
    if (all.numElements() == 0) Error("PaintPressMult plug has 0 elements");
    const MPlug element = all.elementByLogicalIndex(static_cast<unsigned>(std::max(mode, 0)));
    return element.asFloat() * (tablet ? penPressure() : 1.0f) * 0.1f;
}

float MLNode::getVertColorStrength(bool tablet) const {
    const MPlug all = plug(&NodeAttributes::m_moVertColorStrength);
    const unsigned mode = static_cast<unsigned>(std::max(getTransformMode(false), 0));
    if (all.numElements() == 0) return 0.1f;
    return all.elementByLogicalIndex(mode).asFloat() * (tablet ? penPressure() : 1.0f) * 0.1f;
}

LColor MLNode::getVertexPaintColor() const {
    const MPlug color = plug(&NodeAttributes::m_moVertexPaintColor);
    return {color.child(0).asFloat(), color.child(1).asFloat(), color.child(2).asFloat()};
}

void MLNode::setVertexPaintColor(LColor color) {
    const MPlug held = plug(&NodeAttributes::m_moVertexPaintColor);
    const float parts[] = {color.r, color.g, color.b};
    for (unsigned c = 0; c < 3; ++c) held.child(c).setValue(parts[c]);
}

float MLNode::getToolSize() const {
    const MPlug all = plug(&NodeAttributes::m_moToolSize);
    const int mode = getTransformMode(false);
    if (all.numElements() == 0) Error("toolSize plug has 0 elements");
    return all.elementByLogicalIndex(static_cast<unsigned>(std::max(mode, 0))).asFloat();
}

int MLNode::Count(NodeAttributes::Member attribute) const {
    const MPlug held = plug(attribute);
    return held.isNull() ? 0 : std::clamp(held.asInt(), 0, kMostRounds);
}

}  // namespace VantrelSDK
