#include "core/sculpt/LNode.h"
#include "core/sculpt/StrokeListener.h"

#include <algorithm>
#include <climits>
#include <new>

#include "core/anim/LControlCollection.h"
#include "core/io/SystemMemory.h"
#include "core/morph/LMeshBases.h"
#include "core/paint/LPatternCollection.h"
#include "core/sculpt/BrushWeights.h"
#include "core/sculpt/LDynMask.h"

namespace VantrelSDK {

int LNode::prefNumInterpolationSteps = 4;
bool LNode::prefGlidingTool = true;
int LNode::prefTreeUpdateOnStrokeEnd = 2;
int LNode::prefSubdivisionMethod = 1;
int LNode::prefNumSmoothIterations = 2, LNode::prefNumSharpenIterations = 1;
int LNode::prefMutltiThreadSmooth = 0;
int LNode::prefNumFacesDisplayFallback = 2250000;
int LNode::prefDoSampleTexEdges = 1, LNode::prefTrySampleMaps = 1, LNode::prefDoPix = 0;
int LNode::prefDoUseTablet = 0, LNode::prefRehashMtlBeforeRender = 0;
int LNode::prefDumpDiagnostics = 0;

namespace {

bool shiftPressed = false, ctrlPressed = false;
int globMode = 0;

}  // namespace

int GetShiftMode(int mode) {
    if (IsSculptTransformMode(mode)) return 6;
    return IsPaintTransformMode(mode) ? 12 : mode;
}

int GetCtrlMode(int mode) {
    switch (mode) {
        case 0:
        case 3:
            return 2;
        case 2:
            return 3;
        case 5:
            return 6;
        case 6:
            return 5;
        case 8:
            return 9;
        case 9:
            return 8;
        case 12:
            return 13;
        case 13:
            return 12;
        default:
            return mode;
    }
}

bool IsShiftPressed() {
    return shiftPressed;
}
void SetShiftPressed(bool pressed) {
    shiftPressed = pressed;
}
bool IsCtrlPressed() {
    return ctrlPressed;
}
void SetCtrlPressed(bool pressed) {
    ctrlPressed = pressed;
}
int GetGlobMode() {
    return globMode;
}
void SetGlobMode(int mode) {
    globMode = mode;
}

LNode::LNode(int workers)
    : LTargetLists(this),
      lthGrp_(std::make_unique<LThreadGroup>(workers)),
      rgen_(std::make_unique<LRandomMother>()),
      theThDts_(lthGrp_->GetNumWorkers()) {}

LNode::~LNode() = default;

int LNode::Init(std::unique_ptr<LMeshObject> object) {
    if (!object || object->IsEmpty()) return 1;
    if (lobject_ && lcurMorph_ && lobject_->GetNumFaces() != object->GetNumFaces() &&
        lobject_->GetNumVerts() != object->GetNumVerts())
        return 2;
    deleteAllLevelTrees();
    lobject_ = std::move(object);
    lneutralLimit_.reset();
    lneutralLimit0_.reset();
    if (GetNumMorphs() == 0) InitMorphs(lobject_->GetOrigGeom()->GetNumLevelVerts(0));
    return 0;
}

void LNode::Reset() {
    FinishSculpt(false);
    lcurMorph_.reset();
    lcolorDelta_.reset();
    lobject_.reset();
    lblendCache_.reset();
    lneutralLimit_.reset();
    lneutralLimit0_.reset();
    lneutralBackup_.reset();
    neutralbases_.reset();
    keptDelta_ = {};
    if (lcontrols_) lcontrols_->RemoveAll();
    clearMorphs();
}

bool LNode::CreateDelta() {
    if (!lobject_ || lobject_->IsEmpty()) return false;
    lcurMorph_ = std::make_unique<LMorphDelta>(this, *lobject_->GetOrigGeom());
    return CreateColorDelta();
}

bool LNode::InitSculpt() {
    if (!lobject_ || lobject_->IsEmpty() || !lcurMorph_) return false;
    FinishSculpt(false);
    ProgressScope progress(getProgressCallbck());
    lobject_->Update(nullptr, lcurMorph_->GetOrigMesh(), -1);
    UpdateNeutralShape();
    DeltaToObject();
    lsculpt_ = true;
    lentryCache_ = std::make_unique<LSubdivMesh>(*lcurMorph_->GetOrigMesh(), false);
    ++surface_;
    const bool opened = progress.Reach(0.1f) &&
                        OpenLevel([&](float done) { return progress.Reach(0.1f + 0.9f * done); });
    if (!opened) FinishSculpt(false);
    return opened;
}

/// Brings everything that a stroke needs to the active level. False when the user stops it.
bool LNode::OpenLevel(const std::function<bool(float)>& reach) {
    // Made now, so that no press has to.
    lcurMorph_->AllockBack();
    if (HasTargets()) setBlendCache(blendIndex_);
    lsmoothCache_.reset();
    vertexNormals_.Reset(lobject_->GetNumVerts());
    normalSmoother_.Reset(lobject_->GetNumVerts());
    lsmoothCache2_.reset();
    lsmoothCache3_.reset();
    lsmoothCacheF_.reset();
    lgeomidx2uv_.Clear();
    lsnapOK_ = false;
    fillSculptCache();
    const auto topology = lmeshCache_->Topology();
    topology->AdjFaces();
    if (!reach(0.2f)) return false;
    topology->AdjVerts();
    if (!reach(0.4f)) return false;
    setLevelDisplayCache();
    PrepareColours();
    GetStrokePattern();
    if (!reach(0.6f)) return false;
    setLevelOctTree();
    ActiveCaches().shown = surface_;
    return reach(1);
}

/// The surface or its level has changed. `progress` goes on from where it is.
void LNode::RestartLevel(ProgressScope& progress, float from) {
    ++surface_;
    if (!lsculpt_) return;
    OpenLevel([&](float done) {
        progress.Reach(from + (1 - from) * done);
        return true;
    });
}

void LNode::FinishSculpt(bool) {
    if (lsculpt_) {
        lcurMorph_->FlushUndo();
        if (lcolorDelta_) lcolorDelta_->FlushUndo();
        DeltaToTangent();
    }
    const bool closed = lsculpt_;
    lsculpt_ = lstroke_ = false;
    lmode_ = -1;
    lentryCache_.reset();
    if (lobject_) lobject_->ClearWeights();
    deleteAllLevelTrees();
    lgeomidx2uv_.Clear();
    lmeshCache_.reset();
    lsmoothCache_.reset();
    lsmoothCache2_.reset();
    lsmoothCache3_.reset();
    lsmoothCacheF_.reset();
    if (closed && listener_) listener_->SessionClosed();
}

bool LNode::CanSubdivide(bool quad, std::string& error) const try {
    // Of a triangle of the new level: topology, positions, delta, and of an open session its
    // caches.
    constexpr long long kBytes = 120, kSessionBytes = 230;
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    const int top = geom.GetNumSubivLevels() - 1;
    const long long faces =
        quad ? geom.CountNextQuadLevelFaces() : 4LL * geom.GetNumLevelFaces(top);
    const long long bytes = faces * (lsculpt_ ? kSessionBytes : kBytes);
    const long long available = AvailableMemory();
    if (2 * faces <= INT_MAX && bytes <= available) return true;
    error = "level " + std::to_string(top + 1) + " would have " + std::to_string(faces) +
            " triangles, which need about " + std::to_string(bytes >> 20) + " MB; " +
            (bytes <= available ? "the numbering ends at 2147483647"
                                : "there are " + std::to_string(available >> 20) + " MB");
    return false;
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for another level";
    return false;
}

/// The delta is in object space while this lives, whether there is a session or not.
class LNode::InObjectSpace {
  public:
    explicit InObjectSpace(LNode& node) : node_(node.lsculpt_ ? nullptr : &node) {
        if (node_) node_->DeltaToObject();
    }
    ~InObjectSpace() {
        if (node_) node_->DeltaToTangent();
    }
    InObjectSpace(const InObjectSpace&) = delete;
    InObjectSpace& operator=(const InObjectSpace&) = delete;

  private:
    LNode* node_;
};

bool LNode::AddLevel(bool quad) {
    if (!lobject_ || !lcurMorph_ || lstroke_) return false;
    const InObjectSpace space(*this);
    ProgressScope progress(getProgressCallbck());
    GoToLevel(lobject_->GetOrigGeom()->GetNumSubivLevels() - 1, progress, 0.2f);
    const bool smooth = getDoSmoothGeomSubdivision(), open = getDoProtectOpenEdgesSmoothing();
    if (!(quad ? lobject_->SubdivideAll_Quad(smooth, open)
               : lobject_->SubdivideAll_Loop(smooth, open)))
        return false;
    progress.Reach(0.5f);
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    if (!lcurMorph_->SubdivideLike(geom) ||
        (lentryCache_ && !lentryCache_->SubdivideLike(geom, false)) ||
        (lcolorDelta_ && !lcolorDelta_->SubdivideLike(geom))) {
        if (lentryCache_ && lentryCache_->GetNumSubivLevels() == geom.GetNumSubivLevels())
            lentryCache_->DeleteTopLevel();
        if (lcurMorph_->GetOrigMesh()->GetNumSubivLevels() == geom.GetNumSubivLevels())
            lcurMorph_->DeleteTopLevelSudiv();
        lobject_->DeleteTopLevelSudiv(false);
        return false;
    }
    if (HasTargets()) {
        LSubdivMesh scratch(*lcurMorph_->GetOrigMesh(), false);
        AddTargetsLevel(scratch, geom, lobject_->GetActiveUVChannel(), lthGrp());
    }
    RenewProxies();
    UpdateNeutralShape();
    RestartLevel(progress, 0.6f);
    if (listener_) listener_->Subdivided(quad);
    return true;
}

bool LNode::SubdivideAll_Loop() {
    return AddLevel(false);
}

bool LNode::SubdivideAll_Quad() {
    return AddLevel(true);
}

bool LNode::SetActiveSubdivLevel(unsigned level) {
    if (!lobject_ || !lcurMorph_ || lstroke_) return false;
    if (static_cast<int>(level) >= lobject_->GetOrigGeom()->GetNumSubivLevels()) return false;
    const InObjectSpace space(*this);
    ProgressScope progress(getProgressCallbck());
    GoToLevel(level, progress, 0.6f);
    RestartLevel(progress, 0.6f);
    if (listener_) listener_->LevelSet(static_cast<int>(level));
    return true;
}

/// Makes a level active, without what a session holds for it; the levels above the former one
/// follow first.
void LNode::GoToLevel(unsigned level, ProgressScope& progress, float share) {
    lcurMorph_->SetActiveSubdivLevel(level, true,
                                     [&](float done) { progress.Reach(share * done); });
    lobject_->SetActiveSubdivLevel(static_cast<int>(level));
    if (neutralbases_) neutralbases_->SetActiveLevel(level);
    if (lentryCache_) lentryCache_->SetActiveLevel(level);
    if (lcolorDelta_) lcolorDelta_->SetActiveSubdivLevel(static_cast<int>(level));
}

bool LNode::DeleteTopLevelSudiv() {
    if (!lobject_ || !lcurMorph_ || lstroke_) return false;
    const InObjectSpace space(*this);
    ProgressScope progress(getProgressCallbck());
    UpdateSubdivLevels();
    if (HasTargets())
        DeleteTargetsLevel(*lobject_->GetOrigGeom(), lobject_->GetActiveUVChannel(), lthGrp());
    if (!lobject_->DeleteTopLevelSudiv(false)) return false;
    lcurMorph_->DeleteTopLevelSudiv();
    if (lentryCache_) lentryCache_->DeleteTopLevel();
    if (lcolorDelta_) lcolorDelta_->DeleteTopLevelSubdiv();
    const size_t levels = lobject_->GetOrigGeom()->GetNumSubivLevels();
    if (levelCaches_.size() > levels) levelCaches_.resize(levels);
    RenewProxies();
    UpdateNeutralShape();
    RestartLevel(progress, 0.5f);
    if (listener_) listener_->LevelDeleted();
    return true;
}

void LNode::UpdateSubdivLevels() {
    if (lcurMorph_) lcurMorph_->UpdateUpperLayers();
    if (lcolorDelta_) lcolorDelta_->UpdateUpperLayers();
}

void LNode::UpdateHidden() {
    for (LevelCaches& caches : levelCaches_) caches.tree.reset();
    loctTree_ = nullptr;
    ProgressScope progress(getProgressCallbck());
    RestartLevel(progress, 0);
    if (listener_) listener_->HiddenChanged();
}

void LNode::SurfaceReplaced() {
    if (listener_) listener_->Replaced();
}

void LNode::SelectionChanged() {
    if (listener_) listener_->SelectionChanged();
}

bool LNode::UpdateBase() {
    if (lstroke_) return false;
    ProgressScope progress(getProgressCallbck());
    // What was sculpted goes up in the frames of the surface that it was sculpted on.
    UpdateSubdivLevels();
    if (lobject_ && lobject_->Update(nullptr, nullptr, -1)) RestartLevel(progress, 0.5f);
    return true;
}

bool LNode::AddToLevel0(std::span<const LPoint3> offsets) {
    if (!lobject_ || !lcurMorph_ || lstroke_) return false;
    LSubdivMesh& delta = *lcurMorph_->GetOrigMesh();
    if (static_cast<int>(offsets.size()) != delta.GetNumLevelVerts(0)) return false;
    const InObjectSpace space(*this);
    ProgressScope progress(getProgressCallbck());
    const unsigned active = delta.GetActiveLevel();
    GoToLevel(0, progress, 0.3f);
    for (size_t v = 0; v < offsets.size(); ++v)
        if (offsets[v] != LPoint3::Zero) lcurMorph_->OffsetVert(static_cast<int>(v), offsets[v]);
    GoToLevel(active, progress, 0.6f);
    RestartLevel(progress, 0.6f);
    return true;
}

LSubdivMesh& LNode::BaseShape() const {
    return neutralbases_ ? *neutralbases_ : *lobject_->GetOrigGeom();
}

LNode::LevelCaches& LNode::ActiveCaches() {
    const size_t level = lobject_->GetOrigGeom()->GetActiveLevel();
    if (levelCaches_.size() <= level) levelCaches_.resize(level + 1);
    return levelCaches_[level];
}

void LNode::fillSculptCache() {
    const LSubdivMesh& geom = *lobject_->GetOrigGeom();
    const auto topology = geom.GetLevelTopology(geom.GetActiveLevel());
    if (!lmeshCache_ || lmeshCache_->Topology() != topology)
        lmeshCache_ = std::make_unique<LMesh>(
            topology, std::span(geom.GetAllVertsPtr(), topology->GetNumVerts()));
    const LPoint3 *base = BaseShape().GetAllVertsPtr(),
                  *delta = lcurMorph_->GetOrigMesh()->GetAllVertsPtr();
    LPoint3* verts = lmeshCache_->GetVertsPtr();
    for (int v = 0; v < topology->GetNumVerts(); ++v) verts[v] = base[v] + delta[v];
}

void LNode::updateSculptCache() {
    const LPoint3 *base = BaseShape().GetAllVertsPtr(),
                  *delta = lcurMorph_->GetOrigMesh()->GetAllVertsPtr();
    LPoint3* verts = lmeshCache_->GetVertsPtr();
    for (const int v : lcurMorph_->DirtyVerts()) verts[v] = base[v] + delta[v];
}

void LNode::setLevelDisplayCache() {
    LevelCaches& caches = ActiveCaches();
    if (!caches.display) {
        caches.display = MakeDisplayCache();
        caches.display->Init(&BaseShape(), lcurMorph_->GetMesh());
        caches.shown = 0;
    }
    const LColorDelta* colours = lcolorDelta_.get();
    caches.display->SetColorDelta(colours);
    const bool shown = colours && (!colours->IsZero() || colours->HasIncomingColors());
    if (!caches.display->useColors() && (shown || getAffectVertexColor()))
        caches.display->SetUseColor(true);
    if (caches.shown != surface_) caches.display->CalcAll();
    ldisplayCache_ = caches.display.get();
}

std::unique_ptr<LDisplayCache> LNode::MakeDisplayCache() {
    return std::make_unique<LDisplayCache>(this, lthGrp_.get());
}

bool LNode::setLevelOctTree() {
    if (!lmeshCache_) return false;
    LevelCaches& caches = ActiveCaches();
    if (!caches.tree)
        caches.tree =
            std::make_unique<LOctTree>(lmeshCache_->Topology(), lmeshCache_->GetVertsPtr(),
                                       lobject_->HiddenFaces(), lthGrp_.get());
    loctTree_ = caches.tree.get();
    // Also after a build: a first refit changes boxes everywhere, which no stroke should have to
    // do.
    return recalcOctTree();
}

bool LNode::recalcOctTree() {
    if (!loctTree_ || !lmeshCache_) return false;
    loctTree_->Recalc(lmeshCache_->GetVertsPtr());
    return true;
}

bool LNode::buildOctTree() {
    if (!loctTree_ || !lmeshCache_) return false;
    loctTree_->Rebuild(lmeshCache_->GetVertsPtr(), lobject_->HiddenFaces());
    return recalcOctTree();
}

void LNode::deleteAllLevelTrees() {
    levelCaches_.clear();
    loctTree_ = nullptr;
    ldisplayCache_ = nullptr;
}

LSmoothCache& LNode::lsmoothCache() {
    if (!lsmoothCache_)
        lsmoothCache_ =
            std::make_unique<LSmoothCache>(lmeshCache_->GetNumVerts(), lmeshCache_->Faces());
    return *lsmoothCache_;
}

const LFalloffCache* LNode::PaintCurve() {
    if (useBicubFalloff2()) return lfalloff2_.get();
    linearFalloff2_.Set(getFalloffMin2(), getFalloffMax2());
    return &linearFalloff2_;
}

const LDynMask* LNode::GetMask() const {
    if (playedMask_) return playedMask_.get();
    const int active = getActiveMask();
    if (!getUseMasks() || active < 0 || active >= static_cast<int>(ldynmasks_.size()))
        return nullptr;
    return ldynmasks_[active];
}

void LNode::PlayMask(std::unique_ptr<LDynMask> mask) {
    playedMask_ = std::move(mask);
}

LPoint3 LNode::MirrorPosition(const LPoint3& p) {
    const int axis = SymmetryAxis(getSymetryMode());
    if (axis < 0) return p;
    const LPoint3 mirror = Mirrored(p, axis);
    LPoint3 snapped;
    return getSymmetrySnaping() && findSnapPoint(mirror, snapped) ? snapped : mirror;
}

bool LNode::findSnapPoint(const LPoint3& p, LPoint3& out) {
    if (p == lsymmC_) {
        if (lsnapOK_) out = lsnapC_;
        return lsnapOK_;
    }
    lsymmC_ = p;
    LOctTree::ClosestHit hit;
    lsnapOK_ = loctTree_ && loctTree_->FindClosetPoint(p, getSymmetrySnapRadius(), hit);
    if (lsnapOK_) out = lsnapC_ = hit.point;
    return lsnapOK_;
}

bool LNode::findFaces(const LOctTree::Sphere& sphere, TreeHits& hits) {
    if (!loctTree_) return false;
    const LOctTree::Sphere both[2] = {sphere, {MirrorPosition(sphere.centre), sphere.radius}};
    return loctTree_->FindFaces(std::span(both, NumSides()), hits);
}

bool LNode::findVerts(const LOctTree::Sphere& sphere, TreeHits& hits) {
    if (!loctTree_) return false;
    const LOctTree::Sphere both[2] = {sphere, {MirrorPosition(sphere.centre), sphere.radius}};
    return loctTree_->FindVerts(std::span(both, NumSides()), hits);
}

bool LNode::findFaces(const LOctTree::Line& line, TreeHits& hits) {
    if (!loctTree_) return false;
    LOctTree::Line both[2] = {line, line};
    both[1].bounds.centre = MirrorPosition(line.bounds.centre);
    both[1].p0 = MirrorPosition(line.p0);
    both[1].p1 = MirrorPosition(line.p1);
    return loctTree_->FindFaces(std::span(both, NumSides()), hits);
}

bool LNode::findFaces(const LOctTree::Sweep& sweep, TreeHits& hits) {
    if (!loctTree_) return false;
    LOctTree::Sweep both[2] = {sweep, sweep};
    both[1].p0 = MirrorPosition(sweep.p0);
    both[1].p1 = MirrorPosition(sweep.p1);
    both[1].prev = MirrorPosition(sweep.prev);
    // Snapping can bring both ends of a mirrored segment together: then it sweeps nothing.
    const bool swept = !(both[1].p0 == both[1].p1);
    return loctTree_->FindFaces(std::span(both, swept ? NumSides() : 1), hits);
}

size_t LNode::NumSides() const {
    return SymmetryAxis(getSymetryMode()) < 0 ? 1 : 2;
}

}  // namespace VantrelSDK
