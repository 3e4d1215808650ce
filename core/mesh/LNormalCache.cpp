#include "core/mesh/LNormalCache.h"

#include <algorithm>
#include <new>

#include "core/mesh/LCalcNormalsCallbacks.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LSubdivMeshI.h"

namespace VantrelSDK {

namespace {

/// Entries that a worker takes at least; fewer are not worth waking it.
constexpr int kGrain = 1024;

std::shared_ptr<const LMeshTopology> ActiveTopology(const LMesh& mesh) {
    const auto* levels = dynamic_cast<const LSubdivMeshI*>(&mesh);
    return levels ? levels->GetLevelTopology(levels->GetActiveLevel()) : mesh.Topology();
}

}  // namespace

LNormalCache::LNormalCache(LMesh* mesh, LThreadGroup* workers) : workers_(workers) {
    if (mesh) Init(mesh);
}

bool LNormalCache::Init(LMesh* mesh) {
    object_ = mesh;
    topology_ = mesh ? ActiveTopology(*mesh) : nullptr;
    nverts_ = topology_ ? topology_->GetNumVerts() : 0;
    nfaces_ = topology_ ? topology_->GetNumFaces() : 0;
    try {
        fnormals_.assign(nfaces_ + 1, LPoint3::Zero);
        vnormals_.assign(nverts_, LPoint3::Zero);
        if (mesh && fidxcache_.Reset(nfaces_) && vidxcache_.Reset(nverts_)) return true;
    } catch (const std::bad_alloc&) {
    }
    object_ = nullptr;
    topology_.reset();
    nverts_ = nfaces_ = 0;
    fnormals_.clear();
    vnormals_.clear();
    Clear();
    return false;
}

template <class Job>
void LNormalCache::Run(int count, const Job& job) {
    if (workers_)
        workers_->ForSlices(count, kGrain, [&](int first, int last, int) { job(first, last); });
    else
        job(0, count);
}

template <class At>
void LNormalCache::CalcFaceNormals(int count, const At& at) {
    const LPoint3* verts = object_->GetVertsPtr();
    const unsigned nverts = std::min(nverts_, object_->GetNumVerts());
    // The mesh's own array has no room behind its last point, and its faces may name what is not
    // there, which reads as zero, as from the mesh.
    const auto position = [=](int v) {
        if (static_cast<unsigned>(v) >= nverts) return _mm_setzero_ps();
        return _mm_setr_ps(verts[v].x, verts[v].y, verts[v].z, 0);
    };
    const LCalcFaceNormalsCallback calc{topology_->Faces().data(), fnormals_.data(), position};
    Run(count, [&](int first, int last) { calc(first, last, at); });
}

template <class At>
void LNormalCache::CalcVertNormals(int count, const At& at) {
    const LIndexRows& around = topology_->AdjFaces().Rows();
    if (around.NumRows() != nverts_) return;
    const LCalcVertNormalsCallback calc{around, fnormals_.data(), vnormals_.data()};
    Run(count, [&](int first, int last) { calc(first, last, at); });
}

void LNormalCache::CalcChanged(bool verts) {
    if (!topology_) return;
    const std::span<const int> faceList = fidxcache_.Items(), vertList = vidxcache_.Items();
    CalcFaceNormals(static_cast<int>(faceList.size()), [=](int i) { return faceList[i]; });
    if (!verts) return;
    CalcVertNormals(static_cast<int>(vertList.size()), [=](int i) { return vertList[i]; });
}

void LNormalCache::CalcAll() {
    if (!topology_) return;
    const auto itself = [](int i) { return i; };
    CalcFaceNormals(nfaces_, itself);
    CalcVertNormals(nverts_, itself);
}

void LNormalCache::Clear() {
    fidxcache_.Clear();
    vidxcache_.Clear();
}

void LNormalCache::SetVertsMoved(std::span<const int> verts) {
    if (!topology_) return;
    MarkMoved(*topology_, verts, fidxcache_, [this](int v) { SetVertChanged(v); });
}

}  // namespace VantrelSDK
