#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LQuadSubdivision.h"
#include "core/subdiv/LTopoCaches.h"
#include "tests/core/math/Generators.h"
#include "tests/core/math/SameBits.h"
#include "tests/core/subdiv/Levels.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

using Edge = std::pair<int, int>;

/// The number of faces at each edge.
std::map<Edge, int> EdgesOf(const std::vector<LFace>& faces) {
    std::map<Edge, int> edges;
    for (const LFace& face : faces)
        for (int e = 0; e < 3; ++e) ++edges[std::minmax(face.v[e], face.v[(e + 1) % 3])];
    return edges;
}

/// A shape of the zoo, every vertex moved by up to 1.
PolyMesh AnyShaken(unsigned without = 0) {
    const std::vector<shapes::Shape> all = shapes::ShapesWithFaces(without);
    PolyMesh mesh = all[*rc::gen::inRange<size_t>(0, all.size())].mesh;
    for (LPoint3& p : mesh.positions) p += UnitPoint();
    return mesh;
}

}  // namespace

TEST(QuadLevels, ChainsOfAllKindsKeepTheNumbering) {
    for (const shapes::Shape& shape : shapes::ShapesWithFaces())
        for (const std::string kinds : {"qqq", "lql", "QlQ", "LQq", "QQL"}) {
            SCOPED_TRACE(shape.name + " " + kinds);
            LSubdivMesh mesh(Triangulate(shape.mesh));
            for (const char kind : kinds) {
                const bool isQuad = (kind | 32) == 'q';
                const std::vector<LPoint3> before = AllVerts(mesh);
                const LMeshTopology& below = *mesh.GetLevelTopology(mesh.GetActiveLevel());
                ASSERT_TRUE(AddLevel(mesh, kind));
                ASSERT_EQ(mesh.Validate(), "");
                const std::vector<LPoint3> after = AllVerts(mesh);
                if (kind > 'a') {
                    EXPECT_TRUE(SameBits(before, {after.begin(), after.begin() + before.size()}));
                }
                const ISubdivLayer& layer = *mesh.GetSubdivs().GetTop();
                EXPECT_EQ(layer.GetType(), isQuad);
                // What is in a face: 4 children for one of a pair or of a triangle step, else 6.
                for (int f = 0; f < below.GetNumFaces(); ++f) {
                    const LFaceSubs subs = layer.GetFaceSubs(f);
                    const bool single = isQuad && below.Coupling()->ncouplingLookup(f) >= 0;
                    EXPECT_EQ(std::count(subs.subs, subs.subs + 6, -1), single ? 0 : 2);
                }
                if (!isQuad || (shape.tags & shapes::Degenerate)) continue;
                // A new vertex an edge (two faces, so that a third opens one more) and a single.
                int added = below.Coupling()->NumSingles();
                for (const auto& [ends, faces] : EdgesOf(below.Faces())) added += (faces + 1) / 2;
                EXPECT_EQ(mesh.GetNumVerts(), below.GetNumVerts() + added);
            }
            while (mesh.DeleteTopLevel()) ASSERT_EQ(mesh.Validate(), "");
            EXPECT_EQ(mesh.GetNumSubivLevels(), 1);
        }
}

TEST(QuadLevels, WithoutSmoothingNewVerticesAreMiddlesAndCentres) {
    for (const PolyMesh& base : {shapes::Torus(6, 5), shapes::Cube(), shapes::Sphere(1)}) {
        const LSubdivMesh mesh = Chain(base, "q");
        const auto at = [](const LPoint3& p) { return std::tuple(p.x, p.y, p.z); };
        std::set<std::tuple<float, float, float>> expected, found;
        for (int p = 0; p < base.NumPolygons(); ++p) {
            const int start = base.polygonStart[p], n = base.polygonStart[p + 1] - start;
            const auto corner = [&](int k) { return base.positions[base.cornerVerts[start + k]]; };
            for (int k = 0; k < n; ++k)
                expected.insert(at((corner(k) + corner((k + 1) % n)) * 0.5f));
            // The centre of a quad is the middle of its diagonal.
            expected.insert(at(n == 4 ? (corner(0) + corner(2)) * 0.5f
                                      : (corner(0) + corner(1) + corner(2)) / 3.0f));
        }
        for (int v = mesh.GetNumLevelVerts(0); v < mesh.GetNumVerts(); ++v)
            found.insert(at(mesh.GetVert(v)));
        EXPECT_EQ(found, expected);
    }
}

RC_GTEST_PROP(QuadLevels, SmoothingIsTheMeanOfAVertexAndItsQuads, ()) {
    const std::string below = *rc::gen::element<std::string>("", "q", "l", "lq");
    const LSubdivMesh plain = Chain(AnyShaken(), below + "q");
    const int top = plain.GetActiveLevel(), firstNew = plain.GetNumLevelVerts(top - 1);
    LSubdivMesh smooth(*plain.GetLevelCopy(top - 1));
    RC_ASSERT(smooth.SubdivideAll_Quad(true, *rc::gen::arbitrary<bool>()));

    std::set<Edge> gluing;
    for (const LFace& face : plain.GetLevelTopology(top - 1)->Faces())
        for (int e = 0; e < 3; ++e)
            if (face.IsEdgeGluing(e)) gluing.insert(std::minmax(face.v[e], face.v[(e + 1) % 3]));
    const LLevelRule& rule = *plain.GetSubdivs().GetTop()->rule();
    const auto isEdgePoint = [&](int v) {
        if (v < firstNew || v - firstNew >= static_cast<int>(rule.tables().parents.size()))
            return false;
        const auto [a, b] = rule.tables().parents[v - firstNew];
        return !gluing.contains(std::minmax(a, b));
    };
    std::vector<std::set<int>> quads(plain.GetNumVerts());
    for (int f = 0; f < plain.GetNumFaces(); ++f)
        for (const int v : plain.GetFace(f).v) quads[v].insert(f / 2);
    for (int v = 0; v < plain.GetNumVerts(); ++v) {
        std::set<int> ring;
        for (const int q : quads[v])
            for (const LFace& face : {plain.GetFace(2 * q), plain.GetFace(2 * q + 1)})
                ring.insert(face.v, face.v + 3);
        ring.erase(v);
        const bool stays =
            quads[v].size() < 3 ||
            (quads[v].size() == 3 && std::count_if(ring.begin(), ring.end(), isEdgePoint) > 3);
        if (stays) {
            RC_ASSERT(smooth.GetVert(v) == plain.GetVert(v));
            continue;
        }
        LPoint3 sum = plain.GetVert(v);
        for (const int o : ring) sum += plain.GetVert(o);
        const LPoint3 mean = sum / static_cast<float>(ring.size() + 1);
        RC_ASSERT((smooth.GetVert(v) - mean).Len() < 1e-5f);
    }
}

TEST(QuadLevels, RebuiltFromOtherPositionsTheyAreThoseMadeAnew) {
    LThreadGroup workers(4);
    const PolyMesh torus = shapes::Torus(24, 16);
    PolyMesh moved = torus;
    for (LPoint3& p : moved.positions) p += LPoint3(p.y * p.z, 0.3f * p.x * p.x, std::sin(5 * p.x));
    for (const std::string kinds : {"QQQ", "QLQ", "qQq"}) {
        SCOPED_TRACE(kinds);
        const std::vector<LPoint3> expected = AllVerts(Chain(moved, kinds));
        LSubdivMesh mesh(Triangulate(torus)), redone(Triangulate(moved));
        mesh.SetNeedBarys(true);
        redone.SetNeedBarys(true);
        for (const char kind : kinds) {
            LQuadLevelTopoCache cache(mesh.GetNumSubivLevels(), kind < 'a', true);
            if (kind == 'L') {
                mesh.SubdivideAll_Loop(true, true);
                redone.SubdivideAll_Loop(true, true);
                continue;
            }
            ASSERT_TRUE(mesh.SubdivideAll_Quad2(kind < 'a', true, &cache));
            ASSERT_TRUE(redone.RedivideAll_Quad(&cache, kind < 'a'));
            EXPECT_FALSE(redone.RedivideAll_Quad(&cache, true)) << "a cache fits one level only";
        }
        EXPECT_TRUE(SameBits(AllVerts(redone), expected));
        EXPECT_EQ(*redone.GetBarys(), *mesh.GetBarys());
        for (LThreadGroup* group : {static_cast<LThreadGroup*>(nullptr), &workers}) {
            LSubdivMesh again(mesh);
            std::copy(moved.positions.begin(), moved.positions.end(), again.GetAllVertsPtr());
            again.RebuildLevels(group);
            EXPECT_TRUE(SameBits(AllVerts(again), expected));
        }
        // A level that goes and comes back is the same.
        LSubdivMesh less = Chain(moved, kinds.substr(0, 2));
        LSubdivMesh more(less);
        AddLevel(more, 'q');
        ASSERT_TRUE(more.DeleteTopLevel());
        EXPECT_TRUE(SameBits(AllVerts(more), AllVerts(less)));
        AddLevel(more, kinds[2]);
        EXPECT_TRUE(SameBits(AllVerts(more), expected));
    }
    // What smooth levels give is all there is over their own base.
    LSubdivMesh smooth = Chain(moved, "QQ");
    smooth.SubstructLevel0(std::make_unique<LMesh>(Triangulate(moved)).get());
    for (const LPoint3& p : AllVerts(smooth)) ASSERT_EQ(p, LPoint3::Zero);
    const LQuadLevelTopoCache empty(1, true, true);
    LSubdivMesh plain(Triangulate(moved));
    ASSERT_TRUE(plain.RedivideAll_Quad(&empty, false));
    EXPECT_TRUE(SameBits(AllVerts(plain), AllVerts(Chain(moved, "Q"))));
}

RC_GTEST_PROP(QuadLevels, BarycentricsHoldTheParametricPlace, ()) {
    // Triangles that lie on each other can pair up against their winding: their quads are twisted.
    LSubdivMesh mesh(Triangulate(AnyShaken(shapes::Degenerate)));
    mesh.SetNeedBarys(true);
    for (const char kind : *rc::gen::element<std::string>("q", "qq", "qlq", "lq", "lll"))
        AddLevel(mesh, kind);
    LSubdivMesh late(mesh);
    late.AllocBarys();
    RC_ASSERT(*late.GetBarys() == *mesh.GetBarys());
    std::vector<int> reachedBy(mesh.GetNumVerts(), -1);
    for (int f = 0; f < mesh.GetNumLevelFaces(0); ++f) {
        const LFace base = mesh.GetLevelFace(f, 0);
        const auto place = [&](const LPoint3& b) {
            return mesh.GetVert(base.v[0]) * b.x + mesh.GetVert(base.v[1]) * b.y +
                   mesh.GetVert(base.v[2]) * b.z;
        };
        std::vector<int> subs, again;
        std::vector<LFaceBarys> barys;
        mesh.FindSubFacesAndBary(f, subs, barys);
        mesh.FindSubFaces(f, again, mesh.GetSubdivs().GetTop());
        RC_ASSERT(subs == again);
        for (size_t i = 0; i < subs.size(); ++i)
            for (int k = 0; k < 3; ++k) {
                const int v = mesh.GetFace(subs[i]).v[k];
                RC_ASSERT((place(barys[i].v[k]) - mesh.GetVert(v)).Len() < 1e-5f);
                // A vertex is bound to the lowest face that reaches it.
                if (reachedBy[v] >= 0) continue;
                reachedBy[v] = f;
                RC_ASSERT((place(mesh.GetBaryByAbsIdx(v)) - mesh.GetVert(v)).Len() < 1e-5f);
            }
    }
    mesh.SubstructLevel0ByBarys(nullptr);
    for (int v = mesh.GetNumLevelVerts(0); v < mesh.GetNumVerts(); ++v)
        if (reachedBy[v] >= 0) RC_ASSERT(mesh.GetVert(v).Len() < 1e-5f);
}

TEST(QuadLevels, WhatCannotBeCutIsRefusedAndRingsHaveALimit) {
    LFace lost{{0, 1, 9}};
    const std::vector<LPoint3> points(3);
    LSubdivMesh broken(LMesh(std::make_shared<LMeshTopology>(3, std::vector{lost}), points));
    EXPECT_FALSE(broken.SubdivideAll_Quad(true, true));
    EXPECT_EQ(broken.GetNumSubivLevels(), 1);
    EXPECT_FALSE(LSubdivMesh().SubdivideAll_Quad(true, true));
    EXPECT_EQ(LSubdivMesh().CountNextQuadLevelFaces(), 0);
    const LSubdivMesh fan = Chain(shapes::Fan(3500), "q");
    EXPECT_EQ(fan.GetSubdivs().GetTop()->rule()->tables().rings.Row(0).size(), 6000u)
        << "and no more";
    EXPECT_EQ(Chain(shapes::Polygon(5), "").CountNextQuadLevelFaces(), 14);
    // A level of its own, without the mesh.
    const LMesh cut =
        *LQuadSubdivision(Triangulate(shapes::Cube()).Topology()).Export(shapes::Cube().positions);
    EXPECT_EQ(std::vector(cut.GetVertsPtr(), cut.GetVertsPtr() + cut.GetNumVerts()),
              AllVerts(Chain(shapes::Cube(), "q")));
}
