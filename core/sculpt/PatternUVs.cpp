#include "core/sculpt/PatternUVs.h"

#include "core/mesh/LMeshObject.h"
#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

void PatternUVs::Update(const LMeshObject& object, int channel) {
    const int level = object.GetOrigGeom()->GetActiveLevel();
    const auto verts = static_cast<size_t>(object.GetNumVerts());
    if (channel_ == channel && level_ == level && uvChanges_ == object.NumUVChanges() &&
        points_.size() == verts)
        return;
    channel_ = channel;
    level_ = level;
    uvChanges_ = object.NumUVChanges();
    points_.assign(verts, 0);
    const LUVSubdivChannel& uvs = *object.GetUVChannel(channel);
    const auto uvFaces = uvs.LevelFaces(level);
    const auto topology = object.GetOrigGeom()->GetLevelTopology(static_cast<unsigned>(level));
    const std::vector<LFace>& faces = topology->Faces();
    const auto numPoints = static_cast<int>(uvs.AllVerts().size());
    for (size_t f = 0; f < faces.size() && f < uvFaces.size(); ++f)
        for (int k = 0; k < 3; ++k) {
            const int point = uvFaces[f].v[k];
            if (point >= 0 && point < numPoints)
                points_[static_cast<size_t>(faces[f].v[k])] = point;
        }
}

}  // namespace VantrelSDK
