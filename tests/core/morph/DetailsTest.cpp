#include <gtest/gtest.h>

#include "core/morph/LMeshBases.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

constexpr int kCoarse = 1, kTop = 3;

/// A node with levels of quads for 'q' and of triangles for 'l', with fine strokes at the top.
std::unique_ptr<LHeadlessNode> Detailed(const PolyMesh& mesh, const std::string& kinds,
                                        bool smooth = true, int workers = 1) {
    auto node = OpenNode(mesh, workers);
    node->settings().doSmoothGeomSubdivs = smooth;
    for (const char kind : kinds)
        EXPECT_TRUE(kind == 'q' ? node->SubdivideAll_Quad() : node->SubdivideAll_Loop());
    for (int i = 0; i < 12; ++i) {
        const std::vector<LPoint3> surface = Surface(*node);
        const LPoint3 pos = surface[i * surface.size() / 12];
        Stroke(*node,
               {.mode = i % 2 ? 8 : 0, .pos = pos, .normal = {0.3f, 0.2f, 1}, .radius = 0.3f},
               Path(pos, {0.03f, 0.01f, 0.02f}, 3));
    }
    return node;
}

/// Keeps the coarse level of a mesh and carries it to the top without smoothing.
void MakeCoarse(LSubdivMesh& mesh, const LSubdivMesh& levels) {
    while (mesh.GetNumSubivLevels() > kCoarse + 1) mesh.DeleteTopLevel();
    while (mesh.SubdivideLike(levels, false)) {
    }
}

/// A delta parted in two: the details, and the surface that they lie on.
struct Parted {
    LSubdivMesh details, surface;

    explicit Parted(const LHeadlessNode& node)
        : details(*node.GetDelta()->GetOrigMesh()), surface(*node.lobject()->GetOrigGeom()) {
        LSubdivMesh coarse(details);
        MakeCoarse(coarse, details);
        for (int v = 0; v < Count(); ++v) {
            details.OffsetVertByAbsIdx(v, -coarse.GetVertByAbsIdx(v));
            surface.OffsetVertByAbsIdx(v, coarse.GetVertByAbsIdx(v));
        }
    }
    int Count() const { return details.GetNumLevelVerts(kTop); }
    LPoint3 operator[](int v) const { return details.GetVertByAbsIdx(v); }
};

PolyMesh WithoutUVs(PolyMesh mesh) {
    mesh.uvs.clear();
    mesh.cornerUVs.clear();
    return mesh;
}

/// Turns the whole of the coarse level as one piece about an axis, by an angle that is returned as
/// its rotation.
LMatrix3 TurnAll(LHeadlessNode& node, const LPoint3& axis) {
    EXPECT_TRUE(node.SetActiveSubdivLevel(kCoarse));
    node.settings().useFalloff = false;
    Stroke(node, {.mode = 1, .pos = {}, .dir = axis, .radius = 100}, {LPoint3(30, 0, 0)});
    LMatrix3 turn;
    turn.SetRotation(axis, -0.3f * static_cast<float>(M_PI));  // as the Rotate brush turns
    return turn;
}

}  // namespace

class Details : public testing::TestWithParam<std::string> {};

TEST_P(Details, TurnWithTheSurfaceAndOnlyWithUVs) {
    for (const bool smooth : {false, true})
        for (const bool withUVs : {true, false}) {
            const PolyMesh torus = shapes::Torus(8, 6);
            const auto node = Detailed(withUVs ? torus : WithoutUVs(torus), GetParam(), smooth);
            const Parted before(*node);
            const LMatrix3 turn = TurnAll(*node, Normalized(LPoint3(-1, -2, 2)));
            const std::vector<LPoint3> sculpted = Surface(*node), deltas = Deltas(*node);
            ASSERT_TRUE(node->SetActiveSubdivLevel(kTop));
            EXPECT_EQ(CheckCaches(*node), "");
            EXPECT_TRUE(std::equal(sculpted.begin(), sculpted.end(), Surface(*node).begin()))
                << "what was sculpted stays as it is";
            const Parted after(*node);
            LSubdivMesh expected(before.details);
            if (withUVs) {
                const LUVSubdivChannel* uvs = node->lobject()->GetUVChannel(0);
                const LMeshBasesUV2 from(&before.surface, uvs, LMeshBases::kObjectToTangent),
                    to(&after.surface, uvs, LMeshBases::kTangentToObject);
                expected.TransformVectorsByLocal(&from, nullptr, -1);
                expected.TransformVectorsByLocal(&to, nullptr, -1);
            }
            float turned = 0;
            for (int v = 0; v < after.Count(); ++v) {
                EXPECT_LT((after[v] - expected.GetVertByAbsIdx(v)).Len(), 1e-5f) << v;
                turned = std::max(turned, (after[v] - before[v]).Len());
                // A smooth level lies inside the polygons that its coarse delta is interpolated
                // on, so that its surface isn't turned quite as a whole.
                if (!smooth && withUVs) {
                    EXPECT_LT((after[v] - turn.TransfromVector(before[v])).Len(), 1e-5f) << v;
                }
            }
            EXPECT_EQ(turned > 0.02f, withUVs);
        }
}

TEST_P(Details, FarFromTheChangeAndWithoutOneTheBitsStay) {
    const auto node = Detailed(Boulder(2), GetParam());
    const std::vector<LPoint3> start = Deltas(*node);
    for (const unsigned level : {0u, 2u, 1u, 3u, 1u}) {
        ASSERT_TRUE(node->SetActiveSubdivLevel(level));
        EXPECT_TRUE(SameBits(Deltas(*node), start)) << "a change of level alone";
    }
    // A stroke that is undone before anyone asks leaves nothing behind.
    const LPoint3 pos = Surface(*node)[9];
    Stroke(*node, {.mode = 0, .pos = pos}, {pos + LPoint3(0.2f, 0.1f, 0)});
    ASSERT_TRUE(node->UndoStroke());
    node->UpdateSubdivLevels();
    EXPECT_TRUE(SameBits(Deltas(*node), start));

    Stroke(*node, {.mode = 0, .pos = pos}, {pos + LPoint3(0.2f, 0.1f, 0)});
    const std::vector<LPoint3> stroked = Deltas(*node);
    const LSubdivMesh& delta = *node->GetDelta()->GetOrigMesh();
    LSubdivMesh change(delta);  // how the coarse part moves
    for (size_t v = 0; v < start.size(); ++v) change.SetVertByAbsIdx(v, stroked[v] - start[v]);
    MakeCoarse(change, delta);
    node->UpdateSubdivLevels();
    const std::vector<LPoint3> after = Deltas(*node);
    const LMeshTopology& top = *delta.GetLevelTopology(kTop);
    std::vector<bool> near(after.size());
    for (const LFace& face : top.Faces())
        for (const int v : face.v)
            if (!(change.GetVertByAbsIdx(v) == LPoint3::Zero))
                for (const int w : face.v) near[w] = true;
    int followed = 0, still = 0;
    for (size_t v = 0; v < after.size(); ++v) {
        const bool coarse = static_cast<int>(v) < delta.GetNumLevelVerts(kCoarse);
        followed += near[v] && !coarse && !(after[v] == start[v]);
        if (coarse || !near[v]) {
            ASSERT_EQ(after[v], stroked[v]) << v;
        }
        still += !near[v];
    }
    EXPECT_GT(followed, 20);
    EXPECT_GT(still, 20);
    // What has followed is known: asking again, from any level, changes nothing.
    node->UpdateSubdivLevels();
    ASSERT_TRUE(node->SetActiveSubdivLevel(2));
    node->UpdateSubdivLevels();
    EXPECT_TRUE(SameBits(Deltas(*node), after));
}

TEST_P(Details, StrokesOnSeveralLevelsAddUpTheSameWithAnyNumberOfWorkers) {
    std::vector<LPoint3> first;
    for (const int workers : {1, 4}) {
        const auto node = Detailed(shapes::Torus(16, 12), GetParam(), true, workers);
        for (const unsigned level : {1u, 0u, 2u, 1u}) {
            ASSERT_TRUE(node->SetActiveSubdivLevel(level));
            const LPoint3 pos = Surface(*node)[7];
            Stroke(*node, {.mode = 1, .pos = pos, .dir = {0, -1, 0}, .radius = 0.8f},
                   {pos + LPoint3(0.1f, 0, 0)});
            const std::vector<LPoint3> sculpted = Surface(*node);
            node->UpdateSubdivLevels();
            EXPECT_TRUE(SameBits(Surface(*node), sculpted));
            EXPECT_EQ(CheckCaches(*node), "");
        }
        if (workers == 1) first = Deltas(*node);
        EXPECT_TRUE(SameBits(Deltas(*node), first)) << workers;
    }
}

TEST_P(Details, ABackupRidesOnAnotherPose) {
    const PolyMesh torus = shapes::Torus(8, 6);
    const auto node = Detailed(torus, GetParam());
    LMorphDelta& delta = *node->GetDelta();
    const std::vector<LPoint3> start = Deltas(*node);
    EXPECT_FALSE(delta.RestoreBackup(nullptr));
    delta.MakeBackup(nullptr);
    EXPECT_FALSE(delta.GetBackupDirty());
    delta.ClearAllLevelsVerts();
    ASSERT_TRUE(delta.RestoreBackup(nullptr));
    EXPECT_TRUE(SameBits(Deltas(*node), start));
    EXPECT_FALSE(delta.GetBackup());
    // What was sculpted in between is gone on all levels.
    ASSERT_TRUE(node->SetActiveSubdivLevel(kCoarse));
    delta.MakeBackup(nullptr);
    Stroke(*node, {.mode = 0, .pos = Surface(*node)[3]}, {LPoint3(0.2f, 0.1f, 0)});
    node->UpdateSubdivLevels();
    ASSERT_TRUE(delta.RestoreBackup(nullptr));
    delta.SetDetailsDirty(true);
    ASSERT_TRUE(node->SetActiveSubdivLevel(kTop));
    EXPECT_TRUE(SameBits(Deltas(*node), start));

    LMatrix3 turn;
    turn.SetRotation(Normalized(LPoint3(3, 1, -2)), 1.2f);
    std::vector<LPoint3> pose = torus.positions;
    for (LPoint3& p : pose) p = turn.TransfromPoint(p) + LPoint3(1, 2, 3);
    for (const bool posed : {false, true}) {
        LMeshBasesUV2* bases = node->lobject()->GetBases();
        ASSERT_TRUE(bases);
        bases->SetDirection(LMeshBases::kTangentToObject);
        delta.MakeBackup(bases);
        if (posed) {
            ASSERT_TRUE(node->lobject()->Update(pose.data(), delta.GetOrigMesh(), -1));
        }
        bases = node->lobject()->GetBases();
        ASSERT_TRUE(delta.RestoreBackup(bases));
        EXPECT_EQ(bases->GetDirection(), LMeshBases::kTangentToObject);
        const std::vector<LPoint3> restored = Deltas(*node);
        for (size_t v = 0; v < start.size(); ++v) {
            const LPoint3 expected = posed ? turn.TransfromVector(start[v]) : start[v];
            ASSERT_LT((restored[v] - expected).Len(), posed ? 2e-5f : 1e-6f) << v;
        }
    }
}

TEST_P(Details, SessionsAndDeletedLevelsChangeNoSurface) {
    const auto node = Detailed(shapes::Torus(8, 6), GetParam());
    const auto reopen = [&] {
        const std::vector<LPoint3> before = Surface(*node), deltas = Deltas(*node);
        node->FinishSculpt(true);
        ASSERT_TRUE(node->InitSculpt());
        EXPECT_TRUE(SameBits(Surface(*node), before));
        EXPECT_TRUE(SameBits(Deltas(*node), deltas));
        EXPECT_EQ(CheckCaches(*node), "");
    };
    reopen();
    // Coarse, not yet carried up when the top goes.
    TurnAll(*node, {0, 1, 0});
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    reopen();
    // The levels are those of a node that never had the one that went.
    const auto other = OpenNode(shapes::Torus(8, 6));
    for (const char kind : GetParam().substr(0, 2))
        kind == 'q' ? other->SubdivideAll_Quad() : other->SubdivideAll_Loop();
    const LSubdivMesh &geom = *node->lobject()->GetOrigGeom(),
                      &fresh = *other->lobject()->GetOrigGeom();
    ASSERT_EQ(geom.GetNumSubivLevels(), 3);
    for (int v = 0; v < geom.GetNumLevelVerts(2); ++v)
        ASSERT_EQ(geom.GetVertByAbsIdx(v), fresh.GetVertByAbsIdx(v));
    ASSERT_TRUE(node->SubdivideAll_Quad());
    reopen();
    std::string error;
    EXPECT_TRUE(node->CanSubdivide(true, error)) << error;
}

INSTANTIATE_TEST_SUITE_P(Chains, Details, testing::Values("qqq", "qlq", "lqq", "lql"));
