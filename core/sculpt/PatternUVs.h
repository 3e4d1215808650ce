#pragma once

#include <span>
#include <vector>

#include "core/math/LPoint2.h"

namespace VantrelSDK {

class LUVSubdivChannel;
struct LFace;

/// Which point of a UV channel each vertex of a level has, for what goes by vertices. On a seam,
/// where there are several, that of the last face; the first point where there is none.
class PatternUVs {
  public:
    /// Walks the faces of the level when it is another one than before, or when the channel is.
    /// Faces name `verts` vertices. Afterwards ByVertex holds as many.
    void Update(const LUVSubdivChannel& channel, int level, int verts,
                std::span<const LFace> faces);
    void Clear() { *this = {}; }
    const int* ByVertex() const { return points_.data(); }

  private:
    std::vector<int> points_;
    const LUVSubdivChannel* channel_ = nullptr;
    const void* faces_ = nullptr;
    int level_ = -1;
};

}  // namespace VantrelSDK
