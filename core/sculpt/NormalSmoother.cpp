#include "core/sculpt/NormalSmoother.h"

#include <algorithm>
#include <new>

#include "core/math/Float4.h"

namespace VantrelSDK {

bool NormalSmoother::Reset(int nverts) {
    verts_.clear();
    count_ = 0;
    return places_.Reset(std::max(nverts, 0));
}

bool NormalSmoother::Bind(std::span<const int> verts, const LAdjVertList& adjacency) try {
    verts_.clear();
    SortIntoWaves(verts, adjacency);
    count_ = static_cast<int>(verts_.size());
    AddNeighbours(adjacency);
    Forget(verts_);
    slots_.resize(verts_.size());
    return true;
} catch (const std::bad_alloc&) {
    Forget(verts);
    Forget(verts_);
    verts_.clear();
    count_ = 0;
    return false;
}

void NormalSmoother::Forget(std::span<const int> verts) {
    for (const int v : verts)
        if (static_cast<size_t>(v) < places_.size()) places_[v] = 0;
}

/// Fills verts_. A vertex goes into the wave after the last of its earlier neighbours'.
void NormalSmoother::SortIntoWaves(std::span<const int> verts, const LAdjVertList& adjacency) {
    const int given = static_cast<int>(verts.size());
    waves_.assign(given, -1);
    waveStarts_.assign(2, 0);
    for (int i = 0; i < given; ++i) {
        if (static_cast<size_t>(verts[i]) >= places_.size()) continue;
        int wave = 0;
        for (const int n : adjacency.GetAdjVertsForVert(verts[i]))
            if (const int place = places_[n]) wave = std::max(wave, waves_[place - 1] + 1);
        places_[verts[i]] = i + 1;
        waves_[i] = wave;
        if (waveStarts_.size() < static_cast<size_t>(wave) + 2) waveStarts_.push_back(0);
        ++waveStarts_[wave + 1];
    }
    for (size_t w = 1; w < waveStarts_.size(); ++w) waveStarts_[w] += waveStarts_[w - 1];
    verts_.resize(waveStarts_.back());
    for (int i = 0; i < given; ++i)
        if (waves_[i] >= 0) verts_[waveStarts_[waves_[i]]++] = verts[i];
}

/// Gives slots to what is around and fills the neighbours.
void NormalSmoother::AddNeighbours(const LAdjVertList& adjacency) {
    for (int i = 0; i < count_; ++i) places_[verts_[i]] = i + 1;
    starts_.assign(1, 0);
    neighbours_.clear();
    for (int i = 0; i < count_; ++i) {
        for (const int n : adjacency.GetAdjVertsForVert(verts_[i])) {
            if (!places_[n]) {
                verts_.push_back(n);
                places_[n] = static_cast<int>(verts_.size());
            }
            neighbours_.push_back(places_[n] - 1);
        }
        starts_.push_back(static_cast<uint32_t>(neighbours_.size()));
    }
}

void NormalSmoother::Smooth(std::span<const LPoint3> normals, int rounds, LPoint3* out) {
    Slot* slots = slots_.data();
    for (size_t i = 0; i < verts_.size(); ++i) {
        const LPoint3& n = normals[verts_[i]];
        slots[i] = {{n.x, n.y, n.z, 0}};
    }
    const uint32_t* starts = starts_.data();
    const int* neighbours = neighbours_.data();
    for (int round = 0; round < rounds; ++round)
        for (int i = 0; i < count_; ++i) {
            Float4 sum = _mm_load_ps(slots[i].lanes);
            for (uint32_t k = starts[i]; k < starts[i + 1]; ++k)
                sum = _mm_add_ps(sum, _mm_load_ps(slots[neighbours[k]].lanes));
            const float members = static_cast<float>(starts[i + 1] - starts[i] + 1);
            _mm_store_ps(slots[i].lanes, _mm_div_ps(sum, _mm_set1_ps(members)));
        }
    for (int i = 0; i < count_; ++i) {
        const float* n = slots[i].lanes;
        out[verts_[i]] = {n[0], n[1], n[2]};
    }
}

}  // namespace VantrelSDK
