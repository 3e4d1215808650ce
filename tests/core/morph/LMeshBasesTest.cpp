#include "core/morph/LMeshBases.h"

#include <gtest/gtest.h>

#include <random>

#include "core/io/ObjReader.h"
#include "core/math/LQuat.h"
#include "core/sculpt/LThreadGroup.h"
#include "tests/core/math/SameBits.h"
#include "tests/core/subdiv/Levels.h"
#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

/// A mesh with its UVs on two quad levels.
struct Surface {
    LSubdivMesh mesh;
    LUVSubdivChannel uvs;

    explicit Surface(const PolyMesh& polygons, int levels = 2) : mesh(Triangulate(polygons)) {
        std::string error;
        EXPECT_TRUE(uvs.Init(polygons.uvs, TriangulateUVs(polygons), mesh.GetNumFaces(), error));
        for (int i = 0; i < levels; ++i) {
            EXPECT_TRUE(uvs.SubdivideAll_Quad(*mesh.GetLevelTopology(i), true));
            EXPECT_TRUE(mesh.SubdivideAll_Quad(true, true));
        }
    }
    int Count() const { return mesh.GetNumVerts(); }
};

PolyMesh Rough(PolyMesh mesh) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> some(-0.03f, 0.03f);
    for (LPoint3& p : mesh.positions) p += {some(random), some(random), some(random)};
    return mesh;
}

/// A vector of length about 1 for each vertex of all levels.
LSubdivMesh Vectors(const LSubdivMesh& like) {
    std::mt19937 random(3);
    std::normal_distribution<float> some;
    LSubdivMesh vectors(like);
    for (int v = 0; v < like.GetNumVerts(); ++v)
        vectors.SetVertByAbsIdx(v, {some(random), some(random), some(random)});
    return LSubdivMesh(vectors);
}

bool SameBits(const LSubdivMesh& a, const LSubdivMesh& b) {
    return SameBits(AllVerts(a), AllVerts(b));
}

void ExpectThereAndBack(const Surface& surface) {
    LMeshBasesUV2 bases(&surface.mesh, &surface.uvs, LMeshBases::kObjectToTangent);
    const LSubdivMesh start = Vectors(surface.mesh);
    LSubdivMesh vectors(start);
    LThreadGroup workers(4);
    vectors.TransformVectorsByLocal(&bases, nullptr, -1, &workers);
    LSubdivMesh alone(start);
    alone.TransformVectorsByLocal(&bases, nullptr, -1);
    EXPECT_TRUE(SameBits(alone, vectors)) << "1 and 4 workers";
    EXPECT_FALSE(SameBits(start, vectors));
    bases.SetDirection(LMeshBases::kTangentToObject);
    vectors.TransformVectorsByLocal(&bases, nullptr, -1, &workers);
    for (int v = 0; v < surface.Count(); ++v)
        ASSERT_LT((vectors.GetVert(v) - start.GetVert(v)).Len(), 4e-6f) << v;
}

}  // namespace

TEST(MeshBases, FramesAreOrthonormalRightHandedAndFollowTheUVs) {
    for (const float u : {1.0f, -1.0f}) {
        PolyMesh torus = Rough(shapes::Torus(16, 12));
        for (LPoint2& uv : torus.uvs) uv.x *= u;
        const Surface surface(torus);
        const LMeshBasesUV2 bases(&surface.mesh, &surface.uvs, LMeshBases::kTangentToObject);
        EXPECT_EQ(bases.GetBarySrc(), &surface.mesh);
        for (int level = 0; level <= 2; ++level) {
            const auto mesh = surface.mesh.GetLevelCopy(level);
            for (int i = 0; i < 3 * mesh->GetNumFaces(); i += 7) {
                const int v = mesh->GetFace(i / 3).v[i % 3];
                const LPoint3 p = surface.mesh.GetVert(v);
                const LMatrix3 frame = bases.GetVertexTM(level, i / 3, i % 3);
                ASSERT_FALSE(frame.degenerated);
                for (int row = 0; row < 3; ++row) EXPECT_NEAR(frame[row].Len(), 1, 1e-5f);
                EXPECT_TRUE((frame[0] ^ frame[1]).Equals(frame[2], 1e-5f));
                EXPECT_TRUE(frame[2].Equals(mesh->GetVertNormal(v), 1e-4f));
                EXPECT_EQ(frame[3], p);
                // u grows around the torus, counterclockwise as seen from above; where the UVs are
                // mirrored the tangent still goes that way.
                EXPECT_GT(frame[0] % LPoint3(p.z, 0, -p.x), 0);
            }
        }
    }
}

TEST(MeshBases, VectorsComeBackFromTangentSpace) {
    ExpectThereAndBack(Surface(Rough(shapes::Torus(24, 16))));
    PolyMesh head;
    FileError error;
    const auto file = shapes::ModelsFolder() / "head/ict_neutral.obj.xz";
    if (!std::filesystem::exists(file)) GTEST_SKIP() << "the shared models are not here";
    ASSERT_TRUE(ParseObj(shapes::TextOf(file), head, error)) << error.Text();
    ExpectThereAndBack(Surface(head, 1));
}

TEST(MeshBases, AVectorTurnsWithTheSurfaceAndKeepsItsLength) {
    const PolyMesh torus = Rough(shapes::Torus(16, 12));
    const Surface before(torus);
    LMatrix3 turn;
    turn.SetRotation(Normalized(LPoint3(1, 2, -3)), 2);
    PolyMesh turned = torus;
    for (LPoint3& p : turned.positions) p = turn.TransfromPoint(p) * 3.0f + LPoint3(4, 5, 6);
    LMeshBasesUV2 bases(&before.mesh, &before.uvs, LMeshBases::kObjectToTangent);
    const LSubdivMesh start = Vectors(before.mesh);
    LSubdivMesh vectors(start);
    vectors.TransformVectorsByLocal(&bases, nullptr, -1);
    // New positions of level 0 are carried up by the rules of the levels.
    bases.Update(turned.positions.data());
    const Surface after(turned);
    EXPECT_TRUE(SameBits(bases, after.mesh));
    bases.SetDirection(LMeshBases::kTangentToObject);
    LMeshBasesUV2 copy(bases), other(nullptr);
    other.CopyBases(&copy);
    vectors.TransformVectorsByLocal(&other, nullptr, -1);
    for (int v = 0; v < before.Count(); ++v) {
        const LPoint3 expected = turn.TransfromVector(start.GetVert(v));
        ASSERT_LT((vectors.GetVert(v) - expected).Len(), 1e-4f) << v;
    }
}

TEST(MeshBases, WithoutAFrameAVectorStays) {
    const auto stay = [](PolyMesh mesh, int levels = 1) {
        const Surface surface(mesh, levels);
        const LSubdivMesh start = Vectors(surface.mesh);
        for (const int direction : {LMeshBases::kTangentToObject, LMeshBases::kObjectToTangent}) {
            const LMeshBasesUV2 bases(&surface.mesh, &surface.uvs, direction);
            LSubdivMesh vectors(start);
            vectors.TransformVectorsByLocal(&bases, nullptr, -1);
            if (!SameBits(vectors, start)) return false;
        }
        return true;
    };
    EXPECT_FALSE(stay(Rough(shapes::Grid(4, 4))));
    PolyMesh point = Rough(shapes::Grid(4, 4)), tiny = point, bare = point, folded = point;
    for (LPoint2& uv : point.uvs) uv = {0.5f, 0.5f};
    EXPECT_TRUE(stay(point)) << "all UVs at one point";
    for (LPoint3& p : tiny.positions) p *= 1e-5f;
    EXPECT_TRUE(stay(tiny)) << "all corners together";
    std::fill(bare.cornerUVs.begin(), bare.cornerUVs.end(), -1);
    EXPECT_TRUE(stay(bare)) << "no corner has a UV";
    for (LPoint3& p : folded.positions) p = {p.x, 0, 0};
    EXPECT_TRUE(stay(folded)) << "no area, no normal";
    const Surface surface(shapes::Grid(2, 2));
    const LMeshBasesUV2 without(&surface.mesh, nullptr, LMeshBases::kTangentToObject);
    EXPECT_TRUE(without.GetVertexTM(0, 0, 0).degenerated);
    const LMeshBasesUV2 bases(&surface.mesh, &surface.uvs, LMeshBases::kTangentToObject);
    EXPECT_TRUE(bases.GetVertexTM(3, 0, 0).degenerated) << "no such level";
}
