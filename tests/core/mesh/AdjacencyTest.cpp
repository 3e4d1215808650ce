#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/LEdgeList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/int_array.h"
#include "tests/core/mesh/TestMeshes.h"

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

/// All tables of a mesh as plain lists, to be compared one with another.
struct Tables {
    Rows faces, verts, neighbours, edges, faceEdges, flagged, flaggedFaces;
    std::vector<int> visible, open, openVerts;
};

/// By searching lists, straight from the rules and as slow as that is.
Tables ByRules(const Input& in) {
    const int nverts = in.nverts, nfaces = int(in.faces.size());
    Tables t;
    const auto around = [&](int v) {
        return v >= 0 && v < nverts ? t.faces[v] : std::vector<int>();
    };

    t.faces.resize(nfaces ? nverts : 0);
    for (int f = 0; f < nfaces; ++f)
        for (const int v : in.faces[f].v)
            if (v >= 0 && v < nverts && !Holds(t.faces[v], f)) t.faces[v].push_back(f);

    t.neighbours.resize(nfaces, {0, 0, 0, 0, 0, 0});
    for (int f = 0; f < nfaces; ++f)
        for (int k = 0; k < 3 && in.Pass(f); ++k)
            for (const int g : around(in.faces[f].v[k]))
                if (g != f && Holds(around(in.faces[f].v[(k + 1) % 3]), g)) {
                    t.neighbours[f][k] = g;
                    t.neighbours[f][3 + k] = 1;
                    break;
                }

    t.verts.resize(t.faces.size());
    for (int v = 0; v < int(t.faces.size()); ++v) {
        const size_t i = size_t(v);
        if ((i < in.include.size() && !in.include[i]) ||
            (i < in.exclude.size() && in.exclude[i] == 1))
            continue;
        for (const int f : t.faces[v])
            for (const int other : in.faces[f].v)
                if (other != v && other >= 0 && other < nverts && !Holds(t.verts[v], other))
                    t.verts[v].push_back(other);
    }

    std::vector<char> visited(nfaces);
    for (int f = 0; f < nfaces; ++f) {
        t.faceEdges.push_back({});
        for (int k = 0; k < 3; ++k) {
            const int a = in.faces[f].v[k], b = in.faces[f].v[(k + 1) % 3];
            int found = -1;
            if (t.neighbours[f][3 + k] && visited[t.neighbours[f][k]])
                for (const int e : t.faceEdges[t.neighbours[f][k]])
                    if (found < 0 &&
                        (t.edges[e] == std::vector{a, b} || t.edges[e] == std::vector{b, a}))
                        found = e;
            if (found < 0) {
                found = int(t.edges.size());
                t.edges.push_back({a, b});
            }
            t.faceEdges[f].push_back(found);
        }
        visited[f] = 1;
    }

    t.openVerts.resize(nverts);
    for (const std::vector<int>& edge : t.edges) {
        std::vector<int> shared;
        for (const int f : around(edge[0]))
            if (Holds(around(edge[1]), f)) shared.push_back(f);
        t.open.push_back(shared.size() < 2);
        for (const int v : edge)
            if (t.open.back() && v >= 0 && v < nverts) t.openVerts[v] = 1;
        int visible = 0;
        for (int k = 2; k >= 0 && !shared.empty(); --k)
            if (in.faces[shared[0]].v[k] == edge[0]) visible = in.faces[shared[0]].flags >> k & 1;
        t.visible.push_back(visible);
    }

    // An edge as its ends, faces, number and flags, in the bucket of its lower end.
    std::vector<Rows> buckets(nverts);
    const auto match = [](const std::vector<int>& e, int a, int b) {
        return (e[0] == a && e[1] == b) || (e[0] == b && e[1] == a);
    };
    const auto inRange = [&](int a, int b) {
        return std::min(a, b) >= 0 && std::max(a, b) < nverts;
    };
    for (int f = 0; f < nfaces; ++f)
        for (int k = 0; k < 3 && in.Pass(f); ++k) {
            const int a = in.faces[f].v[k], b = in.faces[f].v[(k + 1) % 3];
            if (!inRange(a, b)) continue;
            Rows& bucket = buckets[std::min(a, b)];
            const int flags = in.faces[f].IsEdgeVisible(k) | in.faces[f].IsEdgeGluing(k) << 1;
            const auto partner = std::find_if(bucket.begin(), bucket.end(), [&](const auto& e) {
                return !(e[5] & 8) && match(e, a, b);
            });
            if (partner == bucket.end()) {
                bucket.push_back({a, b, f, -1, 0, flags});
            } else {
                (*partner)[3] = f;
                (*partner)[5] |= flags | 8;
            }
        }
    if (nfaces)
        for (const Rows& bucket : buckets)
            for (std::vector<int> edge : bucket) {
                edge[4] = int(t.flagged.size());
                t.flagged.push_back(edge);
            }
    for (const LFace& face : in.faces) {
        t.flaggedFaces.push_back({});
        for (int k = 0; k < 3; ++k) {
            const int a = face.v[k], b = face.v[(k + 1) % 3];
            const auto first = std::find_if(t.flagged.begin(), t.flagged.end(),
                                            [&](const auto& e) { return match(e, a, b); });
            t.flaggedFaces.back().push_back(first == t.flagged.end() ? -1 : (*first)[4]);
        }
    }
    return t;
}

Tables ByCore(const Input& in) {
    Tables t;
    const LAdjFaceList2 adj(in.faces, in.nverts, in.Masks());
    const LAdjVertList verts(adj, in.faces, in.Masks());
    for (int v = 0; v < adj.nverts(); ++v) {
        const auto faces = adj.GetAdjFacesForVert(v), others = verts.GetAdjVertsForVert(v);
        t.faces.emplace_back(faces.begin(), faces.end());
        t.verts.emplace_back(others.begin(), others.end());
    }
    const LEdgeVisList vis(in.faces, in.nverts, in.Masks());
    const LEdgeOpenList open(in.faces, adj);
    const LEdgeListFlagged flagged(in.faces, in.nverts, in.Masks());
    for (int f = 0; f < int(in.faces.size()); ++f) {
        const auto* across = adj.GetAdjFacesForFace(f);
        t.neighbours.push_back({across->faces[0], across->faces[1], across->faces[2],
                                across->has[0], across->has[1], across->has[2]});
        const auto edges = vis.GetFace(f), flaggedEdges = flagged.GetFace(f);
        t.faceEdges.emplace_back(edges.begin(), edges.end());
        t.flaggedFaces.emplace_back(flaggedEdges.begin(), flaggedEdges.end());
    }
    for (int e = 0; e < vis.GetNumEdges(); ++e) {
        t.edges.push_back({vis.GetEdge(e).v[0], vis.GetEdge(e).v[1]});
        t.visible.push_back(vis.IsEdgeVisible(e));
        t.open.push_back(open.IsEdgeOpen(e));
    }
    for (int e = 0; e < flagged.GetNumEdges(); ++e) {
        const auto edge = flagged.GetEdge(e);
        t.flagged.push_back(
            {edge.v[0], edge.v[1], edge.faces[0], edge.faces[1], edge.index, edge.flags});
    }
    const LVertOpenList openVerts(in.nverts, open);
    for (int v = 0; v < in.nverts; ++v) t.openVerts.push_back(openVerts.IsVertOpen(v));
    return t;
}

/// The name of the first table that differs, or nothing.
std::string Difference(const Input& in) {
    const Tables core = ByCore(in), rules = ByRules(in);
    if (core.faces != rules.faces) return "faces of vertices";
    if (core.verts != rules.verts) return "neighbours of vertices";
    if (core.neighbours != rules.neighbours) return "neighbours of faces";
    if (core.edges != rules.edges) return "edges";
    if (core.faceEdges != rules.faceEdges) return "edges of faces";
    if (core.visible != rules.visible) return "visible edges";
    if (core.open != rules.open) return "open edges";
    if (core.openVerts != rules.openVerts) return "open vertices";
    if (core.flagged != rules.flagged) return "flagged edges";
    if (core.flaggedFaces != rules.flaggedFaces) return "flagged edges of faces";
    return "";
}

/// Few vertices and many faces: duplicates, faces that repeat a vertex, edges of many faces, and
/// now and then a corner out of range.
Input Soup() {
    const auto upTo = [](int n) {
        return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, n + 1));
    };
    Input in;
    in.nverts = 1 + upTo(9);
    in.faces.resize(upTo(30));
    for (LFace& face : in.faces) {
        for (int& v : face.v) v = upTo(40) == 0 ? (upTo(1) ? -1 : in.nverts) : upTo(in.nverts - 1);
        face.flags = uint8_t(upTo(63));
    }
    for (std::vector<char>* mask : {&in.include, &in.exclude})
        if (upTo(1)) {
            mask->resize(upTo(35));
            for (char& byte : *mask) byte = char(upTo(2));
        }
    return in;
}

/// Faces that share the edge 0-1 after as many that hold either end alone: whoever searches one
/// end's list for every edge takes forever.
TestMesh Book(int pages) {
    TestMesh mesh;
    mesh.verts.resize(2 + size_t(pages));
    for (int i = 0; i + 1 < pages; ++i) mesh.faces.push_back(Triangle(i % 2, 2 + i, 3 + i));
    for (int i = 0; i < pages; ++i) mesh.faces.push_back(Triangle(i % 2, 1 - i % 2, 2 + i));
    return mesh;
}

std::vector<int> QuadsAt(const LAdjQuadList& list, int v) {
    const auto quads = list.GetAdjQuadsForVert(v);
    return {quads.begin(), quads.end()};
}

}  // namespace

RC_GTEST_PROP(Adjacency, TablesOfTriangleSoupsFollowTheRules, ()) {
    RC_ASSERT(Difference(Soup()) == "");
}

TEST(Adjacency, TablesOfOrderlyMeshesFollowTheRules) {
    for (const TestMesh& mesh : {Grid(7, 5), Sphere(9, 6), Fan(40), Book(20)})
        EXPECT_EQ(Difference({mesh.faces, mesh.NumVerts(), {}, {}}), "");
    EXPECT_EQ(Difference({}), "");
    EXPECT_EQ(Difference({{}, 3, {}, {}}), "");
    const std::vector<LFace> face = {Triangle(0, 1, 2)};
    EXPECT_EQ(LEdgeList(face, 0).GetNumEdges() + LEdgeListFlagged(face, 0).GetNumEdges(), 0);
}

TEST(Adjacency, ClosedMeshesHaveNoOpenEdgesAndSheetsOnlyTheirBorder) {
    const TestMesh sphere = Sphere(12, 7), sheet = Grid(4, 3);
    const LEdgeOpenList closed(sphere.faces, sphere.NumVerts());
    EXPECT_EQ(sphere.NumVerts() - closed.GetNumEdges() + int(sphere.faces.size()), 2);  // Euler
    EXPECT_EQ(std::count(closed.flags().begin(), closed.flags().end(), 1), 0);

    const LEdgeOpenList open(sheet.faces, sheet.NumVerts());
    const LVertOpenList border(sheet.NumVerts(), open);
    EXPECT_EQ(std::count(open.flags().begin(), open.flags().end(), 1), 2 * (4 + 3));
    for (int v = 0; v < sheet.NumVerts(); ++v) {
        const LPoint3& p = sheet.verts[v];
        EXPECT_EQ(border.IsVertOpen(v), p.x == 0 || p.x == 4 || p.y == 0 || p.y == 3) << v;
    }
    const LEdgeVisList visible(sheet.faces, sheet.NumVerts());
    EXPECT_EQ(std::count(visible.flags().begin(), visible.flags().end(), 0), 4 * 3);  // diagonals
}

TEST(Adjacency, ThirdFaceOnAnEdgeOpensASecondFlaggedEdge) {
    const std::vector<LFace> faces = {Triangle(0, 1, 2), Triangle(1, 0, 3), Triangle(0, 1, 4)};
    const LEdgeListFlagged flagged(faces, 5);
    EXPECT_EQ(flagged.GetNumEdges(), 2 + 6);
    EXPECT_EQ(flagged.GetFace(2)[0], flagged.GetFace(0)[0]);
    EXPECT_EQ(LEdgeList(faces, 5).GetNumEdges(), 1 + 6);
}

TEST(Adjacency, OutOfRangeQuestionsHaveEmptyAnswers) {
    const TestMesh mesh = Grid(2, 2);
    const LAdjFaceList2 adj(mesh.faces, mesh.NumVerts());
    const LAdjVertList verts(adj, mesh.faces);
    const LEdgeOpenList edges(mesh.faces, adj);
    for (const int i : {-1, 1000, INT32_MIN, INT32_MAX}) {
        EXPECT_TRUE(adj.GetAdjFacesForVert(i).empty());
        EXPECT_EQ(adj.GetAdjFacesForFace(i), nullptr);
        EXPECT_TRUE(verts.GetAdjVertsForVert(i).empty());
        EXPECT_EQ(edges.GetEdge(i).v[0], -1);
        EXPECT_EQ(edges.GetFace(i)[0], -1);
        EXPECT_FALSE(edges.IsEdgeOpen(i));
    }
    EXPECT_EQ(LAdjFaceList(mesh.faces, -5).nverts(), 0);
    EXPECT_EQ(LAdjVertList(adj, {}).nverts(), 0);  // a table of other faces
    EXPECT_EQ(LEdgeList({}, adj).GetNumEdges(), 0);
}

TEST(Adjacency, TablesTakeNoMoreThanTheirEntries) {
    const TestMesh mesh = Grid(50, 40);
    const LAdjFaceList adj(mesh.faces, mesh.NumVerts());
    const LAdjVertList verts(adj, mesh.faces);
    const LEdgeList edges(mesh.faces, mesh.NumVerts());
    const size_t offsets = 4 * (mesh.verts.size() + 1);
    EXPECT_EQ(adj.MemoryUsed(), offsets + 4 * 3 * mesh.faces.size());
    EXPECT_EQ(verts.MemoryUsed(), offsets + 4 * 2 * edges.edges().size());
    EXPECT_EQ(edges.edges().capacity(), edges.edges().size());
}

// Each would run for hours if any table searched a list whose length the mesh decides.
TEST(Adjacency, LargeFansAndBooksTakeLinearTime) {
    for (const TestMesh& mesh : {Fan(300000), Book(300000)}) {
        const LAdjFaceList2 adj(mesh.faces, mesh.NumVerts());
        const LAdjVertList verts(adj, mesh.faces);
        const LEdgeOpenList open(mesh.faces, adj);
        const LEdgeVisList visible(mesh.faces, adj);
        const LEdgeListFlagged flagged(mesh.faces, mesh.NumVerts());
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
    const auto upTo = [](int n) {
        return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, n + 1));
    };
    std::vector<LPoint3> verts(8);
    for (LPoint3& p : verts) p.x = float(upTo(5)) - 2, p.y = upTo(9) ? 0 : NAN;
    verts[1].x = -0.0f;
    std::vector<LQuad> quads(upTo(25));
    for (LQuad& quad : quads)
        for (int& v : quad.v) v = upTo(30) ? upTo(7) : 8;
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
            RC_ASSERT(QuadsAt(list, v) == expected);
        }
    }
}

TEST(int_array, GrowsByItsStepAndCopies) {
    EXPECT_EQ(int_array(0).grow(), 4000u);
    int_array a(6);
    EXPECT_EQ(a.data(), nullptr);
    for (int i = 0; i < 13; ++i) ASSERT_TRUE(a.push_back(i * i));
    EXPECT_EQ(a.size(), 13u);
    EXPECT_EQ(a.capacity(), 18u);
    int_array b;
    b = a;
    a.clear();
    EXPECT_EQ(a.capacity(), 0u);
    EXPECT_EQ(a.at(3), 0);
    EXPECT_EQ(b.at(12), 144);
    EXPECT_EQ(b.at(13), 0);
    b = b;
    EXPECT_EQ(b[3], 9);
    int_array c(std::move(b));
    EXPECT_EQ(c.size(), 13u);
}
