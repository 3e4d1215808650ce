#include "core/sculpt/PatternUVs.h"

#include "core/mesh/LFace.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

void PatternUVs::Update(const LUVSubdivChannel& channel, int level, int verts,
                        std::span<const LFace> faces) {
    const auto uvFaces = channel.LevelFaces(level);
    if (channel_ == &channel && faces_ == uvFaces.data() && level_ == level &&
        points_.size() == static_cast<size_t>(verts))
        return;
    channel_ = &channel;
    faces_ = uvFaces.data();
    level_ = level;
    points_.assign(static_cast<size_t>(verts), 0);
    const auto numPoints = static_cast<int>(channel.AllVerts().size());
    for (size_t f = 0; f < faces.size() && f < uvFaces.size(); ++f)
        for (int k = 0; k < 3; ++k) {
            const int point = uvFaces[f].v[k];
            if (point >= 0 && point < numPoints)
                points_[static_cast<size_t>(faces[f].v[k])] = point;
        }
}

}  // namespace VantrelSDK
