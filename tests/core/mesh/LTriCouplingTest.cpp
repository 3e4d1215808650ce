#include "core/mesh/LTriCoupling.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>

#include "core/mesh/Triangulation.h"
#include "core/subdiv/LSubdivMesh.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

using Pairs = std::vector<std::pair<int, int>>;

LTriCoupling Couple(const PolyMesh& polygons) {
    return LTriCoupling(Triangulate(polygons).Topology()->Faces(),
                        static_cast<int>(polygons.positions.size()));
}

Pairs PairsOf(const LTriCoupling& coupling) {
    Pairs pairs;
    for (int i = 0; i < coupling.NumPairs(); ++i) pairs.push_back(coupling.Pair(i));
    return pairs;
}

/// Edge k of a face as a set of two vertices.
std::multiset<int> Ends(const LFace& face, int k) {
    return {face.v[k], face.v[(k + 1) % 3]};
}

/// A face with these edges gluing, by number; the others are visible.
LFace Face(int a, int b, int c, std::initializer_list<int> gluing) {
    LFace face{{a, b, c}};
    for (const int e : gluing) face.flags ^= 9 << e;
    return face;
}

/// Every face is in one pair or a single, the lookups say where, and what a pair shares is hidden
/// on both sides. "" when all holds.
std::string Broken(const LTriCoupling& coupling, std::span<const LFace> faces) {
    std::vector<int> seen(faces.size());
    if (coupling.NumFaces() != static_cast<int>(faces.size())) return "faces are missing";
    for (int i = 0; i < coupling.NumPairs(); ++i) {
        const auto [f, g] = coupling.Pair(i);
        ++seen[f], ++seen[g];
        if (coupling.couplingLookup(f) != 2 * i || coupling.couplingLookup(g) != 2 * i + 1 ||
            coupling.ncouplingLookup(f) != -1 || coupling.ncouplingLookup(g) != -1)
            return "the lookup of a pair";
        const auto [s, r] = coupling.Shared(i);
        if (Ends(faces[f], s) != Ends(faces[g], r)) return "the shared edge";
    }
    for (int i = 0; i < coupling.NumSingles(); ++i) {
        const int f = coupling.Single(i);
        ++seen[f];
        if (i > 0 && coupling.Single(i - 1) >= f) return "the order of the singles";
        if (coupling.ncouplingLookup(f) != i || coupling.couplingLookup(f) != -1)
            return "the lookup of a single";
    }
    const bool once = std::all_of(seen.begin(), seen.end(), [](int n) { return n == 1; });
    return once ? "" : "a face is not in exactly one place";
}

}  // namespace

TEST(TriCoupling, APolygonGivesAsManyPairsAsItsFanHolds) {
    for (int n = 3; n <= 12; ++n) {
        const LTriCoupling coupling = Couple(shapes::Polygon(n));
        EXPECT_EQ(coupling.NumPairs(), (n - 2) / 2) << n;
        EXPECT_EQ(coupling.NumSingles(), n % 2) << n;
        for (int i = 0; i < coupling.NumPairs(); ++i)
            EXPECT_EQ(coupling.Pair(i), std::pair(2 * i, 2 * i + 1));
    }
    for (const shapes::Shape& shape :
         shapes::ShapesWithFaces(shapes::NonManifold | shapes::Degenerate)) {
        int pairs = 0;
        for (int p = 0; p < shape.mesh.NumPolygons(); ++p)
            pairs += (shape.mesh.polygonStart[p + 1] - shape.mesh.polygonStart[p] - 2) / 2;
        EXPECT_EQ(Couple(shape.mesh).NumPairs(), pairs) << shape.name;
    }
}

RC_GTEST_PROP(TriCoupling, PutsEveryFaceInOnePlace, ()) {
    PolyMesh mesh;
    mesh.positions.resize(*rc::gen::inRange(3, 10));
    const int nverts = static_cast<int>(mesh.positions.size());
    for (int p = *rc::gen::inRange(0, 12); p >= 0; --p)
        shapes::AddPolygon(mesh, *rc::gen::container<std::vector<int>>(
                                     *rc::gen::inRange(3, 8), rc::gen::inRange(0, nverts)));
    LMesh triangles = Triangulate(mesh);
    // Some edges are hidden without gluing, as on the levels of a triangle step.
    for (int f = 0; f < triangles.GetNumFaces(); ++f) {
        LFace face = triangles.GetFace(f);
        face.flags &= *rc::gen::element(0xff, 0xff, 0x3f & ~(1 << f % 3), 7, 0);
        triangles.SetFace(f, face);
    }
    const std::vector<LFace>& faces = triangles.Topology()->Faces();
    const LTriCoupling coupling(faces, nverts);
    RC_ASSERT(Broken(coupling, faces) == "");
}

TEST(TriCoupling, GluingEdgesGoBeforeHiddenOnes) {
    // Of the children of a triangle the middle one has only hidden edges: it takes the first.
    LSubdivMesh mesh(Triangulate(shapes::Polygon(3)));
    mesh.SubdivideAll_Loop(false, false);
    EXPECT_EQ(PairsOf(*mesh.GetLevelTopology(1)->Coupling()), (Pairs{{0, 3}}));
    // A strip of three, hidden between 0 and 1, gluing between 1 and 2.
    LFace strip[] = {Face(0, 1, 2, {}), Face(2, 1, 3, {1}), Face(3, 1, 4, {0})};
    strip[0].flags &= ~2;
    strip[1].flags &= ~1;
    EXPECT_EQ(PairsOf(LTriCoupling(strip, 5)), (Pairs{{1, 2}}));
    strip[1].flags |= 2;
    strip[1].flags &= ~16;
    EXPECT_EQ(PairsOf(LTriCoupling(strip, 5)), (Pairs{{0, 1}}));
}

TEST(TriCoupling, AFaceThatWasTurnedDownIsNotTriedElsewhere) {
    // Face 0 glues to 1, which doesn't glue back, and to 2, which does but is turned down by 3.
    const std::vector<LFace> faces = {Face(0, 1, 2, {0, 1}), Face(1, 0, 3, {}),
                                      Face(2, 1, 4, {0, 1}), Face(1, 5, 4, {})};
    EXPECT_EQ(PairsOf(LTriCoupling(faces, 6)), (Pairs{{2, 0}})) << "2 finds 0 free";
    std::vector<LFace> blocked = faces;
    blocked[2] = Face(1, 4, 2, {0, 2});  // the edge to 3 comes first
    EXPECT_TRUE(PairsOf(LTriCoupling(blocked, 6)).empty());
    blocked.pop_back();  // with nothing there, the next edge is tried
    EXPECT_EQ(PairsOf(LTriCoupling(blocked, 6)), (Pairs{{2, 0}}));
}

TEST(TriCoupling, SplitQuadsStayPartners) {
    LSubdivMesh mesh(Triangulate(shapes::Polygon(7)));
    mesh.SubdivideAll_Quad(false, false);
    const LMeshTopology& level = *mesh.GetLevelTopology(1);
    ASSERT_TRUE(level.Coupling()->IsSequential());
    EXPECT_EQ(Broken(*level.Coupling(), level.Faces()), "");
    // The search by flags finds the same.
    EXPECT_EQ(PairsOf(LTriCoupling(level.Faces(), level.GetNumVerts())),
              PairsOf(*level.Coupling()));
    EXPECT_EQ(LTriCoupling({}, 0).NumFaces(), 0);
}
