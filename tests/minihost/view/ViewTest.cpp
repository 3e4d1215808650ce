#include "maya/M3dView.h"
#include "maya/MImage.h"
#include "minihost/command/builtins/Builtins.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/view/Camera.h"
#include "tests/minihost/SceneTest.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>

// Pictures of plain scenes, cameras, and where the world is in a view.

namespace minihost {
namespace {

class ViewTest : public SceneTest {
  protected:
    void SetUp() override {
        if (const std::string why = host.views.Begin(); !why.empty())
            GTEST_SKIP() << "no views are tested here: " << why;
    }
    Picture Draw(const PictureOptions& options) {
        Picture picture;
        EXPECT_EQ(host.views.Draw(options, picture), "");
        return picture;
    }
    /// How many pixels are not as the first.
    static int Shown(const Picture& picture) {
        int shown = 0;
        for (size_t i = 0; i < picture.pixels.size(); i += 3)
            shown += !std::equal(&picture.pixels[i], &picture.pixels[i] + 3, &picture.pixels[0]);
        return shown;
    }
    const PictureOptions front{"front", 80, 60, 0};
    DagNodePtr MakeSphereAt(double radius, double x) {
        const DagNodePtr shape = CreateMesh(edits, MakeSphere(radius, 24, 16), "ball").shape;
        edits.Set(shape->parent()->FindPlug("translateX"), x);
        return shape;
    }
};

TEST_F(ViewTest, NamedViewsFrameWhatIsVisibleUntilTheyAreMoved) {
    for (const char* view : {"persp", "front", "side", "top"})
        EXPECT_EQ(Shown(Draw({view, 80, 60, 0})), 0) << view;
    MakeSphereAt(3, 100);
    for (const char* view : {"persp", "front", "side", "top"}) {
        const Picture picture = Draw({view, 80, 60, 0});
        // A ball that fills the height.
        EXPECT_GT(Shown(picture), 1400) << view;
        EXPECT_LT(Shown(picture), 3000) << view;
    }
    edits.Set(std::static_pointer_cast<DagNode>(host.scene.Find("front"))->FindPlug("translateX"),
              -5000.0);
    EXPECT_EQ(Shown(Draw({"front", 80, 60, 0})), 0);
    EXPECT_EQ(host.views.Frame(front, {}), "");
    EXPECT_GT(Shown(Draw({"front", 80, 60, 0})), 1000);
}

TEST_F(ViewTest, WhatIsHiddenIsNotDrawn) {
    const DagNodePtr shape = MakeSphereAt(3, 0);
    Draw({"front", 80, 60, 0});
    EXPECT_EQ(host.views.Frame(front, {}), "");
    for (const auto& plug : {shape->FindPlug("visibility"), shape->FindPlug("intermediateObject"),
                             shape->parent()->FindPlug("visibility")}) {
        const double before = NumberOf(Pull(*plug.Make()));
        edits.Set(plug, 1 - before);
        EXPECT_EQ(Shown(Draw({"front", 80, 60, 0})), 0);
        edits.Set(plug, before);
        EXPECT_GT(Shown(Draw({"front", 80, 60, 0})), 1000);
    }
}

TEST_F(ViewTest, PlacesGoToTheWorldAndBack) {
    MakeSphereAt(3, 1);
    for (const char* name : {"persp", "front"}) {
        Draw({name, 640, 480, 0});
        const M3dView view = M3dView::active3dView();
        EXPECT_EQ(view.portWidth(), 640);
        std::mt19937 random(7);
        for (int i = 0; i < 200; ++i) {
            const auto at = [&](int most) {
                return static_cast<short>(random() % static_cast<unsigned>(most));
            };
            const short x = at(640), y = at(480);
            MPoint near, far;
            ASSERT_TRUE(view.viewToWorld(x, y, near, far));
            // In the middle of the pixel, between the planes.
            MPoint origin;
            MVector direction;
            ASSERT_TRUE(view.viewToWorld(x, y, origin, direction));
            const MPoint inside = origin + direction * (near.distanceTo(far) * 0.4);
            short backX = -1, backY = -1;
            EXPECT_TRUE(view.worldToView(inside, backX, backY));
            EXPECT_NEAR(backX, x, 1);
            EXPECT_NEAR(backY, y, 1);
        }
        MDagPath camera;
        ASSERT_TRUE(view.getCamera(camera));
        EXPECT_EQ(camera.partialPathName(), MString(name) + "Shape");
    }
}

TEST(MImage, AnXPixmapHasTheColoursFromTheTop) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("icon-" + std::to_string(getpid()))).string();
    unsigned char pixels[] = {255, 0, 0, 255, 0,   255, 0, 255,  // the row at the bottom
                              0,   0, 9, 255, 255, 0,   0, 255};
    MImage image;
    ASSERT_EQ(image.setPixels(pixels, 2, 2), MS::kSuccess);
    EXPECT_EQ(image.depth(), 4u);
    ASSERT_EQ(image.writeToFile(path.c_str(), "xpm"), MS::kSuccess);
    std::ifstream in(path + ".xpm");
    const std::string text(std::istreambuf_iterator<char>(in), {});
    EXPECT_EQ(text,
              "/* XPM */\nstatic char* swatch[] = {\n\"2 2 3 3\",\n\"### c #000009\",\n"
              "\"$## c #FF0000\",\n\"%## c #00FF00\",\n\"###$##\",\n\"$##%##\"};\n");
    std::filesystem::remove(path + ".xpm");
    EXPECT_NE(image.writeToFile("/nowhere/icon.xpm", "xpm"), MS::kSuccess);
}

TEST_F(ViewTest, PicturesAreWrittenWholeAndErrorsAreClear) {
    AddBuiltins(host.commands, {"", false, ""});
    MakeSphereAt(3, 0);
    const auto folder =
        std::filesystem::temp_directory_path() / ("minihost-view-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const auto run = [&](const std::string& script) {
        const auto done = host.interpreter.Execute(script);
        return done.error ? done.error->message : done.value.AsString();
    };
    const std::string png = (folder / "a.png").string();
    EXPECT_EQ(run("refresh -fileName \"" + png + "\" -size 33 17 -camera side"), png);
    Picture read;
    EXPECT_EQ(ReadPicture(png, 3, read), "");
    EXPECT_EQ(read.pixels, Draw({"side", 33, 17, 4}).pixels);
    EXPECT_NE(run("refresh -fileName \"" + png + "\" -camera nobody").find("no camera \"nobody\""),
              std::string::npos);
    EXPECT_NE(run("refresh -fileName \"" + (folder / "a").string() + "\"").find("needs an ending"),
              std::string::npos);
    EXPECT_NE(run("refresh -fileName \"/nowhere/a.png\"").find("/nowhere/a.png"),
              std::string::npos);
    EXPECT_NE(run("refresh -size 3 3").find("give -fileName too"), std::string::npos);
    EXPECT_NE(ReadPicture((folder / "none.png").string(), 3, read), "");
    // A failure leaves nothing beside the picture.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
    MImage image;
    EXPECT_TRUE(image.readFromFile(MString(png)));
    unsigned width = 0, height = 0;
    image.getSize(width, height);
    EXPECT_EQ(width * 100 + height, 3317u);
    // Its first row is the picture's last.
    EXPECT_EQ(image.pixels()[0], read.pixels[static_cast<size_t>(16 * 33 * 3)]);
    EXPECT_FALSE(image.create(0, 4));
    EXPECT_EQ(image.channels(), 4u);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace minihost
