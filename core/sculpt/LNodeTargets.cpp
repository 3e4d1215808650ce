#include "core/morph/LMeshBases.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

bool LNode::MakeMorph(std::span<const float> xs, std::span<const float> ys,
                      std::span<const float> zs, LMorphTarget* target) const {
    const size_t count = lobject_ ? lobject_->GetNumVerts() : 0;
    if (!target || count == 0 || xs.size() != count || ys.size() != count || zs.size() != count)
        return false;
    std::vector<LPoint3> offsets(count);
    const LPoint3* base = lobject_->GetOrigGeom()->GetAllVertsPtr();
    for (size_t v = 0; v < count; ++v) offsets[v] = LPoint3(xs[v], ys[v], zs[v]) - base[v];
    return target->CopyFromMorph(offsets.data(), static_cast<int>(count));
}

bool LNode::MakeMorphFromMesh(const LMesh* mesh, LMorphTarget* target) {
    if (!target || !mesh || !lobject_) return false;
    LSubdivMesh offsets(*lobject_->GetOrigGeom(), false);
    const int count = offsets.GetNumLevelVerts(offsets.GetNumSubivLevels() - 1);
    if (mesh->GetNumVerts() != count) return false;
    LPoint3* verts = offsets.GetAllVertsPtr();
    for (int v = 0; v < count; ++v) verts[v] = mesh->GetVert(v) - verts[v];
    LMeshBasesUV2* bases = lobject_->GetBases();
    const BasesDirection heading(bases, LMeshBases::kObjectToTangent);
    offsets.TransformVectorsByLocal(bases, nullptr, -1, lthGrp());
    if (HasNeutral() && target != GetNeutral()) GetNeutral()->ApplyToLevels(&offsets, -1, -1);
    int level0 = 0;
    const LPoint3* input = lobject_->GetInput(level0);
    target->CopySkin(input, level0);
    return target->CopyFromMesh(&offsets);
}

}  // namespace VantrelSDK
