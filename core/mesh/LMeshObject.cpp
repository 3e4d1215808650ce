#include "core/mesh/LMeshObject.h"

#include <algorithm>

#include "core/mesh/LSmoothCache.h"
#include "core/morph/LMeshBases.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

LMeshObject::LMeshObject(LNode* owner)
    : owner_(owner), topocaches_(std::make_unique<LTopoCaches>()) {}

LMeshObject::~LMeshObject() = default;

void LMeshObject::InitGeom(const LMesh& base) {
    FreeAll();
    geom_ = std::make_unique<LSubdivMesh>(base);
    const LPoint3* verts = geom_->GetAllVertsPtr();
    input_.assign(verts, verts + geom_->GetNumVerts());
    SmoothInput();
    ResetArrays();
}

bool LMeshObject::AllocateGeom(int nverts, int nfaces) {
    if (nverts <= 0 || nfaces <= 0) return false;
    if (!geom_) geom_ = std::make_unique<LSubdivMesh>();
    if (!geom_->Allocate(nverts, nfaces)) return false;
    ResetArrays();
    return true;
}

void LMeshObject::FreeAll() {
    geom_.reset();
    bases_.reset();
    uvs_.clear();
    ++uvChanges_;
    topocaches_ = std::make_unique<LTopoCaches>();
    input_ = {};
    blured_ = {};
    ResetArrays();
}

/// One level, nothing selected, hidden or weighted.
void LMeshObject::ResetArrays() {
    const int nverts = GetNumVerts(), nfaces = GetNumFaces();
    fNormals_ = {};
    vNormals_ = {};
    vselection_.assign(nverts, 0);
    vvisibility_.assign(nverts, 0);
    fselection_.assign(nfaces, 0);
    fvisibility_.assign(nfaces, 0);
    vselectionLvl_.assign(nverts, 0);
    vvisibilityLvl_.assign(nverts, 0);
    fselectionLvls_.assign(1, Bytes(nfaces));
    fvisibilityLvls_.assign(1, Bytes(nfaces));
    fmaterialids_ = {};
    fmaterialidsLvls_ = {};
    hasSelection_ = hasHidden_ = hasmtlids_ = vertsSelected_ = false;
    ++flagChanges_;
    weighted_.clear();
    weights_.Reset(nverts);
}

/// The smoothed input, which is the base that is worked on; `input_` keeps what came in.
void LMeshObject::SmoothInput() {
    blured_ = SmoothedShape(*geom_->LevelTables(0), input_, owner_ ? owner_->GetObjSmoothIt() : 0);
    std::copy(blured_.begin(), blured_.end(), geom_->GetAllVertsPtr());
}

const LPoint3* LMeshObject::GetInput(int& count) const {
    count = static_cast<int>(input_.size());
    return input_.data();
}

const LPoint3* LMeshObject::GetBlured(int& count) const {
    count = static_cast<int>(blured_.size());
    return blured_.data();
}

bool LMeshObject::Update(const LPoint3* newBase, const LSubdivMesh* delta, int numLevels) {
    if (!geom_ || (input_.empty() && !newBase)) return false;
    input_.resize(geom_->GetNumLevelVerts(0));
    int count = delta ? delta->GetNumSubivLevels() : geom_->GetNumSubivLevels();
    if (numLevels != -1) count = numLevels + 1;
    const int active = ActiveLevel();
    while (geom_->GetNumSubivLevels() > std::max(count, 1)) geom_->DeleteTopLevel();

    const auto progress = count > 2 ? getProgressCallbck() : nullptr;
    if (progress) progress->Show();
    if (newBase) std::copy_n(newBase, input_.size(), input_.begin());
    SmoothInput();
    geom_->RebuildLevels(owner_ ? owner_->lthGrp() : nullptr);
    while (delta && geom_->GetNumSubivLevels() < count && geom_->SubdivideLike(*delta, true))
        if (progress) progress->SetProgress(0.8f * geom_->GetNumSubivLevels() / count);
    geom_->SetActiveLevel(std::min(active, geom_->GetNumSubivLevels() - 1));
    FollowLevels();
    if (progress) {
        progress->SetProgress(0.99f);
        progress->Hide();
    }
    UpdateBases();
    AfterLevelChange();
    return true;
}

bool LMeshObject::IsFaceSelected(int i, int level) const {
    return hasSelection_ && InRange(fselectionLvls_, level) && At(fselectionLvls_[level], i) != 0;
}

bool LMeshObject::IsFaceVisible(int i, int level) const {
    return InRange(fvisibilityLvls_, level) && InRange(fvisibilityLvls_[level], i) &&
           !fvisibilityLvls_[level][i];
}

int LMeshObject::GetFaceMtlId(int i, int level) const {
    if (!hasmtlids_ || !InRange(fmaterialidsLvls_, level)) return -1;
    return InRange(fmaterialidsLvls_[level], i) ? fmaterialidsLvls_[level][i] : -1;
}

bool LMeshObject::HasFacesSelected() const {
    if (!hasSelection_ || !InRange(fselectionLvls_, ActiveLevel())) return false;
    const Bytes& faces = fselectionLvls_[ActiveLevel()];
    return std::any_of(faces.begin(), faces.end(), [](uint8_t b) { return b != 0; });
}

std::span<const uint8_t> LMeshObject::HiddenFaces() const {
    if (!hasHidden_ || !InRange(fvisibilityLvls_, ActiveLevel())) return {};
    return fvisibilityLvls_[ActiveLevel()];
}

void LMeshObject::SelectFace(int i, bool state, bool updateLevels) {
    if (!InRange(fselection_, i)) return;
    fselection_[i] = state;
    if (!updateLevels) return;
    UpdateSelectionFlag();
    UpdateLevelSelction();
}

void LMeshObject::SelectAll(bool state) {
    std::fill(fselection_.begin(), fselection_.end(), state);
    std::fill(vselection_.begin(), vselection_.end(), 0);
}

void LMeshObject::HideFace(int i) {
    if (!InRange(fvisibility_, i)) return;
    fvisibility_[i] = 1;
    hasHidden_ = true;
}

void LMeshObject::ShowFace(int i) {
    if (InRange(fvisibility_, i)) fvisibility_[i] = 0;
}

void LMeshObject::HideSelected() {
    for (size_t f = 0; f < fselection_.size(); ++f) {
        fvisibility_[f] = fselection_[f];
        hasHidden_ |= fselection_[f] != 0;
    }
    UpdateLevelVisibility();
}

void LMeshObject::InvertHidden() {
    if (!hasHidden_) return;
    for (uint8_t& hidden : fvisibility_) hidden = !hidden;
    UpdateLevelVisibility();
}

void LMeshObject::HideAll() {
    std::fill(fvisibility_.begin(), fvisibility_.end(), 1);
    hasHidden_ = true;
    UpdateLevelVisibility();
}

void LMeshObject::ShowAll() {
    std::fill(fvisibility_.begin(), fvisibility_.end(), 0);
    hasHidden_ = false;
    UpdateLevelVisibility();
}

/// Faces of this state give it to their edge neighbours, and those that then have it to the ones
/// across their hidden edges, so that polygons stay whole.
void LMeshObject::SpreadSelection(uint8_t state) {
    if (!hasSelection_ || !geom_) return;
    const auto topology = geom_->GetLevelTopology(0);
    const std::vector<LFace>& faces = topology->Faces();
    const LAdjFaceList2 adjacency(faces, topology->GetNumVerts());
    const auto spread = [&](bool hiddenEdgesOnly) {
        const Bytes before = fselection_;
        for (int f = 0; f < static_cast<int>(before.size()); ++f) {
            if (before[f] != state) continue;
            const LAdjFaceList2::AdjFaces& around = *adjacency.GetAdjFacesForFace(f);
            for (int e = 0; e < 3; ++e)
                if (around.has[e] && !(hiddenEdgesOnly && faces[f].IsEdgeVisible(e)))
                    fselection_[around.faces[e]] = state;
        }
    };
    spread(false);
    spread(true);
    UpdateSelectionFlag();
    UpdateLevelSelction();
}

void LMeshObject::ExpandSelection() {
    SpreadSelection(1);
}

void LMeshObject::ReduceSelection() {
    SpreadSelection(0);
}

void LMeshObject::ClearSelection() {
    std::fill(fselection_.begin(), fselection_.end(), 0);
    std::fill(vselection_.begin(), vselection_.end(), 0);
    hasSelection_ = false;
    UpdateLevelSelction();
}

void LMeshObject::UpdateSelectionFlag() {
    const auto selected = [](const Bytes& selection, const Bytes& hidden) {
        for (size_t i = 0; i < selection.size(); ++i)
            if (selection[i] && !hidden[i]) return true;
        return false;
    };
    ++flagChanges_;
    hasSelection_ = selected(fselection_, fvisibility_) || selected(vselection_, vvisibility_);
}

template <class Visit>
void LMeshObject::ForEachSubFace(int face, Visit visit) const {
    visit(0, face);
    std::vector<int> subs;
    for (int level = 1; level <= ActiveLevel(); ++level) {
        subs.clear();
        geom_->FindSubFaces(face, subs, geom_->GetSubdivs().GetLayer(level));
        for (const int sub : subs) visit(level, sub);
    }
}

void LMeshObject::UpdateLevelSelction() {
    if (!geom_) return;
    ++flagChanges_;
    SpreadToLevels();
    if (owner_) owner_->SelectionChanged();
}

/// What is selected on a level is the inside of the selected base region: a vertex that it shares
/// with a face outside is not.
void LMeshObject::SpreadToLevels() {
    SizeLevelArrays();
    const uint8_t all = hasSelection_;
    std::fill(vselectionLvl_.begin(), vselectionLvl_.end(), all);
    for (Bytes& level : fselectionLvls_) std::fill(level.begin(), level.end(), all);
    vertsSelected_ = false;
    if (!hasSelection_) return;
    const int active = ActiveLevel();
    const auto topology = geom_->GetLevelTopology(active);
    for (size_t f = 0; f < fselection_.size(); ++f) {
        if (fselection_[f]) continue;
        ForEachSubFace(static_cast<int>(f), [&](int level, int sub) {
            fselectionLvls_[level][sub] = 0;
            if (level == active)
                for (const int v : topology->Faces()[sub].v) vselectionLvl_[v] = 0;
        });
    }
    vertsSelected_ =
        std::find(vselectionLvl_.begin(), vselectionLvl_.end(), 1) != vselectionLvl_.end();
}

void LMeshObject::UpdateLevelVisibility() {
    if (!geom_) return;
    ++flagChanges_;
    SizeLevelArrays();
    std::fill(vvisibilityLvl_.begin(), vvisibilityLvl_.end(), 0);
    for (Bytes& level : fvisibilityLvls_) std::fill(level.begin(), level.end(), 0);
    if (!hasHidden_) return;
    const int active = ActiveLevel();
    const auto topology = geom_->GetLevelTopology(active);
    for (size_t f = 0; f < fvisibility_.size(); ++f) {
        if (!fvisibility_[f]) continue;
        ForEachSubFace(static_cast<int>(f), [&](int level, int sub) {
            fvisibilityLvls_[level][sub] = 1;
            if (level == active)
                for (const int v : topology->Faces()[sub].v) vvisibilityLvl_[v] = 1;
        });
    }
}

void LMeshObject::UpdateLevelMtlIds() {
    if (!geom_ || !hasmtlids_) return;
    SizeLevelArrays();
    for (size_t f = 0; f < fmaterialids_.size(); ++f) {
        const bool none = std::binary_search(voidMtls_.begin(), voidMtls_.end(), fmaterialids_[f]);
        const int id = none ? -1 : fmaterialids_[f];
        ForEachSubFace(static_cast<int>(f),
                       [&](int level, int sub) { fmaterialidsLvls_[level][sub] = id; });
    }
}

void LMeshObject::SetMtlIds(std::span<const int> ids) {
    if (ids.size() != fselection_.size()) return;
    fmaterialids_.assign(ids.begin(), ids.end());
    hasmtlids_ = true;
    UpdateLevelMtlIds();
}

void LMeshObject::ClearMtlIds() {
    std::fill(fmaterialids_.begin(), fmaterialids_.end(), -1);
    for (auto& level : fmaterialidsLvls_) std::fill(level.begin(), level.end(), -1);
    hasmtlids_ = false;
    voidMtls_.clear();
}

void LMeshObject::SetVoidMtls(const std::vector<int>& list) {
    voidMtls_ = list;
    std::sort(voidMtls_.begin(), voidMtls_.end());
    UpdateLevelMtlIds();
}

/// Gives the arrays of all levels up to the active one their sizes.
void LMeshObject::SizeLevelArrays() {
    const int levels = ActiveLevel() + 1;
    const auto size = [&](auto& arrays, bool wanted) {
        if (!wanted) return;
        if (static_cast<int>(arrays.size()) < levels) arrays.resize(levels);
        for (int level = 0; level < levels; ++level)
            arrays[level].resize(geom_->GetNumLevelFaces(level));
    };
    size(fselectionLvls_, true);
    size(fvisibilityLvls_, true);
    size(fmaterialidsLvls_, hasmtlids_);
    vselectionLvl_.resize(GetNumVerts());
    vvisibilityLvl_.resize(GetNumVerts());
}

/// Derives what belongs to the active level.
void LMeshObject::AfterLevelChange() {
    fNormals_ = {};
    vNormals_ = {};
    UpdateLevelSelction();
    UpdateLevelVisibility();
    UpdateLevelMtlIds();
    weighted_.clear();
    weights_.Reset(GetNumVerts());
    weights_.Populate();
}

/// Channels and caches get the levels of the geometry. False when a channel can't follow.
bool LMeshObject::FollowLevels() {
    const LSubdivCollection& levels = geom_->GetSubdivs();
    const int count = levels.GetNumLayers();
    while (topocaches_->GetSize() >= count) topocaches_->DelTop();
    for (int level = topocaches_->GetSize() + 1; level < count; ++level)
        topocaches_->AddTop(MakeTopoCache(*levels.GetLayer(level)));
    for (const auto& channel : uvs_) {
        while (channel->GetNumSubdivLevels() > count) channel->DeleteTopLevel();
        for (int level = channel->GetNumSubdivLevels(); level < count && !channel->IsEmpty();
             ++level) {
            const bool quad = levels.GetLayer(level)->GetType() == 1;
            if (!(quad ? channel->SubdivideAll_Quad(*geom_->LevelTables(level - 1), true)
                       : channel->SubdivideAll_Loop(true)))
                return false;
        }
        channel->_GetSubdivs().Activate(ActiveLevel());
    }
    return true;
}

/// The tables of a quad level that is there; nothing for a triangle level.
std::unique_ptr<ILTopoCache> LMeshObject::MakeTopoCache(const ISubdivLayer& layer) const {
    if (layer.GetType() != 1) return nullptr;
    auto cache = std::make_unique<LQuadLevelTopoCache>(layer.index(), layer.rule()->smooth,
                                                       layer.rule()->protectOpen);
    cache->SetStep(geom_->GetQuadStep(layer.index()));
    // Those of a level below are only a part of what there is.
    if (!layer.next()) cache->SetBarys(geom_->GetBarys());
    return cache;
}

/// Everything follows the geometry's new top; where that fails the level goes again.
bool LMeshObject::AfterSubdivision() {
    if (!FollowLevels()) {
        DeleteTopLevelSudiv(true);
        return false;
    }
    UpdateBases();
    AfterLevelChange();
    return true;
}

bool LMeshObject::SubdivideAll_Loop(bool smoothGeom, bool protectOpen) {
    if (!geom_) return false;
    if (!geom_->NeedBarys()) geom_->SetNeedBarys(true);
    return geom_->SubdivideAll_Loop(smoothGeom, protectOpen) && AfterSubdivision();
}

bool LMeshObject::SubdivideAll_Loop(const LSubdivLevelTopo& topo, bool smoothGeom,
                                    bool protectOpen) {
    return geom_ && geom_->SubdivideAll_Loop(topo, smoothGeom, protectOpen) && AfterSubdivision();
}

bool LMeshObject::SubdivideAll_Quad(bool smoothGeom, bool protectOpen) {
    if (!geom_) return false;
    if (!geom_->NeedBarys()) geom_->SetNeedBarys(true);
    return geom_->SubdivideAll_Quad(smoothGeom, protectOpen) && AfterSubdivision();
}

bool LMeshObject::RebuildTopoCaches(int numLevels) {
    if (!geom_) return false;
    topocaches_ = std::make_unique<LTopoCaches>();
    LSubdivMesh scratch(*geom_->GetLevelCopy(0));
    scratch.SetNeedBarys(true);
    for (int level = 1; level < numLevels; ++level) {
        auto cache = std::make_unique<LQuadLevelTopoCache>(level, true, true);
        if (!scratch.SubdivideAll_Quad2(true, true, cache.get())) return false;
        topocaches_->AddTop(std::move(cache));
    }
    return true;
}

LUVSubdivChannel* LMeshObject::GetUVChannel(int i) const {
    return InRange(uvs_, i) ? uvs_[i].get() : nullptr;
}

void LMeshObject::AddChannel(std::unique_ptr<LUVSubdivChannel> channel) {
    uvs_.push_back(std::move(channel));
    ++uvChanges_;
    if (geom_ && !FollowLevels()) uvs_.pop_back();
    UpdateBases();
}

void LMeshObject::ClearUVChannels() {
    uvs_.clear();
    ++uvChanges_;
    UpdateBases();
}

LUVSubdivChannel* LMeshObject::GetActiveUVChannel() const {
    LUVSubdivChannel* channel = GetUVChannel(owner_ ? owner_->getUVchannel() : 0);
    return channel && !channel->IsEmpty() ? channel : nullptr;
}

LMeshBasesUV2* LMeshObject::GetBases() {
    LUVSubdivChannel* channel = GetActiveUVChannel();
    if (!geom_ || !channel) return nullptr;
    if (!bases_) bases_ = std::make_unique<LMeshBasesUV2>(geom_.get(), channel, 0);
    return bases_.get();
}

void LMeshObject::UpdateBases() {
    bases_.reset();
}

bool LMeshObject::DeleteTopLevelSudiv(bool keepArrays) {
    if (!geom_ || !geom_->DeleteTopLevel()) return false;
    FollowLevels();
    if (!keepArrays) {
        const size_t levels = geom_->GetNumSubivLevels();
        const auto drop = [&](auto& arrays) {
            if (arrays.size() > levels) arrays.resize(levels);
        };
        drop(fselectionLvls_);
        drop(fvisibilityLvls_);
        drop(fmaterialidsLvls_);
    }
    SmoothInput();
    geom_->RebuildLevels(owner_ ? owner_->lthGrp() : nullptr);
    UpdateBases();
    AfterLevelChange();
    return true;
}

bool LMeshObject::SetActiveSubdivLevel(int level) {
    if (!geom_ || level < 0 || !geom_->SetActiveLevel(level)) return false;
    for (const auto& channel : uvs_) channel->_GetSubdivs().Activate(level);
    AfterLevelChange();
    return true;
}

void LMeshObject::SetWeight(int i, float weight) {
    if (i < 0 || i >= static_cast<int>(weights_.size())) return;
    if (weights_[i] == 0 && weight != 0) weighted_.push_back(i);
    weights_[i] = weight;
}

void LMeshObject::JoinWeighted(std::span<const int> verts) {
    weighted_.insert(weighted_.end(), verts.begin(), verts.end());
}

void LMeshObject::ClearWeights() {
    for (const int v : weighted_) weights_[v] = 0;
    weighted_.clear();
}

LPoint3 LMeshObject::GetFaceNormal(int i) const {
    return InRange(fNormals_, i) ? fNormals_[i] : LPoint3::Zero;
}

LPoint3 LMeshObject::GetVertNormal(int i) const {
    return InRange(vNormals_, i) ? vNormals_[i] : LPoint3::Zero;
}

void LMeshObject::CalcNormals(bool selectedOnly, bool weightedOnly) {
    if (!geom_) return;
    calcFaceNormals(selectedOnly, weightedOnly);
    calcVertNormals(selectedOnly, weightedOnly);
}

void LMeshObject::calcFaceNormals(bool selectedOnly, bool weightedOnly) {
    fNormals_.resize(GetNumFaces());
    const auto topology = geom_->GetLevelTopology(ActiveLevel());
    for (int f = 0; f < GetNumFaces(); ++f) {
        const LFace& face = topology->Faces()[f];
        if (selectedOnly && !IsFaceSelected(f)) continue;
        if (weightedOnly &&
            (weights_[face.v[0]] == 0 || weights_[face.v[1]] == 0 || weights_[face.v[2]] == 0))
            continue;
        fNormals_[f] = geom_->GetFaceNormal(f);
    }
}

void LMeshObject::calcVertNormals(bool selectedOnly, bool weightedOnly) {
    vNormals_.assign(GetNumVerts(), LPoint3::Zero);
    const auto topology = geom_->GetLevelTopology(ActiveLevel());
    for (int f = 0; f < GetNumFaces(); ++f)
        for (const int v : topology->Faces()[f].v) vNormals_[v] += fNormals_[f];
    for (int v = 0; v < GetNumVerts(); ++v)
        if (!(selectedOnly && !IsVertSelected(v)) && !(weightedOnly && weights_[v] == 0))
            vNormals_[v].Normalize();
}

}  // namespace VantrelSDK
