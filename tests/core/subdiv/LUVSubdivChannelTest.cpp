#include "core/subdiv/LUVSubdivChannel.h"

#include <gtest/gtest.h>

#include <set>

#include "core/mesh/Triangulation.h"
#include "core/subdiv/LTopoCaches.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

/// A mesh whose levels are not smoothed, with its channel.
struct Unwrapped {
    LSubdivMesh mesh;
    LUVSubdivChannel uvs;

    explicit Unwrapped(const PolyMesh& polygons) : mesh(Triangulate(polygons)) {
        std::string error;
        EXPECT_TRUE(uvs.Init(polygons.uvs, TriangulateUVs(polygons), mesh.GetNumFaces(), error))
            << error;
    }
    /// A level of quads for 'q', of triangles for 'l'.
    void Add(char kind) {
        if (kind == 'q') {
            EXPECT_TRUE(uvs.SubdivideAll_Quad(*mesh.GetLevelTopology(Top()), true));
            EXPECT_TRUE(mesh.SubdivideAll_Quad(false, true));
        } else {
            EXPECT_TRUE(uvs.SubdivideAll_Loop(true));
            EXPECT_TRUE(mesh.SubdivideAll_Loop(false, true));
        }
        EXPECT_EQ(uvs.GetNumSubdivLevels(), mesh.GetNumSubivLevels());
        EXPECT_EQ(uvs.GetNumFaces(), mesh.GetNumFaces());
    }
    int Top() const { return mesh.GetNumSubivLevels() - 1; }
    /// Calls check(vertex, UV number) for every corner of the top level.
    template <class Check>
    void ForCorners(const Check& check) const {
        for (int f = 0; f < mesh.GetNumFaces(); ++f)
            for (int k = 0; k < 3; ++k) check(mesh.GetFace(f).v[k], uvs.GetFace(f).v[k]);
    }
};

/// UVs that are the x and y of the vertices.
PolyMesh WithFlatUVs(PolyMesh mesh) {
    mesh.uvs.clear();
    for (const LPoint3& p : mesh.positions) mesh.uvs.emplace_back(p.x, p.y);
    mesh.cornerUVs = mesh.cornerVerts;
    return mesh;
}

}  // namespace

TEST(UVSubdivChannel, FlatUVsStayThePlacesOfTheirCorners) {
    for (const shapes::Shape& shape : shapes::ShapesWithFaces())
        for (const std::string kinds : {"qqq", "lql", "qlq"}) {
            SCOPED_TRACE(shape.name + " " + kinds);
            Unwrapped both(WithFlatUVs(shape.mesh));
            for (const char kind : kinds) {
                const std::vector<LPoint2> before(both.uvs.AllVerts().begin(),
                                                  both.uvs.AllVerts().end());
                both.Add(kind);
                EXPECT_TRUE(std::equal(before.begin(), before.end(), both.uvs.AllVerts().begin()))
                    << "no point moves";
                both.ForCorners([&](int v, int uv) {
                    const LPoint3 p = both.mesh.GetVert(v);
                    ASSERT_TRUE(both.uvs.GetVert(uv).Equals({p.x, p.y}, 1e-5f));
                });
            }
        }
}

TEST(UVSubdivChannel, SeamsStaySeams) {
    for (const std::string kinds : {"qqq", "lq", "ql"}) {
        Unwrapped torus(shapes::Torus(6, 5));
        for (const char kind : kinds) {
            torus.Add(kind);
            std::vector<std::set<int>> points(torus.mesh.GetNumVerts());
            torus.ForCorners([&](int v, int uv) { points[v].insert(uv); });
            for (const std::set<int>& ofVertex : points) {
                // Twice on a seam, four times where the two cross.
                const LPoint2 uv = torus.uvs.GetVert(*ofVertex.begin());
                const auto onSeam = [](float t) { return t < 1e-6f || t > 1 - 1e-6f; };
                EXPECT_EQ(ofVertex.size(), (onSeam(uv.x) ? 2u : 1u) * (onSeam(uv.y) ? 2u : 1u));
            }
        }
    }
}

TEST(UVSubdivChannel, APairIsCutAsTheGeometryIsEvenWhereASeamSplitsIt) {
    // One quad whose two triangles have points of their own, at the same places and apart.
    for (const float apart : {0.0f, 10.0f}) {
        const PolyMesh quad = shapes::Polygon(4);
        const LMesh triangles = Triangulate(quad);
        std::vector<LPoint2> points;
        for (int f = 0; f < 2; ++f)
            for (const int v : triangles.GetFace(f).v)
                points.emplace_back(quad.positions[v].x + apart * f, quad.positions[v].y);
        LUVSubdivChannel uvs;
        std::string error;
        ASSERT_TRUE(uvs.Init(points, {{{0, 1, 2}}, {{3, 4, 5}}}, 2, error));
        ASSERT_TRUE(uvs.SubdivideAll_Quad(*triangles.Topology(), true));
        EXPECT_EQ(uvs.GetNumVerts(), 6 + 6);
        LSubdivMesh mesh(triangles);
        mesh.SubdivideAll_Quad(false, true);
        for (int f = 0; f < 8; ++f)
            for (int k = 0; k < 3; ++k) {
                const LPoint3 p = mesh.GetVert(mesh.GetFace(f).v[k]);
                const LPoint2 uv = uvs.GetVert(uvs.GetFace(f).v[k]);
                // The centre is the first triangle's, each other point that of its own.
                const bool second = apart > 0 && uv.x > 2;
                EXPECT_TRUE((uv - LPoint2(second ? apart : 0, 0)).Equals({p.x, p.y}, 1e-6f));
            }
    }
}

TEST(UVSubdivChannel, FacesWithoutPointsStayWithout) {
    PolyMesh cube = shapes::Cube();
    std::fill_n(cube.cornerUVs.begin() + 8, 4, -1);  // polygon 2
    Unwrapped bare(cube), whole(shapes::Cube());
    for (const char kind : {'q', 'l', 'q'}) {
        bare.Add(kind);
        whole.Add(kind);
        std::vector<int> without;
        for (const int f : {4, 5})
            bare.mesh.FindSubFaces(f, without, bare.mesh.GetSubdivs().GetTop());
        int missing = 0;
        for (int f = 0; f < bare.mesh.GetNumFaces(); ++f) {
            LPoint2 uvs[3], expected[3];
            const bool known = bare.uvs.GetFaceUVs(f, bare.Top(), uvs);
            missing += !known;
            for (int k = 0; k < 3; ++k) {
                const int uv = bare.uvs.GetFace(f).v[k];
                if (std::ranges::find(without, f) != without.end()) {
                    // Corners of the face itself have none, new ones the zero point.
                    const bool old = bare.mesh.GetFace(f).v[k] < 8;
                    EXPECT_EQ(uv < 0, old);
                    EXPECT_EQ(bare.uvs.GetVert(uv), LPoint2::Zero);
                } else {
                    ASSERT_TRUE(known);
                    whole.uvs.GetFaceUVs(f, whole.Top(), expected);
                    EXPECT_EQ(uvs[k], expected[k]);
                }
            }
        }
        EXPECT_GE(missing, 4) << "frames see that there is nothing";
    }
    // Of a triangle without its last point only the middle of the edge before can be made.
    LUVSubdivChannel part;
    std::string error;
    ASSERT_TRUE(part.Init({{1, 1}, {3, 1}}, {{{0, 1, -1}}}, 1, error));
    ASSERT_TRUE(part.SubdivideAll_Quad(*Triangulate(shapes::Polygon(3)).Topology(), true));
    const std::vector<LPoint2> made = {{1, 1}, {3, 1}, {2, 1}, {}, {}, {}};
    EXPECT_TRUE(std::ranges::equal(part.AllVerts(), made));
    // A mesh that is written has no points there at all.
    const auto node = OpenNode(cube);
    node->SubdivideAll_Quad();
    PolyMesh result;
    ASSERT_TRUE(node->GetResult(cube, 1, result, error));
    EXPECT_EQ(std::count(result.cornerUVs.begin(), result.cornerUVs.end(), -1), 4 * 4);
    EXPECT_EQ(std::count(result.cornerUVs.begin() + 32, result.cornerUVs.begin() + 48, -1), 16);
}

TEST(UVSubdivChannel, WrittenQuadsLieInTheirPolygonWithTheirUVs) {
    const PolyMesh grid = WithFlatUVs(shapes::Grid(4, 2));
    const auto node = OpenNode(grid);
    node->settings().doSmoothGeomSubdivs = false;
    node->SubdivideAll_Quad();
    node->SubdivideAll_Quad();
    PolyMesh result;
    std::string error;
    ASSERT_TRUE(node->GetResult(grid, 2, result, error)) << error;
    ASSERT_EQ(result.NumPolygons(), 8 * 16);
    for (int p = 0; p < result.NumPolygons(); ++p) {
        const auto at = [&](int k) { return result.positions[result.cornerVerts[4 * p + k]]; };
        const LPoint3 area = (at(2) - at(0)) ^ (at(3) - at(1));
        EXPECT_NEAR(area.z, 2.0f / (8 * 16), 1e-6f) << "all of the same size and winding";
        const int* base = &grid.cornerVerts[4 * (p / 16)];
        const LPoint3 low = grid.positions[base[0]], high = grid.positions[base[2]];
        for (int k = 0; k < 4; ++k) {
            const auto [x, y, z] = at(k);
            EXPECT_TRUE(x >= low.x && x <= high.x && y >= low.y && y <= high.y);
            EXPECT_TRUE(result.uvs[result.cornerUVs[4 * p + k]].Equals({x, y}, 1e-6f));
        }
    }
}

TEST(UVSubdivChannel, InitTellsWhatIsWrong) {
    LUVSubdivChannel uvs;
    std::string error;
    EXPECT_FALSE(uvs.Init({{0, 0}}, {{{0, 0, 0}}}, 2, error));
    EXPECT_EQ(error, "a UV set has 1 faces, the mesh 2");
    for (const int wrong : {1, -2}) {
        EXPECT_FALSE(uvs.Init({{0, 0}}, {{{0, 0, 0}}, {{0, wrong, 0}}}, 2, error));
        EXPECT_EQ(error, "face 1 of a UV set names point " + std::to_string(wrong) + " of 1");
    }
    EXPECT_TRUE(uvs.IsEmpty());
    const LMesh quad = Triangulate(shapes::Polygon(4));
    EXPECT_FALSE(uvs.SubdivideAll_Loop(true));
    EXPECT_FALSE(uvs.SubdivideAll_Quad(*quad.Topology(), true));
    ASSERT_TRUE(uvs.Init({}, {{}, {}}, 2, error)) << "a mesh without UVs";
    EXPECT_TRUE(uvs.IsEmpty());
    ASSERT_TRUE(uvs.Init({{1, 2}}, {{{0, 0, 0}}}, 1, error));
    EXPECT_FALSE(uvs.SubdivideAll_Quad(*quad.Topology(), true)) << "the pairs of another mesh";
    const LQuadLevelTopoCache empty(1, true, true);
    EXPECT_FALSE(uvs.RedivideAll_Quad(&empty, true));
    EXPECT_FALSE(uvs.RedivideAll_Quad(nullptr, true));
    EXPECT_EQ(uvs.GetNumSubdivLevels(), 1);
    EXPECT_FALSE(uvs.DeleteTopLevel());
}

TEST(UVSubdivChannel, LevelsComeAndGoWithThoseOfTheObject) {
    const auto node = OpenNode(shapes::Torus(6, 5));
    LMeshObject& object = *node->lobject();
    const LUVSubdivChannel& uvs = *object.GetUVChannel(0);
    const auto same = [](const LUVSubdivChannel& a, const LUVSubdivChannel& b) {
        const auto faces = [](const LUVSubdivChannel& channel) {
            std::vector<int> corners;
            for (const auto& face : channel.LevelFaces(channel.GetNumSubdivLevels() - 1))
                corners.insert(corners.end(), face.v, face.v + 3);
            return corners;
        };
        return std::ranges::equal(a.AllVerts(), b.AllVerts()) && faces(a) == faces(b);
    };
    const LUVSubdivChannel base(uvs);
    ASSERT_TRUE(node->SubdivideAll_Quad());
    ASSERT_TRUE(node->SubdivideAll_Loop());
    const LUVSubdivChannel two(uvs);
    ASSERT_TRUE(node->SubdivideAll_Quad());
    EXPECT_EQ(uvs.GetNumSubdivLevels(), 4);
    EXPECT_EQ(uvs.GetSubdivs().GetActiveIndex(), 3);
    EXPECT_EQ(uvs.GetSubdivs().GetLayer(2)->GetType(), 0);
    // From the cache of the geometry's step comes the same level.
    LUVSubdivChannel redone(two);
    ASSERT_TRUE(redone.RedivideAll_Quad(
        static_cast<LQuadLevelTopoCache*>(object.GetTopoCaches().GetTop()), true));
    EXPECT_TRUE(same(redone, uvs));
    ASSERT_TRUE(node->SetActiveSubdivLevel(1));
    EXPECT_EQ(uvs.GetNumFaces(), object.GetNumFaces());
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    EXPECT_TRUE(same(uvs, two));
    // An object that goes down to its base and takes the levels of a delta has them all again, and
    // so has a channel that comes late.
    ASSERT_TRUE(object.Update(nullptr, nullptr, 0));
    EXPECT_TRUE(same(uvs, base));
    EXPECT_EQ(object.GetTopoCaches().GetSize(), 0);
    ASSERT_TRUE(object.Update(nullptr, node->GetDelta()->GetOrigMesh(), -1));
    EXPECT_TRUE(same(uvs, two));
    EXPECT_EQ(object.GetTopoCaches().GetSize(), 2);
    object.AddChannel(std::make_unique<LUVSubdivChannel>(base));
    EXPECT_TRUE(same(*object.GetUVChannel(1), two));
    EXPECT_FALSE(OpenNode(shapes::Sphere(1))->lobject()->GetActiveUVChannel());
}
