#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>

#include "core/math/Geometry.h"
#include "core/mesh/LOctTree.h"
#include "core/mesh/Triangulation.h"
#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/LThreadGroup.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

using Sphere = LOctTree::Sphere;

/// Meshes to search: flat, regular and crumpled.
const std::vector<LMesh>& Meshes() {
    static const std::vector<LMesh> meshes = [] {
        PolyMesh torus = shapes::Torus(50, 20);
        std::mt19937 random(9);
        std::normal_distribution<float> noise(0, 0.05f);
        for (LPoint3& p : torus.positions) p += {noise(random), noise(random), noise(random)};
        return std::vector{Triangulate(shapes::Grid(40, 30)), Triangulate(shapes::Sphere(4)),
                           Triangulate(torus)};
    }();
    return meshes;
}

/// The corners of a face.
std::array<LPoint3, 3> Corners(const LMesh& mesh, int f) {
    const LFace face = mesh.GetFace(f);
    return {mesh.GetVert(face.v[0]), mesh.GetVert(face.v[1]), mesh.GetVert(face.v[2])};
}

LPoint3 RandomPoint(std::mt19937& random, const LMesh& mesh, float spread) {
    std::uniform_int_distribution<int> vert(0, mesh.GetNumVerts() - 1);
    std::normal_distribution<float> noise(0, spread);
    return mesh.GetVert(vert(random)) + LPoint3(noise(random), noise(random), noise(random));
}

std::set<int> AsSet(const std::vector<int>& list) {
    const std::set<int> set(list.begin(), list.end());
    EXPECT_EQ(set.size(), list.size()) << "an entry stands twice";
    return set;
}

/// Weights by the rule of a query, for all vertices; then faces with such a corner, and their
/// corners.
struct BruteForce {
    std::set<int> inside, faces, corners;

    template <class Weight>
    BruteForce(const LMesh& mesh, const Weight& weight) {
        for (int v = 0; v < mesh.GetNumVerts(); ++v)
            if (weight(mesh.GetVert(v)) > 0) inside.insert(v);
        for (int f = 0; f < mesh.GetNumFaces(); ++f) {
            const LFace face = mesh.GetFace(f);
            if (std::none_of(face.v, face.v + 3, [&](int v) { return inside.count(v); })) continue;
            faces.insert(f);
            corners.insert(face.v, face.v + 3);
        }
    }
};

class LineFalloff : public LFalloffCache {
  public:
    LineFalloff() : LFalloffCache(40) { Compute(); }
    void Compute() override {
        for (size_t i = 0; i < values.size(); ++i) {
            locations[i] = i * dt;
            values[i] = 1 - locations[i];
        }
    }
};

/// What the swept search promises, told step by step for one vertex.
float PlainSweepWeight(const LOctTree::Sweep& s, const LPoint3& v) {
    const LPoint3 axis = s.p1 - s.p0;
    const float a2 = (s.p0 - v).LenSq(), b2 = (v - s.p1).LenSq(), r2 = s.radius * s.radius;
    const float distance = (axis ^ (s.p0 - v)).Len() / axis.Len();
    const bool projects = (v - s.p0) % axis > 0 && (v - s.p1) % (s.p0 - s.p1) > 0;
    if (!(distance < s.radius) || !(projects || a2 < r2 || b2 < r2)) return 0;
    if (!s.falloff) return 1;
    const float m = projects ? s.falloff->Value(distance, s.radius) : 0;
    const float fs = s.falloff->Value(std::sqrt(a2), s.radius);
    const float w0 = std::max(s.falloff->Value(std::sqrt(b2), s.radius), m);
    if (!s.accumulate) return std::max(w0, fs);
    if (!(w0 > 0) || s.prev == s.p0) return w0;
    const LPoint3 before = s.p0 - s.prev;
    float q = 0;
    if ((v - s.prev) % before > 0 && (v - s.p0) % (s.prev - s.p0) > 0) {
        const float d0 = (before ^ (s.prev - v)).Len() / before.Len();
        if (d0 > 0.01f && d0 < s.radius) q = s.falloff->Value(d0, s.radius);
    }
    return std::max(0.0f, w0 - std::max(fs, q));
}

LOctTree::Sweep RandomSweep(std::mt19937& random, const LMesh& mesh, const LFalloffCache* falloff) {
    std::uniform_real_distribution<float> size(0.05f, 0.5f);
    LOctTree::Sweep sweep;
    sweep.radius = size(random);
    sweep.prev = RandomPoint(random, mesh, 0.05f);
    sweep.p0 = random() % 4 ? RandomPoint(random, mesh, 0.05f) : sweep.prev;
    sweep.p1 = RandomPoint(random, mesh, 0.05f);
    sweep.accumulate = random() % 2;
    sweep.falloff = random() % 4 ? falloff : nullptr;
    return sweep;
}

}  // namespace

TEST(OctTree, SphereQueriesFindWhatBruteForceFinds) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> size(0.01f, 0.8f);
    for (const LMesh& mesh : Meshes()) {
        LOctTree tree(mesh);
        ASSERT_EQ(tree.Validate(), "");
        for (int round = 0; round < 60; ++round) {
            // Some on a vertex with a vertex exactly on the rim, which must not be found.
            Sphere sphere{RandomPoint(random, mesh, round % 3 ? 0.1f : 0), size(random)};
            if (round % 5 == 0) sphere.radius = (mesh.GetVert(round) - sphere.centre).Len();
            const BruteForce truth(mesh, [&](const LPoint3& p) {
                return (p - sphere.centre).LenSq() < sphere.radius * sphere.radius;
            });
            TreeHits hits;
            EXPECT_EQ(tree.FindVerts(std::span(&sphere, 1), hits), !truth.inside.empty());
            EXPECT_EQ(AsSet(hits.verts), truth.inside);
            hits.Clear();
            tree.FindFaces(std::span(&sphere, 1), hits);
            EXPECT_EQ(AsSet(hits.faces), truth.faces);
            EXPECT_EQ(AsSet(hits.verts), truth.corners);
            hits.verts.resize(hits.numInside);
            EXPECT_EQ(AsSet(hits.verts), truth.inside);

            std::vector<int> near;
            tree.FindFacesNear(sphere, near);
            std::set<int> plain;
            for (int f = 0; f < mesh.GetNumFaces(); ++f) {
                const auto [a, b, c] = Corners(mesh, f);
                const LPoint3 g = (a + b + c) * 0.33333f;
                if (truth.faces.count(f) ||
                    (g - sphere.centre).Len() < (g - a).Len() + sphere.radius)
                    plain.insert(f);
            }
            EXPECT_EQ(AsSet(near), plain);
        }
    }
}

TEST(OctTree, LinesSweepsAndPairsFindWhatBruteForceFinds) {
    std::mt19937 random(2);
    const LineFalloff falloff;
    for (const LMesh& mesh : Meshes()) {
        LOctTree tree(mesh);
        for (int round = 0; round < 80; ++round) {
            const LOctTree::Sweep sweeps[2] = {RandomSweep(random, mesh, &falloff),
                                               RandomSweep(random, mesh, &falloff)};
            const int count = 1 + round % 2;
            const auto weight = [&](const LPoint3& p) {
                const float w = PlainSweepWeight(sweeps[0], p);
                return count == 1 ? w : std::max(w, PlainSweepWeight(sweeps[1], p));
            };
            const BruteForce truth(mesh, weight);
            TreeHits hits;
            tree.FindFaces(std::span(sweeps, count), hits);
            EXPECT_EQ(AsSet(hits.verts), truth.inside);
            EXPECT_EQ(AsSet(hits.faces), truth.faces);
            ASSERT_EQ(hits.weights.size(), hits.verts.size());
            for (size_t i = 0; i < hits.verts.size(); ++i)
                ASSERT_NEAR(hits.weights[i], weight(mesh.GetVert(hits.verts[i])), 1e-5f);
            std::vector<int> all = hits.verts;
            all.insert(all.end(), hits.border.begin(), hits.border.end());
            EXPECT_EQ(AsSet(all), truth.corners);

            const LPoint3 p0 = sweeps[0].p0, p1 = sweeps[0].p1;
            const LOctTree::Line line{{(p0 + p1) * 0.5f, sweeps[0].radius + (p1 - p0).Len() * 0.5f},
                                      p0,
                                      p1,
                                      sweeps[0].radius};
            const BruteForce inLine(mesh, [&](const LPoint3& p) {
                const LPoint3 axis = line.p1 - line.p0;
                return (p - line.bounds.centre).LenSq() < line.bounds.radius * line.bounds.radius &&
                       (axis ^ (line.p0 - p)).Len() / axis.Len() < line.radius;
            });
            hits.Clear();
            tree.FindFaces(std::span(&line, 1), hits);
            EXPECT_EQ(AsSet(hits.faces), inLine.faces);
            EXPECT_EQ(AsSet(hits.verts), inLine.corners);
        }
    }
}

TEST(OctTree, WorkersGiveTheSameListsInTheSameOrder) {
    const LMesh mesh = Triangulate(shapes::Grid(300, 300));
    LOctTree plain(mesh);
    std::mt19937 random(4);
    const LineFalloff falloff;
    for (const int count : {2, 8}) {
        LThreadGroup workers(count);
        LOctTree shared(mesh.Topology(), mesh.GetVertsPtr(), {}, &workers);
        for (int round = 0; round < 10; ++round) {
            const LOctTree::Sweep sweep = RandomSweep(random, mesh, &falloff);
            TreeHits a, b;
            plain.FindFaces(std::span(&sweep, 1), a);
            shared.FindFaces(std::span(&sweep, 1), b);
            EXPECT_EQ(std::tie(a.verts, a.faces, a.weights, a.border),
                      std::tie(b.verts, b.faces, b.weights, b.border));
        }
    }
}

TEST(OctTree, RaysHitWhatBruteForceHits) {
    std::mt19937 random(5);
    std::normal_distribution<float> noise;
    for (const LMesh& mesh : Meshes()) {
        const LOctTree tree(mesh);
        for (int round = 0; round < 400; ++round) {
            const LPoint3 origin(2 * noise(random), 2 * noise(random), 2 * noise(random));
            LPoint3 dir = RandomPoint(random, mesh, 0.02f) - origin;
            if (round % 8 == 0) dir = round % 16 ? LPoint3(0, -1, 0) : LPoint3(0, 0, 1);
            float nearest = 1e30f;
            for (int f = 0; f < mesh.GetNumFaces(); ++f) {
                const auto [a, b, c] = Corners(mesh, f);
                float t;
                LPoint3 point, bary;
                if (IntersectTri(a, b, c, origin, dir, t, point, bary, true))
                    nearest = std::min(nearest, t);
            }
            LOctTree::RayHit hit, any;
            const bool found = tree.TraceRay(origin, dir, hit);
            EXPECT_EQ(found, nearest < 1e30f);
            EXPECT_EQ(tree.TraceRay(origin, dir, any, true), found);
            if (!found) continue;
            EXPECT_NEAR(hit.t, nearest, 1e-4f * (1 + nearest));
            const auto [a, b, c] = Corners(mesh, hit.face);
            const LPoint3 there = a * hit.bary.x + b * hit.bary.y + c * hit.bary.z;
            EXPECT_LT((there - hit.point).Len(), 1e-4f);
            EXPECT_LT((origin + dir * hit.t - hit.point).Len(), 1e-3f);
        }
    }
}

TEST(OctTree, ClosestPointIsTheNearestFootOrCorner) {
    std::mt19937 random(6);
    for (const LMesh& mesh : Meshes()) {
        const LOctTree tree(mesh);
        for (int round = 0; round < 60; ++round) {
            const LPoint3 p = RandomPoint(random, mesh, 0.3f);
            const float reach = round % 4 ? 10.0f : 0.1f;
            double best = reach;
            for (int f = 0; f < mesh.GetNumFaces(); ++f) {
                const auto c = Corners(mesh, f);
                for (const LPoint3& corner : c) best = std::min<double>(best, (corner - p).Len());
                const LPoint3 n = Normalized((c[1] - c[0]) ^ (c[2] - c[0]));
                const LPoint3 foot = p - n * ((p - c[0]) % n);
                bool inside = true;
                for (int e = 0; e < 3; ++e)
                    inside &= ((c[(e + 1) % 3] - c[e]) ^ (foot - c[e])) % n >= 0;
                if (inside) best = std::min<double>(best, (foot - p).Len());
            }
            LOctTree::ClosestHit hit;
            const bool found = tree.FindClosetPoint(p, reach, hit);
            EXPECT_EQ(found, best < reach);
            if (found) {
                EXPECT_NEAR(hit.distance, best, 1e-5);
                EXPECT_NEAR((hit.point - p).Len(), hit.distance, 1e-5);
            }
        }
    }
}

RC_GTEST_PROP(OctTree, APartialRefitGivesTheBoxesOfAWholeOne, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    LMesh mesh = Meshes()[random() % 3];
    LOctTree partial(mesh), whole(mesh);
    whole.Recalc(mesh.GetVertsPtr());
    partial.Recalc(mesh.GetVertsPtr());
    std::normal_distribution<float> noise(0, 0.4f);
    for (int round = 0; round < 4; ++round) {
        std::vector<int> moved;
        for (int i = 0; i < 1 << (round * 3); ++i) {
            const int v = static_cast<int>(random() % mesh.GetNumVerts());
            mesh.OffsetVert(v, {noise(random), noise(random), noise(random)});
            moved.push_back(v);
        }
        partial.Recalc(mesh.GetVertsPtr(), moved);
        whole.Recalc(mesh.GetVertsPtr());
        RC_ASSERT(partial.HasSameBoxes(whole));
        RC_ASSERT(partial.Validate().empty());
        const Sphere sphere{mesh.GetVert(moved[0]), 0.3f};
        TreeHits hits;
        partial.FindVerts(std::span(&sphere, 1), hits);
        RC_ASSERT(AsSet(hits.verts) == BruteForce(mesh, [&](const LPoint3& p) {
                                           return (p - sphere.centre).LenSq() < 0.3f * 0.3f;
                                       }).inside);
    }
}

TEST(OctTree, EmptyFlatHiddenAndDegenerateMeshes) {
    LOctTree empty{LMesh()};
    LPoint3 min, max;
    TreeHits hits;
    LOctTree::RayHit ray;
    LOctTree::ClosestHit closest;
    const Sphere all{{0, 0, 0}, 1e6f};
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_FALSE(empty.FindFaces(std::span(&all, 1), hits));
    EXPECT_FALSE(empty.TraceRay({0, 0, 1}, {0, 0, -1}, ray));
    EXPECT_FALSE(empty.FindClosetPoint({0, 0, 0}, 1e6f, closest));

    const LOctTree ball(Triangulate(shapes::Sphere(2)));
    EXPECT_FALSE(ball.TraceRay({0, 0, 0}, {1, 0.1f, 0.2f}, ray)) << "from behind";
    LOctTree::SetIgnoreBackFacePref(false);
    EXPECT_TRUE(ball.TraceRay({0, 0, 0}, {1, 0.1f, 0.2f}, ray));
    LOctTree::SetIgnoreBackFacePref(true);
    const LOctTree leaf(Triangulate(shapes::Grid(5, 5)));
    ASSERT_TRUE(leaf.GetBBox(min, max));
    EXPECT_TRUE(min.x == -0.5f && max.y == 0.5f);
    EXPECT_NEAR(max.z - min.z, 0.002f, 1e-6f) << "a flat box is given some depth";

    const LMesh grid = Triangulate(shapes::Grid(20, 20));
    std::vector<uint8_t> hidden(grid.GetNumFaces());
    for (int f = 0; f < grid.GetNumFaces(); f += 3) hidden[f] = 1;
    LOctTree part(grid.Topology(), grid.GetVertsPtr(), hidden);
    EXPECT_EQ(part.Validate(), "");
    part.FindFaces(std::span(&all, 1), hits);
    EXPECT_EQ(static_cast<long>(AsSet(hits.faces).size()),
              std::count(hidden.begin(), hidden.end(), 0));
    for (const int f : hits.faces) EXPECT_EQ(hidden[f], 0);

    // A thousand faces in one place can't be told apart, and numbers out of range must not trap.
    LMesh pile(3, 1000);
    for (int f = 0; f < 1000; ++f) {
        LFace face;
        face.v[1] = 1, face.v[2] = 2;
        pile.SetFace(f, face);
    }
    pile.SetVert(1, {1, 0, 0});
    pile.SetVert(2, {0, 1, 0});
    LOctTree heap(pile);
    EXPECT_EQ(heap.Validate(), "");
    hits.Clear();
    heap.FindFaces(std::span(&all, 1), hits);
    EXPECT_EQ(hits.faces.size(), 1000u);
    pile.SetVert(2, {NAN, INFINITY, -INFINITY});
    heap.Rebuild(pile.GetVertsPtr(), {});
    heap.TraceRay({0, 0, 1}, {0, 0, -1}, ray);
    heap.FindFaces(std::span(&all, 1), hits);
}

TEST(OctTree, PrismFindsFacesTowardsItsEye) {
    std::mt19937 random(7);
    const LMesh& mesh = Meshes()[1];
    const LOctTree tree(mesh);
    for (int round = 0; round < 30; ++round) {
        const LPoint3 p0 = RandomPoint(random, mesh, 0.05f);
        const LPoint3 p1 = round % 3 ? RandomPoint(random, mesh, 0.05f) : p0;
        const LPoint3 eye = LPoint3(3, 1, 2);
        const LPrism prism(eye, Normalized(p0 - eye), p0, p1, 0.2f);
        std::vector<int> found;
        tree.FindFaces(prism, found);
        std::set<int> truth;
        for (int f = 0; f < mesh.GetNumFaces(); ++f) {
            const auto [a, b, c] = Corners(mesh, f);
            const LPoint3 g = (a + b + c) * 0.33333f;
            const bool inside = prism.IsInside(a) || prism.IsInside(b) || prism.IsInside(c) ||
                                prism.IsInside(g) || prism.IsInside(g, (g - a).Len());
            if (inside && prism.IsFacing(g, Normalized((c - a) ^ (b - a)))) truth.insert(f);
        }
        EXPECT_EQ(AsSet(found), truth);
    }
}
