#include "core/mesh/Triangulation.h"

#include "core/io/HugePages.h"
#include "core/mesh/PolygonRing.h"

namespace VantrelSDK {

LMesh Triangulate(const PolyMesh& polygons) {
    const int nverts = static_cast<int>(polygons.positions.size());
    std::vector<LFace> faces;
    ReserveLarge(faces, FirstFaceOf(polygons, polygons.NumPolygons()));
    PolygonRing ring(nverts);
    for (int p = 0; p < polygons.NumPolygons(); ++p) {
        const int start = polygons.polygonStart[p];
        const std::span<const int> corners(polygons.cornerVerts.data() + start,
                                           polygons.polygonStart[p + 1] - start);
        ring.Set(corners);
        for (size_t k = 1; k + 1 < corners.size(); ++k) {
            LFace face;
            face.v[0] = corners[0], face.v[1] = corners[k], face.v[2] = corners[k + 1];
            face.id = static_cast<int>(faces.size());
            face.flags = ring.EdgeFlags(face.v);
            faces.push_back(face);
        }
    }
    return LMesh(std::make_shared<LMeshTopology>(nverts, std::move(faces)), polygons.positions);
}

std::vector<LUVChannel::MFace> TriangulateUVs(const PolyMesh& polygons) {
    std::vector<LUVChannel::MFace> faces;
    if (polygons.cornerUVs.empty()) return faces;
    faces.reserve(FirstFaceOf(polygons, polygons.NumPolygons()));
    for (int p = 0; p < polygons.NumPolygons(); ++p) {
        const int* uvs = polygons.cornerUVs.data() + polygons.polygonStart[p];
        const int corners = polygons.polygonStart[p + 1] - polygons.polygonStart[p];
        for (int k = 1; k + 1 < corners; ++k) faces.push_back({{uvs[0], uvs[k], uvs[k + 1]}});
    }
    return faces;
}

}  // namespace VantrelSDK
