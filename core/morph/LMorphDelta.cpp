#include "core/morph/LMorphDelta.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "core/io/HugePages.h"
#include "core/morph/LFrameTerm.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/MorphCallbacks.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

LMorphDelta::LMorphDelta(LNode* owner, const LSubdivMesh& geom)
    : owner_(owner), mesh_(std::make_unique<LSubdivMesh>(geom, false)) {
    mesh_->ClearAllVerts();
}

float LMorphDelta::GetMaxDelta() const {
    float max = 0;
    const LPoint3* verts = mesh_->GetAllVertsPtr();
    for (int v = 0; v < mesh_->GetNumVerts(); ++v) max = std::max(max, verts[v].LenSq());
    return std::sqrt(max);
}

bool LMorphDelta::HasOffsets() const {
    const LPoint3* verts = mesh_->GetAllVertsPtr();
    return std::any_of(verts, verts + mesh_->GetNumLevelVerts(mesh_->GetNumSubivLevels() - 1),
                       [](const LPoint3& p) { return !(p == LPoint3::Zero); });
}

LSubdivMesh* LMorphDelta::ReplaceAll() {
    DropBackup();
    FlushUndo();
    ForgetDetails();
    mesh_->ClearAllLevelsVerts();
    return mesh_.get();
}

void LMorphDelta::ForgetDetails() {
    known_ = std::vector<LPoint3>();
    detailsDirty_ = true;
}

void LMorphDelta::EvalDelta(int time, int skipGroup, bool interpolate, int levels) {
    LSubdivMesh* mesh = ReplaceAll();
    if (!owner_) return;
    if (LMorphTarget* neutral = owner_->GetNeutral()) {
        CopyToSubdivMeshProxyCallback copy(mesh, levels);
        neutral->Traverse(&copy);
    }
    if (!interpolate && time >= valid0_ && time <= valid1_) return;
    LFrame frame{
        .time = time, .levels = levels, .interpolate = interpolate, .skipGroup = skipGroup};
    for (LFrameTerm* term : owner_->frameTerms()) term->AddTo(*mesh, frame);
    valid0_ = frame.valid0;
    valid1_ = frame.valid1;
}

void LMorphDelta::EvalTags(int time, char* tags, int count) const {
    if (!owner_) return;
    VertTagClallback tag(tags, count);
    if (LMorphTarget* neutral = owner_->GetNeutral()) neutral->Traverse(&tag);
    for (const LFrameTerm* term : owner_->frameTerms()) term->Tag(time, tag);
}

void LMorphDelta::AllockBack() {
    const size_t count = mesh_->GetNumVerts();
    if (back_.size() == count) return;
    back_.Reset(count);
    back_.Populate();
    dirty_.Reset(static_cast<int>(count));
}

void LMorphDelta::DirtyVert(int v) {
    if (v < 0 || v >= static_cast<int>(back_.size())) return;
    if (dirty_.Add(v)) back_[v] = mesh_->GetAllVertsPtr()[v];
}

int LMorphDelta::CacheUndo(bool full) {
    const int count = mesh_->GetNumVerts();
    if (count == 0) return 0;
    const LPoint3* verts = mesh_->GetAllVertsPtr();
    // Short of memory the older strokes go first; a stroke that can't be kept can't be undone.
    const auto push = [&](auto fill) {
        for (int attempt = 0; attempt < 2; ++attempt) try {
                UndoData data;
                fill(data.undos);
                undos_.Push(std::move(data));
                return;
            } catch (const std::bad_alloc&) {
                undos_.Clear();
            }
    };
    if (full)
        push([&](auto& undos) {
            undos.reserve(count);
            for (int v = 0; v < count; ++v) undos.push_back({v, verts[v]});
        });
    int changed = 0;
    push([&](auto& undos) {
        undos.reserve(dirty_.Items().size());
        for (const int v : dirty_.Items()) undos.push_back({v, back_[v]});
    });
    for (const int v : dirty_.Items()) changed += !(back_[v] == verts[v]);
    dirty_.Clear();
    return changed;
}

bool LMorphDelta::Undo(std::vector<int>* restored) {
    UndoData data;
    if (!undos_.Pop(data) || data.undos.empty()) return false;
    for (const UndoData::Entry& entry : data.undos) mesh_->SetVert(entry.vert, entry.value);
    if (restored)
        for (const UndoData::Entry& entry : data.undos) restored->push_back(entry.vert);
    return true;
}

bool LMorphDelta::SetActiveSubdivLevel(unsigned level, bool keep,
                                       const std::function<void(float)>& reach) {
    if (level >= static_cast<unsigned>(mesh_->GetNumSubivLevels())) return false;
    FlushUndo();
    if (detailsDirty_ && keep) UpdateFullRes(reach);
    mesh_->SetActiveLevel(level);
    if (keep) {
        CacheDetails(false);
    } else {
        ForgetDetails();
    }
    return true;
}

bool LMorphDelta::SubdivideAll_Loop(bool smooth, bool protectopen) {
    FlushUndo();
    if (!mesh_->SubdivideAll_Loop(smooth, protectopen)) return false;
    CacheDetails(true);
    return true;
}

bool LMorphDelta::SubdivideAll_Quad(bool smooth, bool protectopen, const LEdgeListFlagged* edges) {
    FlushUndo();
    if (!mesh_->SubdivideAll_Quad(smooth, protectopen, edges)) return false;
    CacheDetails(true);
    return true;
}

bool LMorphDelta::SubdivideLike(const LSubdivMesh& geom) {
    FlushUndo();
    if (!mesh_->SubdivideLike(geom, false)) return false;
    CacheDetails(true);
    return true;
}

bool LMorphDelta::DeleteTopLevelSudiv() {
    FlushUndo();
    if (!mesh_->DeleteTopLevel()) return false;
    CacheDetails(false);
    return true;
}

void LMorphDelta::CacheDetails(bool force) {
    const bool top = mesh_->GetActiveLevel() == mesh_->GetNumSubivLevels() - 1;
    if (top) {
        known_ = std::vector<LPoint3>();
        detailsDirty_ = !force;
        return;
    }
    const LPoint3* verts = mesh_->GetAllVertsPtr();
    known_.assign(verts, verts + mesh_->GetNumVerts());
    detailsDirty_ = false;
}

bool LMorphDelta::HasMovedSince(std::span<const LPoint3> known) const {
    return std::memcmp(known.data(), mesh_->GetAllVertsPtr(), known.size_bytes()) != 0;
}

/// The active level's values carried to the top by plain interpolation.
std::vector<LPoint3> LMorphDelta::CoarsePart(std::span<const LPoint3> active) const {
    const LSubdivCollection& levels = mesh_->GetSubdivs();
    const int top = mesh_->GetNumSubivLevels() - 1;
    std::vector<LPoint3> coarse;
    ResizeLarge(coarse, mesh_->GetNumLevelVerts(top));
    std::copy(active.begin(), active.end(), coarse.begin());
    for (int level = mesh_->GetActiveLevel() + 1; level <= top; ++level)
        levels.GetLayer(level)->rule()->Interpolate(coarse.data(),
                                                    levels.GetLayer(level)->GetFirstVert());
    return coarse;
}

namespace {

/// A surface at the top level, base shape plus coarse delta, before and after a change of the
/// coarse delta; carries a detail from one to the other.
class DetailCarrier {
  public:
    DetailCarrier(const LSubdivMesh& geom, const LUVSubdivChannel* uvs,
                  std::span<const LPoint3> before, std::span<const LPoint3> after)
        : level_(geom.GetNumSubivLevels() - 1),
          faces_(geom.LevelTables(level_)->Faces()),
          adj_(geom.LevelTables(level_)->AdjFaces()),
          uvFaces_(uvs ? uvs->LevelFaces(level_) : std::span<const LUVChannel::MFace>()),
          uvs_(uvs ? uvs->AllVerts() : std::span<const LPoint2>()),
          before_(before),
          after_(after) {
        ResizeLarge(surface_, before.size());
        const LPoint3* base = geom.GetAllVertsPtr();
        for (size_t v = 0; v < before.size(); ++v)
            surface_[v] = {base[v] + before[v], base[v] + after[v]};
    }

    /// The coarse delta of vertex v has changed, or the surface around it has.
    bool IsMoved(int v) const {
        if (!(before_[v] == after_[v])) return true;
        const auto around = adj_.GetAdjFacesForVert(v);
        return std::any_of(around.begin(), around.end(), [&](int f) {
            const int* c = faces_[f].v;
            return std::any_of(c, c + 3,
                               [&](int i) { return !(surface_[i].before == surface_[i].after); });
        });
    }

    /// The delta of vertex v after the change, given that before.
    LPoint3 Carry(int v, const LPoint3& delta) const {
        LPoint3 detail = delta - before_[v];
        if (detail == LPoint3::Zero) return after_[v];
        const LMatrix3 from = Frame(v, &Place::before), to = Frame(v, &Place::after);
        if (!from.degenerated && !to.degenerated)
            detail = to.TransfromVector({from[0] % detail, from[1] % detail, from[2] % detail});
        return after_[v] + detail;
    }

  private:
    /// Where a vertex of the surface was and is, side by side, as they are read.
    struct Place {
        LPoint3 before, after;
    };

    LMatrix3 Frame(int v, LPoint3 Place::*when) const {
        const auto around = adj_.GetAdjFacesForVert(v);
        if (uvFaces_.empty() || around.empty()) return LMatrix3::Degenerated;
        const int face = around.front();
        const int32_t* points = uvFaces_[face].v;
        if (points[0] < 0 || points[1] < 0 || points[2] < 0) return LMatrix3::Degenerated;
        const LPoint2 uvs[3] = {uvs_[points[0]], uvs_[points[1]], uvs_[points[2]]};
        return SurfaceFrame(faces_, around, face, faces_[face].CornerOf(v), uvs,
                            [&](int i) -> const LPoint3& { return surface_[i].*when; });
    }

    int level_;
    const std::vector<LFace>& faces_;
    const LAdjFaceList& adj_;
    std::span<const LUVChannel::MFace> uvFaces_;
    std::span<const LPoint2> uvs_;
    std::span<const LPoint3> before_, after_;
    std::vector<Place> surface_;
};

}  // namespace

bool LMorphDelta::UpdateFullRes(const std::function<void(float)>& reach) {
    const int active = mesh_->GetActiveLevel(), top = mesh_->GetNumSubivLevels() - 1;
    if (active == top || known_.size() != static_cast<size_t>(mesh_->GetNumVerts())) return false;
    if (!HasMovedSince(known_)) return true;
    LPoint3* verts = mesh_->GetAllVertsPtr();
    const std::vector<LPoint3> before = CoarsePart(known_);
    std::copy_n(verts, known_.size(), known_.begin());
    const std::vector<LPoint3> after = CoarsePart(known_);

    LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const LSubdivMesh& surface = object ? owner_->BaseShape() : *mesh_;
    const DetailCarrier carrier(surface, object ? object->GetActiveUVChannel() : nullptr, before,
                                after);
    // In parts, so that a long way shows how far it is.
    constexpr int kPart = 1 << 17;
    const int count = static_cast<int>(before.size());
    for (int start = static_cast<int>(known_.size()); start < count; start += kPart) {
        const auto carry = [&](int from, int to, int) {
            for (int v = start + from; v < start + to; ++v)
                if (carrier.IsMoved(v)) verts[v] = carrier.Carry(v, verts[v]);
        };
        const int size = std::min(kPart, count - start);
        if (owner_)
            owner_->lthGrp()->ForSlices(size, 1024, carry);
        else
            carry(0, size, 0);
        if (reach) reach(static_cast<float>(start + size) / static_cast<float>(count));
    }
    return true;
}

void LMorphDelta::MakeBackup(LMeshBasesUV2* bases) {
    backup_ = std::make_unique<LSubdivMesh>(*mesh_, false);
    backupDirty_ = false;
    if (!bases) return;
    const BasesDirection heading(bases, LMeshBases::kObjectToTangent);
    backup_->TransformVectorsByLocal(bases, nullptr, -1, owner_ ? owner_->lthGrp() : nullptr);
}

bool LMorphDelta::RestoreBackup(LMeshBasesUV2* bases) {
    if (!backup_) return false;
    const BasesDirection heading(bases, LMeshBases::kTangentToObject);
    backup_->TransformVectorsByLocal(bases, nullptr, -1, owner_ ? owner_->lthGrp() : nullptr);
    mesh_->CopyFrom(backup_.get());
    backup_.reset();
    backupDirty_ = false;
    CacheDetails(false);
    return true;
}

}  // namespace VantrelSDK
