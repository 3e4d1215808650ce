#include "tests/shapes/Shapes.h"

#include <algorithm>
#include <cstring>

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

    add("triangle", Triangles | Open | Sheet,
        FromPolygons(flat({{0, 0}, {1, 0}, {0, 1}}), {{0, 1, 2}}));
    add("quad", Quads | Open | Sheet | Symmetric, FromPolygons(square, {{0, 1, 2, 3}}));
    add("polygon_8", Ngons | Open | Sheet | Symmetric, Polygon(8));
    add("concave_l", Ngons | Open | Sheet,
        FromPolygons(flat({{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}), {{0, 1, 2, 3, 4, 5}}));
    add("grid_quads", Quads | Open | Sheet | Symmetric, Grid(6, 4));
    add("grid_triangles", Triangles | Open | Sheet | Symmetric, Grid(5, 5, true));
    add("fan_12", Triangles | Open | Sheet | Symmetric, Fan(12));

    add("tetrahedron", Triangles | Closed,
        FromPolygons({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                     {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {0, 3, 2}}));
    add("cube", Quads | Closed | Seams | Symmetric, Cube());
    add("octahedron", Triangles | Closed | Symmetric, Sphere(0));
    add("sphere", Triangles | Closed | Symmetric, Sphere(3));
    add("torus", Quads | Closed | Seams | Symmetric, Torus(12, 8));
    add("prism_7", Ngons | Closed, Prism(7));
    add("prism_16", Ngons | Closed | Symmetric, Prism(16));
    add("two_parts", Triangles | Closed,
        FromPolygons({{0, 0, 0},
                      {1, 0, 0},
                      {0, 1, 0},
                      {0, 0, 1},
                      {3, 0, 0},
                      {4, 0, 0},
                      {3, 1, 0},
                      {3, 0, 1}},
                     {{0, 2, 1},
                      {0, 1, 3},
                      {1, 2, 3},
                      {0, 3, 2},
                      {4, 6, 5},
                      {4, 5, 7},
                      {5, 6, 7},
                      {4, 7, 6}}));

    add("nonmanifold_edge_3", Quads | Open | NonManifold | Symmetric,
        FromPolygons({{0, 0, 0},
                      {0, 1, 0},
                      {1, 0, 0},
                      {1, 1, 0},
                      {-1, 0, 0},
                      {-1, 1, 0},
                      {0, 0, 1},
                      {0, 1, 1}},
                     {{0, 2, 3, 1}, {0, 1, 5, 4}, {0, 6, 7, 1}}));
    add("nonmanifold_bow_tie", Triangles | Open | Sheet | NonManifold | Symmetric,
        FromPolygons(flat({{0, 0}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}}), {{0, 1, 2}, {0, 3, 4}}));
    add("nonmanifold_winding", Triangles | Open | Sheet | NonManifold | Symmetric,
        FromPolygons(square, {{0, 1, 2}, {0, 3, 2}}));
    add("nonmanifold_moebius", Quads | Open | NonManifold, Moebius(12));

    add("degenerate_repeated_vertex", Open | Sheet | Degenerate | Symmetric,
        FromPolygons(square, {{0, 1, 2}, {0, 2, 2, 3}}));
    add("degenerate_point", Triangles | Sheet | Open | Degenerate | Symmetric | Isolated,
        FromPolygons(square, {{1, 1, 1}, {0, 1, 2}}));
    add("degenerate_no_area", Triangles | Open | Sheet | Degenerate,
        FromPolygons(flat({{0, 0}, {1, 0}, {2, 0}, {1, 1}}), {{0, 1, 2}, {0, 2, 3}}));
    add("degenerate_duplicate", Triangles | Open | Sheet | Degenerate | NonManifold | Symmetric,
        FromPolygons(square, {{0, 1, 2}, {0, 2, 3}, {1, 2, 0}}));
    add("coincident", Triangles | Open | Sheet,
        FromPolygons(flat({{0, 0}, {1, 0}, {0, 1}, {1, 0}, {1, 1}, {0, 1}}),
                     {{0, 1, 2}, {3, 4, 5}}));
    add("bridged_hole", Ngons | Open | Sheet | Degenerate | Symmetric,
        FromPolygons(flat({{-3, -3}, {3, -3}, {3, 3}, {-3, 3}, {-1, -1}, {-1, 1}, {1, 1}, {1, -1}}),
                     {{0, 1, 2, 3, 0, 4, 5, 6, 7, 4}}));

    add("isolated_grid", Quads | Open | Isolated | Symmetric, WithIsolated(Grid(2, 2)));
    add("isolated_only", Isolated, FromPolygons({{1, 2, 3}, {4, 5, 6}}, {}));
    add("empty", 0, PolyMesh());
    return shapes;
}

template <class T>
bool SameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

}  // namespace

const std::vector<Shape>& AllShapes() {
    static const std::vector<Shape> shapes = MakeShapes();
    return shapes;
}

std::vector<Shape> ShapesWith(unsigned tags) {
    std::vector<Shape> fitting;
    for (const Shape& shape : AllShapes()) {
        if ((shape.tags & tags) == tags) fitting.push_back(shape);
    }
    return fitting;
}

bool SameBits(const PolyMesh& a, const PolyMesh& b) {
    return SameBytes(a.positions, b.positions) && SameBytes(a.colours, b.colours) &&
           SameBytes(a.uvs, b.uvs) && a.polygonStart == b.polygonStart &&
           a.cornerVerts == b.cornerVerts && a.cornerUVs == b.cornerUVs &&
           a.statements == b.statements;
}

}  // namespace VantrelSDK::shapes
