#pragma once

#include <vector>

#include "core/math/LPoint2.h"

namespace VantrelSDK {

class LMeshObject;

/// Which point of a UV channel each vertex of the active level has, for what goes by vertices. On a
/// seam, where there are several, that of the last face; the first point where there is none.
class PatternUVs {
  public:
    /// Walks the faces of the level when it is another one than before, or the channel is; one that
    /// the object has. Afterwards ByVertex has an entry for each vertex of the level.
    void Update(const LMeshObject& object, int channel);
    void Clear() { *this = {}; }
    const int* ByVertex() const { return points_.data(); }

  private:
    std::vector<int> points_;
    int channel_ = -1, level_ = -1;
    unsigned uvChanges_ = 0;
};

}  // namespace VantrelSDK
