#include "core/mesh/LSmoothCache.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <sys/resource.h>

#include <numeric>
#include <random>

#include "core/mesh/LEdgeList.h"
#include "core/mesh/Triangulation.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

using Ints = std::vector<int>;

Ints UpTo(size_t n) {
    Ints all(n);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

/// One round, as told in words: the means of the centroids for the vertices in `finished`.
template <class T>
std::vector<T> Round(const std::vector<T>& values, const std::vector<LFace>& faces,
                     const Ints& listed, const Ints& finished, bool add) {
    std::vector<T> sums(values.size()), result = values;
    Ints counts(values.size());
    for (const int f : listed) {
        const int* v = faces[f].v;
        const T mean = (values[v[0]] + values[v[1]] + values[v[2]]) * 0.33333334f;
        for (int k = 0; k < 3; ++k) {
            add ? sums[v[k]] += mean : sums[v[k]] -= mean;
            ++counts[v[k]];
        }
    }
    for (const int v : finished)
        if (counts[v]) result[v] = sums[v] / float(counts[v]);
    return result;
}

template <class T>
bool Same(const T* values, const std::vector<T>& expected) {
    return std::equal(expected.begin(), expected.end(), values);
}

Ints Subset(int n) {
    Ints some;
    for (int i = 0; i < n; ++i)
        if (*rc::gen::arbitrary<bool>()) some.push_back(i);
    return some;
}

struct Sheet {
    LMesh mesh = Triangulate(shapes::Grid(5, 4));
    const std::vector<LFace>& faces = mesh.Topology()->Faces();
    const LAdjFaceList& adjFaces = mesh.Topology()->AdjFaces();
    const LAdjVertList& adjVerts = mesh.Topology()->AdjVerts();
    std::vector<LPoint3> verts{mesh.GetVertsPtr(), mesh.GetVertsPtr() + mesh.GetNumVerts()};
    Ints allFaces = UpTo(faces.size()), allVerts = UpTo(verts.size());

    Sheet() {
        std::mt19937 random(1);
        for (LPoint3& p : verts) p.z = float(random() % 100) / 50;
    }
};

}  // namespace

RC_GTEST_PROP(LSmoothCache, EveryFormGivesThePlainRounds, ()) {
    const Sheet s;
    const int n = *rc::gen::inRange(0, 4);
    const bool add = *rc::gen::arbitrary<bool>();
    const Ints faces = Subset(int(s.allFaces.size())), verts = Subset(int(s.allVerts.size()));
    std::vector<char> mask(s.allVerts.size());
    for (const int v : verts) mask[v] = 1;
    Ints masked;
    for (const int f : s.allFaces)
        for (const int v : s.faces[f].v)
            if (mask[v] && (masked.empty() || masked.back() != f)) masked.push_back(f);

    auto all = s.verts, byMask = all, byFaces = all, listed = all, kept = all;
    const LEdgeOpenList edges(s.faces, s.mesh.GetNumVerts());
    const LVertOpenList open(s.mesh.GetNumVerts(), edges);
    Ints inner;
    for (const int v : verts)
        if (!open.IsVertOpen(v)) inner.push_back(v);
    for (int round = 0; round < n; ++round) {
        all = Round(all, s.faces, s.allFaces, s.allVerts, add);
        byMask = Round(byMask, s.faces, masked, s.allVerts, add);
        byFaces = Round(byFaces, s.faces, faces, s.allVerts, add);
        listed = Round(listed, s.faces, faces, verts, add);
        kept = Round(kept, s.faces, faces, inner, add);
    }
    // One cache for all: what a form leaves behind must not show in the next.
    LSmoothCache cache(s.mesh.GetNumVerts(), s.faces, s.verts);
    const auto check = [&](const std::vector<LPoint3>& expected) {
        RC_ASSERT(Same(cache.read(), expected));
        cache.Reset(s.verts);
    };
    cache.Iterate(n, faces, verts, add), check(listed);
    cache.Iterate(n, add), check(all);
    cache.Iterate(n, faces, verts, &s.adjVerts, &s.adjFaces, add), check(kept);
    cache.Iterate(n, mask, add), check(byMask);
    cache.Iterate(n, faces, add), check(byFaces);
}

TEST(LSmoothCache, KeepsOpenVerticesOfQuads) {
    const Sheet s;
    std::vector<LQuad> quads;
    for (size_t f = 0; f < s.faces.size(); f += 2) {
        const int *a = s.faces[f].v, *b = s.faces[f + 1].v;
        quads.push_back({{a[0], a[1], a[2], b[2]}});
    }
    const LAdjQuadList adjQuads{LQuadMesh(s.verts, quads)};
    const LAdjQuadList* const none = nullptr;
    LSmoothCache byQuads(s.mesh.GetNumVerts(), s.faces, s.verts),
        byVerts(s.mesh.GetNumVerts(), s.faces, s.verts);
    byQuads.Iterate(1, s.allFaces, s.allVerts, &s.adjVerts, &adjQuads, true);
    byVerts.Iterate(1, s.allFaces, s.allVerts, &s.adjVerts, none, true);
    for (const int v : s.allVerts) {
        const LPoint3& p = s.verts[v];
        const bool border = std::abs(p.x) == 0.5f || std::abs(p.y) == 0.5f;
        EXPECT_EQ(byQuads.read()[v] == p, border) << v;
        EXPECT_EQ(byVerts.read()[v] == p, s.adjVerts.GetAdjVertsForVert(v).size() < 5) << v;
    }
}

TEST(LSmoothCache, HostileListsAndFacesAreHarmless) {
    const std::vector<LFace> faces = {{{0, 1, 2}}, {{0, -1, 2}}, {{1, 2, 9}}};
    const std::vector<float> values = {3, 6, 9, 5};  // the last one in no face
    LFloatSmoothCache cache(4, faces, values);
    cache.Iterate(1, Ints{0, 7, -1, 2}, Ints{1, 1, 3, -2, 400}, true);
    EXPECT_TRUE(Same(cache.read(), {3, 6, 9, 5}));
    cache.Iterate(1, true);
    EXPECT_TRUE(Same(cache.read(), {6, 6, 6, 5}));
    EXPECT_EQ(LFloatSmoothCache(-3, faces, values).GetNumVerts(), 0);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // they touch what we don't
#endif

RC_GTEST_PROP(LSmoothCache, ColoursAndStencilsGoRoundAlike, ()) {
    const Sheet s;
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const auto next = [&] { return float(random() % 256) / 255; };
    std::vector<LAColor> colours(s.allVerts.size());
    std::vector<float> stencils(s.allVerts.size());
    for (LAColor& c : colours) c = {next(), next(), next(), next()};
    for (float& f : stencils) f = next();
    LAColorSmoothCache both(s.mesh.GetNumVerts(), s.faces, colours, stencils);
    LAColorSmoothCache2 plain(s.mesh.GetNumVerts(), s.faces, colours);
    const Ints verts = Subset(int(s.allVerts.size()));
    both.Iterate(2, s.allFaces, verts, true), both.Iterate(1, true);
    plain.Iterate(2, s.allFaces, verts, true), plain.Iterate(1, true);
    for (int round = 0; round < 3; ++round) {
        const Ints& finished = round < 2 ? verts : s.allVerts;
        colours = Round(colours, s.faces, s.allFaces, finished, true);
        stencils = Round(stencils, s.faces, s.allFaces, finished, true);
    }
    RC_ASSERT(Same(both.read(), colours) && Same(plain.read(), colours));
    RC_ASSERT(Same(both.stencils(), stencils));
}
