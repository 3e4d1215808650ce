#include "core/subdiv/LSubdivMesh.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <new>

#include "core/io/HugePages.h"
#include "core/mesh/LEdgeList.h"
#include "core/subdiv/LQuadSubdivision.h"
#include "core/subdiv/LTopoCaches.h"

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
    barys_ = nullptr;
    if (needbarys_) AllocBarys();
    return done;
}

void LSubdivMesh::Free() {
    LMesh::Free();
    subdivs_ = std::make_unique<LSubdivCollection>(0, 0);
    barys_ = nullptr;
}

void LSubdivMesh::CopyFrom(const LMesh* other) {
    if (!other || other == this) return;
    LMesh::CopyFrom(other);
    subdivs_ = std::make_unique<LSubdivCollection>(nverts_, LMesh::GetNumFaces());
    levelchanged_ = false;
    barys_ = nullptr;
    if (needbarys_) AllocBarys();
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

void LSubdivMesh::AddAllVerts(const LSubdivMesh& other, float weight) {
    const size_t count = std::min(verts_.size(), other.verts_.size());
    for (size_t v = 0; v < count; ++v) verts_[v] += other.verts_[v] * weight;
}

void LSubdivMesh::ScaleAllVerts(float factor) {
    for (LPoint3& p : verts_) p *= factor;
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

const LMeshTopology* LSubdivMesh::LevelTables(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(level);
    return layer ? layer->topology().get() : level == 0 ? topology_.get() : nullptr;
}

LQuadStep LSubdivMesh::GetQuadStep(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(level);
    if (!layer || layer->GetType() != 1) return {};
    return {static_cast<const EntireQuadSubdivLayer*>(layer)->coupling(), layer->topology(),
            layer->rule(), GetLevelTopology(level - 1), layer->GetFirstFace()};
}

void LSubdivMesh::SetLevelMade(int level, bool smooth, bool protectopen) {
    ISubdivLayer* layer = subdivs_->GetLayer(level);
    if (!layer || (layer->rule()->smooth == smooth && layer->rule()->protectOpen == protectopen))
        return;
    auto rule = std::make_shared<LLevelRule>(*layer->rule());
    rule->smooth = smooth;
    rule->protectOpen = protectopen;
    layer->SetRule(std::move(rule));
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

bool LSubdivMesh::HasRoomFor(long long newVerts, long long newFaces) const {
    const ISubdivLayer* top = subdivs_->GetTop();
    const long long faces = top ? top->GetNumTotalFaces() : LMesh::GetNumFaces();
    return newVerts > 0 && newFaces > 0 && NumAllVerts() + newVerts <= INT_MAX &&
           faces + newFaces <= INT_MAX;
}

/// Values of the newest level, by its rule. Without memory the level goes again.
bool LSubdivMesh::FillTop(bool smooth) try {
    const ISubdivLayer& top = *subdivs_->GetTop();
    ResizeLarge(verts_, top.GetNumVerts());
    if (needbarys_) BindNewVerts(top.index());
    std::vector<LPoint3> scratch;
    top.rule()->Fill(*top.topology(), verts_.data(), smooth, scratch, nullptr);
    levelchanged_ = false;
    return true;
} catch (const std::bad_alloc&) {
    subdivs_->DeleteTop();
    verts_.resize(NumAllVerts());
    return false;
}

bool LSubdivMesh::SubdivideAll_Loop(bool smooth, bool protectopen) {
    const auto top = GetLevelTopology(GetNumSubivLevels() - 1);
    if (!top) return false;
    const LSubdivLevelTopo topo(top->Faces(), top->GetNumVerts(), 0, top->GetNumFaces() - 1);
    return SubdivideAll_Loop(topo, smooth, protectopen);
}

bool LSubdivMesh::SubdivideAll_Loop(const LSubdivLevelTopo& topo, bool smooth,
                                    bool protectopen) try {
    const int nverts = NumAllVerts(), newVerts = topo.GetNumExtVerts();
    if (!HasRoomFor(newVerts, topo.GetNumExtFaces())) return false;
    std::vector<LFace> faces;
    ResizeLarge(faces, topo.GetNumExtFaces());
    for (int i = 0; i < topo.GetNumExtFaces(); ++i) {
        faces[i] = topo.GetExtFace(i);
        faces[i].id = i;
    }
    auto topology = std::make_shared<LMeshTopology>(nverts + newVerts, std::move(faces));
    auto rule = std::make_shared<LLevelRule>(false, smooth, protectopen,
                                             topo.MakeTables(*topology, protectopen));
    subdivs_->AddEntireLevel(newVerts, std::move(topology), std::move(rule));
    return FillTop(smooth);
} catch (const std::bad_alloc&) {
    return false;
}

bool LSubdivMesh::SubdivideAll_Quad(bool smooth, bool protectopen,
                                    const LEdgeListFlagged* edges) try {
    const auto top = GetLevelTopology(GetNumSubivLevels() - 1);
    if (!top || !top->IsValid() || CountNextQuadLevelFaces() > INT_MAX) return false;
    const LQuadSubdivision step(top, edges);
    if (!HasRoomFor(step.NumVerts() - NumAllVerts(), step.NumFaces())) return false;
    const auto topology = step.MakeTopology();
    auto rule = std::make_shared<LLevelRule>(true, smooth, protectopen, step.MakeTables(*topology));
    return AddQuadLevel({step.level().coupling(), topology, std::move(rule), top}, smooth);
} catch (const std::bad_alloc&) {
    return false;
}

bool LSubdivMesh::SubdivideAll_Quad2(bool smooth, bool protectopen, LQuadLevelTopoCache* cache) {
    if (!SubdivideAll_Quad(smooth, protectopen)) return false;
    cache->SetStep(GetQuadStep(GetNumSubivLevels() - 1));
    if (needbarys_) cache->SetBarys(barys_);
    return true;
}

bool LSubdivMesh::RedivideAll_Quad(const LQuadLevelTopoCache* cache, bool smooth) try {
    const LQuadStep& step = cache->GetStep();
    if (!step.topology) return SubdivideAll_Quad(true, true);
    const int newVerts = step.rule->NumNewVerts();
    if (step.topology->GetNumVerts() - newVerts != NumAllVerts() ||
        step.coupling->NumFaces() != GetNumLevelFaces(GetNumSubivLevels() - 1))
        return false;
    if (!needbarys_ || !cache->GetBarys()) return AddQuadLevel(step, smooth);
    // The cache knows what binding would find.
    needbarys_ = false;
    const bool done = AddQuadLevel(step, smooth);
    needbarys_ = true;
    if (done) barys_ = std::const_pointer_cast<std::vector<LPoint3>>(cache->GetBarys());
    return done;
} catch (const std::bad_alloc&) {
    return false;
}

long long LSubdivMesh::CountNextQuadLevelFaces() const {
    const auto top = GetLevelTopology(GetNumSubivLevels() - 1);
    if (!top) return 0;
    const LTriCoupling& coupling = *top->Coupling();
    return 8LL * coupling.NumPairs() + 6LL * coupling.NumSingles();
}

bool LSubdivMesh::AddQuadLevel(const LQuadStep& step, bool smooth) {
    subdivs_->AddEntireQuadLevel(step.rule->NumNewVerts(), step.coupling, step.topology, step.rule);
    return FillTop(smooth);
}

bool LSubdivMesh::SubdivideLike(const LSubdivMesh& other, bool smooth) try {
    const ISubdivLayer* layer = other.subdivs_->GetLayer(GetNumSubivLevels());
    if (!layer || layer->GetFirstVert() != NumAllVerts()) return false;
    subdivs_->AddClone(*layer);
    return FillTop(smooth && layer->rule()->smooth);
} catch (const std::bad_alloc&) {
    return false;
}

void LSubdivMesh::RebuildLevels(LThreadGroup* workers) {
    std::vector<LPoint3> scratch;
    for (int level = 1; level < GetNumSubivLevels(); ++level) {
        const ISubdivLayer* layer = subdivs_->GetLayer(level);
        layer->rule()->Fill(*layer->topology(), verts_.data(), layer->rule()->smooth, scratch,
                            workers);
    }
}

bool LSubdivMesh::DeleteTopLevel() {
    if (!subdivs_->DeleteTop()) return false;
    verts_.resize(NumAllVerts());
    verts_.shrink_to_fit();
    if (barys_)
        barys_ = std::make_shared<std::vector<LPoint3>>(barys_->begin(),
                                                        barys_->begin() + NumAllVerts());
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
