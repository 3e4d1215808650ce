#pragma once

#include <algorithm>
#include <climits>

namespace VantrelSDK {

class LSubdivMesh;
class VertTagClallback;

/// The frame that a delta is evaluated for. Terms narrow the time for which the sum stays right.
struct LFrame {
    /// In ticks, 4000 a second.
    int time = 0;
    /// How many levels are wanted, from level 0 up.
    int levels = 1;
    /// Between keys the terms go smoothly; otherwise they hold, and are left out while the sum of
    /// an earlier time is right still.
    bool interpolate = true;
    /// The group whose keys are left out; -1 none.
    int skipGroup = -1;
    int valid0 = INT_MIN, valid1 = INT_MAX;

    void Narrow(int first, int last) {
        valid0 = std::max(valid0, first);
        valid1 = std::min(valid1, last);
    }
};

/// A part of a frame over the neutral, such as what tracks play. A node asks its terms in order.
class LFrameTerm {
  public:
    virtual ~LFrameTerm() = default;

    /// Whether it may add something at some time.
    virtual bool Plays() const { return true; }
    /// Adds to a delta, in tangent space, the vertices of `frame.levels` levels.
    virtual void AddTo(LSubdivMesh& delta, LFrame& frame) = 0;
    /// Has the targets that it would add at a time traversed.
    virtual void Tag(int time, VertTagClallback& tag) const = 0;
};

}  // namespace VantrelSDK
