#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/LEdgeList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/Triangulation.h"
#include "core/mesh/int_array.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

using Rows = std::vector<std::vector<int>>;

bool Holds(const std::vector<int>& list, int value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

struct Input {
    std::vector<LFace> faces;
    int nverts = 0;
    std::vector<char> include, exclude;

    ElementMasks Masks() const { return {include, exclude}; }
    bool Pass(size_t i) const {
        return (i >= include.size() || include[i]) && (i >= exclude.size() || !exclude[i]);
    }
};

/// All tables of a mesh by name, as plain lists.
using Tables = std::map<std::string, Rows>;

/// By searching lists, straight from the rules and as slow as that is.
Tables ByRules(const Input& in) {
    const int nverts = in.nverts, nfaces = int(in.faces.size());
    const auto inRange = [&](int v) { return v >= 0 && v < nverts; };
    const auto end = [&](int f, int k) { return in.faces[f].v[k % 3]; };
    Tables t;

    Rows& faces = t["faces of vertices"];
    faces.resize(nverts);
    for (int f = 0; f < nfaces; ++f)
        for (const int v : in.faces[f].v)
            if (inRange(v) && !Holds(faces[v], f)) faces[v].push_back(f);
    const auto shared = [&](int a, int b) {
        std::vector<int> both;
        if (inRange(a) && inRange(b))
            for (const int f : faces[a])
                if (Holds(faces[b], f)) both.push_back(f);
        return both;
    };

    Rows& across = t["neighbours of faces"];
    across.resize(nfaces, {0, 0, 0, 0, 0, 0});
    for (int f = 0; f < nfaces; ++f)
        for (int k = 0; k < 3 && in.Pass(f); ++k)
            for (const int g : shared(end(f, k), end(f, k + 1)))
                if (g != f && !across[f][3 + k]) across[f][k] = g, across[f][3 + k] = 1;

    Rows& verts = t["neighbours of vertices"];
    verts.resize(nverts);
    for (size_t v = 0; v < verts.size(); ++v) {
        if (v < in.include.size() && !in.include[v]) continue;
        if (v < in.exclude.size() && in.exclude[v] == 1) continue;
        for (const int f : faces[v])
            for (const int other : in.faces[f].v)
                if (other != int(v) && inRange(other) && !Holds(verts[v], other))
                    verts[v].push_back(other);
    }

    Rows &edges = t["edges"], &ofFaces = t["edges of faces"];
    const auto sameEnds = [](const std::vector<int>& e, int a, int b) {
        return (e[0] == a && e[1] == b) || (e[0] == b && e[1] == a);
    };
    for (int f = 0; f < nfaces; ++f) {
        std::vector<int> own;
        for (int k = 0; k < 3; ++k) {
            int found = -1;
            if (across[f][3 + k] && across[f][k] < f)
                for (const int e : ofFaces[across[f][k]])
                    if (found < 0 && sameEnds(edges[e], end(f, k), end(f, k + 1))) found = e;
            if (found < 0) {
                found = int(edges.size());
                edges.push_back({end(f, k), end(f, k + 1)});
            }
            own.push_back(found);
        }
        ofFaces.push_back(own);
    }

    t["open vertices"].resize(1, std::vector<int>(nverts));
    for (const std::vector<int>& edge : edges) {
        const std::vector<int> both = shared(edge[0], edge[1]);
        const bool open = both.size() < 2;
        int visible = 0;
        for (int k = 2; k >= 0 && !both.empty(); --k)
            if (end(both[0], k) == edge[0]) visible = in.faces[both[0]].IsEdgeVisible(k);
        t["open and visible edges"].push_back({open, visible});
        for (const int v : edge)
            if (open && inRange(v)) t["open vertices"][0][v] = 1;
    }

    // An edge as its ends, faces, number and flags, in the bucket of its lower end.
    std::vector<Rows> buckets(nverts);
    for (int f = 0; f < nfaces; ++f)
        for (int k = 0; k < 3 && in.Pass(f); ++k) {
            const int a = end(f, k), b = end(f, k + 1);
            if (!inRange(a) || !inRange(b)) continue;
            const int flags = in.faces[f].IsEdgeVisible(k) | in.faces[f].IsEdgeGluing(k) << 1;
            Rows& bucket = buckets[std::min(a, b)];
            const auto partner = std::find_if(bucket.begin(), bucket.end(), [&](const auto& e) {
                return !(e[5] & 8) && sameEnds(e, a, b);
            });
            if (partner == bucket.end())
                bucket.push_back({a, b, f, -1, 0, flags});
            else
                (*partner)[3] = f, (*partner)[5] |= flags | 8;
        }
    Rows& flagged = t["flagged edges"];
    for (const Rows& bucket : buckets)
        for (const std::vector<int>& edge : bucket) {
            flagged.push_back(edge);
            flagged.back()[4] = int(flagged.size()) - 1;
        }
    for (int f = 0; f < nfaces; ++f) {
        std::vector<int> own(3, -1);
        for (int k = 0; k < 3; ++k)
            for (const auto& edge : flagged)
                if (own[k] < 0 && sameEnds(edge, end(f, k), end(f, k + 1))) own[k] = edge[4];
        t["flagged edges of faces"].push_back(own);
    }
    return t;
}

Tables ByCore(const Input& in) {
    Tables t;
    const auto row = [](const auto& list) { return std::vector<int>(list.begin(), list.end()); };
    const LAdjFaceList2 adj(in.faces, in.nverts, in.Masks());
    const LAdjVertList verts(adj, in.faces, in.Masks());
    const LEdgeVisList vis(in.faces, in.nverts, in.Masks());
    const LEdgeOpenList open(in.faces, adj, in.Masks());
    const LVertOpenList openVerts(in.nverts, open);
    const LEdgeListFlagged flagged(in.faces, in.nverts, in.Masks());
    for (int v = 0; v < in.nverts; ++v) {
        t["faces of vertices"].push_back(row(adj.GetAdjFacesForVert(v)));
        t["neighbours of vertices"].push_back(row(verts.GetAdjVertsForVert(v)));
    }
    t["open vertices"].push_back(row(openVerts.flags()));
    for (int f = 0; f < int(in.faces.size()); ++f) {
        const auto& [faces, has] = *adj.GetAdjFacesForFace(f);
        t["neighbours of faces"].push_back({faces[0], faces[1], faces[2], has[0], has[1], has[2]});
        t["edges of faces"].push_back(row(vis.GetFace(f)));
        t["flagged edges of faces"].push_back(row(flagged.GetFace(f)));
    }
    for (int e = 0; e < vis.GetNumEdges(); ++e) {
        t["edges"].push_back({vis.GetEdge(e).v[0], vis.GetEdge(e).v[1]});
        t["open and visible edges"].push_back({open.IsEdgeOpen(e), vis.IsEdgeVisible(e)});
    }
    for (const auto& e : flagged.edges())
        t["flagged edges"].push_back({e.v[0], e.v[1], e.faces[0], e.faces[1], e.index, e.flags});
    return t;
}

/// The names of the tables that differ.
std::string Difference(const Input& in) {
    Tables core = ByCore(in);
    std::string names;
    for (const auto& [name, rows] : ByRules(in))
        if (core[name] != rows) names += name + "; ";
    return names;
}

int UpTo(int n) {
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, n + 1));
}

/// Few vertices and many faces: duplicates, faces that repeat a vertex, edges of many faces, and
/// now and then a corner out of range.
Input Soup() {
    Input in;
    in.nverts = 1 + UpTo(9);
    in.faces.resize(UpTo(30));
    for (LFace& face : in.faces) {
        for (int& v : face.v) v = UpTo(40) == 0 ? (UpTo(1) ? -1 : in.nverts) : UpTo(in.nverts - 1);
        face.flags = uint8_t(UpTo(63));
    }
    for (std::vector<char>* mask : {&in.include, &in.exclude})
        if (UpTo(1)) {
            mask->resize(UpTo(35));
            for (char& byte : *mask) byte = char(UpTo(2));
        }
    return in;
}

/// Faces that share the edge 0-1 after as many that hold either end alone: whoever searches one
/// end's list for every edge takes forever.
PolyMesh Book(int pages) {
    PolyMesh mesh;
    mesh.positions.resize(2 + size_t(pages));
    for (int i = 0; i + 1 < pages; ++i) shapes::AddPolygon(mesh, std::array{i % 2, 2 + i, 3 + i});
    for (int i = 0; i < pages; ++i) shapes::AddPolygon(mesh, std::array{i % 2, 1 - i % 2, 2 + i});
    return mesh;
}

}  // namespace

RC_GTEST_PROP(Adjacency, TablesOfTriangleSoupsFollowTheRules, ()) {
    RC_ASSERT(Difference(Soup()) == "");
}

TEST(Adjacency, TablesOfOrderlyMeshesFollowTheRules) {
    for (const PolyMesh& polygons : {shapes::Grid(7, 5), shapes::Sphere(1), Book(20)}) {
        const LMesh mesh = Triangulate(polygons);
        EXPECT_EQ(Difference({mesh.Topology()->Faces(), mesh.GetNumVerts(), {}, {}}), "");
    }
    EXPECT_EQ(Difference({}), "");
    EXPECT_EQ(Difference({{}, 3, {}, {}}), "");
    const std::vector<LFace> face = {{{0, 1, 2}}};
    EXPECT_EQ(LEdgeList(face, 0).GetNumEdges() + LEdgeListFlagged(face, 0).GetNumEdges(), 0);
}

TEST(Adjacency, TakesNoMoreThanItsEntriesAndHasEmptyAnswersOutOfRange) {
    const LMesh mesh = Triangulate(shapes::Grid(50, 40));
    const std::vector<LFace>& faces = mesh.Topology()->Faces();
    const LAdjFaceList2 adj(faces, mesh.GetNumVerts());
    const LAdjVertList verts(adj, faces);
    const LEdgeOpenList edges(faces, adj);
    const size_t offsets = 4 * (size_t(mesh.GetNumVerts()) + 1);
    EXPECT_EQ(LAdjFaceList(faces, mesh.GetNumVerts()).MemoryUsed(), offsets + 12 * faces.size());
    EXPECT_EQ(verts.MemoryUsed(), offsets + 4 * 2 * edges.edges().size());
    EXPECT_EQ(edges.edges().capacity(), edges.edges().size());
    for (const int i : {-1, 10000, INT32_MIN, INT32_MAX}) {
        EXPECT_TRUE(adj.GetAdjFacesForVert(i).empty());
        EXPECT_EQ(adj.GetAdjFacesForFace(i), nullptr);
        EXPECT_TRUE(verts.GetAdjVertsForVert(i).empty());
        EXPECT_EQ(edges.GetEdge(i).v[0], -1);
        EXPECT_EQ(edges.GetFace(i)[0], -1);
        EXPECT_FALSE(edges.IsEdgeOpen(i));
    }
    EXPECT_EQ(LAdjFaceList(faces, -5).nverts(), 0);
    EXPECT_EQ(LAdjVertList(adj, {}).nverts(), 0);  // a table of other faces
    EXPECT_EQ(LEdgeList(std::vector<LFace>(), adj).GetNumEdges(), 0);
}

// Each would run for hours if any table searched a list whose length the mesh decides.
TEST(Adjacency, LargeFansAndBooksTakeLinearTime) {
    for (const PolyMesh& polygons : {shapes::Fan(300000), Book(300000)}) {
        const LMesh mesh = Triangulate(polygons);
        const std::vector<LFace>& faces = mesh.Topology()->Faces();
        const LAdjFaceList2 adj(faces, mesh.GetNumVerts());
        const LAdjVertList verts(adj, faces);
        const LEdgeOpenList open(faces, adj);
        const LEdgeVisList visible(faces, adj);
        const LEdgeListFlagged flagged(faces, mesh.GetNumVerts());
        EXPECT_GE(verts.GetAdjVertsForVert(0).size(), 300000u);
        EXPECT_GE(flagged.GetNumEdges(), open.GetNumEdges());
    }
    std::vector<LQuad> quads(100000);
    for (int q = 0; q < 100000; ++q) quads[q].v[1] = 1, quads[q].v[2] = 2 + q, quads[q].v[3] = q;
    const LQuadMesh mesh(std::vector<LPoint3>(100002, LPoint3(1, 2, 3)), quads);
    EXPECT_EQ(LAdjQuadList(mesh, false).GetAdjQuadsForVert(0).size(), 100000u);
    EXPECT_EQ(LAdjQuadList(mesh, true).GetAdjQuadsForVert(0).size(), 1u);
}

RC_GTEST_PROP(LAdjQuadList, ListsEachCornersQuadsWithoutDoubles, ()) {
    std::vector<LPoint3> verts(8);
    for (LPoint3& p : verts) p.x = float(UpTo(5)) - 2, p.y = UpTo(9) ? 0 : NAN;
    verts[1].x = -0.0f;
    std::vector<LQuad> quads(UpTo(25));
    for (LQuad& quad : quads)
        for (int& v : quad.v) v = UpTo(30) ? UpTo(7) : 8;
    const LQuadMesh mesh(verts, quads);

    const auto sameCorner = [&](int a, int b) {
        return a == b || (a < 8 && b < 8 && verts[a] == verts[b]);
    };
    const auto within = [&](const LQuad& a, const LQuad& b) {
        return std::all_of(a.v, a.v + 4, [&](int v) {
            return std::any_of(b.v, b.v + 4, [&](int w) { return sameCorner(v, w); });
        });
    };
    for (const bool dedupe : {false, true}) {
        const LAdjQuadList list(mesh, dedupe);
        for (int v = 0; v < 8; ++v) {
            std::vector<int> expected;
            for (int q = 0; q < int(quads.size()); ++q) {
                const bool listed = std::any_of(expected.begin(), expected.end(), [&](int p) {
                    return within(quads[p], quads[q]) && within(quads[q], quads[p]);
                });
                if (std::find(quads[q].v, quads[q].v + 4, v) != quads[q].v + 4 &&
                    !(dedupe && listed))
                    expected.push_back(q);
            }
            const auto row = list.GetAdjQuadsForVert(v);
            RC_ASSERT(std::vector<int>(row.begin(), row.end()) == expected);
        }
    }
}

TEST(int_array, GrowsByItsStepAndCopies) {
    int_array a(6), b;
    EXPECT_EQ(a.data(), nullptr);
    for (int i = 0; i < 13; ++i) ASSERT_TRUE(a.push_back(i * i));
    EXPECT_EQ(a.size(), 13u);
    EXPECT_EQ(a.capacity(), 18u);
    b = a;
    a.clear();
    EXPECT_EQ(a.capacity(), 0u);
    EXPECT_EQ(a.at(3), 0);
    b = b;
    const int_array c(std::move(b));
    EXPECT_EQ(c.at(12), 144);
    EXPECT_EQ(c.at(13), 0);
}
