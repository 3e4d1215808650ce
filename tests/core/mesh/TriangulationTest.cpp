#include <gtest/gtest.h>

#include <map>

#include "core/io/ObjReader.h"
#include "core/mesh/MeshFacts.h"
#include "core/mesh/Triangulation.h"
#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

TEST(Triangulation, FansKeepPolygonsAndTheirEdges) {
    std::vector<shapes::Shape> all = shapes::AllShapes();
    all.push_back({"many corners", 0, shapes::Polygon(300'000)});
    for (const auto& [name, tags, polygons] : all) {
        SCOPED_TRACE(name);
        const LMesh mesh = Triangulate(polygons);
        ASSERT_EQ(mesh.GetNumFaces(), CountFacts(polygons).triangles);
        ASSERT_TRUE(mesh.GetNumFaces() == 0 || mesh.Topology()->IsValid());
        for (int p = 0; p < polygons.NumPolygons(); ++p) {
            const int start = polygons.polygonStart[p], n = polygons.polygonStart[p + 1] - start;
            const int* ring = &polygons.cornerVerts[start];
            ASSERT_EQ(FirstFaceOf(polygons, p + 1) - FirstFaceOf(polygons, p), n - 2);
            for (int k = 0; k < n - 2; ++k) {
                const LFace face = mesh.GetFace(FirstFaceOf(polygons, p) + k);
                EXPECT_EQ(face.id, FirstFaceOf(polygons, p) + k);
                const int corners[3] = {0, k + 1, k + 2};
                for (int e = 0; e < 3; ++e) {
                    EXPECT_EQ(face.v[e], ring[corners[e]]);
                    // The rule for an edge (a, b): b follows or precedes a where a stands first,
                    // which in the large polygon is at once.
                    const int a = face.v[e], b = face.v[(e + 1) % 3];
                    int at = corners[e];
                    if (n < 100) at = static_cast<int>(std::find(ring, ring + n, a) - ring);
                    const bool visible = ring[(at + 1) % n] == b || ring[(at + n - 1) % n] == b;
                    EXPECT_EQ(face.IsEdgeVisible(e), visible);
                    EXPECT_EQ(face.IsEdgeGluing(e), !visible);
                }
            }
        }
    }
}

TEST(MeshFacts, CountsWhatTheZooAndTheModelsHold) {
    for (const shapes::Shape& shape : shapes::AllShapes()) {
        const MeshFacts facts = CountFacts(shape.mesh);
        if (shape.tags & shapes::Closed) {
            EXPECT_EQ(facts.openEdges, 0) << shape.name;
        }
        if (shape.tags & shapes::Open) {
            EXPECT_GT(facts.openEdges, 0) << shape.name;
        }
    }
    // Border and non-manifold edges as an independent reader has counted them.
    const std::map<std::string, std::pair<int, int>> known = {
        {"spot_control_mesh.obj", {0, 0}}, {"spot_quadrangulated.obj", {0, 0}},
        {"ict_neutral.obj.xz", {1040, 0}}, {"koala.obj.xz", {0, 0}},
        {"spider.obj", {96, 0}},           {"joined_tetrahedra.obj", {0, 3}},
        {"nonmanifold_edge.obj", {9, 1}},
    };
    int seen = 0;
    for (const auto& file : shapes::ObjFilesIn(shapes::ModelsFolder())) {
        const auto expected = known.find(file.filename());
        if (expected == known.end()) continue;
        PolyMesh mesh;
        FileError error;
        ASSERT_TRUE(ParseObj(shapes::TextOf(file), mesh, error)) << error.Text();
        const MeshFacts facts = CountFacts(mesh);
        EXPECT_EQ(facts.openEdges, expected->second.first) << file;
        EXPECT_EQ(facts.nonManifoldEdges, expected->second.second) << file;
        ++seen;
    }
    if (seen == 0) GTEST_SKIP() << "the shared models are not here";
}
