#include "core/morph/LMorphDelta.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace VantrelSDK {

void UndoStack::Push(UndoData data) {
    records_.push_front(std::move(data));
    if (records_.size() > kDepth) records_.pop_back();
}

bool UndoStack::Pop(UndoData& data) {
    if (records_.empty()) return false;
    data = std::move(records_.front());
    records_.pop_front();
    return true;
}

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

bool LMorphDelta::SetActiveSubdivLevel(unsigned level, bool keep) {
    if (level >= static_cast<unsigned>(mesh_->GetNumSubivLevels())) return false;
    FlushUndo();
    if (detailsDirty_ && keep) UpdateFullRes();
    mesh_->SetActiveLevel(level);
    if (keep) CacheDetails(false);
    return true;
}

bool LMorphDelta::SubdivideAll_Loop(bool smooth, bool protectopen) {
    FlushUndo();
    if (!mesh_->SubdivideAll_Loop(smooth, protectopen)) return false;
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
        known_ = {};
        detailsDirty_ = !force;
        return;
    }
    const LPoint3* verts = mesh_->GetAllVertsPtr();
    known_.assign(verts, verts + mesh_->GetNumVerts());
    detailsDirty_ = false;
}

bool LMorphDelta::UpdateFullRes() {
    const int active = mesh_->GetActiveLevel(), top = mesh_->GetNumSubivLevels() - 1;
    if (active == top || known_.size() != static_cast<size_t>(mesh_->GetNumVerts())) return false;
    LPoint3* verts = mesh_->GetAllVertsPtr();
    std::vector<LPoint3> change(mesh_->GetNumLevelVerts(top));
    for (size_t v = 0; v < known_.size(); ++v) {
        change[v] = verts[v] - known_[v];
        known_[v] = verts[v];
    }
    for (int level = active + 1; level <= top; ++level) {
        const ISubdivLayer* layer = mesh_->GetSubdivs().GetLayer(level);
        const auto& parents = layer->rule()->parents;
        for (size_t i = 0; i < parents.size(); ++i) {
            const auto [a, b] = parents[i];
            if (change[a] == LPoint3::Zero && change[b] == LPoint3::Zero) continue;
            const int v = layer->GetFirstVert() + static_cast<int>(i);
            change[v] = (change[a] + change[b]) * 0.5f;
            verts[v] += change[v];
        }
    }
    return true;
}

}  // namespace VantrelSDK
