#include "core/mesh/Triangulation.h"

#include "core/io/HugePages.h"

namespace VantrelSDK {

namespace {

/// Tells which vertices follow each other on a polygon's ring. A vertex that the ring names twice
/// counts where it stands first.
class Ring {
  public:
    explicit Ring(int nverts) : place_(nverts, -1) {}

    void Set(std::span<const int> corners) {
        for (const int v : corners_) place_[v] = -1;
        corners_ = corners;
        for (size_t i = corners.size(); i-- > 0;) place_[corners[i]] = static_cast<int>(i);
    }
    bool Follow(int p, int q) const {
        const size_t n = corners_.size(), i = place_[p];
        return corners_[(i + 1) % n] == q || corners_[(i + n - 1) % n] == q;
    }

  private:
    std::vector<int> place_;
    std::span<const int> corners_;
};

}  // namespace

LMesh Triangulate(const PolyMesh& polygons) {
    const int nverts = static_cast<int>(polygons.positions.size());
    std::vector<LFace> faces;
    ReserveLarge(faces, FirstFaceOf(polygons, polygons.NumPolygons()));
    Ring ring(nverts);
    for (int p = 0; p < polygons.NumPolygons(); ++p) {
        const int start = polygons.polygonStart[p];
        const std::span<const int> corners(polygons.cornerVerts.data() + start,
                                           polygons.polygonStart[p + 1] - start);
        ring.Set(corners);
        for (size_t k = 1; k + 1 < corners.size(); ++k) {
            LFace face;
            face.v[0] = corners[0], face.v[1] = corners[k], face.v[2] = corners[k + 1];
            face.id = static_cast<int>(faces.size());
            face.flags = 0;
            for (int e = 0; e < 3; ++e)
                face.flags |= ring.Follow(face.v[e], face.v[(e + 1) % 3]) ? 1 << e : 8 << e;
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
