#include "core/display/LDisplayCache.h"

#include <algorithm>

#include "core/io/HugePages.h"
#include "core/mesh/LCalcNormalsCallbacks.h"
#include "core/paint/LColorDelta.h"
#include "core/sculpt/LThreadGroup.h"

namespace VantrelSDK {

namespace {

/// Entries that a worker takes at a time.
constexpr int kPiece = 1024;

}  // namespace

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
    // One more, so that the last can be loaded as four floats.
    ResizeLarge(verts_, nverts_ + 1);
    ResizeLarge(fnormals_, nfaces_ + 1);
    ResizeLarge(vnormals_, nverts_);
    ResizeLarge(vnormalsPP_, nverts_);
    if (useColors()) colors_.assign(nverts_, LColor::cWhite);
    stencils_.clear();
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
    changedFaces_.AddUnique(faces);
    changedVerts_.AddUnique(verts);
    changedVerts_.AddUnique(moreVerts);
}

void LDisplayCache::SetVertsMoved(std::span<const int> verts) {
    if (!topology_) return;
    MarkMoved(*topology_, verts, changedFaces_, [this](int v) { SetVertChanged(v); });
}

template <class Job>
void LDisplayCache::Run(size_t count, const Job& job) {
    if (workers_)
        workers_->ForPieces(static_cast<int>(count), count < 4 * kPiece ? 4 * kPiece : kPiece, job);
    else if (count > 0)
        job(0, static_cast<int>(count), 0);
}

void LDisplayCache::CalcVerts(std::span<const int> list) {
    const LPoint3 *base = object_->GetAllVertsPtr(), *offset = delta_->GetAllVertsPtr();
    for (DirtyBox& box : workerBoxes_) box = {};
    Run(list.size(), [&](int first, int last, int worker) {
        LPoint3* verts = verts_.data();
        DirtyBox box;
        for (int i = first; i < last; ++i) {
            const int v = list[i];
            // Where it was and where it is: both places have to be drawn.
            box.Add(verts[v]);
            verts[v] = base[v] + offset[v];
            box.Add(verts[v]);
        }
        workerBoxes_[worker].Add(box);
    });
    for (const DirtyBox& box : workerBoxes_) dirtyBox_[0].Add(box);
}

template <class FaceAt>
void LDisplayCache::FillFaceNormals(int first, int last, const FaceAt& faceAt) {
    const LPoint3* verts = verts_.data();
    const LCalcFaceNormalsCallback calc{topology_->Faces().data(), fnormals_.data(),
                                        [=](int v) { return LoadPoint(verts[v]); }};
    calc(first, last, faceAt);
}

template <class VertAt>
void LDisplayCache::FillVertNormals(int first, int last, const VertAt& vertAt) {
    const LCalcVertNormalsCallback calc{topology_->AdjFaces().Rows(), fnormals_.data(),
                                        vnormals_.data()};
    calc(first, last, vertAt);
}

void LDisplayCache::CalcFaceNormals(std::span<const int> list) {
    Run(list.size(), [&](int first, int last, int) {
        FillFaceNormals(first, last, [&](int i) { return list[i]; });
    });
}

void LDisplayCache::CalcVertNormals(std::span<const int> list) {
    for (std::vector<int>& unfrozen : workerLists_) unfrozen.clear();
    Run(list.size(), [&](int first, int last, int worker) {
        FillVertNormals(first, last, [&](int i) { return list[i]; });
        uint8_t* marks = unfrozen_.Marks();
        std::vector<int>& unfrozen = workerLists_[worker];
        for (int i = first; i < last; ++i) {
            if (marks[list[i]]) continue;
            marks[list[i]] = 1;
            unfrozen.push_back(list[i]);
        }
    });
    for (const std::vector<int>& unfrozen : workerLists_) unfrozen_.Join(unfrozen);
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
    Run(nfaces_,
        [&](int first, int last, int) { FillFaceNormals(first, last, [](int f) { return f; }); });
    Run(nverts_, [&](int first, int last, int) {
        FillVertNormals(first, last, [](int v) { return v; });
        std::copy(vnormals_.begin() + first, vnormals_.begin() + last, vnormalsPP_.begin() + first);
    });
    unfrozen_.Clear();
    TakeAllColors();
}

void LDisplayCache::TakeAllColors() {
    if (useColors()) AllColors();
    if (colordelta_ && (!stencils_.empty() || !colordelta_->IsZeroStencil())) AllStencils();
    InvalidateVoxels();
}

void LDisplayCache::AllColors() {
    if (!colordelta_ || colordelta_->GetNumVerts(level_) != nverts_) return;
    Run(nverts_, [&](int first, int last, int) {
        for (int v = first; v < last; ++v) colors_[v] = colordelta_->ResAt(v);
    });
}

void LDisplayCache::AllStencils() {
    stencils_.resize(nverts_);
    if (!colordelta_ || colordelta_->GetNumVerts(level_) != nverts_) return;
    std::copy_n(colordelta_->Stencils(), nverts_, stencils_.begin());
}

template <class Take>
void LDisplayCache::TakeListed(std::span<const int> list, const Take& take) {
    for (DirtyBox& box : workerBoxes_) box = {};
    Run(list.size(), [&](int first, int last, int worker) {
        DirtyBox box;
        for (int i = first; i < last; ++i) {
            take(list[i]);
            box.Add(verts_[list[i]]);
        }
        workerBoxes_[worker].Add(box);
    });
    for (const DirtyBox& box : workerBoxes_) dirtyBox_[0].Add(box);
}

void LDisplayCache::TakeColors(std::span<const int> verts) {
    if (!colordelta_) return;
    if (!useColors()) SetUseColor(true);
    TakeListed(verts, [&](int v) { colors_[v] = colordelta_->ResAt(v); });
    ColorsTaken(verts);
}

void LDisplayCache::TakeStencils(std::span<const int> verts) {
    if (!colordelta_) return;
    if (stencils_.empty()) AllStencils();
    const float* stencils = colordelta_->Stencils();
    TakeListed(verts, [&](int v) { stencils_[v] = stencils[v]; });
    ColorsTaken(verts);
}

void LDisplayCache::CachePushPullNormas() {
    for (const int v : unfrozen_.Items()) vnormalsPP_[v] = vnormals_[v];
    unfrozen_.Clear();
}

void LDisplayCache::SetUseColor(bool use) {
    colors_.assign(use ? nverts_ : 0, LColor::cWhite);
    colors_.shrink_to_fit();
    if (use) AllColors();
}

void LDisplayCache::ClearColor() {
    FillColor(LColor::cWhite);
    if (useColors()) AllColors();
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
    if (i < 0 || i > 1 || dirtyBox_[i].IsEmpty()) return false;
    min = dirtyBox_[i].min;
    max = dirtyBox_[i].max;
    return true;
}

void LDisplayCache::ClearDirtyBoxes() {
    dirtyBox_[0] = dirtyBox_[1] = {};
    dirtyBoxDrawn_ = false;
}

}  // namespace VantrelSDK
