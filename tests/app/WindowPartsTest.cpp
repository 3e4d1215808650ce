#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <set>

#include "app/window/Brushes.h"
#include "app/window/FalloffCurve.h"
#include "app/window/Keys.h"
#include "app/window/MeshExchange.h"
#include "app/window/MessageLog.h"
#include "app/window/Preferences.h"
#include "core/sculpt/BrushMode.h"
#include "tests/shapes/Shapes.h"
#include "tests/system/Program.h"

// The parts of the window that need no display.

namespace {

using kelmo::FalloffCurve;
using kelmo_tests::Folder;
using testing::ElementsAre;

TEST(Brushes, AreModesUnderTheirNames) {
    std::set<std::string> keys;
    int count = 0;
    for (const auto brushes : {kelmo::DragBrushes(), kelmo::PaintBrushes()})
        for (const kelmo::Brush& brush : brushes) {
            ++count;
            const VantrelSDK::BrushMode* mode = VantrelSDK::FindBrushMode(brush.mode);
            ASSERT_TRUE(mode) << brush.name;
            EXPECT_STREQ(mode->name, brush.name);
            EXPECT_EQ(kelmo::FindBrush(brush.mode), &brush);
            EXPECT_TRUE(!*brush.key || keys.insert(brush.key).second) << brush.key << " is taken";
        }
    EXPECT_EQ(count, 19);
    EXPECT_FALSE(kelmo::FindBrush(18)) << "clones textures, which are not painted yet";
}

TEST(Keys, AreReadAsTheyAreShown) {
    using kelmo::keys::Chord;
    EXPECT_EQ(kelmo::keys::Parse("Ctrl+Shift+Z"), (Chord{'z', true, true}));
    EXPECT_EQ(kelmo::keys::Parse("["), (Chord{'[', false, false}));
    EXPECT_EQ(kelmo::keys::Parse("PageUp"), (Chord{kelmo::keys::kPageUp, false, false}));
    EXPECT_EQ(kelmo::keys::Parse("").key, 0u);
    EXPECT_EQ(kelmo::keys::Parse("Ctrl+Nothing").key, 0u);
}

TEST(FalloffCurve, GoesThroughItsPointsAndStaysBetweenThem) {
    for (const kelmo::FalloffPreset& preset : kelmo::FalloffPresets()) {
        SCOPED_TRACE(preset.name);
        for (const FalloffCurve::Point& point : preset.curve.points)
            EXPECT_NEAR(preset.curve.At(point.position), point.value, 1e-6);
        for (float at = 0; at <= 1; at += 0.01f) {
            EXPECT_GE(preset.curve.At(at), -0.05f);
            EXPECT_LE(preset.curve.At(at), 1.0001f);
        }
    }
    FalloffCurve curve{{{2, -1, FalloffCurve::kLinear}, {0.25f, 0.5f, FalloffCurve::kLinear}}};
    curve.Tidy();
    EXPECT_EQ(curve.Text(), "0.5,0.25,1,0,1,1");
    EXPECT_FLOAT_EQ(curve.At(0), 0.5f) << "before the first point it is what that says";
    EXPECT_FLOAT_EQ(curve.At(0.625f), 0.25f);
}

TEST(MeshExchange, ThereAndBackIsTheSame) {
    for (const auto& shape : VantrelSDK::shapes::AllShapes()) {
        SCOPED_TRACE(shape.name);
        std::string error;
        VantrelSDK::PolyMesh mesh = shape.mesh;
        const auto host = kelmo::ToHost(mesh, error);
        ASSERT_TRUE(host) << error;
        const VantrelSDK::PolyMesh back = kelmo::FromHost(*host);
        EXPECT_EQ(back.positions, mesh.positions);
        EXPECT_EQ(back.polygonStart, mesh.polygonStart);
        EXPECT_EQ(back.cornerVerts, mesh.cornerVerts);
        EXPECT_EQ(back.cornerUVs, mesh.cornerUVs);
        // A colour a vertex, where each vertex has a corner.
        mesh.colours.clear();
        for (size_t i = 0; i < mesh.positions.size(); ++i)
            mesh.colours.push_back({static_cast<float>(i % 7) / 7, 0.5f, 1});
        const VantrelSDK::PolyMesh colored = kelmo::FromHost(*kelmo::ToHost(mesh, error));
        for (const int v : mesh.cornerVerts)
            ASSERT_EQ(colored.colours[static_cast<size_t>(v)],
                      mesh.colours[static_cast<size_t>(v)]);
    }
}

TEST(MeshExchange, CornersThatNameNoVertexAreRefused) {
    VantrelSDK::PolyMesh mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.polygonStart = {0, 3};
    mesh.cornerVerts = {0, 1, 3};
    std::string error;
    EXPECT_FALSE(kelmo::ToHost(mesh, error));
    EXPECT_NE(error, "");
}

TEST(MessageLog, KeepsLinesAndForgetsTheOldest) {
    kelmo::MessageLog log;
    log.Print("one ");
    EXPECT_FALSE(log.last());
    log.Print("line\nand ano");
    ASSERT_TRUE(log.last());
    EXPECT_EQ(log.last()->text, "one line");
    log.Print("ther\n\n");
    EXPECT_EQ(log.last()->text, "and another");
    for (int i = 0; i < 2000; ++i) log.Info(std::to_string(i));
    EXPECT_LE(log.messages().size(), 1000u);
    EXPECT_EQ(log.last()->text, "1999");
    EXPECT_EQ(log.count(), 2002u);
}

TEST(Preferences, WhatMakesNoSenseIsLeft) {
    const Folder folder;
    std::filesystem::create_directories(folder / "kelmo");
    const char* before = getenv("XDG_CONFIG_HOME");
    const std::string kept = before ? before : "";
    setenv("XDG_CONFIG_HOME", (folder / "").c_str(), 1);
    for (const char* text :
         {"", "{", "[]", "null",
          "{\"width\": \"wide\", \"height\": [], \"recent\": 3, \"settings\": []}",
          "{\"hasBegun\": 7, \"optionVars\": \"x\", \"scale\": {}}"}) {
        folder.Write("kelmo/preferences.json", text);
        kelmo::Preferences preferences;
        preferences.Read();
        EXPECT_EQ(preferences.width, kelmo::Preferences().width) << text;
        EXPECT_EQ(preferences.scale, 1) << text;
        EXPECT_FALSE(preferences.hasBegun) << text;
        EXPECT_TRUE(preferences.recent.empty()) << text;
    }
    folder.Write(
        "kelmo/preferences.json",
        "{\"width\": -5, \"height\": 1e8, \"scale\": 1e30, \"recent\": [\"a\", 3, \"b\"]}");
    kelmo::Preferences preferences;
    preferences.Read();
    EXPECT_GE(preferences.width, 1);
    EXPECT_LE(preferences.height, 100000);
    EXPECT_LE(preferences.scale, 10);
    EXPECT_THAT(preferences.recent, ElementsAre("a", "b"));
    for (int i = 0; i < 20; ++i) preferences.Remember("/file" + std::to_string(i % 10));
    EXPECT_LE(preferences.recent.size(), 10u);
    EXPECT_EQ(preferences.recent.front(), "/file9");
    if (before)
        setenv("XDG_CONFIG_HOME", kept.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
