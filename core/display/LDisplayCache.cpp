#include "core/display/LDisplayCache.h"

#include <algorithm>

#include "core/sculpt/LThreadGroup.h"

namespace VantrelSDK {

namespace {

/// Entries that a worker takes at least; fewer are not worth waking it.
constexpr int kGrain = 1024;

}  // namespace

void LDisplayCache::DirtyBox::Add(const LPoint3& p) {
    if (empty) min = max = p;
    empty = false;
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
}

void LDisplayCache::DirtyBox::Add(const DirtyBox& box) {
    if (box.empty) return;
    Add(box.min);
    Add(box.max);
}

LDisplayCache::LDisplayCache(LNode* owner, LThreadGroup* workers)
    : owner_(owner), workers_(workers) {
    const int count = workers ? workers->GetNumWorkers() : 1;
    workerBoxes_.resize(count);
    workerLists_.resize(count);
}

void LDisplayCache::Init(LSubdivMeshI* object, LSubdivMeshI* delta) {
    object_ = object;
    delta_ = delta;
    level_ = object ? object->GetActiveLevel() : -1;
    topology_ = object ? object->GetLevelTopology(level_) : nullptr;
    nverts_ = topology_ ? topology_->GetNumVerts() : 0;
    nfaces_ = topology_ ? topology_->GetNumFaces() : 0;
    verts_.resize(nverts_);
    vnormals_.resize(nverts_);
    vnormalsPP_.resize(nverts_);
    fnormals_.resize(nfaces_);
    if (!colors_.empty()) colors_.assign(nverts_, LColor::cWhite);
    changedVerts_.Reset(nverts_);
    changedFaces_.Reset(nfaces_);
    unfrozen_.Reset(nverts_);
    ClearDirtyBoxes();
}

void LDisplayCache::Clear(bool) {
    changedVerts_.Clear();
    changedFaces_.Clear();
    if (!dirtyBoxDrawn_) return;
    dirtyBox_[1] = dirtyBox_[0];
    dirtyBox_[0] = {};
    dirtyBoxDrawn_ = false;
}

void LDisplayCache::SetVertChanged(int v) {
    if (v < 0 || v >= nverts_) return;
    if (changedVerts_.Add(v)) dirtyBox_[0].Add(verts_[v]);
}

void LDisplayCache::SetFaceChanged(int f) {
    if (f >= 0 && f < nfaces_) changedFaces_.Add(f);
}

void LDisplayCache::SetChanged(std::span<const int> faces, std::span<const int> verts,
                               std::span<const int> moreVerts) {
    for (const int f : faces) changedFaces_.Add(f);
    for (const int v : verts) changedVerts_.Add(v);
    for (const int v : moreVerts) changedVerts_.Add(v);
}

void LDisplayCache::SetVertsMoved(std::span<const int> verts) {
    if (!topology_) return;
    const LAdjFaceList& around = topology_->AdjFaces();
    const std::vector<LFace>& faces = topology_->Faces();
    for (const int v : verts) {
        SetVertChanged(v);
        for (const int f : around.GetAdjFacesForVert(v))
            if (changedFaces_.Add(f))
                for (const int corner : faces[f].v) SetVertChanged(corner);
    }
}

template <class Job>
void LDisplayCache::Run(size_t count, const Job& job) {
    if (workers_)
        workers_->ForSlices(static_cast<int>(count), kGrain, job);
    else if (count > 0)
        job(0, static_cast<int>(count), 0);
}

void LDisplayCache::CalcVerts(std::span<const int> verts) {
    const LPoint3 *base = object_->GetAllVertsPtr(), *offset = delta_->GetAllVertsPtr();
    for (DirtyBox& box : workerBoxes_) box = {};
    Run(verts.size(), [&](int first, int last, int worker) {
        DirtyBox box;
        for (int i = first; i < last; ++i) {
            const int v = verts[i];
            // Where it was and where it is: both places have to be drawn.
            box.Add(verts_[v]);
            verts_[v] = base[v] + offset[v];
            box.Add(verts_[v]);
        }
        workerBoxes_[worker] = box;
    });
    for (const DirtyBox& box : workerBoxes_) dirtyBox_[0].Add(box);
}

LPoint3 LDisplayCache::FaceNormal(int f) const {
    const LFace& face = topology_->Faces()[f];
    const LPoint3 &a = verts_[face.v[0]], &b = verts_[face.v[1]], &c = verts_[face.v[2]];
    return Normalized((b - a) ^ (c - b));
}

void LDisplayCache::CalcFaceNormals(std::span<const int> faces) {
    Run(faces.size(), [&](int first, int last, int) {
        for (int i = first; i < last; ++i) fnormals_[faces[i]] = FaceNormal(faces[i]);
    });
}

/// A vertex without faces keeps its normal.
LPoint3 LDisplayCache::VertNormal(int v) const {
    const std::span<const int> around = topology_->AdjFaces().GetAdjFacesForVert(v);
    if (around.empty()) return vnormals_[v];
    LPoint3 sum;
    for (const int f : around) sum += fnormals_[f];
    sum.Normalize();
    return sum;
}

void LDisplayCache::CalcVertNormals(std::span<const int> verts) {
    for (std::vector<int>& list : workerLists_) list.clear();
    Run(verts.size(), [&](int first, int last, int worker) {
        std::vector<int>& list = workerLists_[worker];
        for (int i = first; i < last; ++i) {
            vnormals_[verts[i]] = VertNormal(verts[i]);
            if (unfrozen_.Marks()[verts[i]]) continue;
            unfrozen_.Marks()[verts[i]] = 1;
            list.push_back(verts[i]);
        }
    });
    for (const std::vector<int>& list : workerLists_) unfrozen_.Join(list);
}

void LDisplayCache::CalcChanged(bool vertNormals) {
    if (!topology_ || !delta_) return;
    // Each pass reads what the one before wrote.
    CalcVerts(changedVerts_.Items());
    CalcFaceNormals(changedFaces_.Items());
    if (vertNormals) CalcVertNormals(changedVerts_.Items());
}

void LDisplayCache::CalcAll() {
    if (!topology_ || !delta_) return;
    const LPoint3 *base = object_->GetAllVertsPtr(), *offset = delta_->GetAllVertsPtr();
    topology_->AdjFaces();
    Run(nverts_, [&](int first, int last, int) {
        for (int v = first; v < last; ++v) verts_[v] = base[v] + offset[v];
    });
    Run(nfaces_, [&](int first, int last, int) {
        for (int f = first; f < last; ++f) fnormals_[f] = FaceNormal(f);
    });
    Run(nverts_, [&](int first, int last, int) {
        for (int v = first; v < last; ++v) vnormals_[v] = VertNormal(v);
        std::copy(vnormals_.begin() + first, vnormals_.begin() + last, vnormalsPP_.begin() + first);
    });
    unfrozen_.Clear();
}

void LDisplayCache::CachePushPullNormas() {
    for (const int v : unfrozen_.Items()) vnormalsPP_[v] = vnormals_[v];
    unfrozen_.Clear();
}

void LDisplayCache::SetUseColor(bool use) {
    colors_.assign(use ? nverts_ : 0, LColor::cWhite);
    colors_.shrink_to_fit();
}

void LDisplayCache::FillColor(const LColor& colour) {
    std::fill(colors_.begin(), colors_.end(), colour);
}

void LDisplayCache::SetColor(int v, const LColor& colour) {
    if (v >= 0 && v < static_cast<int>(colors_.size())) colors_[v] = colour;
}

LColor LDisplayCache::GetColor(int v) const {
    return v >= 0 && v < static_cast<int>(colors_.size()) ? colors_[v] : LColor::cWhite;
}

void LDisplayCache::SetStencil(int v, float stencil) {
    if (v < 0 || v >= nverts_) return;
    if (stencils_.empty()) stencils_.resize(nverts_);
    stencils_[v] = stencil;
}

float LDisplayCache::GetStencil(int v) const {
    return v >= 0 && v < static_cast<int>(stencils_.size()) ? stencils_[v] : 0;
}

bool LDisplayCache::GetDirtyBox(int i, LPoint3& min, LPoint3& max) const {
    if (i < 0 || i > 1 || dirtyBox_[i].empty) return false;
    min = dirtyBox_[i].min;
    max = dirtyBox_[i].max;
    return true;
}

void LDisplayCache::ClearDirtyBoxes() {
    dirtyBox_[0] = dirtyBox_[1] = {};
    dirtyBoxDrawn_ = false;
}

}  // namespace VantrelSDK
