#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include "app/cli/InterfaceProcedures.h"
#include "maya/MFnAnimCurve.h"
#include "minihost/anim/KeyEdits.h"
#include "tests/host/ModuleFixture.h"
#include "tests/shapes/Models.h"

// Targets keyed over time, by commands and by what is done to the host's curves.

namespace kelmo {
namespace {

using testing::ElementsAre;

struct Interface {
    Interface() { AddInterfaceProcedures(minihost::Host::Get().commands); }
};

class TracksTest : private Interface, public ModuleFixture {
  protected:
    /// A node over the head with targets 0 and 1, which differ, and the rest of them empty.
    void MakeKeyedNode() {
        MakeNode(kHead);
        for (const int target : {0, 1}) StoreTarget(target, target == 0 ? "0.5 0 8" : "-3 1 8");
        Must("select k");
    }
    /// Stores a stroke of a brush, and takes it off again.
    void StoreTarget(int target, const std::string& place) {
        Do(0);
        Must(
            "createNode locator -name brush; setAttr k.sculptMode 8; setAttr k.brushNorm 0 0 1;"
            "setAttr k.toolSize[8] 4; setAttr k.paintPressMult[8] 1;"
            "setAttr k.startX 0; setAttr k.startZ 8;"
            "connectAttr brush.matrix k.brush; move " +
            place +
            " brush; move 1.5 1 8 brush; move 1 3 8 brush;"
            "disconnectAttr brush.matrix k.brush; delete brush; setAttr k.param0 " +
            std::to_string(target));
        Do(9);
        Do(1);
        Do(245);
    }
    void At(double frame) { Must("currentTime " + std::to_string(frame)); }
    /// What a target at full weight does to each coordinate: the output with it alone as the delta.
    std::vector<float> Shape(int target) {
        Must("setAttr k.param0 " + std::to_string(target));
        Do(10);
        return Output();
    }
    /// The frames that the first track's curve has keys at.
    std::vector<double> Keys() {
        const MFnAnimCurve curve(Plug("k", "subTracks")[0]);
        std::vector<double> times;
        for (unsigned i = 0; i < curve.numKeys(); ++i) times.push_back(curve.time(i).value());
        return times;
    }
    void ExpectMix(const std::vector<std::pair<double, const std::vector<float>*>>& terms,
                   float close = 2e-5f) {
        const std::vector<float> now = Output();
        ASSERT_EQ(now.size(), rest.size());
        for (size_t i = 0; i < now.size(); ++i) {
            double wanted = rest[i];
            for (const auto& [weight, shape] : terms) wanted += weight * ((*shape)[i] - rest[i]);
            ASSERT_NEAR(now[i], wanted, close) << i;
        }
    }

    std::vector<float> rest;
};

/// The weights at u between keys 1 and 2 of four.
std::array<double, 4> CatmullRom(double u) {
    const double u2 = u * u, u3 = u2 * u;
    return {0.5 * (2 * u2 - u3 - u), 0.5 * (3 * u3 - 5 * u2 + 2), 0.5 * (4 * u2 - 3 * u3 + u),
            0.5 * (u3 - u2)};
}

TEST_F(TracksTest, KeysMoveTheMeshAndFollowTheirCurve) {
    MakeKeyedNode();
    rest = Output();
    const auto a = Shape(0), b = Shape(1);
    Do(245);
    EXPECT_NE(a, rest);
    EXPECT_NE(a, b);
    EXPECT_EQ(Run("KelmoTracks -q -total"), "0");
    Must("KelmoTarget -keyframe 0 1; KelmoTarget -keyframe 1 13; KelmoNeutral -keyframe 25");
    EXPECT_FALSE(told.Has("Error: Kelmo")) << told.text;
    EXPECT_EQ(Run("KelmoTracks -q -total"), "1");
    EXPECT_EQ(Run("KelmoTracks -q -name 0"), "Phonemes 01");
    EXPECT_EQ(Run("KelmoTracks -q -activate"), "0");
    EXPECT_EQ(Run("KelmoTarget -q -jointsEn"), "1");
    EXPECT_EQ(Run("string $c[] = `ls -type animCurveTU`; getAttr ($c[0] + \".useCurveColor\")"),
              "1");
    EXPECT_THAT(Keys(), ElementsAre(1, 13, 25));

    At(0);
    ExpectMix({});
    At(1);
    ExpectMix({{1, &a}});
    const auto w = CatmullRom((1166. - 167) / 2000);
    At(7);
    ExpectMix({{w[1], &a}, {w[2], &b}});
    At(13);
    ExpectMix({{1, &b}});
    const auto later = CatmullRom((3166. - 2167) / 2000);
    At(19);
    ExpectMix({{later[0], &a}, {later[1], &b}});
    At(40);
    ExpectMix({});

    // What is done to the curve is seen at once.
    At(19);
    Must("keyframe -e -t 13 -timeChange 6 k.subTracks[0]");
    ExpectMix({{1, &b}});
    Must("undo");
    ExpectMix({{later[0], &a}, {later[1], &b}});
    Must("setKeyframe -t 19 -v 0.9 k.subTracks[0]");
    ExpectMix({{1, &a}});
    Must("cutKey -t 19 k.subTracks[0]; cutKey -t 13 k.subTracks[0]");
    const auto longer = CatmullRom((3166. - 167) / 4000);
    ExpectMix({{longer[1], &a}});
    Must("undo; undo");
    ExpectMix({{1, &a}});
    Must("undo");
    ExpectMix({{later[0], &a}, {later[1], &b}});
    EXPECT_FALSE(told.Has("can not find key")) << told.text;
    minihost::Modifier edits(host.scene);
    minihost::ScaleKeys(edits, minihost::CurveOf(Plug("k", "subTracks")[0].plug()), 0, 1e12, 2, 0);
    EXPECT_TRUE(told.Has("key scale is not supported."));
    ExpectMix({{later[0], &a}, {later[1], &b}});
    // The track is the truth: the curve shows it again.
    Must("KelmoTracks -activate 0");
    for (const double time : Keys()) EXPECT_NEAR(std::fmod(time, 12), 1, 0.01);
    At(13);
    ExpectMix({{1, &b}});

    // A key where there is one stays what it is.
    Must("KelmoTarget -keyframe 0 13");
    ExpectMix({{1, &b}});
    Must("KelmoTracks -enable 0 false");
    EXPECT_EQ(Run("KelmoTracks -q -enable 0"), "0");
    ExpectMix({});
    Must("KelmoTracks -enable 0 true");
    ExpectMix({{1, &b}});
    Must("setAttr k.param0 1");
    Do(157);
    ExpectMix({});
}

TEST_F(TracksTest, WhatIsSculptedOverAFrameStaysUntilTheTimeMoves) {
    MakeKeyedNode();
    Do(97);
    Must("KelmoTarget -keyframe 0 1; KelmoTarget -keyframe 1 13");
    At(13);
    Output();
    // The session has all levels of the frame, whatever was shown of them.
    Do(0);
    Must("setAttr k.param0 5");
    Do(9);
    Do(1);
    At(7);
    Output();
    Must("setAttr k.param0 5");
    Do(10);
    Must("setAttr k.numRenderSubdivLvls 1");
    const auto stored = Output();
    At(13);
    const auto played = Output();
    ASSERT_EQ(stored.size(), played.size());
    for (size_t i = 0; i < stored.size(); ++i) ASSERT_NEAR(stored[i], played[i], 2e-4) << i;
    // Neither leaving the session nor a command that makes the output anew loses it.
    Do(0);
    Must(
        "createNode locator -name brush; connectAttr brush.matrix k.brush; move 2 2 8 brush;"
        "move 2.5 2.5 8 brush; disconnectAttr brush.matrix k.brush");
    Do(1);
    const auto sculpted = Output();
    EXPECT_NE(sculpted, played);
    Do(243);
    EXPECT_EQ(Output(), sculpted);
    At(14);
    Output();
    At(13);
    EXPECT_EQ(Output(), played);
    // With the last key the last frame goes.
    Must("select k; KelmoTracks -deltrack 0; setAttr k.numRenderSubdivLvls 0");
    At(13);
    EXPECT_EQ(Run("KelmoTracks -q -total"), "0");
    const auto plain = Output();
    const auto input = Points(source, "outMesh");
    ASSERT_EQ(plain.size(), input.size());
    for (size_t i = 0; i < plain.size(); ++i) ASSERT_NEAR(plain[i], input[i], 1e-5);
}

TEST_F(TracksTest, ComeBackWithAScene) {
    MakeKeyedNode();
    Must(
        "KelmoTarget -keyframe 0 0; KelmoTarget -keyframe 1 12; KelmoTracks -name 0 talk;"
        "KelmoTracks -newtrack 1");
    std::vector<std::vector<float>> played;
    for (const int frame : {0, 5, 12}) {
        At(frame);
        played.push_back(Output());
    }
    for (const char* name : {"tracks.mhs", "tracks.mhb"}) {
        const std::string path = folder / name;
        Must("file -rename \"" + path + "\"; file -save -force");
        Must("file -force -open \"" + path + "\"; select k");
        EXPECT_EQ(Run("KelmoTracks -q -name 0") + Run("KelmoTracks -q -total"), "talk2");
        for (const int frame : {0, 1, 2}) {
            At(frame == 1 ? 5 : 6 * frame);
            EXPECT_EQ(Output(), played[frame]) << name << " " << frame;
        }
        // The curve is followed still.
        Must("keyframe -e -t 12 -timeChange -7 k.subTracks[0]");
        At(5);
        EXPECT_EQ(Output(), played[2]);
        Must("keyframe -e -t 5 -timeChange 7 k.subTracks[0]");
        EXPECT_EQ(Output(), played[1]);
    }
}

TEST_F(TracksTest, CurvesStayWithTheirTracks) {
    MakeKeyedNode();
    Must(
        "KelmoTracks -newtrack 1; KelmoTracks -newtrack 3; KelmoTracks -newtrack 1;"
        "KelmoTracks -activate 2; KelmoTarget -keyframe 1 12");
    EXPECT_EQ(Run("KelmoTracks -q -name 1") + ", " + Run("KelmoTracks -q -name 2"),
              "Poses 02, Phonemes 03");
    EXPECT_EQ(Run("KelmoTracks -q -type 1"), "3");
    const std::string curve = Run("listConnections k.subTracks[2]");
    EXPECT_NE(curve, "");
    Must("KelmoTracks -deltrack 1");
    EXPECT_EQ(Run("listConnections k.subTracks[1]"), curve);
    EXPECT_EQ(Run("listConnections k.subTracks[2]"), "");
    EXPECT_EQ(Run("KelmoTracks -q -activate"), "1");
    // It is followed as before, and by the first track's neighbour alone.
    At(12);
    const auto shown = Output();
    Must("cutKey -t 12 k.subTracks[1]");
    EXPECT_NE(Output(), shown);
    Must("undo");
    EXPECT_EQ(Output(), shown);
    Must("setKeyframe -t 3 -v 0 k.subTracks[0]; KelmoTracks -activate 0");
    EXPECT_EQ(Run("keyframe -q -keyframeCount k.subTracks[0]"), "1");
    EXPECT_EQ(Run("keyframe -q -keyframeCount k.subTracks[1]"), "0") << "it is not the active one";
    Must("KelmoTracks -activate 999");
    EXPECT_EQ(Run("KelmoTracks -q -activate") + Run("getAttr k.groupsActive"), "9991");
    EXPECT_EQ(Run("keyframe -q -keyframeCount k.subTracks[0]"), "0");
    Must("KelmoTarget -keyframe 0 5");
    EXPECT_TRUE(told.Has("no animation track is selected."));

    told.text.clear();
    Run("KelmoTracks -name -1 x");
    EXPECT_TRUE(told.Has("KelmoTracksCmd: you can not change name of master track"));
    Run("KelmoTracks -deltrack -1");
    EXPECT_TRUE(told.Has("KelmoTracksCmd: you can not delete master track"));
    Run("KelmoTracks -activate 7");
    EXPECT_TRUE(told.Has("KelmoND: there is no track with such index.") ||
                told.Has("KelmoNode2: there is no track with such index."));
    Must("KelmoTarget -keyframe 9 5");
    EXPECT_TRUE(told.Has("Kelmo: Can not create keyframe for an empty target."));

    const auto both = Output();
    // Without its curve a track plays on, and gets another when it is asked for.
    Must("delete `listConnections k.subTracks[1]`");
    EXPECT_EQ(Output(), both);
    Must("KelmoTracks -activate 1; KelmoTracks -reconnect 1");
    EXPECT_EQ(Run("keyframe -q -keyframeCount k.subTracks[1]"), "1");
}

TEST_F(TracksTest, KeysFollowAListOfTargetsThatLostOne) {
    MakeKeyedNode();
    Must("KelmoTarget -newtarg; KelmoTarget -newtarg");
    Must("setAttr k.param0 0");
    Do(10);
    Must("setAttr k.param0 18");
    Do(9);
    Must("KelmoTarget -keyframe 18 0");
    At(1);
    const auto shown = Output();
    Must("KelmoTarget -deltarg 17");
    EXPECT_EQ(Output(), shown);
    EXPECT_EQ(MFnAnimCurve(Plug("k", "subTracks")[0]).value(0), 17);
    Must("KelmoTarget -deltarg 17");
    EXPECT_NE(Output(), shown);
}

TEST_F(TracksTest, AHeadSpeaks) {
    const auto folderOf = VantrelSDK::shapes::ModelsFolder() / "head";
    if (!std::filesystem::exists(folderOf)) GTEST_SKIP() << "left out: there are no shared models";
    const auto unpacked = [&](const std::string& name) {
        for (const auto& file : VantrelSDK::shapes::ObjFilesIn(folderOf))
            if (file.filename().string().starts_with("ict_" + name)) {
                const std::string path = folder / (name + ".obj");
                std::ofstream(path) << VantrelSDK::shapes::TextOf(file);
                return path;
            }
        return std::string();
    };
    const std::string neutral = unpacked("neutral"), jaw = unpacked("jawOpen"),
                      smile = unpacked("mouthSmile_L");
    ASSERT_TRUE(!neutral.empty() && !jaw.empty() && !smile.empty());
    MakeNode(neutral);
    Must("select k");
    rest = Output();
    int target = 0;
    for (const std::string& path : {jaw, smile}) {
        Must("setAttr k.param0 " + std::to_string(target++) +
             "; setAttr -type \"string\" k.param2 \"" + path + "\"");
        Do(17);
    }
    const auto a = Shape(0), b = Shape(1);
    Do(245);
    Must("KelmoTarget -keyframe 0 0; KelmoTarget -keyframe 1 12; KelmoTarget -keyframe 0 24");
    for (int frame = 0; frame < 24; frame += 3) {
        At(frame);
        const auto w = CatmullRom(frame % 12 / 12.0);
        if (frame < 12)
            ExpectMix({{w[1] + w[3], &a}, {w[2], &b}}, 1e-3f);
        else
            ExpectMix({{w[0] + w[2], &a}, {w[1], &b}}, 1e-3f);
    }
}

}  // namespace
}  // namespace kelmo
