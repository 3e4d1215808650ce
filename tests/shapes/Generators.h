#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <map>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "core/io/PolyMesh.h"

/// Meshes built in code, of any size. Polygons are wound outward, or towards +Z in a flat mesh.
namespace VantrelSDK::shapes {

inline void AddPolygon(PolyMesh& mesh, std::span<const int> verts, std::span<const int> uvs = {}) {
    mesh.cornerVerts.insert(mesh.cornerVerts.end(), verts.begin(), verts.end());
    mesh.cornerUVs.insert(mesh.cornerUVs.end(), uvs.begin(), uvs.end());
    mesh.polygonStart.push_back(static_cast<int>(mesh.cornerVerts.size()));
}

/// Without UVs, from lists of corners.
inline PolyMesh FromPolygons(std::vector<LPoint3> positions,
                             std::initializer_list<std::vector<int>> polygons) {
    PolyMesh mesh;
    mesh.positions = std::move(positions);
    for (const auto& polygon : polygons) AddPolygon(mesh, polygon);
    return mesh;
}

/// Point i of n on the unit circle, exactly mirrored in x and y where n is a multiple of 4.
inline LPoint2 OnCircle(int i, int n) {
    i = (i % n + n) % n;
    if (2 * i > n) return {OnCircle(n - i, n).x, -OnCircle(n - i, n).y};
    if (4 * i == n) return {0, 1};
    if (4 * i > n && n % 2 == 0) return {-OnCircle(n / 2 - i, n).x, OnCircle(n / 2 - i, n).y};
    const double angle = 2 * std::numbers::pi * i / n;
    return {static_cast<float>(std::cos(angle)), static_cast<float>(i ? std::sin(angle) : 0)};
}

/// A sheet of nx * ny squares, as quads or as pairs of triangles, in z = 0 and centred; one UV a
/// vertex. (nx + 1) * (ny + 1) vertices, row by row.
inline PolyMesh Grid(int nx, int ny, bool triangles = false, float size = 1) {
    PolyMesh mesh;
    mesh.positions.reserve((nx + 1) * (ny + 1));
    mesh.uvs.reserve((nx + 1) * (ny + 1));
    for (int y = 0; y <= ny; ++y) {
        for (int x = 0; x <= nx; ++x) {
            const auto at = [&](int i, int n) {
                return size * static_cast<float>(2 * i - n) / static_cast<float>(2 * n);
            };
            mesh.positions.emplace_back(at(x, nx), at(y, ny), 0.0f);
            mesh.uvs.emplace_back(static_cast<float>(x) / static_cast<float>(nx),
                                  static_cast<float>(y) / static_cast<float>(ny));
        }
    }
    for (int y = 0; y < ny; ++y) {
        for (int x = 0; x < nx; ++x) {
            const int a = y * (nx + 1) + x, b = a + 1, d = a + nx + 1, c = d + 1;
            if (triangles) {
                AddPolygon(mesh, std::array{a, b, c}, std::array{a, b, c});
                AddPolygon(mesh, std::array{a, c, d}, std::array{a, c, d});
            } else {
                AddPolygon(mesh, std::array{a, b, c, d}, std::array{a, b, c, d});
            }
        }
    }
    return mesh;
}

/// From -1 to 1, quads; each side has a UV square of its own.
inline PolyMesh Cube() {
    PolyMesh mesh;
    for (int i = 0; i < 8; ++i) {
        mesh.positions.emplace_back(i & 1 ? 1.f : -1.f, i & 2 ? 1.f : -1.f, i & 4 ? 1.f : -1.f);
    }
    mesh.uvs = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const auto& side :
         {std::array{4, 5, 7, 6}, std::array{1, 0, 2, 3}, std::array{5, 1, 3, 7},
          std::array{0, 4, 6, 2}, std::array{6, 7, 3, 2}, std::array{0, 1, 5, 4}}) {
        AddPolygon(mesh, side, std::array{0, 1, 2, 3});
    }
    return mesh;
}

/// A closed surface of rings x sides quads around the Y axis, with UVs and their two seams.
inline PolyMesh Torus(int rings, int sides, float radius = 1, float thickness = 0.4f) {
    PolyMesh mesh;
    for (int r = 0; r < rings; ++r) {
        for (int s = 0; s < sides; ++s) {
            const LPoint2 around = OnCircle(r, rings), across = OnCircle(s, sides);
            const float out = radius + thickness * across.x;
            mesh.positions.emplace_back(out * around.x, thickness * across.y, -out * around.y);
        }
    }
    for (int r = 0; r <= rings; ++r) {
        for (int s = 0; s <= sides; ++s) {
            mesh.uvs.emplace_back(static_cast<float>(r) / static_cast<float>(rings),
                                  static_cast<float>(s) / static_cast<float>(sides));
        }
    }
    for (int r = 0; r < rings; ++r) {
        for (int s = 0; s < sides; ++s) {
            const int r1 = (r + 1) % rings, s1 = (s + 1) % sides, t = r * (sides + 1) + s;
            AddPolygon(mesh,
                       std::array{r * sides + s, r1 * sides + s, r1 * sides + s1, r * sides + s1},
                       std::array{t, t + sides + 1, t + sides + 2, t + 1});
        }
    }
    return mesh;
}

/// The octahedron, each triangle parted in four `level` times: 8 * 4^level triangles on the unit
/// sphere, exactly symmetric in x, y and z.
inline PolyMesh Sphere(int level) {
    PolyMesh mesh = FromPolygons(
        {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}},
        {{0, 2, 4}, {2, 1, 4}, {1, 3, 4}, {3, 0, 4}, {2, 0, 5}, {1, 2, 5}, {3, 1, 5}, {0, 3, 5}});
    for (; level > 0; --level) {
        PolyMesh finer;
        finer.positions = std::move(mesh.positions);
        std::map<std::pair<int, int>, int> middles;
        const auto middle = [&](int a, int b) {
            const auto [at, added] =
                middles.try_emplace(std::minmax(a, b), static_cast<int>(finer.positions.size()));
            if (added) {
                finer.positions.push_back(Normalized(finer.positions[a] + finer.positions[b]));
            }
            return at->second;
        };
        for (size_t i = 0; i < mesh.cornerVerts.size(); i += 3) {
            const int* v = &mesh.cornerVerts[i];
            const int ab = middle(v[0], v[1]), bc = middle(v[1], v[2]), ca = middle(v[2], v[0]);
            AddPolygon(finer, std::array{v[0], ab, ca});
            AddPolygon(finer, std::array{v[1], bc, ab});
            AddPolygon(finer, std::array{v[2], ca, bc});
            AddPolygon(finer, std::array{ab, bc, ca});
        }
        mesh = std::move(finer);
    }
    return mesh;
}

/// n triangles around vertex 0, closed to a disc in z = 0.
inline PolyMesh Fan(int n) {
    PolyMesh mesh;
    mesh.positions.emplace_back();
    for (int i = 0; i < n; ++i) {
        const LPoint2 p = OnCircle(i, n);
        mesh.positions.emplace_back(p.x, p.y, 0.0f);
        AddPolygon(mesh, std::array{0, i + 1, (i + 1) % n + 1});
    }
    return mesh;
}

/// One polygon of n corners in z = 0.
inline PolyMesh Polygon(int n) {
    PolyMesh mesh;
    std::vector<int> corners(n);
    for (int i = 0; i < n; ++i) {
        const LPoint2 p = OnCircle(i, n);
        mesh.positions.emplace_back(p.x, p.y, 0.0f);
        corners[i] = i;
    }
    AddPolygon(mesh, corners);
    return mesh;
}

}  // namespace VantrelSDK::shapes
