#include "host/gl/VoxelGrid.h"

#include <cfloat>
#include <cmath>

namespace VantrelSDK {

namespace {

/// The room around the surface, in parts of the diagonal.
constexpr float kMargin = 0.06f;
constexpr int kCellBits = 13;
constexpr uint16_t kCellMask = (1 << kCellBits) - 1;
static_assert(VoxelGrid::kCount <= kCellMask);
constexpr int kStride[3] = {VoxelGrid::kSide * VoxelGrid::kSide, VoxelGrid::kSide, 1};

/// Calls act(cell) for each cell that holds one of three places, once.
template <class Act>
void ForCells(const uint16_t (&places)[3], const Act& act) {
    if (places[0] == places[1] && places[0] == places[2] && places[0] <= kCellMask)
        return act(places[0]);
    uint16_t found[24];
    int count = 0;
    for (const uint16_t place : places)
        for (int back = 0; back < 8; ++back) {
            // Below the borders that it lies on there is another cell.
            if (back & ~(place >> kCellBits)) continue;
            int cell = place & kCellMask;
            for (int axis = 0; axis < 3; ++axis)
                if (back >> axis & 1) cell -= kStride[axis];
            if (std::find(found, found + count, cell) == found + count)
                found[count++] = static_cast<uint16_t>(cell);
        }
    for (int i = 0; i < count; ++i) act(found[i]);
}

}  // namespace

void VoxelGrid::Build(std::span<const LPoint3> verts,
                      std::span<const std::span<const LFace>> levels) {
    Clear();
    Place(verts);
    cells_.assign(verts.size(), kNone);
    levels_.resize(levels.size());
    for (size_t i = 0; i < levels.size(); ++i) Distribute(levels[i], levels_[i]);
    places_ = {};
    std::sort(several_.begin(), several_.end());
    several_.erase(std::unique(several_.begin(), several_.end()), several_.end());
    several_.shrink_to_fit();
}

void VoxelGrid::Place(std::span<const LPoint3> verts) {
    float min[3] = {FLT_MAX, FLT_MAX, FLT_MAX}, max[3] = {-FLT_MAX, -FLT_MAX, -FLT_MAX};
    for (const LPoint3& p : verts) {
        const float at[3] = {p.x, p.y, p.z};
        for (int i = 0; i < 3; ++i) {
            min[i] = std::min(min[i], at[i]);
            max[i] = std::max(max[i], at[i]);
        }
    }
    if (verts.empty()) return;
    const float margin = kMargin * std::hypot(max[0] - min[0], max[1] - min[1], max[2] - min[2]);
    float perUnit[3];
    for (int i = 0; i < 3; ++i) {
        const float first = min[i] - margin, size = (max[i] + margin - first) / kSide;
        for (int c = 0; c <= kSide; ++c) borders_[i][c] = first + size * static_cast<float>(c);
        // One that all is in, where there is no room at all.
        borders_[i][kSide] = std::max(borders_[i][kSide], max[i]);
        perUnit[i] = size > 0 ? 1 / size : 0;
    }
    places_.resize(verts.size());
    for (size_t v = 0; v < verts.size(); ++v) {
        const float at[3] = {verts[v].x, verts[v].y, verts[v].z};
        int place = 0;
        for (int i = 0; i < 3; ++i) {
            const float* borders = borders_[i];
            const float guess = (at[i] - borders[0]) * perUnit[i];
            int c = guess > 0 ? std::min(static_cast<int>(guess), kSide - 1) : 0;
            while (c > 0 && at[i] < borders[c]) --c;
            while (c < kSide - 1 && at[i] >= borders[c + 1]) ++c;
            place += c * kStride[i];
            if (c > 0 && at[i] == borders[c]) place |= 1 << (kCellBits + i);
        }
        places_[v] = static_cast<uint16_t>(place);
    }
}

void VoxelGrid::Distribute(std::span<const LFace> faces, Level& level) {
    const auto forCells = [&](const LFace& face, const auto& act) {
        const uint16_t places[3] = {places_[static_cast<size_t>(face.v[0])],
                                    places_[static_cast<size_t>(face.v[1])],
                                    places_[static_cast<size_t>(face.v[2])]};
        ForCells(places, act);
    };
    level.starts.assign(kCount + 1, 0);
    for (const LFace& face : faces) {
        forCells(face, [&](uint16_t cell) {
            ++level.starts[size_t{cell} + 1];
            for (const int v : face.v) Draws(v, cell);
        });
    }
    for (size_t c = 0; c < kCount; ++c) level.starts[c + 1] += level.starts[c];
    level.faces.resize(level.starts[kCount]);
    std::vector<uint32_t> next(level.starts.begin(), level.starts.end() - 1);
    for (size_t f = 0; f < faces.size(); ++f)
        forCells(faces[f], [&](uint16_t cell) { level.faces[next[cell]++] = static_cast<int>(f); });
}

void VoxelGrid::Draws(int vert, uint16_t cell) {
    uint16_t& only = cells_[static_cast<size_t>(vert)];
    if (only == cell) return;
    if (only == kNone) {
        only = cell;
        return;
    }
    if (only != kSeveral) several_.emplace_back(vert, only);
    only = kSeveral;
    several_.emplace_back(vert, cell);
}

void VoxelGrid::Bounds(int cell, LPoint3& min, LPoint3& max) const {
    const int c[3] = {cell / kStride[0], cell / kStride[1] % kSide, cell % kSide};
    min = {borders_[0][c[0]], borders_[1][c[1]], borders_[2][c[2]]};
    max = {borders_[0][c[0] + 1], borders_[1][c[1] + 1], borders_[2][c[2] + 1]};
}

size_t VoxelGrid::Memory() const {
    size_t bytes =
        cells_.capacity() * sizeof(cells_[0]) + several_.capacity() * sizeof(several_[0]);
    for (const Level& level : levels_)
        bytes += level.faces.capacity() * sizeof(int) + level.starts.capacity() * sizeof(uint32_t);
    return bytes;
}

}  // namespace VantrelSDK
