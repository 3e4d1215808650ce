#include <cmath>

#include "maya/MFnComponentListData.h"
#include "maya/MFnMesh.h"
#include "maya/MFnMeshData.h"
#include "maya/MFnPointArrayData.h"
#include "maya/MFnSingleIndexedComponent.h"
#include "maya/MItMeshPolygon.h"
#include "maya/MItMeshVertex.h"
#include "minihost/mesh/Primitives.h"
#include "tests/minihost/SceneTest.h"

namespace minihost {
namespace {

class Mesh : public SceneTest {};

MIntArray Ints(const std::vector<int>& v) {
    return MIntArray(v.data(), static_cast<unsigned>(v.size()));
}

RC_GTEST_FIXTURE_PROP(Mesh, TakesWhatIsValidAndRefusesTheRest, ()) {
    const auto points = *rc::gen::inRange(0, 6);
    const auto counts = *rc::gen::container<std::vector<int>>(rc::gen::inRange(-1, 6));
    const auto connects = *rc::gen::container<std::vector<int>>(rc::gen::inRange(-1, 7));
    size_t corners = 0;
    bool valid = true;
    for (const int n : counts) valid &= n >= 3, corners += static_cast<size_t>(std::max(n, 0));
    valid &= corners == connects.size();
    for (const int v : connects) valid &= v >= 0 && v < points;

    MStatus status;
    MFnMesh mesh;
    const MObject data = MFnMeshData().create();
    const MObject made =
        mesh.create(points, static_cast<int>(counts.size()), MFloatPointArray(unsigned(points)),
                    Ints(counts), Ints(connects), data, &status);
    RC_ASSERT(bool(status) == valid);
    RC_ASSERT(made.isNull() != valid);
    if (!valid) return;
    MIntArray gotCounts, gotConnects;
    RC_ASSERT(mesh.getVertices(gotCounts, gotConnects));
    RC_ASSERT(gotCounts == Ints(counts));
    RC_ASSERT(gotConnects == Ints(connects));
}

RC_GTEST_FIXTURE_PROP(Mesh, WalksSayWhatTheFunctionSetSays, ()) {
    const MeshPtr data = AnyMesh();
    const MObject object(data);
    const MFnMesh mesh(object);
    MIntArray triangleCounts, triangles, counts, ids;
    RC_ASSERT(mesh.getTriangles(triangleCounts, triangles));
    RC_ASSERT(mesh.getAssignedUVs(counts, ids));
    unsigned nextTriangle = 0, nextId = 0;
    for (MItMeshPolygon it(object); !it.isDone(); it.next()) {
        MIntArray ring, vertices;
        MPointArray points;
        int n = 0, id = 0;
        RC_ASSERT(it.getVertices(ring) && it.numTriangles(n));
        RC_ASSERT(n == triangleCounts[unsigned(it.index())]);
        for (int t = 0; t < n; ++t) {
            RC_ASSERT(it.getTriangle(t, points, vertices));
            for (unsigned i = 0; i < 3; ++i) {
                RC_ASSERT(vertices[i] == triangles[nextTriangle++]);
                RC_ASSERT(points[i] == MPoint(MFloatPoint(data->points()[size_t(vertices[i])])));
            }
        }
        RC_ASSERT(it.hasUVs() == (counts[unsigned(it.index())] == int(ring.length())));
        for (unsigned c = 0; it.hasUVs() && c < ring.length(); ++c) {
            RC_ASSERT(it.getUVIndex(int(c), id));
            RC_ASSERT(id == ids[nextId++]);
        }
    }
    for (MItMeshVertex it(object); !it.isDone(); it.next()) {
        MIntArray faces;
        RC_ASSERT(it.getConnectedFaces(faces));
        for (int p = 0; p < data->polygons().count(); ++p) {
            const bool has = std::ranges::count(data->polygons().Of(p), it.index()) > 0;
            RC_ASSERT((std::count(faces.begin(), faces.end(), p) == 1) == has);
        }
    }
}

RC_GTEST_FIXTURE_PROP(Mesh, CopiesShareUntilTheyAreChanged, ()) {
    const MeshPtr a = AnyMesh();
    const auto before = a->points();
    const MeshPtr b = std::static_pointer_cast<MeshData>(a->Copy());
    RC_ASSERT(a->Equals(*b) && a->SharesPointsWith(*b) && a->SharesPolygonsWith(*b));
    MFnMesh mesh{MObject(b)};
    const int v = *rc::gen::inRange(-2, a->numVertices() + 2);
    const MStatus status = mesh.setPoint(v, MPoint(1e6, 2, 3));
    RC_ASSERT(bool(status) == (v >= 0 && v < a->numVertices()));
    RC_ASSERT(a->points() == before);
    RC_ASSERT(a->Equals(*b) != bool(status));
    RC_ASSERT(a->SharesPolygonsWith(*b));
    RC_ASSERT(mesh.createInPlace(0, 0, MPointArray(), MIntArray(), MIntArray()));
    RC_ASSERT(b->numVertices() == 0 && b->uvSets[0].corners->empty());
    RC_ASSERT(a->points() == before);
}

RC_GTEST_FIXTURE_PROP(Mesh, ColorsOfVerticesComeBack, ()) {
    const MeshPtr data = AnyMesh();
    MFnMesh mesh{MObject(data)};
    MString name("Paint");
    RC_ASSERT(mesh.createColorSetWithName(name) && mesh.currentColorSetName() == "Paint");
    const auto any = [] { return static_cast<float>(*rc::gen::inRange(0, 256)) / 255.f; };
    MColorArray colors, got;
    MIntArray all;
    for (int v = 0; v < data->numVertices(); ++v) {
        colors.append(MColor(any(), any(), any()));
        all.append(v);
    }
    RC_ASSERT(mesh.setFaceColor(MColor(1, 1, 1), 0) == (data->polygons().count() > 0));
    RC_ASSERT(mesh.setVertexColors(colors, all));
    const int one = *rc::gen::inRange(0, data->numVertices());
    RC_ASSERT(mesh.setVertexColor(colors[unsigned(one)] = MColor(0, 0.5f, 1), one));
    RC_ASSERT(mesh.getVertexColors(got));
    for (MItMeshVertex it{MObject(data)}; !it.isDone(); it.next()) {
        MColor color;
        if (!it.hasColor()) continue;  // no polygon has it
        RC_ASSERT(it.getColor(color));
        RC_ASSERT(color == got[unsigned(it.index())]);
        for (unsigned i = 0; i < 4; ++i)
            RC_ASSERT(std::abs(color[i] - colors[unsigned(it.index())][i]) < 1e-6f);
    }
    RC_ASSERT(!mesh.assignColor(0, 0, mesh.numColors()));
    RC_ASSERT(!mesh.setVertexColor(MColor(), data->numVertices()));
}

TEST_F(Mesh, UVSetsAreTablesAndNumbersIntoThem) {
    const MeshPtr data = MakePlane(1, 1, 2, 1);
    MFnMesh mesh{MObject(data)};
    MStringArray names;
    ASSERT_TRUE(mesh.createUVSetWithName("second"));
    EXPECT_FALSE(mesh.createUVSetWithName("second"));
    ASSERT_TRUE(mesh.getUVSetNames(names));
    ASSERT_EQ(names.length(), 2u);
    EXPECT_EQ(names[0], "map1");
    const MString second("second"), none("none");
    const MFloatArray u(4, 0.25f), v(4, 0.75f);
    ASSERT_TRUE(mesh.setUVs(u, v, &second));
    EXPECT_FALSE(mesh.setUVs(u, v, &none));
    const int counts[] = {4, 0}, ids[] = {3, 2, 1, 0};
    ASSERT_TRUE(mesh.assignUVs(MIntArray(counts, 2), MIntArray(ids, 4), &second));
    EXPECT_FALSE(mesh.assignUVs(MIntArray(counts, 2), MIntArray(ids, 3), &second));
    int id = -1;
    EXPECT_TRUE(mesh.getPolygonUVid(0, 1, id, &second));
    EXPECT_EQ(id, 2);
    EXPECT_FALSE(mesh.getPolygonUVid(1, 0, id, &second));
    EXPECT_EQ(mesh.numUVs(), 6);
    ASSERT_TRUE(mesh.setUVs(MFloatArray(2), MFloatArray(2), &second));  // corners lose 2 and 3
    EXPECT_FALSE(mesh.getPolygonUVid(0, 1, id, &second));
    ASSERT_TRUE(mesh.setCurrentUVSetName("second"));
    EXPECT_EQ(mesh.numUVs(), 2);
    ASSERT_TRUE(mesh.deleteUVSet("second"));
    EXPECT_EQ(mesh.currentUVSetName(), "map1");
}

TEST_F(Mesh, ComponentsListsAndGroupsHoldWhatIsPut) {
    MFnSingleIndexedComponent faces;
    const MObject component = faces.create(MFn::kMeshPolygonComponent);
    const int some[] = {5, 1, 3, 1};
    ASSERT_TRUE(faces.addElements(MIntArray(some, 4)));
    ASSERT_TRUE(faces.addElement(2));
    EXPECT_FALSE(faces.addElement(-1));
    MIntArray got;
    ASSERT_TRUE(faces.getElements(got));
    EXPECT_EQ(got, Ints({1, 2, 3, 5}));
    EXPECT_TRUE(MFnSingleIndexedComponent().create(MFn::kMesh).isNull());

    MFnComponentListData list;
    list.create();
    ASSERT_TRUE(list.add(component));
    EXPECT_TRUE(MFnSingleIndexedComponent(list[0]).isEqual(component));
    EXPECT_TRUE(list[1].isNull());

    const MeshPtr data = MakePlane(1, 1, 2, 2);
    MFnGeometryData geometry{MObject(data)};
    ASSERT_TRUE(geometry.addObjectGroup(7));
    EXPECT_FALSE(geometry.addObjectGroup(7));
    ASSERT_TRUE(geometry.addObjectGroupComponent(7, component));
    EXPECT_EQ(geometry.objectGroup(0), 7u);
    MItMeshPolygon walk(MObject(data), geometry.objectGroupComponent(7));
    EXPECT_EQ(walk.count(), 3);  // 5 is out of range
    int before = 0;
    EXPECT_FALSE(walk.setIndex(0, before));
    EXPECT_TRUE(walk.setIndex(3, before));
    EXPECT_TRUE(MFnMesh(MObject(data)).object().hasFn(MFn::kMesh));

    MFnPointArrayData points;
    points.create(MPointArray(2, MPoint(1, 2, 3)));
    EXPECT_EQ(points.array()[1], MPoint(1, 2, 3));
}

/// Volume by the divergence theorem, twice the area, and whether each edge is used once each way.
void Measure(const MeshData& mesh, double& volume, double& area, bool& closed) {
    std::map<std::pair<int, int>, int> edges;
    volume = area = 0;
    for (int p = 0; p < mesh.polygons().count(); ++p) {
        const auto ring = mesh.polygons().Of(p);
        const auto at = [&](size_t i) {
            return MVector(MPoint(MFloatPoint(mesh.points()[size_t(ring[i])])) - MPoint());
        };
        for (size_t i = 0; i < ring.size(); ++i) ++edges[{ring[i], ring[(i + 1) % ring.size()]}];
        for (size_t i = 2; i < ring.size(); ++i) {
            volume += at(0) * (at(i - 1) ^ at(i)) / 6;
            area += ((at(i - 1) - at(0)) ^ (at(i) - at(0))).length() / 2;
        }
    }
    closed = std::ranges::all_of(edges, [&edges](const auto& edge) {
        return edge.second == 1 && edges.contains({edge.first.second, edge.first.first});
    });
}

TEST_F(Mesh, PrimitivesAreClosedAndFaceOutward) {
    double volume = 0, area = 0;
    bool closed = false;
    Measure(*MakeCube(2, 3, 4, 1, 2, 3), volume, area, closed);
    EXPECT_NEAR(volume, 24, 1e-5);
    EXPECT_NEAR(area, 52, 1e-5);
    EXPECT_TRUE(closed);
    Measure(*MakeSphere(2, 64, 48), volume, area, closed);
    EXPECT_NEAR(volume, 4.0 / 3 * std::acos(-1) * 8, 0.2);
    EXPECT_TRUE(closed);
    const MeshPtr plane = MakePlane(2, 3, 4, 5);
    Measure(*plane, volume, area, closed);
    EXPECT_NEAR(area, 6, 1e-5);
    EXPECT_FALSE(closed);
    const auto ring = plane->polygons().Of(0);
    const auto edge = [&](size_t i) {
        return plane->points()[size_t(ring[i])] - plane->points()[size_t(ring[0])];
    };
    EXPECT_GT((edge(1) ^ edge(2)).y, 0);
    for (const MeshPtr& mesh : {plane, MakeCube(1, 1, 1, 0, -3, 2), MakeSphere(1, 3, 2)})
        for (size_t c = 0; c < mesh->numCorners(); ++c) {
            const int id = mesh->uvSets[0].At(static_cast<int>(c));
            ASSERT_GE(id, 0);
            const UV& uv = (*mesh->uvSets[0].values)[size_t(id)];
            EXPECT_TRUE(uv.u >= 0 && uv.u <= 1 && uv.v >= 0 && uv.v <= 1);
        }
}

TEST_F(Mesh, TheNodeShowsItsInputWithTweaksAndNames) {
    const MeshNodes cube = CreatePrimitive(edits, "polyCube");
    EXPECT_EQ(cube.transform->name(), "pCube1");
    EXPECT_EQ(cube.shape->name(), "pCubeShape1");
    const MeshPtr shown = MeshOf(*cube.shape);
    ASSERT_EQ(shown->numVertices(), 8);
    EXPECT_EQ(MeshOf(*cube.shape), shown);  // nothing is copied or computed again
    edits.Set(cube.maker->FindPlug("width"), 10.0);
    EXPECT_EQ(cube.shape->Bounds().width(), 10);
    edits.SetNumbers(cube.shape->FindPlug("pnts").Element(3), {1, 0, 0});
    edits.SetNumbers(cube.shape->FindPlug("pnts").Element(99), {1, 0, 0});
    MFnMesh mesh{MObject(cube.shape)};
    MPointArray points;
    ASSERT_TRUE(mesh.getPoints(points));
    EXPECT_EQ(points[3].x, double(MeshOf(*cube.shape)->points()[3].x));
    points[5] = MPoint(7, 8, 9);
    ASSERT_TRUE(mesh.setPoints(points));  // history feeds it: as a tweak
    MPoint moved;
    ASSERT_TRUE(mesh.getPoint(5, moved));
    EXPECT_EQ(moved, MPoint(7, 8, 9));
    edits.SetNumbers(cube.transform->FindPlug("translate"), {1, 1, 1});
    ASSERT_TRUE(mesh.getPoint(5, moved, MSpace::kWorld));
    EXPECT_EQ(moved, MPoint(8, 9, 10));
    const auto name =
        DataOf<StringData>(Pull(*cube.shape->FindPlug("uvSet").Element(0).Child(0).Make()));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->value, "map1");
    edits.Undo();
    EXPECT_TRUE(host.scene.NodesOfType("mesh").empty());
}

}  // namespace
}  // namespace minihost
