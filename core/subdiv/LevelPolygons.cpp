#include "core/subdiv/LevelPolygons.h"

namespace VantrelSDK {

LevelPolygons::LevelPolygons(const LSubdivMesh& geom, int level, std::span<const int> firstFaces) {
    const ISubdivLayer& layer = *geom.GetSubdivs().GetLayer(level);
    const bool quads = layer.GetType() == 1;
    const size_t nfaces = layer.topology()->Faces().size();
    // A pair is one polygon.
    std::vector<uint8_t> taken(quads ? nfaces / 2 : 0);
    corners.reserve(quads ? nfaces * 2 : nfaces * 3);
    starts.reserve(1 + (quads ? nfaces / 2 : nfaces));
    firstOf.reserve(firstFaces.size());
    std::vector<int> subs;
    for (size_t p = 0; p + 1 < firstFaces.size(); ++p) {
        firstOf.push_back(count());
        subs.clear();
        for (int f = firstFaces[p]; f < firstFaces[p + 1]; ++f) geom.FindSubFaces(f, subs, &layer);
        for (const int f : subs) {
            if (quads && taken[f / 2]++) continue;
            Add(quads ? f & ~1 : f, 0, 3);
            if (quads) Add(f | 1, 1, 2);
            starts.push_back(static_cast<int>(corners.size()));
        }
    }
    firstOf.push_back(count());
}

void LevelPolygons::Add(int face, int from, int to) {
    for (int c = from; c < to; ++c) corners.push_back(3 * face + c);
}

}  // namespace VantrelSDK
