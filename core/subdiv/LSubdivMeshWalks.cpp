#include <algorithm>

#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

/// Calls visit(local number) for the sub-faces, on `layer`, of a face of level depth - 1.
template <class Visit>
void LSubdivMesh::WalkSubFaces(int face, int depth, const ISubdivLayer* layer, Visit visit) const {
    for (const int sub : ChildrenOf(face, *subdivs_->GetLayer(depth)).subs) {
        if (sub < 0) continue;
        if (layer->index() > depth)
            WalkSubFaces(sub, depth + 1, layer, visit);
        else
            visit(layer->RemapFaceFromGlobal(sub));
    }
}

void LSubdivMesh::FindSubFaces(int face, std::vector<int>& out, const ISubdivLayer* layer) const {
    if (!layer || face < 0 || face >= LMesh::GetNumFaces()) return;
    WalkSubFaces(face, 1, layer, [&](int sub) { out.push_back(sub); });
}

void LSubdivMesh::FindSubFaces(const std::vector<int>& in, std::vector<int>& out,
                               unsigned level) const {
    if (level == 0) {
        out.insert(out.end(), in.begin(), in.end());
        return;
    }
    const ISubdivLayer* layer = subdivs_->GetLayer(static_cast<int>(level));
    for (const int face : in) FindSubFaces(face, out, layer);
}

namespace {

const LFaceBarys kIdentityBarys = {{LPoint3(1, 0, 0), LPoint3(0, 1, 0), LPoint3(0, 0, 1)}};

/// Barycentrics of the corners of child k of a face that a triangle level split in four.
LFaceBarys SplitBarys(const LFaceBarys& parent, int k) {
    const LPoint3* b = parent.v;
    const LPoint3 mid[3] = {(b[0] + b[1]) * 0.5f, (b[1] + b[2]) * 0.5f, (b[2] + b[0]) * 0.5f};
    if (k == 3) return {{mid[0], mid[1], mid[2]}};
    return {{b[k], mid[k], mid[(k + 2) % 3]}};
}

}  // namespace

/// As WalkSubFaces, with visit(local number, barycentrics of its corners).
template <class Visit>
void LSubdivMesh::WalkSubFacesAndBary(int face, const LFaceBarys& barys, int depth,
                                      const ISubdivLayer* layer, Visit visit) const {
    const LFaceSubs subs = ChildrenOf(face, *subdivs_->GetLayer(depth));
    for (int k = 0; k < 6; ++k) {
        if (subs.subs[k] < 0) continue;
        const LFaceBarys child = SplitBarys(barys, k);
        if (layer->index() > depth)
            WalkSubFacesAndBary(subs.subs[k], child, depth + 1, layer, visit);
        else
            visit(layer->RemapFaceFromGlobal(subs.subs[k]), child);
    }
}

void LSubdivMesh::FindSubFacesAndBary(int face, std::vector<int>& out,
                                      std::vector<LFaceBarys>& barys) const {
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!top || face < 0 || face >= LMesh::GetNumFaces()) return;
    WalkSubFacesAndBary(face, kIdentityBarys, 1, top, [&](int sub, const LFaceBarys& bary) {
        out.push_back(sub);
        barys.push_back(bary);
    });
}

void LSubdivMesh::AllocBarys() {
    needbarys_ = true;
    barys_.assign(NumAllVerts(), LPoint3::Zero);
    if (GetNumSubivLevels() > 1) {
        RecalcAllBarys();
        return;
    }
    for (const LFace& face : Faces())
        for (int k = 0; k < 3; ++k)
            if (ValidVert(face.v[k])) barys_[face.v[k]] = kIdentityBarys.v[k];
}

void LSubdivMesh::RecalcAllBarys() {
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!needbarys_ || !top) return;
    barys_.resize(NumAllVerts());
    const std::vector<LFace>& faces = top->topology()->Faces();
    std::vector<char> done(NumAllVerts());
    for (int f = 0; f < LMesh::GetNumFaces(); ++f)
        WalkSubFacesAndBary(f, kIdentityBarys, 1, top, [&](int sub, const LFaceBarys& bary) {
            for (int k = 0; k < 3; ++k) {
                const int v = faces[sub].v[k];
                if (done[v]) continue;
                done[v] = 1;
                barys_[v] = bary.v[k];
            }
        });
}

LPoint3 LSubdivMesh::GetBaryByAbsIdx(unsigned i) const {
    return i < barys_.size() ? barys_[i] : LPoint3::Zero;
}

void LSubdivMesh::SetBaryByAbsIdx(unsigned i, const LPoint3& bary) {
    if (i < barys_.size()) barys_[i] = bary;
}

void LSubdivMesh::SubstructLevel0ByBarys(const LSubdivMesh* other) {
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!top) return;
    const bool stored = other && other->needbarys_;
    const std::vector<LFace>& faces = top->topology()->Faces();
    std::vector<char> done(NumAllVerts());
    std::fill_n(done.begin(), nverts_, 1);
    for (int f = 0; f < LMesh::GetNumFaces(); ++f) {
        const LFace base = LMesh::GetFace(f);
        WalkSubFacesAndBary(f, kIdentityBarys, 1, top, [&](int sub, const LFaceBarys& bary) {
            for (int k = 0; k < 3; ++k) {
                const int v = faces[sub].v[k];
                if (done[v]) continue;
                done[v] = 1;
                const LPoint3 b = stored ? other->GetBaryByAbsIdx(v) : bary.v[k];
                verts_[v] -=
                    verts_[base.v[2]] * b.z + verts_[base.v[1]] * b.y + verts_[base.v[0]] * b.x;
            }
        });
    }
}

/// Calls apply(base face, vertex) once for each vertex, with the first base face that reaches it:
/// level-0 vertices first.
template <class Apply>
void LSubdivMesh::ForEachVertByBaseFace(bool skipLevel0, Apply apply) {
    std::vector<char> done(NumAllVerts());
    const auto visit = [&](int f, int v, bool skip) {
        if (done[v]) return;
        done[v] = 1;
        if (!skip) apply(f, verts_[v]);
    };
    for (int f = 0; f < LMesh::GetNumFaces(); ++f)
        for (const int v : Faces()[f].v) visit(f, v, skipLevel0);
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!top) return;
    const std::vector<LFace>& faces = top->topology()->Faces();
    for (int f = 0; f < LMesh::GetNumFaces(); ++f)
        WalkSubFaces(f, 1, top, [&](int sub) {
            for (const int v : faces[sub].v) visit(f, v, false);
        });
}

void LSubdivMesh::TransformByLocal(const LMatrix3* tms, bool skipLevel0) {
    ForEachVertByBaseFace(skipLevel0, [&](int f, LPoint3& p) { tms[f].TransfromPoint2(p); });
}

void LSubdivMesh::TransformVectorsByLocal(const LMatrix3* tms) {
    ForEachVertByBaseFace(false, [&](int f, LPoint3& p) { tms[f].TransfromVector2(p); });
}

}  // namespace VantrelSDK
