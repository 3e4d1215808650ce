#include "core/morph/SkinFrames.h"

#include <algorithm>
#include <new>

#include "core/mesh/LSmoothCache.h"

namespace VantrelSDK {

SkinFrames::SkinFrames(const LSubdivMesh& geom, const LUVSubdivChannel* uv, int levels,
                       int iterations, LThreadGroup* workers)
    : geom_(geom),
      bases_(&geom, uv, LMeshBases::kTangentToObject),
      iterations_(iterations),
      workers_(workers) {
    while (levels > 0 && bases_.GetNumSubivLevels() > levels) bases_.DeleteTopLevel();
}

LMeshBasesUV2& SkinFrames::On(std::span<const LPoint3> skin) {
    skin = skin.first(std::min<size_t>(skin.size(), bases_.GetNumLevelVerts(0)));
    if (std::equal(skin.begin(), skin.end(), skin_.begin(), skin_.end())) return bases_;
    skin_.assign(skin.begin(), skin.end());
    frames_.Reset(0);
    bases_.CopyVerts(geom_);
    if (skin.empty()) return bases_;
    std::copy(skin.begin(), skin.end(), bases_.GetAllVertsPtr());
    const LMeshTopology& level0 = *bases_.LevelTables(0);
    const std::span positions(bases_.GetAllVertsPtr(), level0.GetNumVerts());
    const std::vector<LPoint3> smooth = SmoothedShape(level0, positions, iterations_);
    std::copy(smooth.begin(), smooth.end(), positions.begin());
    bases_.RebuildLevels(workers_);
    return bases_;
}

void SkinFrames::Transform(LSubdivMesh& vectors, std::span<const LPoint3> skin, int direction) {
    LMeshBasesUV2& bases = On(skin);
    const BasesDirection heading(&bases, direction);
    vectors.TransformVectorsByLocal(&bases, nullptr, GetTopLevel(), workers_);
}

void SkinFrames::TransformAt(int direction, int vert, LPoint3& vector) {
    const size_t count = bases_.GetNumLevelVerts(GetTopLevel());
    if (direction != framesDirection_ || frames_.size() != count) {
        framesDirection_ = direction;
        if (!frames_.Reset(count)) throw std::bad_alloc();
    }
    if (static_cast<size_t>(vert) >= count) return;
    LMatrix3& frame = frames_[vert];
    if (!frame.degenerated && frame[2] == LPoint3::Zero) {
        const BasesDirection heading(&bases_, direction);
        frame = bases_.FrameAt(GetTopLevel(), vert);
    }
    frame.TransfromVector2(vector);
}

}  // namespace VantrelSDK
