#include "host/ml/MLMesh.h"

#include <maya/MFloatArray.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>

#include "core/mesh/PolygonRing.h"

namespace VantrelSDK {

namespace {

/// The polygons of a host mesh and the triangles that the host cuts them into.
struct HostPolygons {
    explicit HostPolygons(const MFnMesh& mesh) {
        mesh.getVertices(counts, connects);
        mesh.getTriangles(numTriangles, triangles);
    }

    /// Calls visit(polygon, its vertices, its first corner, its first triangle).
    template <class Visit>
    void ForEach(const Visit& visit) const {
        const int* vertices = connects.length() > 0 ? &connects[0] : nullptr;
        int corner = 0, triangle = 0;
        for (unsigned p = 0; p < counts.length(); ++p) {
            visit(p, std::span(vertices + corner, static_cast<size_t>(counts[p])), corner,
                  triangle);
            corner += counts[p];
            triangle += numTriangles[p];
        }
    }
    int Vertex(int triangle, int corner) const {
        return triangles[static_cast<unsigned>(3 * triangle + corner)];
    }

    MIntArray counts, connects, numTriangles, triangles;
};

}  // namespace

std::vector<LPoint3> ReadPositions(const MObject& mesh) {
    const MFnMesh fn(mesh);
    const int count = fn.numVertices();
    const float* raw = fn.getRawPoints();
    std::vector<LPoint3> positions;
    if (!raw || count <= 0) return positions;
    positions.reserve(static_cast<size_t>(count));
    for (int v = 0; v < count; ++v, raw += 3) positions.emplace_back(raw[0], raw[1], raw[2]);
    return positions;
}

MLMesh::MLMesh(const MObject& mesh) {
    MStatus status;
    const MFnMesh fn(mesh, &status);
    if (!status) return;
    const HostPolygons polygons(fn);
    const std::vector<LPoint3> positions = ReadPositions(mesh);
    const int nverts = static_cast<int>(positions.size());
    std::vector<LFace> faces;
    faces.reserve(polygons.triangles.length() / 3);
    PolygonRing ring(nverts);
    polygons.ForEach([&](unsigned p, std::span<const int> corners, int, int triangle) {
        firstFaces.push_back(triangle);
        ring.Set(corners);
        for (int t = triangle; t < triangle + polygons.numTriangles[p]; ++t) {
            LFace face;
            for (int c = 0; c < 3; ++c) face.v[c] = polygons.Vertex(t, c);
            face.id = t;
            face.flags = ring.EdgeFlags(face.v);
            faces.push_back(face);
        }
    });
    firstFaces.push_back(static_cast<int>(faces.size()));
    static_cast<LMesh&>(*this) =
        LMesh(std::make_shared<LMeshTopology>(nverts, std::move(faces)), positions);
}

std::unique_ptr<LUVSubdivChannel> ReadUVSet(const MObject& mesh, int set) {
    const MFnMesh fn(mesh);
    MStringArray names;
    fn.getUVSetNames(names);
    if (set < 0 || set >= static_cast<int>(names.length())) {
        MGlobal::displayError("MUVSubdivChannel: set with such index not found");
        return nullptr;
    }
    const MString& name = names[static_cast<unsigned>(set)];
    MFloatArray u, v;
    fn.getUVs(u, v, &name);
    MIntArray counts, ids;
    fn.getAssignedUVs(counts, ids, &name);
    std::vector<LPoint2> points(u.length());
    for (unsigned i = 0; i < u.length(); ++i) points[i] = LPoint2(u[i], v[i]);
    const HostPolygons polygons(fn);
    std::vector<LUVChannel::MFace> faces(polygons.triangles.length() / 3);
    PolygonRing ring(fn.numVertices());
    unsigned next = 0;
    polygons.ForEach([&](unsigned p, std::span<const int> corners, int, int triangle) {
        if (counts[p] != static_cast<int>(corners.size())) return;
        ring.Set(corners);
        for (int t = triangle; t < triangle + polygons.numTriangles[p]; ++t)
            for (int c = 0; c < 3; ++c)
                faces[static_cast<size_t>(t)].v[c] =
                    ids[next + static_cast<unsigned>(ring.PlaceOf(polygons.Vertex(t, c)))];
        next += static_cast<unsigned>(counts[p]);
    });
    auto channel = std::make_unique<LUVSubdivChannel>(set);
    const size_t meshFaces = faces.size();
    std::string error;
    if (!channel->Init(std::move(points), std::move(faces), meshFaces, error)) return nullptr;
    channel->_name() = name.str();
    return channel;
}

}  // namespace VantrelSDK
