#include "core/subdiv/LSubdivMesh.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <new>

#include "core/mesh/LEdgeList.h"
#include "core/subdiv/LLoopSmoothCache.h"

namespace VantrelSDK {

LSubdivMesh::LSubdivMesh(int nverts, int nfaces) {
    Allocate(nverts, nfaces);
}

LSubdivMesh::LSubdivMesh(const LMesh& mesh) {
    CopyFrom(&mesh);
}

LSubdivMesh::LSubdivMesh(const LSubdivMesh& other, bool withBarys)
    : LMesh(other),
      subdivs_(std::make_unique<LSubdivCollection>(*other.subdivs_)),
      levelchanged_(other.levelchanged_),
      needbarys_(withBarys && other.needbarys_) {
    if (withBarys) barys_ = other.barys_;
}

bool LSubdivMesh::Allocate(int nverts, int nfaces) {
    const bool done = LMesh::Allocate(nverts, nfaces);
    subdivs_ = std::make_unique<LSubdivCollection>(nverts_, LMesh::GetNumFaces());
    levelchanged_ = false;
    barys_.assign(needbarys_ ? nverts_ : 0, LPoint3::Zero);
    return done;
}

void LSubdivMesh::Free() {
    LMesh::Free();
    subdivs_ = std::make_unique<LSubdivCollection>(0, 0);
    barys_ = {};
}

void LSubdivMesh::CopyFrom(const LMesh* other) {
    if (!other || other == this) return;
    LMesh::CopyFrom(other);
    subdivs_ = std::make_unique<LSubdivCollection>(nverts_, LMesh::GetNumFaces());
    levelchanged_ = false;
    barys_.assign(needbarys_ ? nverts_ : 0, LPoint3::Zero);
}

void LSubdivMesh::CopyFrom(const LSubdivMesh* other) {
    if (!other || other == this) return;
    LMesh::operator=(*other);
    subdivs_ = std::make_unique<LSubdivCollection>(*other->subdivs_);
    levelchanged_ = other->levelchanged_;
    CopyBarys(*other);
}

void LSubdivMesh::CopyVerts(const LSubdivMesh& other) {
    const size_t count = std::min(verts_.size(), other.verts_.size());
    std::copy_n(other.verts_.begin(), count, verts_.begin());
}

void LSubdivMesh::CopyBarys(const LSubdivMesh& other) {
    needbarys_ = other.needbarys_;
    barys_ = other.barys_;
}

LPoint3 LSubdivMesh::GetVert(int i) const {
    return i >= 0 && i < GetNumVerts() ? verts_[i] : LPoint3::Zero;
}

void LSubdivMesh::SetVert(int i, const LPoint3& p) {
    if (i < 0 || i >= GetNumVerts()) return;
    verts_[i] = p;
    levelchanged_ = true;
}

void LSubdivMesh::OffsetVert(int i, const LPoint3& d) {
    if (i < 0 || i >= GetNumVerts()) return;
    verts_[i] += d;
    levelchanged_ = true;
}

void LSubdivMesh::SetFace(int i, const LFace& face) {
    if (GetNumSubivLevels() == 1) LMesh::SetFace(i, face);
}

void LSubdivMesh::ClearVerts() {
    std::fill_n(verts_.begin(), GetNumVerts(), LPoint3::Zero);
    levelchanged_ = false;
}

void LSubdivMesh::ClearAllVerts() {
    ClearAllLevelsVerts();
    levelchanged_ = false;
}

void LSubdivMesh::InverseAllVerts() {
    for (LPoint3& p : verts_) p = -p;
    levelchanged_ = false;
}

void LSubdivMesh::ClearAllLevelsVerts() {
    std::fill(verts_.begin(), verts_.end(), LPoint3::Zero);
}

LPoint3 LSubdivMesh::GetFaceNormal(int i) const {
    if (i < 0 || i >= GetNumFaces()) return LPoint3::Zero;
    const LFace face = GetFace(i);
    const LPoint3 a = verts_[face.v[0]], b = verts_[face.v[1]], c = verts_[face.v[2]];
    return Normalized((b - a) ^ (c - b));
}

std::unique_ptr<LMesh> LSubdivMesh::GetLevelCopy(unsigned level) const {
    const auto topology = GetLevelTopology(level);
    if (!topology) return std::make_unique<LMesh>();
    return std::make_unique<LMesh>(topology, verts_);
}

std::unique_ptr<LMesh> LSubdivMesh::GetActiveLevelCopy() const {
    return GetLevelCopy(GetActiveLevel());
}

std::unique_ptr<LMesh> LSubdivMesh::GetTopLevelCopy() const {
    return GetLevelCopy(GetNumSubivLevels() - 1);
}

std::unique_ptr<LMesh> LSubdivMesh::GetAllLevelsCopy() const {
    std::vector<LFace> faces;
    for (int level = 0; level < GetNumSubivLevels(); ++level)
        for (int f = 0; f < GetNumLevelFaces(level); ++f) faces.push_back(GetLevelFace(f, level));
    return std::make_unique<LMesh>(std::make_shared<LMeshTopology>(NumAllVerts(), std::move(faces)),
                                   verts_);
}

std::shared_ptr<const LMeshTopology> LSubdivMesh::GetLevelTopology(unsigned level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(static_cast<int>(level));
    return layer ? layer->topology() : level == 0 ? topology_ : nullptr;
}

int LSubdivMesh::GetNumLevelVerts(unsigned level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(static_cast<int>(level));
    return layer ? layer->GetNumVerts() : nverts_;
}

int LSubdivMesh::GetNumLevelFaces(unsigned level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(static_cast<int>(level));
    return layer ? layer->GetNumFaces() : LMesh::GetNumFaces();
}

LPoint3 LSubdivMesh::GetLevelVert(unsigned i, unsigned level) const {
    return static_cast<int>(i) < GetNumLevelVerts(level) ? verts_[i] : LPoint3::Zero;
}

LFace LSubdivMesh::GetLevelFace(unsigned i, unsigned level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(static_cast<int>(level));
    if (!layer) return LMesh::GetFace(static_cast<int>(i));
    if (static_cast<int>(i) >= layer->GetNumFaces()) return ZeroFace;
    LFace face = layer->topology()->Faces()[i];
    face.id = layer->RemapFaceFromLocal(static_cast<int>(i));
    return face;
}

void LSubdivMesh::OffsetLevelVert(int i, const LPoint3& d, int level) {
    if (i >= 0 && i < GetNumLevelVerts(level)) verts_[i] += d;
}

bool LSubdivMesh::SetActiveLevel(unsigned level) {
    if (!subdivs_->Activate(static_cast<int>(level))) return false;
    levelchanged_ = false;
    return true;
}

int LSubdivMesh::RemapFaceFromGlobal(unsigned i) const {
    const ISubdivLayer* active = subdivs_->GetActive();
    return active ? active->RemapFaceFromGlobal(static_cast<int>(i)) : static_cast<int>(i);
}

void LSubdivMesh::SetVertByAbsIdx(unsigned i, const LPoint3& p) {
    if (i < verts_.size()) verts_[i] = p;
}

LPoint3 LSubdivMesh::GetVertByAbsIdx(unsigned i) const {
    return i < verts_.size() ? verts_[i] : LPoint3::Zero;
}

void LSubdivMesh::OffsetVertByAbsIdx(unsigned i, const LPoint3& d) {
    if (i < verts_.size()) verts_[i] += d;
}

LFace LSubdivMesh::GetFaceByAbsIdx(int i) const {
    for (int level = GetNumSubivLevels() - 1; level > 0; --level) {
        const ISubdivLayer* layer = subdivs_->GetLayer(level);
        if (i >= layer->GetFirstFace()) return GetLevelFace(i - layer->GetFirstFace(), level);
    }
    return GetLevelFace(i, 0);
}

LFaceSubs LSubdivMesh::GetFaceSubsByAbsIdx(int i) const {
    for (int level = 1; level < GetNumSubivLevels(); ++level) {
        const ISubdivLayer* layer = subdivs_->GetLayer(level);
        if (i <= layer->GetLastParentFace()) return ChildrenOf(i, *layer);
    }
    return {};
}

LFaceSubs LSubdivMesh::ChildrenOf(int absFace, const ISubdivLayer& childLayer) const {
    return childLayer.GetFaceSubs(absFace - childLayer.GetFirstParentFace());
}

/// Values of the newest level: interpolated from the levels below, then smoothed when asked.
void LSubdivMesh::FillLevel(const LMeshTopology& topology, const LLevelRule& rule, bool smooth) {
    const int first = topology.GetNumVerts() - static_cast<int>(rule.parents.size());
    for (size_t i = 0; i < rule.parents.size(); ++i) {
        const auto [a, b] = rule.parents[i];
        verts_[first + i] = (verts_[a] + verts_[b]) * 0.5f;
    }
    if (!smooth) return;
    std::unique_ptr<LVertOpenList> open;
    if (rule.protectOpen) {
        const LEdgeOpenList edges(topology.Faces(), topology.GetNumVerts());
        open = std::make_unique<LVertOpenList>(topology.GetNumVerts(), edges);
    }
    const LLoopSmoothCache smoothed(verts_.data(), topology.GetNumVerts(), topology.AdjVerts(),
                                    open.get());
    std::vector<LPoint3> moved(topology.GetNumVerts());
    smoothed.Fill(moved.data());
    std::copy(moved.begin(), moved.end(), verts_.begin());
}

bool LSubdivMesh::AddLevel(std::shared_ptr<const LMeshTopology> topology,
                           std::shared_ptr<const LLevelRule> rule, bool smooth) {
    verts_.resize(topology->GetNumVerts());
    FillLevel(*topology, *rule, smooth);
    subdivs_->AddEntireLevel(std::move(topology), std::move(rule));
    levelchanged_ = false;
    if (needbarys_) RecalcAllBarys();
    return true;
}

bool LSubdivMesh::SubdivideAll_Loop(bool smooth, bool protectopen) {
    const auto top = GetLevelTopology(GetNumSubivLevels() - 1);
    if (!top) return false;
    const LSubdivLevelTopo topo(top->Faces(), top->GetNumVerts(), 0, top->GetNumFaces() - 1);
    return SubdivideAll_Loop(topo, smooth, protectopen);
}

bool LSubdivMesh::SubdivideAll_Loop(const LSubdivLevelTopo& topo, bool smooth,
                                    bool protectopen) try {
    const int nverts = NumAllVerts();
    if (topo.GetNumExtFaces() == 0 || topo.GetNumExtVerts() == 0) return false;
    const ISubdivLayer* top = subdivs_->GetTop();
    const long long allFaces =
        topo.GetNumExtFaces() + (top ? top->GetNumTotalFaces() : LMesh::GetNumFaces());
    if (allFaces > INT_MAX || nverts + static_cast<long long>(topo.GetNumExtVerts()) > INT_MAX)
        return false;

    auto rule = std::make_shared<LLevelRule>();
    rule->smooth = smooth;
    rule->protectOpen = protectopen;
    rule->parents.resize(topo.GetNumExtVerts());
    for (int e = 0; e < topo.GetNumExtVerts(); ++e) {
        const LEdgeList::Edge edge = topo.edges().GetEdge(e);
        rule->parents[e] = {edge.v[0], edge.v[1]};
    }
    std::vector<LFace> faces(topo.GetNumExtFaces());
    for (int i = 0; i < topo.GetNumExtFaces(); ++i) {
        faces[i] = topo.GetExtFace(i);
        faces[i].id = i;
    }
    auto topology =
        std::make_shared<LMeshTopology>(nverts + topo.GetNumExtVerts(), std::move(faces));
    return AddLevel(std::move(topology), std::move(rule), smooth);
} catch (const std::bad_alloc&) {
    return false;
}

bool LSubdivMesh::SubdivideLike(const LSubdivMesh& other, bool smooth) try {
    const ISubdivLayer* layer = other.subdivs_->GetLayer(GetNumSubivLevels());
    if (!layer || layer->GetFirstParentVert() > NumAllVerts()) return false;
    verts_.resize(layer->GetNumVerts());
    FillLevel(*layer->topology(), *layer->rule(), smooth && layer->rule()->smooth);
    subdivs_->AddClone(*layer);
    levelchanged_ = false;
    if (needbarys_) RecalcAllBarys();
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void LSubdivMesh::RebuildLevels() {
    for (int level = 1; level < GetNumSubivLevels(); ++level) {
        const ISubdivLayer* layer = subdivs_->GetLayer(level);
        FillLevel(*layer->topology(), *layer->rule(), layer->rule()->smooth);
    }
}

bool LSubdivMesh::DeleteTopLevel() {
    if (!subdivs_->DeleteTop()) return false;
    verts_.resize(NumAllVerts());
    verts_.shrink_to_fit();
    if (needbarys_) barys_.resize(NumAllVerts());
    return true;
}

bool LSubdivMesh::Mesh2wobj(const std::string& path, int level) const {
    if (level < 0) level = GetNumSubivLevels() - 1;
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file) return false;
    for (int v = 0; v < GetNumLevelVerts(level); ++v) {
        const LPoint3 p = GetLevelVert(v, level);
        std::fprintf(file, "v %f %f %f\n", p.x, p.y, p.z);
    }
    for (int f = 0; f < GetNumLevelFaces(level); ++f) {
        const LFace face = GetLevelFace(f, level);
        std::fprintf(file, "f %i %i %i\n", face.v[0] + 1, face.v[1] + 1, face.v[2] + 1);
    }
    return std::fclose(file) == 0;
}

bool LSubdivMesh::Vec2wobj(const std::string& path, const LSubdivMesh& base) const {
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file) return false;
    const int count = std::min(GetNumVerts(), base.GetNumVerts());
    for (int v = 0; v < count; ++v) {
        const LPoint3 p = base.GetVert(v), q = p + GetVert(v);
        std::fprintf(file, "v %f %f %f\nv %f %f %f\n", p.x, p.y, p.z, q.x, q.y, q.z);
    }
    for (int v = 0; v < count; ++v)
        std::fprintf(file, "f %i %i %i\n", 2 * v + 1, 2 * v + 2, 2 * v + 1);
    return std::fclose(file) == 0;
}

std::string LSubdivMesh::Validate() const {
    int nextFace = LMesh::GetNumFaces(), nextVert = nverts_;
    if (topology_ && !topology_->IsValid()) return "a face of level 0 names no vertex";
    for (int level = 1; level < GetNumSubivLevels(); ++level) {
        const ISubdivLayer* layer = subdivs_->GetLayer(level);
        const auto& topology = layer->topology();
        if (layer->GetFirstFace() != nextFace) return "a level's faces don't follow those below";
        if (layer->GetFirstVert() != nextVert) return "a level's vertices don't follow those below";
        if (topology->GetNumFaces() != layer->GetNumFaces() ||
            topology->GetNumVerts() != layer->GetNumVerts())
            return "a level's topology has other counts";
        if (!topology->IsValid()) return "a face names a vertex above its level";
        nextFace = layer->GetLastFace() + 1;
        nextVert = layer->GetLastVert() + 1;
        std::vector<char> seen(layer->GetNumFaces());
        for (int f = layer->GetFirstParentFace(); f <= layer->GetLastParentFace(); ++f)
            for (const int sub : GetFaceSubsByAbsIdx(f).subs) {
                if (sub < 0) continue;
                const int local = layer->RemapFaceFromGlobal(sub);
                if (local < 0 || local >= layer->GetNumFaces() || seen[local]++)
                    return "a face of a level has no parent or several";
            }
        if (std::find(seen.begin(), seen.end(), 0) != seen.end())
            return "a face of a level has no parent";
    }
    if (static_cast<int>(verts_.size()) != nextVert) return "the vertex array has another length";
    return {};
}

}  // namespace VantrelSDK
