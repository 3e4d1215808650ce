#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/ZeroedArray.h"

namespace VantrelSDK {

/// Smooths the normals of some vertices in place: in each round every vertex in turn takes the mean
/// of itself and its neighbours, and those after it see the result (Gauss-Seidel).
///
/// Taken in the order of the list, each vertex would wait for the one just before it. Vertices that
/// are no neighbours don't care who goes first, so they are taken in waves, all of a wave
/// independent of each other, and kept in memory as they are taken: the same bits in a third of the
/// time. (Level scheduling of triangular systems: Anderson and Saad 1989.)
class NormalSmoother {
  public:
    /// Makes room for a level of so many vertices. False, and room for none, without memory.
    bool Reset(int nverts);
    /// Takes the vertices, each once, in the order in which a round goes. Others around them are
    /// read and hold still. `adjacency` is that of the level, in which who is a neighbour is one
    /// both ways; it is not kept. A vertex that Reset made no room for is passed over. False, and
    /// no vertices, without memory.
    bool Bind(std::span<const int> verts, const LAdjVertList& adjacency);
    /// Smooths `normals` (by vertex, one for each that Reset told) in some rounds and writes the
    /// results of the bound vertices, alone, to `out` (by vertex).
    void Smooth(std::span<const LPoint3> normals, int rounds, LPoint3* out);

  private:
    struct alignas(16) Slot {
        float lanes[4];
    };

    void SortIntoWaves(std::span<const int> verts, const LAdjVertList& adjacency);
    void AddNeighbours(const LAdjVertList& adjacency);
    void Forget(std::span<const int> verts);

    /// The vertex in each slot: those that are smoothed, as they are taken, then those around.
    std::vector<int> verts_;
    int count_ = 0;
    /// The neighbours, as slots, of the smoothed vertex i: starts_[i] to starts_[i + 1] - 1.
    std::vector<uint32_t> starts_;
    std::vector<int> neighbours_;
    std::vector<Slot> slots_;
    /// While binding, per vertex of the level its place plus 1, or 0.
    ZeroedArray<int> places_;
    std::vector<int> waves_, waveStarts_;
};

}  // namespace VantrelSDK
