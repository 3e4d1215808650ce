#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

// The brushes whose steps add up, against plain versions and their promises.

namespace {

/// The weight of p about c with the curve that a node starts with: linear samples from 1 to 0.
float PlainWeight(const LPoint3& p, const LPoint3& c, float radius) {
    const float d = (p - c).Len();
    return d <= radius ? 1 - d / radius : 0;
}

/// Positions after one unswept step of a mode (the first step of a stroke is one).
std::vector<LPoint3> OneStep(LHeadlessNode& node, const Press& press, const LPoint3& to) {
    Stroke(node, press, {to});
    return Surface(node);
}

}  // namespace

TEST(StrokeBrushes, OnePullStepRaisesByTheFalloff) {
    for (int pushPull = 0; pushPull < 3; ++pushPull)
        for (const int mode : {8, 9}) {
            const auto node = OpenNode(Boulder(5));
            node->settings().pushPullMode = pushPull;
            const std::vector<LPoint3> before = Surface(*node);
            const std::vector<LPoint3> normals(node->ldisplayCache()->vnormals().begin(),
                                               node->ldisplayCache()->vnormals().end());
            const Press press{.mode = mode, .pos = before[9]};
            const LPoint3 to = press.pos + LPoint3(0.01f, 0.02f, 0);
            const float strength = 0.1f * node->loctTree()->GetExtent().Len() * 0.5f;
            LPoint3 common;
            TreeHits hits;
            node->findFaces(LOctTree::Sphere{to, press.radius}, hits);
            for (const int v : hits.verts) common += normals[v];
            common.Normalize();
            const std::vector<LPoint3> after = OneStep(*node, press, to);
            for (size_t v = 0; v < before.size(); ++v) {
                const LPoint3 n = pushPull == 0 ? -press.dir : pushPull == 1 ? normals[v] : common;
                const float w = PlainWeight(before[v], to, press.radius);
                const LPoint3 expected = n * (w * strength * (mode == 8 ? 1 : -1));
                ASSERT_LT((after[v] - before[v] - expected).Len(), 2e-5f);
            }
        }
}

TEST(StrokeBrushes, PassingAgainAddsOnlyWithAccumulation) {
    for (const bool accumulate : {false, true}) {
        const auto node = OpenNode(Boulder(4));
        node->settings().accumulate = accumulate;
        const LPoint3 pos = Surface(*node)[9];
        const std::vector<LPoint3> there = Path(pos, {0.02f, 0, 0}, 4);
        Stroke(*node, {.mode = 8, .pos = pos}, there);
        const float once = node->GetMaxDelta();
        node->UndoStroke();
        std::vector<LPoint3> back = there;
        back.insert(back.end(), there.rbegin() + 1, there.rend());
        back.push_back(pos + LPoint3(0.001f, 0, 0));
        Stroke(*node, {.mode = 8, .pos = pos}, back);
        const float twice = node->GetMaxDelta();
        EXPECT_TRUE(accumulate ? twice > once * 1.3f : twice < once * 1.1f) << twice / once;
    }
}

TEST(StrokeBrushes, AFastStrokeLeavesNoGaps) {
    // One long step between two short ones: everything near its line rises.
    const auto node = OpenNode(shapes::Grid(80, 20, false, 4));
    const LPoint3 from(-1.5f, 0, 0);
    Stroke(*node, {.mode = 8, .pos = from, .radius = 0.2f},
           {from + LPoint3(0.02f, 0, 0), from + LPoint3(2.8f, 0, 0), from + LPoint3(2.82f, 0, 0)});
    const std::vector<LPoint3> after = Surface(*node);
    for (const LPoint3& p : after) {
        const bool near = std::fabs(p.y) < 0.02f && p.x > -1.4f && p.x < 1.2f;
        EXPECT_TRUE(!near || p.z > 0.1f) << p.x;
    }
}

TEST(StrokeBrushes, SmoothBrushIsTheMeanOverFacesAndPolygonEdges) {
    const auto node = OpenNode(shapes::Torus(24, 12));  // quads: the diagonals join no neighbours
    node->settings().useFalloff2 = false;
    const LMesh& mesh = *node->lmeshCache();
    const std::vector<LPoint3> before = Surface(*node);
    const Press press{.mode = 12, .pos = before[5], .radius = 3};  // all of it, one round
    const std::vector<LPoint3> after = OneStep(*node, press, press.pos + LPoint3(0.01f, 0, 0));
    const float strength = std::min(1.0f, press.radius * 0.1f);
    for (int v = 0; v < mesh.GetNumVerts(); ++v) {
        LPoint3 sum;
        int faces = 0;
        for (const LFace& face : mesh.Faces()) {
            const int k = face.CornerOf(v);
            if (k < 0) continue;
            LPoint3 mean = before[v];
            int count = 1;
            for (const int e : {k, (k + 2) % 3})
                if (!face.IsEdgeGluing(e))
                    mean += before[face.v[e == k ? (k + 1) % 3 : e]], ++count;
            sum += mean / static_cast<float>(count);
            ++faces;
        }
        const LPoint3 expected =
            before[v] + (sum / static_cast<float>(faces) - before[v]) * strength;
        ASSERT_LT((after[v] - expected).Len(), 1e-6f);
    }
}

TEST(StrokeBrushes, RelaxKeepsWhatIsFlatAndEvensOutWhatIsNot) {
    PolyMesh crumpled = shapes::Grid(30, 30);
    std::mt19937 random(1);
    std::uniform_real_distribution<float> noise(-0.004f, 0.004f);
    for (LPoint3& p : crumpled.positions) p += LPoint3(noise(random), noise(random), 0);
    const auto flat = OpenNode(crumpled);
    const std::vector<LPoint3> before = Surface(*flat);
    Stroke(*flat, {.mode = 17, .pos = {0, 0, 0}}, Path({0, 0, 0}, {0.02f, 0, 0}, 5));
    EXPECT_TRUE(SameBits(Surface(*flat), before)) << "a flat sheet keeps its vertices";

    for (LPoint3& p : crumpled.positions) p.z = 5 * noise(random);
    const auto rough = OpenNode(crumpled);
    const auto roughness = [](const std::vector<LPoint3>& surface) {
        double sum = 0;
        for (const LPoint3& p : surface)
            if (std::fabs(p.x) < 0.15f && std::fabs(p.y) < 0.15f) sum += p.z * p.z;
        return sum;
    };
    const double rugged = roughness(Surface(*rough));
    Stroke(*rough, {.mode = 17, .pos = {0, 0, 0}}, Path({0, 0, 0}, {0.02f, 0, 0}, 10));
    EXPECT_LT(roughness(Surface(*rough)), 0.7 * rugged);
}

TEST(StrokeBrushes, OpenBordersStay) {
    // The rim of a sheet: its corners have one or two faces, its sides three.
    for (const int mode : {6, 12, 17}) {
        PolyMesh sheet = shapes::Grid(12, 12);
        std::mt19937 random(2);
        std::uniform_real_distribution<float> noise(-0.02f, 0.02f);
        for (LPoint3& p : sheet.positions) p.z = noise(random);
        const auto node = OpenNode(sheet);
        const std::vector<LPoint3> before = Surface(*node);
        Stroke(*node, {.mode = mode, .pos = {0.3f, 0.3f, 0}, .radius = 1},
               Path({0.3f, 0.3f, 0}, {0.05f, 0, 0}, 4));
        const std::vector<LPoint3> after = Surface(*node);
        int inner = 0;
        for (size_t v = 0; v < before.size(); ++v) {
            const size_t faces = node->ldisplayCache()
                                     ->GetAdjFaceList()
                                     ->GetAdjFacesForVert(static_cast<int>(v))
                                     .size();
            const bool corner = faces < 3,
                       rim = std::fabs(before[v].x) == 0.5f || std::fabs(before[v].y) == 0.5f;
            const bool stays = corner || (rim && mode != 12);
            EXPECT_TRUE(!stays || before[v] == after[v]) << "mode " << mode;
            inner += !rim && !(before[v] == after[v]);
        }
        EXPECT_GT(inner, 20);
    }
}

TEST(StrokeBrushes, SharpenAndSmoothGoOppositeWays) {
    const auto node = OpenNode(Boulder(4));
    const LPoint3 pos = Surface(*node)[9];
    const auto bumps = [&] {
        // How far vertices stand out of the mean of their neighbours.
        double sum = 0;
        const std::vector<LPoint3> surface = Surface(*node);
        for (size_t v = 0; v < surface.size(); ++v) {
            if ((surface[v] - pos).Len() > 0.4f) continue;
            LPoint3 mean;
            const auto around = node->ldisplayCache()->GetAdjVertList()->GetAdjVertsForVert(v);
            for (const int n : around) mean += surface[n];
            sum += (surface[v] - mean / static_cast<float>(around.size())).Len();
        }
        return sum;
    };
    node->settings().paintPressMult.Set(13, 10);
    node->settings().paintPressMult.Set(12, 10);
    const double before = bumps();
    Stroke(*node, {.mode = 13, .pos = pos, .radius = 0.8f}, Path(pos, {0.02f, 0, 0}, 4));
    const double sharp = bumps();
    EXPECT_GT(sharp, before * 1.05);
    node->UndoStroke();
    Stroke(*node, {.mode = 12, .pos = pos, .radius = 0.8f}, Path(pos, {0.02f, 0, 0}, 4));
    EXPECT_LT(bumps(), before * 0.9);
}

TEST(StrokeBrushes, FlattenConvergesOnThePlaneAndNeverCrossesIt) {
    PolyMesh dome = shapes::Grid(40, 40);
    for (LPoint3& p : dome.positions) p.z = 0.2f * std::cos(3 * p.x) * std::cos(3 * p.y);
    const auto node = OpenNode(dome);
    node->settings().pushPullMode = 0;  // the plane across the view, here z = 0.1
    node->settings().paintPressMult.Set(16, 5);
    const std::vector<LPoint3> before = Surface(*node);
    const Press press{.mode = 16, .pos = {0, 0, 0.1f}, .radius = 0.3f};
    float last = 1;
    for (int i = 0; i < 8; ++i) {
        Stroke(*node, press, Path(press.pos, {0.01f, 0, 0}, 3));
        float farthest = 0;
        const std::vector<LPoint3> after = Surface(*node);
        for (size_t v = 0; v < after.size(); ++v) {
            EXPECT_GE((before[v].z - 0.1f) * (after[v].z - 0.1f), -1e-9f) << "crossed the plane";
            if (std::hypot(before[v].x, before[v].y) < 0.1f)
                farthest = std::max(farthest, std::fabs(after[v].z - 0.1f));
        }
        EXPECT_LT(farthest, last);
        last = farthest;
    }
    EXPECT_LT(last, 0.01f);
}

TEST(StrokeBrushes, AttractGathersRepelScattersDragTakesAlong) {
    const LPoint3 centre(0.02f, 0.01f, 0);
    const auto spread = [&](const std::vector<LPoint3>& surface) {
        double sum = 0;
        int count = 0;
        for (const LPoint3& p : surface)
            if ((p - centre).Len() < 0.2f) sum += (p - centre).Len(), ++count;
        return sum / count;
    };
    for (const int mode : {10, 11}) {
        const auto node = OpenNode(shapes::Grid(40, 40));
        const double before = spread(Surface(*node));
        node->settings().paintPressMult.Set(10, 0.05f);
        // There and around, so that the second touch of each vertex moves it.
        Stroke(*node, {.mode = mode, .pos = centre, .radius = 0.25f},
               {centre + LPoint3(0.001f, 0, 0), centre + LPoint3(0, 0.001f, 0), centre,
                centre + LPoint3(0.001f, 0, 0)});
        const double after = spread(Surface(*node));
        EXPECT_TRUE(mode == 10 ? after < before : after > before) << "mode " << mode;
    }
    const auto node = OpenNode(shapes::Grid(40, 40));
    const std::vector<LPoint3> before = Surface(*node);
    Stroke(*node, {.mode = 15, .pos = centre, .radius = 0.2f}, Path(centre, {0.05f, 0, 0}, 3));
    const std::vector<LPoint3> after = Surface(*node);
    int moved = 0;
    for (size_t v = 0; v < before.size(); ++v) {
        EXPECT_GE(after[v].x, before[v].x);
        EXPECT_NEAR(after[v].y, before[v].y, 0.01f);
        moved += after[v].x > before[v].x;
    }
    EXPECT_GT(moved, 50);
}

TEST(StrokeBrushes, BlendPullsToThePlainGeometry) {
    const auto node = OpenNode(Boulder(4));
    const LPoint3 pos = Surface(*node)[9];
    Stroke(*node, {.mode = 8, .pos = pos}, Path(pos, {0.02f, 0, 0}, 3));
    const float raised = node->GetMaxDelta();
    node->settings().paintPressMult.Set(14, 5);
    Stroke(*node, {.mode = 14, .pos = pos, .radius = 1}, Path(pos, {0.02f, 0, 0}, 6));
    EXPECT_LT(node->GetMaxDelta(), 0.2f * raised);
}
