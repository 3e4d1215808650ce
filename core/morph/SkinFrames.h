#pragma once

#include <span>
#include <vector>

#include "core/mesh/ZeroedArray.h"
#include "core/morph/LMeshBases.h"

namespace VantrelSDK {

/// Frames on the surfaces that targets were made on: one set of levels, on which a pass over many
/// targets lays the skin of each. The last skin asked for stays, so that targets that share one
/// share its surface.
class SkinFrames {
  public:
    /// `geom` gives the level-0 faces and the rules of the levels, of which `levels` count (-1:
    /// all). A skin is smoothed by `iterations` first, as an object's input is. `uv` is borrowed;
    /// without one there are no frames and vectors stay as they are. `workers` may be null. Both
    /// are borrowed.
    SkinFrames(const LSubdivMesh& geom, const LUVSubdivChannel* uv, int levels, int iterations,
               LThreadGroup* workers = nullptr);

    int GetTopLevel() const { return bases_.GetNumSubivLevels() - 1; }
    /// The frames on a skin, `GetNumLevelVerts(0)` positions; without any those of the geometry.
    LMeshBasesUV2& On(std::span<const LPoint3> skin);
    /// Takes vectors of all levels through the frames on a skin, in a LMeshBases::Direction.
    void Transform(LSubdivMesh& vectors, std::span<const LPoint3> skin, int direction);

    /// The same for one vector of a vertex, which has to be in the mesh. On() comes first. Frames
    /// are kept while skin and direction stay the same.
    void TransformAt(int direction, int vert, LPoint3& vector);

  private:
    const LSubdivMesh& geom_;
    LMeshBasesUV2 bases_;
    /// Frames of the top level in one direction, by vertex; all zero where not made yet. What no
    /// target moves costs nothing.
    ZeroedArray<LMatrix3> frames_;
    int framesDirection_ = LMeshBases::kTangentToObject;
    int iterations_;
    LThreadGroup* workers_;
    std::vector<LPoint3> skin_;
};

}  // namespace VantrelSDK
