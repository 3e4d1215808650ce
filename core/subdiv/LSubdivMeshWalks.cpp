#include <algorithm>

#include "core/io/HugePages.h"
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

}  // namespace

/// As WalkSubFaces, with visit(local number, barycentrics of its corners).
template <class Visit>
void LSubdivMesh::WalkSubFacesAndBary(int face, const LFaceBarys& barys, int depth,
                                      const ISubdivLayer* layer, Visit visit) const {
    const ISubdivLayer& children = *subdivs_->GetLayer(depth);
    const LFaceSubs subs = ChildrenOf(face, children);
    LFaceBarys ofChildren[6];
    children.GetChildBarys(face - children.GetFirstParentFace(), barys, ofChildren);
    for (int k = 0; k < 6; ++k) {
        if (subs.subs[k] < 0) continue;
        if (layer->index() > depth)
            WalkSubFacesAndBary(subs.subs[k], ofChildren[k], depth + 1, layer, visit);
        else
            visit(layer->RemapFaceFromGlobal(subs.subs[k]), ofChildren[k]);
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

void LSubdivMesh::SetNeedBarys(bool need) {
    needbarys_ = need;
    if (need)
        AllocBarys();
    else
        barys_ = nullptr;
}

void LSubdivMesh::AllocBarys() {
    needbarys_ = true;
    std::vector<LPoint3> barys(NumAllVerts());
    for (const LFace& face : Faces())
        for (int k = 0; k < 3; ++k)
            if (ValidVert(face.v[k])) barys[face.v[k]] = kIdentityBarys.v[k];
    barys_ = std::make_shared<std::vector<LPoint3>>(std::move(barys));
    RecalcAllBarys();
}

void LSubdivMesh::RecalcAllBarys() {
    if (needbarys_ && GetNumSubivLevels() > 1) BindNewVerts(1);
}

/// Binds the vertices that `firstLevel` and the levels above it made, each to the lowest base face
/// that reaches it; the first level binds those of the base too.
void LSubdivMesh::BindNewVerts(int firstLevel) {
    const int firstVert = firstLevel == 1 ? 0 : GetNumLevelVerts(firstLevel - 1);
    std::vector<LPoint3> barys;
    ResizeLarge(barys, NumAllVerts());
    if (barys_)
        std::copy_n(barys_->begin(), std::min<size_t>(firstVert, barys_->size()), &barys[0]);
    std::vector<uint8_t> done(barys.size() - firstVert);
    for (int f = 0; f < LMesh::GetNumFaces(); ++f)
        BindBelow(f, kIdentityBarys, 1, firstVert, done, barys);
    barys_ = std::make_shared<std::vector<LPoint3>>(std::move(barys));
}

/// Binds what the children, on `level`, of a face add to it; all of a face's corners are theirs.
void LSubdivMesh::BindBelow(int face, const LFaceBarys& barys, int level, int firstVert,
                            std::vector<uint8_t>& done, std::vector<LPoint3>& bound) const {
    const ISubdivLayer& children = *subdivs_->GetLayer(level);
    const int local = face - children.GetFirstParentFace();
    const LFaceSubs subs = children.GetFaceSubs(local);
    LFaceBarys ofChildren[6];
    children.GetChildBarys(local, barys, ofChildren);
    const bool deeper = level + 1 < GetNumSubivLevels();
    const LFace* faces = children.topology()->Faces().data();
    for (int k = 0; k < 6 && subs.subs[k] >= 0; ++k) {
        const LFace& child = faces[children.RemapFaceFromGlobal(subs.subs[k])];
        for (int corner = 0; corner < 3; ++corner) {
            const int v = child.v[corner];
            if (v < firstVert || done[v - firstVert]) continue;
            done[v - firstVert] = 1;
            bound[v] = ofChildren[k].v[corner];
        }
        if (deeper) BindBelow(subs.subs[k], ofChildren[k], level + 1, firstVert, done, bound);
    }
}

LPoint3 LSubdivMesh::GetBaryByAbsIdx(unsigned i) const {
    return barys_ && i < barys_->size() ? (*barys_)[i] : LPoint3::Zero;
}

void LSubdivMesh::SetBaryByAbsIdx(unsigned i, const LPoint3& bary) {
    if (!barys_ || i >= barys_->size()) return;
    // Copies may share them.
    if (barys_.use_count() > 1) barys_ = std::make_shared<std::vector<LPoint3>>(*barys_);
    (*barys_)[i] = bary;
}

void LSubdivMesh::SubstructLevel0(const LMesh* base) {
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!top || top->GetType() != 1) return;
    LSubdivMesh smooth(base ? *base : *GetLevelCopy(0));
    while (smooth.GetNumSubivLevels() < GetNumSubivLevels())
        if (!smooth.SubdivideAll_Quad(true, false)) return;
    const size_t count = std::min(verts_.size(), smooth.verts_.size());
    for (size_t v = 0; v < count; ++v) verts_[v] -= smooth.verts_[v];
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
