#include "core/morph/LMeshBases.h"

#include <algorithm>

#include "core/sculpt/LThreadGroup.h"

namespace VantrelSDK {

void LMeshBases::CopyBases(const LMeshBases* other) {
    if (!other || other == this) return;
    CopyFrom(static_cast<const LSubdivMesh*>(other));
    barysrc_ = other->barysrc_;
    fromTo_ = other->fromTo_;
}

LMeshBasesUV2::LMeshBasesUV2(const LSubdivMesh* src, const LUVSubdivChannel* uv, int fromTo)
    : LMeshBases(*src, fromTo), uvsrc_(uv) {}

void LMeshBasesUV2::CopyBases(const LMeshBases* other) {
    LMeshBases::CopyBases(other);
    if (const auto* bases = dynamic_cast<const LMeshBasesUV2*>(other)) uvsrc_ = bases->uvsrc_;
}

void LMeshBasesUV2::Update(const LPoint3* level0) {
    std::copy_n(level0, nverts_, verts_.begin());
    RebuildLevels();
}

void LMeshBasesUV2::Update(const LSubdivMesh* src, const LUVSubdivChannel* uv) {
    barysrc_ = src;
    uvsrc_ = uv;
    CopyFrom(src);
}

LMatrix3 LMeshBasesUV2::GetVertexTM(int level, int face, int corner) const {
    const LMeshTopology* topology = LevelTables(level);
    LPoint2 uvs[3];
    if (!topology || !uvsrc_ || !uvsrc_->GetFaceUVs(face, level, uvs)) return LMatrix3::Degenerated;
    const std::vector<LFace>& faces = topology->Faces();
    const int v = faces[face].v[corner];
    LMatrix3 frame = SurfaceFrame(faces, topology->AdjFaces().GetAdjFacesForVert(v), face, corner,
                                  uvs, [&](int i) -> const LPoint3& { return verts_[i]; });
    if (fromTo_ == kObjectToTangent) frame.Invert();
    return frame;
}

LMatrix3 LMeshBases::FrameAt(int level, int vert) const {
    const LMeshTopology* topology = LevelTables(level);
    if (!topology || vert >= topology->GetNumVerts()) return LMatrix3::Degenerated;
    // The first face that holds a vertex is the first of those around it.
    const std::span<const int> around = topology->AdjFaces().GetAdjFacesForVert(vert);
    if (around.empty()) return LMatrix3::Degenerated;
    const int face = around.front();
    return GetVertexTM(level, face, topology->Faces()[face].CornerOf(vert));
}

void LSubdivMesh::TransformVectorsByLocal(const LMeshBases* bases, const LSubdivMesh*, int level,
                                          LThreadGroup* workers) {
    if (level < 0) level = GetNumSubivLevels() - 1;
    const LMeshTopology* topology = bases ? bases->LevelTables(level) : nullptr;
    if (!topology || topology->GetNumVerts() > static_cast<int>(verts_.size())) return;
    // Made at its first use, on this thread.
    topology->AdjFaces();
    const auto transform = [&](int first, int last, int) {
        // No frame turns the zero vector, and most of a sculpt is that.
        for (int v = first; v < last; ++v)
            if (!(verts_[v] == LPoint3::Zero)) bases->TransformAt(level, v, verts_[v]);
    };
    if (workers)
        workers->ForSlices(topology->GetNumVerts(), 1024, transform);
    else
        transform(0, topology->GetNumVerts(), 0);
}

}  // namespace VantrelSDK
