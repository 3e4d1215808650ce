#include "core/morph/LMorphTarget.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "core/mesh/Triangulation.h"
#include "core/morph/MorphCallbacks.h"
#include "core/morph/SkinFrames.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

int UpTo(int n) {
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, n + 1));
}

/// Offsets with stretches of zeros between.
std::vector<LPoint3> SomeOffsets(int count) {
    std::vector<LPoint3> offsets(count);
    for (int v = 0; v < count;) {
        const bool zero = UpTo(1);
        for (int end = std::min(count, v + 1 + UpTo(6)); v < end; ++v)
            if (!zero) offsets[v] = LPoint3(UpTo(20) - 10, UpTo(20) - 10, UpTo(20) - 10) * 0.5f;
    }
    return offsets;
}

/// A torus with its UVs on levels of quads, and vectors on all of them.
struct Levels {
    LSubdivMesh geom, delta;
    LUVSubdivChannel uvs;

    explicit Levels(int count) : geom(Triangulate(shapes::Torus(8, 6))), delta(geom) {
        const PolyMesh polygons = shapes::Torus(8, 6);
        std::string error;
        uvs.Init(polygons.uvs, TriangulateUVs(polygons), geom.GetNumFaces(), error);
        while (count-- > 0) Add();
        std::mt19937 random(11);
        std::normal_distribution<float> some;
        for (int v = 0; v < geom.GetNumVerts(); ++v)
            delta.SetVertByAbsIdx(v, {some(random), some(random), some(random)});
    }
    void Add() {
        uvs.SubdivideAll_Quad(*geom.LevelTables(geom.GetNumSubivLevels() - 1), true);
        geom.SubdivideAll_Quad(true, true);
        delta.SubdivideLike(geom, false);
    }
    LMorphTarget Target() const {
        LMorphTarget target(nullptr, "smile", geom.GetNumLevelVerts(0));
        // As it came in: the levels have smoothed the geometry's own.
        const PolyMesh polygons = shapes::Torus(8, 6);
        target.CopySkin(polygons.positions.data(), geom.GetNumLevelVerts(0));
        target.CopyFromMesh(&delta);
        return target;
    }
};

float Farthest(const LMorphTarget& a, const LSubdivMesh& b) {
    float far = 0;
    for (int v = 0; v < b.GetNumVerts(); ++v)
        far = std::max(far, (a.MorphVector(v) - b.GetVertByAbsIdx(v)).Len());
    return far;
}

}  // namespace

RC_GTEST_PROP(MorphTarget, HoldsAndAddsWhatItTook, ()) {
    const int count = 1 + UpTo(60), limit = UpTo(70);
    const std::vector<LPoint3> offsets = SomeOffsets(count);
    LMesh mesh(count, 1);
    for (int v = 0; v < count; ++v) mesh.SetVert(v, {float(v), 0, 1});
    LSubdivMesh delta(mesh);
    std::copy(offsets.begin(), offsets.end(), delta.GetAllVertsPtr());
    LMorphTarget target(nullptr, "t", count);
    RC_ASSERT(!target.HasXYZ());
    RC_ASSERT(target.CopyFromMesh(&delta) && target.HasXYZ());

    const auto moved = [](const LPoint3& d) { return !(d == LPoint3::Zero); };
    const size_t some = std::count_if(offsets.begin(), offsets.end(), moved);
    RC_ASSERT(target.SizeGeom() == std::max<size_t>(some, 1));
    for (int v = 0; v < count; ++v) {
        LPoint3 offset;
        RC_ASSERT(target.MorphVector(v) == offsets[v]);
        RC_ASSERT(target.MorphVector(v, offset) == (moved(offsets[v]) || (v == 0 && some == 0)));
    }
    RC_ASSERT(target.MorphVector(-1) == LPoint3::Zero &&
              target.MorphVector(count) == LPoint3::Zero);

    LMesh sum(mesh), written(mesh);
    target.ApllyMorph(&sum, 0.5f, limit);
    target.ApllyMorph(&mesh, &written, limit);
    for (int v = 0; v < count; ++v) {
        const LPoint3 d = v < limit ? offsets[v] : LPoint3::Zero;
        RC_ASSERT(sum.GetVert(v) == mesh.GetVert(v) + d * 0.5f);
        RC_ASSERT(written.GetVert(v) == mesh.GetVert(v) + d);
    }
    target.DeleteTopLevel(limit);
    for (int v = 0; v < count; ++v)
        RC_ASSERT(target.MorphVector(v) == (v < limit ? offsets[v] : LPoint3::Zero));
}

TEST(MorphTarget, DropsWhatIsTooShortToCount) {
    const LPoint3 offsets[] = {{1e-5f, 0, 0}, {0, 1e-4f, 0}, {NAN, 0, 0}};
    LMorphTarget target(nullptr, "t", 3);
    ASSERT_TRUE(target.CopyFromMorph(offsets, 3));
    EXPECT_EQ(target.SizeGeom(), 1u);
    EXPECT_EQ(target.MorphVector(1), offsets[1]);
    ASSERT_TRUE(target.CopyFromMorph(offsets, 1));
    EXPECT_TRUE(target.HasXYZ()) << "set, if only to nothing";
    EXPECT_FALSE(target.CopyFromMorph(offsets, 0));
    target.ClearGeom();
    EXPECT_FALSE(target.HasXYZ());
}

TEST(MorphTarget, GainsALevelByInterpolationAndLosesItAgain) {
    Levels levels(1);
    LMorphTarget target = levels.Target();
    const LMorphTarget before = target;
    levels.Add();
    LSubdivMesh scratch(levels.delta);
    ASSERT_TRUE(target.AddSubdivLevel(&scratch));
    EXPECT_EQ(Farthest(target, levels.delta), 0);
    EXPECT_EQ(target.proxy(), before.proxy());

    LSubdivMesh one(levels.geom, false), all(levels.geom, false);
    one.ClearAllLevelsVerts();
    all.ClearAllLevelsVerts();
    EXPECT_EQ(target.ApplyToLevels(&one, 1, 2), levels.geom.GetNumLevelVerts(0));
    EXPECT_EQ(target.ApplyToLevels(&all, -1, 2), levels.geom.GetNumVerts());
    EXPECT_EQ(one.GetVertByAbsIdx(5), all.GetVertByAbsIdx(5));
    EXPECT_EQ(one.GetVertByAbsIdx(levels.geom.GetNumLevelVerts(0)), LPoint3::Zero);

    target.DeleteTopLevel(before.geom().NumVerts());
    EXPECT_EQ(target.geom(), before.geom());
}

// A tangent offset says something only on the surface that it was made on.
TEST(MorphTarget, GainsALevelInTangentSpaceAsItWouldInObjectSpace) {
    Levels levels(1);
    const auto convert = [&](LSubdivMesh& mesh, int direction) {
        const LMeshBasesUV2 bases(&levels.geom, &levels.uvs, direction);
        mesh.TransformVectorsByLocal(&bases, nullptr, -1);
    };
    LSubdivMesh tangent(levels.delta);
    convert(tangent, LMeshBases::kObjectToTangent);
    LMorphTarget target = levels.Target();
    target.CopyFromMesh(&tangent);
    const LMorphTarget before = target;

    levels.Add();
    SkinFrames below(levels.geom, &levels.uvs, 2, 0), above(levels.geom, &levels.uvs, 3, 0);
    LSubdivMesh scratch(levels.delta);
    ASSERT_TRUE(target.AddSubdivLevelOwnSkin(&scratch, &below, &above));
    LSubdivMesh back(levels.delta);
    target.CopyToLevels(&back);
    convert(back, LMeshBases::kTangentToObject);
    for (int v = 0; v < back.GetNumVerts(); ++v)
        EXPECT_LT((back.GetVertByAbsIdx(v) - levels.delta.GetVertByAbsIdx(v)).Len(), 1e-5f) << v;

    target.DeleteTopLevelOwnSkin(before.geom().NumVerts(), &below, &above);
    for (int v = 0; v < before.geom().NumVerts(); ++v)
        EXPECT_LT((target.MorphVector(v) - before.MorphVector(v)).Len(), 1e-5f) << v;
    EXPECT_EQ(target.geom().NumVerts(), before.geom().NumVerts());
}

TEST(MorphTarget, ShowsItsLowestLevelAsTheFullOneLooks) {
    Levels levels(2);
    const LSubdivMesh base(*levels.geom.GetLevelCopy(0));
    LMeshBasesUV2 full(&levels.geom, &levels.uvs, 0), low(&base, &levels.uvs, 0);
    LMorphTarget target = levels.Target();
    target.CreateProxyTang(&full, &low);
    // In object space both say the same of level 0.
    LSubdivMesh fine(levels.delta), coarse(base);
    fine.TransformVectorsByLocal(&full, nullptr, -1);
    std::fill_n(coarse.GetAllVertsPtr(), coarse.GetNumVerts(), LPoint3::Zero);
    target.proxy().AddTo(coarse.GetAllVertsPtr(), coarse.GetNumVerts(), 1);
    coarse.TransformVectorsByLocal(&low, nullptr, 0);
    for (int v = 0; v < coarse.GetNumVerts(); ++v)
        EXPECT_LT((coarse.GetVert(v) - fine.GetVertByAbsIdx(v)).Len(), 1e-5f) << v;
    target.CreateProxyObj();
    EXPECT_EQ(*target.proxy().Find(3), levels.delta.GetVertByAbsIdx(3));
}
