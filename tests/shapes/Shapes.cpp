#include "tests/shapes/Shapes.h"

#include "tests/core/math/SameBits.h"

namespace VantrelSDK::shapes {

namespace {

PolyMesh WithIsolated(PolyMesh mesh) {
    mesh.positions.insert(mesh.positions.begin(), {5, 5, 5});
    mesh.positions.emplace_back(-5, 5, 5);
    for (int& v : mesh.cornerVerts) ++v;
    return mesh;
}

/// A prism with n-gons for its floor and lid.
PolyMesh Prism(int n) {
    PolyMesh mesh;
    std::vector<int> floor(n), lid(n);
    for (int i = 0; i < n; ++i) {
        const LPoint2 p = OnCircle(i, n);
        mesh.positions.emplace_back(p.x, -1.0f, -p.y);
        mesh.positions.emplace_back(p.x, 1.0f, -p.y);
        const int j = (i + 1) % n;
        AddPolygon(mesh, std::array{2 * i, 2 * j, 2 * j + 1, 2 * i + 1});
        floor[n - 1 - i] = 2 * i;
        lid[i] = 2 * i + 1;
    }
    AddPolygon(mesh, floor);
    AddPolygon(mesh, lid);
    return mesh;
}

/// A strip of n quads with half a twist: its winding clashes where the ends meet.
PolyMesh Moebius(int n) {
    PolyMesh mesh;
    for (int i = 0; i < n; ++i) {
        const LPoint2 around = OnCircle(i, n), twist = OnCircle(i, 2 * n);
        for (const float side : {-0.3f, 0.3f}) {
            const float out = 1 + side * twist.x;
            mesh.positions.emplace_back(out * around.x, side * twist.y, -out * around.y);
        }
        const int a = 2 * i, b = a + 1, last = i + 1 == n;
        const int c = last ? 0 : a + 3, d = last ? 1 : a + 2;
        AddPolygon(mesh, std::array{a, b, c, d});
    }
    return mesh;
}

std::vector<Shape> MakeShapes() {
    const std::vector<LPoint3> square = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
    const auto flat = [](std::initializer_list<LPoint2> points) {
        std::vector<LPoint3> positions;
        for (const LPoint2& p : points) positions.emplace_back(p.x, p.y, 0.0f);
        return positions;
    };
    std::vector<Shape> shapes;
    const auto add = [&](const char* name, unsigned tags, PolyMesh mesh) {
        shapes.push_back({name, tags, std::move(mesh)});
    };

    add("triangle", Open, FromPolygons(flat({{0, 0}, {1, 0}, {0, 1}}), {{0, 1, 2}}));
    add("quad", Open, FromPolygons(square, {{0, 1, 2, 3}}));
    add("polygon_8", Open, Polygon(8));
    add("concave_l", Open,
        FromPolygons(flat({{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}), {{0, 1, 2, 3, 4, 5}}));
    add("grid_quads", Open, Grid(6, 4));
    add("grid_triangles", Open, Grid(5, 5, true));
    add("fan_12", Open, Fan(12));

    add("corner_of_3_quads", Open,
        FromPolygons(flat({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}}),
                     {{0, 1, 4, 3}, {1, 2, 5, 4}, {3, 4, 7, 6}}));
    PolyMesh fan = Fan(6);
    fan.polygonStart.pop_back();
    fan.cornerVerts.resize(15);
    add("open_fan_5", Open, fan);

    add("cube", Closed, Cube());
    add("octahedron", Closed, Sphere(0));
    add("sphere", Closed, Sphere(3));
    add("torus", Closed, Torus(12, 8));
    add("prism_7", Closed, Prism(7));
    add("prism_16", Closed, Prism(16));
    add("tetrahedron", Closed,
        FromPolygons({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                     {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {0, 3, 2}}));
    PolyMesh twice = shapes.back().mesh;
    for (int v = 0; v < 4; ++v) twice.positions.push_back(twice.positions[v] + LPoint3(3, 0, 0));
    for (int c = 0; c < 12; c += 3) {
        const int* v = &twice.cornerVerts[c];
        AddPolygon(twice, std::array{v[0] + 4, v[1] + 4, v[2] + 4});
    }
    add("two_parts", Closed, twice);

    add("nonmanifold_edge_3", Open | NonManifold,
        FromPolygons({{0, 0, 0},
                      {0, 1, 0},
                      {1, 0, 0},
                      {1, 1, 0},
                      {-1, 0, 0},
                      {-1, 1, 0},
                      {0, 0, 1},
                      {0, 1, 1}},
                     {{0, 2, 3, 1}, {0, 1, 5, 4}, {0, 6, 7, 1}}));
    add("nonmanifold_bow_tie", Open | NonManifold,
        FromPolygons(flat({{0, 0}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}}), {{0, 1, 2}, {0, 3, 4}}));
    add("nonmanifold_winding", Open | NonManifold, FromPolygons(square, {{0, 1, 2}, {0, 3, 2}}));
    add("nonmanifold_moebius", Open | NonManifold, Moebius(12));

    add("degenerate_repeated_vertex", Open | Degenerate,
        FromPolygons(square, {{0, 1, 2}, {0, 2, 2, 3}}));
    add("degenerate_point", Open | Degenerate, FromPolygons(square, {{1, 1, 1}, {0, 1, 2}}));
    add("degenerate_no_area", Open | Degenerate,
        FromPolygons(flat({{0, 0}, {1, 0}, {2, 0}, {1, 1}}), {{0, 1, 2}, {0, 2, 3}}));
    add("degenerate_duplicate", Open | Degenerate | NonManifold,
        FromPolygons(square, {{0, 1, 2}, {0, 2, 3}, {1, 2, 0}}));
    add("coincident", Open,
        FromPolygons(flat({{0, 0}, {1, 0}, {0, 1}, {1, 0}, {1, 1}, {0, 1}}),
                     {{0, 1, 2}, {3, 4, 5}}));
    add("bridged_hole", Open | Degenerate,
        FromPolygons(flat({{-3, -3}, {3, -3}, {3, 3}, {-3, 3}, {-1, -1}, {-1, 1}, {1, 1}, {1, -1}}),
                     {{0, 1, 2, 3, 0, 4, 5, 6, 7, 4}}));

    add("isolated_grid", Open, WithIsolated(Grid(2, 2)));
    add("isolated_only", 0, FromPolygons({{1, 2, 3}, {4, 5, 6}}, {}));
    add("empty", 0, PolyMesh());
    return shapes;
}

}  // namespace

const std::vector<Shape>& AllShapes() {
    static const std::vector<Shape> shapes = MakeShapes();
    return shapes;
}

std::vector<Shape> ShapesWithFaces(unsigned without) {
    std::vector<Shape> fitting = AllShapes();
    std::erase_if(fitting, [&](const Shape& shape) {
        return shape.mesh.NumPolygons() == 0 || (shape.tags & without);
    });
    return fitting;
}

bool SameBits(const PolyMesh& a, const PolyMesh& b) {
    return VantrelSDK::SameBits(a.positions, b.positions) &&
           VantrelSDK::SameBits(a.colours, b.colours) && VantrelSDK::SameBits(a.uvs, b.uvs) &&
           a.polygonStart == b.polygonStart && a.cornerVerts == b.cornerVerts &&
           a.cornerUVs == b.cornerUVs && a.statements == b.statements;
}

}  // namespace VantrelSDK::shapes
