#include "core/morph/MorphCallbacks.h"

#include <algorithm>

#include "core/morph/LMorphTarget.h"

namespace VantrelSDK {

VertsCallback::VertsCallback(LSubdivMesh* mesh, float weight, int levels, Proxy proxy)
    : verts_(mesh->GetAllVertsPtr()), weight_(weight) {
    const int all = mesh->GetNumSubivLevels();
    const int count = levels < 0 ? all : std::min(levels, all);
    limit_ = count == 0 ? 0 : mesh->GetNumLevelVerts(count - 1);
    proxy_ = proxy == Proxy::AtLevel0 && count == 1 && all > 1;
}

bool VertsCallback::proc(int vertex, LMorphTarget* target) {
    const LPoint3* offset = (proxy_ ? target->proxy() : target->geom()).Find(vertex);
    if (!offset || vertex >= limit_) return false;
    verts_[vertex] += *offset * weight_;
    ++count_;
    return false;
}

bool VertsCallback::procAll(const SparseOffsets& offsets, int limit) {
    count_ += offsets.AddTo(verts_, std::min(limit, limit_), weight_);
    return true;
}

bool ApplyToMeshCallback2::proc(int vertex, LMorphTarget* target) {
    if (vertex >= std::min(base_->GetNumVerts(), out_->GetNumVerts())) return true;
    out_->SetVert(vertex, base_->GetVert(vertex) + target->MorphVector(vertex));
    ++count_;
    return false;
}

bool VertTagClallback::proc(int vertex, LMorphTarget* target) {
    if (vertex >= limit_) return true;
    if (tags_[vertex] || target->MorphVector(vertex) == LPoint3::Zero) return false;
    tags_[vertex] = 1;
    tagged_ = true;
    return false;
}

}  // namespace VantrelSDK
