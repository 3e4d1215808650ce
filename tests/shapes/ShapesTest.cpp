#include "tests/shapes/Shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

using namespace VantrelSDK;
using namespace VantrelSDK::shapes;

namespace {

using Edge = std::pair<int, int>;

std::vector<std::vector<int>> Polygons(const PolyMesh& mesh) {
    std::vector<std::vector<int>> polygons;
    for (int p = 0; p < mesh.NumPolygons(); ++p) {
        polygons.emplace_back(mesh.cornerVerts.begin() + mesh.polygonStart[p],
                              mesh.cornerVerts.begin() + mesh.polygonStart[p + 1]);
    }
    return polygons;
}

bool HasArea(const PolyMesh& mesh, const std::vector<int>& polygon) {
    LPoint3 sum;
    for (size_t i = 0; i < polygon.size(); ++i) {
        sum += (mesh.positions[polygon[i]] ^ mesh.positions[polygon[(i + 1) % polygon.size()]]);
    }
    return sum.Len() > 1e-6f;
}

/// The number of pieces into which the polygons at a vertex fall, joined over the edges at it.
size_t PiecesAt(int vert, const std::vector<std::vector<int>>& polygons) {
    std::vector<std::set<int>> pieces;
    for (const auto& polygon : polygons) {
        const auto at = std::find(polygon.begin(), polygon.end(), vert);
        if (at == polygon.end()) continue;
        const size_t i = at - polygon.begin(), n = polygon.size();
        std::set<int> joined = {polygon[(i + 1) % n], polygon[(i + n - 1) % n]};
        for (auto piece = pieces.begin(); piece != pieces.end();) {
            const bool touches = std::any_of(piece->begin(), piece->end(),
                                             [&](int v) { return joined.contains(v); });
            if (touches) joined.merge(*piece);
            piece = touches ? pieces.erase(piece) : piece + 1;
        }
        pieces.push_back(joined);
    }
    return pieces.size();
}

/// The tags that a mesh really has.
unsigned TagsOf(const PolyMesh& mesh) {
    const auto polygons = Polygons(mesh);
    unsigned tags = 0;
    const auto tag = [&](Tag t, bool holds) { tags |= holds * t; };
    const auto all = [&](auto test) {
        return !polygons.empty() && std::all_of(polygons.begin(), polygons.end(), test);
    };
    std::map<Edge, int> directed, edges;
    std::set<std::set<int>> faces;
    std::map<int, std::set<int>> uvsOf;
    std::set<int> used(mesh.cornerVerts.begin(), mesh.cornerVerts.end());
    bool degenerate = false, clash = false, bowTie = false;
    for (const auto& polygon : polygons) {
        const std::set<int> corners(polygon.begin(), polygon.end());
        degenerate |= corners.size() < polygon.size() || !HasArea(mesh, polygon);
        degenerate |= !faces.insert(corners).second;
        for (size_t i = 0; i < polygon.size(); ++i) {
            const int a = polygon[i], b = polygon[(i + 1) % polygon.size()];
            if (a == b) continue;
            ++directed[{a, b}];
            ++edges[std::minmax(a, b)];
        }
    }
    for (const auto& [edge, count] : directed) clash |= count > 1;
    for (const int v : used) bowTie |= !degenerate && PiecesAt(v, polygons) > 1;
    for (size_t c = 0; c < mesh.cornerUVs.size(); ++c) {
        uvsOf[mesh.cornerVerts[c]].insert(mesh.cornerUVs[c]);
    }
    const auto anyEdge = [&](auto test) {
        return std::any_of(edges.begin(), edges.end(), [&](auto& e) { return test(e.second); });
    };
    std::set<std::array<float, 3>> points;
    for (const LPoint3& p : mesh.positions) points.insert({p.x, p.y, p.z});
    const bool paired = std::all_of(points.begin(), points.end(), [&](auto& p) {
        return points.contains({-p[0], p[1], p[2]});
    });

    tag(Quads, all([](auto& p) { return p.size() == 4; }));
    tag(Triangles, all([](auto& p) { return p.size() == 3; }));
    tag(Ngons, !all([](auto& p) { return p.size() <= 4; }) && !polygons.empty());
    tag(Open, anyEdge([](int n) { return n == 1; }));
    tag(Closed, !edges.empty() && !anyEdge([](int n) { return n != 2; }));
    tag(NonManifold, anyEdge([](int n) { return n > 2; }) || clash || bowTie);
    tag(Seams,
        std::any_of(uvsOf.begin(), uvsOf.end(), [](auto& v) { return v.second.size() > 1; }));
    tag(Isolated, used.size() < mesh.positions.size());
    tag(Degenerate, degenerate);
    tag(Sheet, !polygons.empty() && std::all_of(mesh.positions.begin(), mesh.positions.end(),
                                                [](auto& p) { return p.z == 0; }));
    tag(Symmetric, !polygons.empty() && paired);
    return tags;
}

TEST(Shapes, HaveTheFeaturesTheyAreTaggedWith) {
    for (const Shape& shape : AllShapes()) EXPECT_EQ(TagsOf(shape.mesh), shape.tags) << shape.name;
}

TEST(Shapes, EveryTagHasAShape) {
    for (unsigned tag = Quads; tag <= Symmetric; tag <<= 1) {
        EXPECT_FALSE(ShapesWith(tag).empty()) << tag;
    }
}

// The signed volume, from the divergence theorem.
TEST(Shapes, ClosedOnesAreWoundOutward) {
    for (const Shape& shape : ShapesWith(Closed)) {
        float volume = 0;
        for (const auto& polygon : Polygons(shape.mesh)) {
            for (size_t i = 2; i < polygon.size(); ++i) {
                const auto& p = shape.mesh.positions;
                volume += p[polygon[0]] % (p[polygon[i - 1]] ^ p[polygon[i]]);
            }
        }
        EXPECT_GT(volume, 0) << shape.name;
    }
}

}  // namespace
