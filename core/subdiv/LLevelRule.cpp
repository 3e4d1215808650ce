#include "core/subdiv/LLevelRule.h"

#include <algorithm>
#include <atomic>

#include "core/io/HugePages.h"
#include "core/math/Float4.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LLoopSmoothCache.h"

namespace VantrelSDK {

namespace {

/// Vertices that a worker takes at a time.
constexpr int kGrain = 8192;

/// Calls job(first, last) for parts of 0 to count - 1. Workers take the next part as they come:
/// parts differ in what they cost, since old vertices have neighbours far away.
template <class Job>
void InParts(int count, LThreadGroup* workers, const Job& job) {
    const int parts = (count + kGrain - 1) / kGrain;
    if (!workers || parts < 2) return job(0, count);
    std::atomic<int> next{0};
    const int group = workers->GetNumWorkers();
    // As many slices as workers, none of them empty.
    workers->ForSlices(group * group, 1, [&](int, int, int) {
        for (int part = next++; part < parts; part = next++)
            job(part * kGrain, std::min(count, (part + 1) * kGrain));
    });
}

}  // namespace

void LLevelRule::Fill(const LMeshTopology& topology, LPoint3* verts, bool smooth,
                      std::vector<LPoint3>& scratch, LThreadGroup* workers) const {
    const int nverts = topology.GetNumVerts(), first = nverts - NumNewVerts();
    if (!smooth) {
        InParts(NumNewVerts(), workers,
                [&](int from, int to) { InterpolateSome(verts, first, from, to); });
        return;
    }
    // One more, since four numbers of a point are read at a time.
    ResizeLarge(scratch, std::max(scratch.size(), static_cast<size_t>(nverts) + 1));
    LPoint3* split = scratch.data();
    InParts(first, workers,
            [&](int from, int to) { std::copy(verts + from, verts + to, split + from); });
    InParts(NumNewVerts(), workers,
            [&](int from, int to) { InterpolateSome(split, first, from, to); });
    if (isQuad) {
        InParts(nverts, workers, [&](int from, int to) { SmoothQuads(split, verts, from, to); });
        return;
    }
    const LVertOpenList& open = tables().open;
    const LLoopSmoothCache smoothed(split, nverts, topology.AdjVerts(),
                                    open.flags().empty() ? nullptr : &open);
    InParts(nverts, workers, [&](int from, int to) {
        for (int v = from; v < to; ++v) verts[v] = smoothed.GetVert(v);
    });
}

/// The mean of a vertex and its ring.
void LLevelRule::SmoothQuads(const LPoint3* from, LPoint3* to, int first, int last) const {
    const uint32_t* starts = tables_.rings.Starts();
    const int* ring = tables_.rings.Entries();
    for (int v = first; v < last; ++v) {
        const uint32_t start = starts[v], end = starts[v + 1];
        if (start == end) {
            to[v] = from[v];
            continue;
        }
        Float4 sum = LoadPoint(from[v]);
        for (uint32_t i = start; i < end; ++i) sum = _mm_add_ps(sum, LoadPoint(from[ring[i]]));
        const float count = static_cast<float>(end - start) + 1;
        StorePoint(to[v], _mm_div_ps(sum, _mm_set1_ps(count)));
    }
}

}  // namespace VantrelSDK
