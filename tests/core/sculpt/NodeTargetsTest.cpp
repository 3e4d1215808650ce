#include <cstdlib>

#include "core/morph/LFrameTerm.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/SkinFrames.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "tests/core/sculpt/Strokes.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

namespace {

std::vector<LPoint3> Noise(size_t count, unsigned seed, float size = 0.1f) {
    std::mt19937 random(seed);
    std::normal_distribution<float> some;
    std::vector<LPoint3> noise(count);
    // Some stay where they are.
    for (LPoint3& p : noise)
        if (random() % 4) p = LPoint3(some(random), some(random), some(random)) * size;
    return noise;
}

/// A torus with UVs on levels of quads, without a session.
std::unique_ptr<LHeadlessNode> TorusNode(int levels = 2) {
    auto node = std::make_unique<LHeadlessNode>(2);
    std::string error;
    EXPECT_TRUE(node->Load(shapes::Torus(8, 6), error)) << error;
    for (int i = 0; i < levels; ++i) EXPECT_TRUE(node->SubdivideAll_Quad());
    return node;
}

/// Sculpts all levels in the session, which is opened when there is none.
void Sculpt(LHeadlessNode& node, unsigned seed) {
    if (!node.IsSculpting()) {
        ASSERT_TRUE(node.InitSculpt());
    }
    LSubdivMesh& delta = *node.GetDelta()->GetOrigMesh();
    const auto noise = Noise(AllVerts(delta).size(), seed);
    std::copy(noise.begin(), noise.end(), delta.GetAllVertsPtr());
}

LMorphTarget* Stored(LHeadlessNode& node, LMorphTarget* target, unsigned seed) {
    Sculpt(node, seed);
    EXPECT_TRUE(node.StoreTarget(target));
    return target;
}

std::vector<LPoint3> ObjectDelta(const LHeadlessNode& node) {
    return AllVerts(*node.GetObjectDelta());
}

std::vector<LPoint3> Offsets(const LHeadlessNode& node, LMorphTarget* target, float weight = 1) {
    LSubdivMesh mesh(*node.lobject()->GetOrigGeom(), false);
    mesh.ClearAllVerts();
    target->ApplyToLevels(&mesh, -1, weight);
    return AllVerts(mesh);
}

/// The same, read in the frames of a surface.
std::vector<LPoint3> InObject(LHeadlessNode& node, const std::vector<LPoint3>& tangent,
                              LMeshBasesUV2* bases = nullptr) {
    LSubdivMesh mesh(*node.lobject()->GetOrigGeom(), false);
    std::copy(tangent.begin(), tangent.end(), mesh.GetAllVertsPtr());
    mesh.TransformVectorsByLocal(bases ? bases : node.lobject()->GetBases(), nullptr, -1);
    return AllVerts(mesh);
}

std::vector<LPoint3> Plus(std::vector<LPoint3> a, const std::vector<LPoint3>& b, float w = 1) {
    for (size_t i = 0; i < a.size(); ++i) a[i] += b[i] * w;
    return a;
}

float Farthest(const std::vector<LPoint3>& a, const std::vector<LPoint3>& b) {
    EXPECT_EQ(a.size(), b.size());
    float far = 0;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        far = std::max(far, (a[i] - b[i]).Len());
    return far;
}

LMatrix3 SomeTurn() {
    LMatrix3 turn;
    turn.SetRotation(Normalized(LPoint3(1, 2, 3)), 1.1f);
    return turn;
}

std::vector<LPoint3> Turned(std::vector<LPoint3> vectors) {
    for (LPoint3& p : vectors) p = SomeTurn().TransfromVector(p);
    return vectors;
}

/// The input turns, and grows.
void Pose(LHeadlessNode& node, float scale = 2) {
    int count = 0;
    const LPoint3* input = node.lobject()->GetInput(count);
    std::vector<LPoint3> posed = Turned({input, input + count});
    for (LPoint3& p : posed) p = p * scale + LPoint3(3, 0, 0);
    ASSERT_TRUE(node.lobject()->Update(posed.data(), nullptr, -1));
}

constexpr float kClose = 2e-5f;

}  // namespace

TEST(NodeTargets, ASculptRidesOnThePoseUntilAFrameReplacesIt) {
    const auto node = TorusNode();
    Sculpt(*node, 1);
    const auto sculpted = Deltas(*node);
    node->FinishSculpt(true);
    EXPECT_LT(Farthest(ObjectDelta(*node), sculpted), kClose);
    EXPECT_GT(Farthest(Deltas(*node), sculpted), 0.1f) << "it is held in the frames";
    ASSERT_TRUE(node->SetActiveSubdivLevel(1));
    ASSERT_TRUE(node->SetActiveSubdivLevel(2));
    Pose(*node);
    EXPECT_LT(Farthest(ObjectDelta(*node), Turned(sculpted)), kClose);
    ASSERT_TRUE(node->InitSculpt());
    EXPECT_LT(Farthest(Deltas(*node), Turned(sculpted)), kClose);
    EXPECT_EQ(CheckCaches(*node), "");
    EXPECT_FALSE(node->UndoStroke());
    ASSERT_TRUE(node->SubdivideAll_Quad());
    node->FinishSculpt(false);
    ASSERT_TRUE(node->DeleteTopLevelSudiv());
    EXPECT_LT(Farthest(ObjectDelta(*node), Turned(sculpted)), 3 * kClose);
    node->SetTime(0, -1);
    EXPECT_FALSE(node->GetDelta()->HasOffsets());
    ASSERT_TRUE(node->InitSculpt());
    EXPECT_FALSE(node->GetDelta()->HasOffsets());
}

TEST(NodeTargets, TakeTheDeltaAndGiveItBack) {
    for (const bool session : {true, false}) {
        const auto node = TorusNode();
        Stored(*node, node->GetNeutral(), 5);
        Sculpt(*node, 2);
        const auto sculpted = Deltas(*node);
        if (!session) node->FinishSculpt(true);
        auto mix = std::make_unique<LMixTarget>(node.get(), "m", 48);
        mix->SetSpace(kObjectSpace);
        LMorphTarget *inFrames = node->GetMorph(3), *inObject = mix.get();
        node->AddMixTarget(std::move(mix));
        auto pose = std::make_unique<LPoseTarget>(node.get(), "p", 48);
        LMorphTarget* byKind = pose.get();
        node->AddPoseMorph(std::move(pose));
        for (LMorphTarget* target : {inFrames, inObject, byKind}) {
            ASSERT_TRUE(node->StoreTarget(target));
            node->GetDelta()->ClearAllLevelsVerts();
            if (target == inFrames) {
                ASSERT_TRUE(node->LoadTarget(target));
                EXPECT_LT(Farthest(ObjectDelta(*node), sculpted), kClose);
            }
            ASSERT_TRUE(target->CopyToDelta(node->lobject()->GetBases()));
            EXPECT_LT(Farthest(ObjectDelta(*node), sculpted), kClose) << target->GetName();
        }
        EXPECT_EQ(byKind->GetSpace(), kObjectSpace) << "psdSpace";
        // On another surface: as it lies on its own skin, or by the frames that there are.
        node->FinishSculpt(true);
        Pose(*node, 1);
        ASSERT_TRUE(node->InitSculpt());
        ASSERT_TRUE(node->CopyToDelta(inFrames, node->lobject()->GetBases()));
        EXPECT_LT(Farthest(Deltas(*node), sculpted), kClose);
        EXPECT_EQ(CheckCaches(*node), "");
        ASSERT_TRUE(node->CopyToDelta(inFrames));
        EXPECT_LT(Farthest(Deltas(*node), Turned(sculpted)), kClose);
        EXPECT_FALSE(node->LoadTarget(nullptr) || node->StoreTarget(nullptr));
    }
}

TEST(NodeTargets, KeepTheirShapesWhenTheNeutralComesAndGoes) {
    const auto node = TorusNode();
    std::vector<LMorphTarget*> targets = {node->GetMorph(0), node->AddMorph()};
    node->AddMorphGroup(std::make_unique<LMorphGroup>(node.get(), "g", 48));
    targets.push_back(node->GetMorphGroup(0)->GetTarget(2));
    node->AddFlexorMorph(std::make_unique<LFlexorTarget>(node.get(), "f", 48, 7));
    targets.push_back(node->GetFlexorMorphById(7));
    for (size_t i = 0; i < targets.size(); ++i) Stored(*node, targets[i], 10 + i);
    const auto shapes = [&] {
        std::vector<std::vector<LPoint3>> all;
        const auto neutral = InObject(*node, Offsets(*node, node->GetNeutral()));
        for (LMorphTarget* target : targets) {
            const auto own = Offsets(*node, target);
            const bool tangent = target->GetSpace() == kTangentSpace;
            all.push_back(Plus(neutral, tangent ? InObject(*node, own) : own));
        }
        return all;
    };
    const auto before = shapes();
    const auto check = [&] {
        const auto now = shapes();
        for (size_t i = 0; i < now.size(); ++i) EXPECT_LT(Farthest(now[i], before[i]), kClose) << i;
    };
    for (const unsigned seed : {1, 2}) {
        Sculpt(*node, seed);
        if (seed == 2) node->FinishSculpt(true);
        ASSERT_TRUE(node->createNeutral());
        EXPECT_LT(Farthest(InObject(*node, Offsets(*node, node->GetNeutral())), ObjectDelta(*node)),
                  kClose);
        check();
    }
    ASSERT_TRUE(node->clearNeutral());
    check();
    EXPECT_FALSE(node->HasNeutral());
    EXPECT_FALSE(node->clearNeutral());
}

TEST(NodeTargets, AFrameIsTheNeutralAndItsTerms) {
    const auto node = TorusNode();
    Stored(*node, node->GetMorph(0), 1);
    Stored(*node, node->GetMorph(1), 2);
    Stored(*node, node->GetNeutral(), 3);
    node->FinishSculpt(false);
    const auto neutral = Offsets(*node, node->GetNeutral());
    const auto sum = Plus(Plus(neutral, Offsets(*node, node->GetMorph(0)), 0.5f),
                          Offsets(*node, node->GetMorph(1)), -2);
    node->weights().Set("AH", 0.5f);
    node->weights().Set("BIG_AH", -2);
    struct Until : LFrameTerm {
        void AddTo(LSubdivMesh&, LFrame& frame) override { frame.Narrow(10, 20); }
        void Tag(int, VertTagClallback&) const override {}
    } until;
    node->AddFrameTerm(&until);
    EXPECT_TRUE(node->SetTime(12, -1));
    EXPECT_LT(Farthest(Deltas(*node), sum), 1e-6f);
    LMorphDelta& delta = *node->GetDelta();
    delta.EvalDelta(15, -1, false, 3);
    EXPECT_EQ(Deltas(*node), neutral) << "the sum of 12 is right still";
    std::vector<char> tags(sum.size());
    delta.EvalTags(12, tags.data(), static_cast<int>(tags.size()));
    for (size_t v = 0; v < sum.size(); ++v)
        EXPECT_EQ(tags[v], node->GetNeutral()->geom().Find(v) ||
                               node->GetMorph(0)->geom().Find(v) ||
                               node->GetMorph(1)->geom().Find(v));
    delta.EvalDelta(21, -1, false, 3);
    EXPECT_LT(Farthest(Deltas(*node), sum), 1e-6f);
    delta.Invalidate();
    delta.EvalDelta(15, -1, false, 1);
    // Level 0 alone is shown by the proxies.
    for (int v = 0; v < 48; ++v) {
        const auto proxy = [&](LMorphTarget* target) { return *target->proxy().Find(v); };
        if (!node->GetNeutral()->proxy().Find(v) || !node->GetMorph(0)->proxy().Find(v) ||
            !node->GetMorph(1)->proxy().Find(v))
            continue;
        const LPoint3 there = proxy(node->GetNeutral()) + proxy(node->GetMorph(0)) * 0.5f -
                              proxy(node->GetMorph(1)) * 2.0f;
        EXPECT_LT((Deltas(*node)[v] - there).Len(), 1e-6f);
    }
    EXPECT_EQ(Deltas(*node)[48], LPoint3::Zero);
    node->settings().fullRecEval = false;
    node->InitGroupBlend();
    EXPECT_FALSE(node->SetTime(30, -1));
    EXPECT_EQ(node->ltime(), 30);
    node->FinishGroupBlend();
    // An open session goes on with the sum.
    ASSERT_TRUE(node->InitSculpt());
    EXPECT_TRUE(node->SetTime(30, -1));
    EXPECT_LT(Farthest(Deltas(*node), InObject(*node, sum)), kClose);
    EXPECT_EQ(CheckCaches(*node), "");
    int count = 0;
    LPoint3* all = node->GetDeformation(0, count);
    EXPECT_EQ(std::vector<LPoint3>(all, all + count), Deltas(*node));
    std::free(all);
}

TEST(NodeTargets, GoToObjectSpaceAndBack) {
    const auto node = TorusNode();
    Stored(*node, node->GetNeutral(), 3);
    Stored(*node, node->GetMorph(2), 4);
    LMorphTarget* bare = node->AddMorph();
    bare->CopyFromMesh(node->GetDelta()->GetOrigMesh());
    Sculpt(*node, 5);
    const auto sculpted = Deltas(*node);
    node->FinishSculpt(true);
    const auto inFrames = Offsets(*node, node->GetMorph(2));
    const auto bareBefore = Offsets(*node, bare);
    ASSERT_TRUE(node->ConvertTang2Obj(0, 0));
    EXPECT_LT(Farthest(Offsets(*node, node->GetMorph(2)), InObject(*node, inFrames)), kClose);
    EXPECT_LT(Farthest(Deltas(*node), sculpted), kClose);
    ASSERT_TRUE(node->ConvertObj2Tang(0, 0, 0));
    EXPECT_LT(Farthest(Offsets(*node, node->GetMorph(2)), inFrames), kClose);
    EXPECT_LT(Farthest(ObjectDelta(*node), sculpted), kClose);
    EXPECT_EQ(Offsets(*node, bare), bareBefore) << "it has no skin";
    EXPECT_FALSE(node->ConvertTang2Obj(1, 0));

    // Another channel has other frames, and the shapes stay.
    PolyMesh turned = shapes::Torus(8, 6);
    for (LPoint2& uv : turned.uvs) uv = {uv.y * 0.7f, 0.3f * uv.y - uv.x};
    auto other = std::make_unique<LUVSubdivChannel>(1);
    std::string error;
    ASSERT_TRUE(other->Init(turned.uvs, TriangulateUVs(turned), 96, error));
    node->lobject()->AddChannel(std::move(other));
    const auto shape = InObject(*node, inFrames);
    node->settings().UVchannel = 1;
    node->MoveToChannel(0);
    EXPECT_LT(Farthest(InObject(*node, Offsets(*node, node->GetMorph(2))), shape), kClose);
    EXPECT_GT(Farthest(Offsets(*node, node->GetMorph(2)), inFrames), 0.05f);
    EXPECT_LT(Farthest(ObjectDelta(*node), sculpted), kClose);
}

TEST(NodeTargets, KeepTheirShapesWhenTheInputIsSmoothed) {
    const auto node = TorusNode();
    node->AddFlexorMorph(std::make_unique<LFlexorTarget>(node.get(), "f", 48));
    node->AddPoseMorph(std::make_unique<LPoseTarget>(node.get(), "p", 48));
    node->settings().psdSpace = kTangentSpace;
    Stored(*node, node->GetNeutral(), 3);
    std::vector<LMorphTarget*> targets = {node->GetFlexorMorph(0), node->GetPoseMorph(0)};
    for (LMorphTarget* target : targets) Stored(*node, target, 8);
    node->FinishSculpt(false);
    const auto shapes = [&] {
        std::vector<std::vector<LPoint3>> all;
        const LSubdivMesh& base = *node->lobject()->GetOrigGeom();
        all.push_back(Plus(AllVerts(base), InObject(*node, Offsets(*node, node->GetNeutral()))));
        for (LMorphTarget* target : targets) {
            const auto own = Offsets(*node, target);
            const bool tangent = target->GetSpace() == kTangentSpace;
            all.push_back(Plus(all[0], tangent ? InObject(*node, own) : own));
        }
        return all;
    };
    const auto before = shapes();
    node->settings().objSmIt = 3;
    ASSERT_TRUE(node->ConvertSmoothing3(0, 3));
    node->UpdateBase();
    const auto after = shapes();
    for (size_t i = 0; i < after.size(); ++i) EXPECT_LT(Farthest(after[i], before[i]), kClose) << i;
    EXPECT_FALSE(node->ConvertSmoothing3(3, 3));
    const auto moved = AllVerts(*node->diffSkin(node->GetNeutral(), 3, 0));
    EXPECT_GT(Farthest(moved, std::vector<LPoint3>(moved.size())), 0.01f);
}

TEST(NodeTargets, NeutralizeShowsTheNeutralWhateverThePose) {
    const auto node = TorusNode();
    std::string why;
    EXPECT_FALSE(node->Neutralize(true, why));
    EXPECT_EQ(why, "Kelmo: can't neutralize. Create NUTRAL first.");
    Sculpt(*node, 1);
    ASSERT_TRUE(node->createNeutral());
    const auto shape = Plus(AllVerts(*node->lobject()->GetOrigGeom()), Deltas(*node));
    node->FinishSculpt(true);
    Pose(*node);
    ASSERT_TRUE(node->Neutralize(true, why)) << why;
    const auto shown = [&] { return Plus(AllVerts(node->BaseShape()), ObjectDelta(*node)); };
    EXPECT_LT(Farthest(shown(), shape), kClose);
    ASSERT_TRUE(node->InitSculpt());
    EXPECT_LT(Farthest(shown(), shape), kClose);
    node->SetActiveSubdivLevel(1);
    const LPoint3* seen = node->lmeshCache()->GetVertsPtr();
    const size_t count = node->lobject()->GetNumVerts();
    EXPECT_LT(Farthest({seen, seen + count}, {shape.begin(), shape.begin() + count}), kClose);
    node->SetActiveSubdivLevel(2);
    ASSERT_TRUE(node->Neutralize(false, why));
    EXPECT_GT(Farthest(shown(), shape), 1);
    EXPECT_EQ(CheckCaches(*node), "");
    node->FinishSculpt(true);
    const auto bare = TorusNode(0);
    ASSERT_TRUE(bare->SubdivideAll_Loop());
    Stored(*bare, bare->GetNeutral(), 1);
    EXPECT_FALSE(bare->Neutralize(true, why));
    EXPECT_EQ(why, "Kelmo: can't neutralize - quad subdivisions required.");
}

TEST(NodeTargets, MixingPutsTheChangeOnTopOfWhatTheTargetHeld) {
    const auto node = TorusNode();
    Stored(*node, node->GetNeutral(), 4);
    node->AddMixTarget(std::make_unique<LMixTarget>(node.get(), "m", 48));
    LMixTarget* mix = node->GetMixTarget(0);
    Stored(*node, mix, 5);
    Sculpt(*node, 6);
    node->FinishSculpt(true);
    ASSERT_TRUE(node->InitSculpt());
    const auto entry = Deltas(*node), held = Offsets(*node, mix);
    Sculpt(*node, 7);
    const auto changed = Plus(Deltas(*node), entry, -1);
    LMeshBasesUV2* bases = node->lobject()->GetBases();
    ASSERT_TRUE(node->MixWithDelta(mix, bases, 0.25f));
    auto expected = Plus(InObject(*node, held), changed, 4);
    expected = Plus(expected, InObject(*node, Offsets(*node, node->GetNeutral())), -1);
    EXPECT_LT(Farthest(InObject(*node, Offsets(*node, mix)), expected), 4 * kClose);
    EXPECT_FALSE(node->MixWithDelta(mix, bases, 0));
}

TEST(NodeTargets, BlendShapes) {
    const auto node = TorusNode();
    Stored(*node, node->GetNeutral(), 4);
    Stored(*node, node->GetMorph(1), 5);
    const auto base = AllVerts(*node->lobject()->GetOrigGeom());
    const auto neutral = InObject(*node, Offsets(*node, node->GetNeutral()));
    const auto target = InObject(*node, Offsets(*node, node->GetMorph(1)));
    const auto shape = [&](int index, int space) {
        const auto mesh = node->GetBlendTarg(index, space);
        return std::vector<LPoint3>(mesh->GetVertsPtr(), mesh->GetVertsPtr() + mesh->GetNumVerts());
    };
    EXPECT_LT(Farthest(shape(1, 2), Plus(Plus(base, neutral), target)), kClose);
    EXPECT_LT(Farthest(shape(1, 1), Plus(base, neutral)), kClose) << "on its skin";
    EXPECT_EQ(shape(99, 2), base);
    EXPECT_EQ(node->GetBlendTarg(1, 3), nullptr);
    ASSERT_TRUE(node->setBlendCache(1));
    EXPECT_EQ(node->lblendCache()->GetNumVerts(), static_cast<int>(base.size()));
    LMesh small(3, 1), out(static_cast<int>(base.size()), 1);
    EXPECT_FALSE(node->EvalMorph(1, &small));
    EXPECT_TRUE(node->EvalMorph(1, &out));
    EXPECT_EQ(out.GetVert(7), base[7] + node->GetMorph(1)->MorphVector(7));
    const auto level0 = node->lobject()->GetOrigGeom()->GetLevelCopy(0);
    std::vector<LMatrix3> frames(level0->GetNumFaces());
    level0->CalcLocalTMs(frames.data());
    LMatrix3* matrices = node->calcSkinTMs(level0.get(), nullptr);
    for (size_t f = 0; f < frames.size(); ++f)
        EXPECT_TRUE((matrices[f] * frames[f]).Equals(LMatrix3::Identity, 1e-4f));
    std::free(matrices);
    EXPECT_EQ(node->calcSkinTMs(&small, nullptr), nullptr);
    // A posed mesh as a target shows itself again.
    LMesh posed(static_cast<int>(base.size()), 1);
    const auto place = Plus(base, Noise(base.size(), 9));
    for (size_t v = 0; v < place.size(); ++v) posed.SetVert(static_cast<int>(v), place[v]);
    ASSERT_TRUE(node->MakeMorphFromMesh(&posed, node->GetMorph(4)));
    EXPECT_FALSE(node->MakeMorphFromMesh(&small, node->GetMorph(4)));
    EXPECT_LT(Farthest(shape(4, 2), place), kClose);
}
