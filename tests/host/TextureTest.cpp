#include <algorithm>
#include <array>

#include "tests/host/PictureFixture.h"
#include "tests/shapes/Models.h"

// Materials of the mesh that is sculpted, and their maps: what is seen, what is told, what is kept.

namespace kelmo {
namespace {

namespace fs = std::filesystem;
using minihost::Picture;

const std::string kPictures = std::string(paths::kSource) + "/tests/host/pictures/";

using Rgb = std::array<int, 3>;

class TextureTest : public ModuleFixture {
  protected:
    std::string File(const std::string& name, const std::string& text) {
        const std::string path = folder / name;
        std::ofstream(path) << text;
        return path;
    }
    /// An image of one texel; or of 32 a side, quarters in four colours from the upper left on.
    std::string Image(const std::string& name, std::vector<Rgb> colors) {
        const int side = colors.size() == 1 ? 1 : 32;
        Picture picture{side, side, 3, {}};
        for (int i = 0; i < side * side; ++i) {
            const int right = i % side >= 16, below = i / side >= 16;
            for (const int c : colors[static_cast<size_t>(right + 2 * below)])
                picture.pixels.push_back(static_cast<std::uint8_t>(c));
        }
        const std::string path = folder / name;
        EXPECT_EQ(minihost::WritePicture(path, picture), "");
        return path;
    }
    /// Polygons with a node "k" on their way, shown by a transform "shape".
    void Take(const std::string& obj) {
        Must("file -import \"" + obj + "\"");
        AddNode();
    }
    void AddNode() {
        Must(
            "{ string $all[] = `ls -type mesh`; string $up[] = `listRelatives -parent $all[0]`;"
            "rename $up[0] shape; $all = `ls -type mesh`;"
            "string $made = `KelmoNew -geometry $all[0]`; rename $made k;"
            "setAttr k.useSSAO[0] 0; setAttr k.useShadow[0] 0; setAttr k.displayMode 2;"
            "setAttr k.useSpecular 0; setAttr k.useDiffuse 0; }");
        told.text.clear();
    }
    /// Two squares beside each other, x from -2 to 2, with materials "left" and "right" of which
    /// each has the whole of its image.
    void TakeSquares(const std::string& left, const std::string& right) {
        const auto material = [](const std::string& name, const std::string& map) {
            return "newmtl " + name + "\nKd 0.5 0.5 0.5\n" +
                   (map.empty() ? "" : "map_Kd " + map + "\n");
        };
        File("two.mtl", material("left", left) + material("right", right));
        Take(File("two.obj",
                  "mtllib two.mtl\nv -2 -1 0\nv 0 -1 0\nv 2 -1 0\nv -2 1 0\nv 0 1 0\nv 2 1 0\n"
                  "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nusemtl left\nf 1/1 2/2 5/3 4/4\n"
                  "usemtl right\nf 2/1 3/2 6/3 5/4\n"));
    }
    void ShowTextures(int on = 1) { Must("setAttr k.showTextures " + std::to_string(on)); }
};

TEST_F(TextureTest, WithoutADriverMaterialsAreThereAllTheSame) {
    host.views.Disable();
    TakeSquares(Image("one.png", {{1, 2, 3}}), "");
    ShowTextures();
    EXPECT_EQ(Ask(240), 0) << "out of a session";
    Do(0);
    EXPECT_EQ(Ask(240), 1);
    EXPECT_EQ(Run("Kelmo -node k -query -hasmtlset"), "1");
    EXPECT_EQ(Run("Kelmo -node k -query -hasallmaps"), "0");
    EXPECT_NE(Run("refresh -fileName \"x.png\"").find("no OpenGL"), std::string::npos);
    Must("refresh; setAttr k.affectTexture 1");
    for (const int command : {106, 107, 108, 215, 238, 241}) Do(command);
    Do(1);
    EXPECT_EQ(Ask(240), 0);
    host.views.Enable();
}

TEST_F(TextureTest, WhetherAllShadersHaveAMapIsAskedByChannel) {
    TakeSquares(Image("one.png", {{1, 2, 3}}), "");
    EXPECT_EQ(Run("Kelmo -node k -query -hasallmaps"), "0");
    Must("setAttr k.texChannel 2");
    EXPECT_EQ(Run("Kelmo -node k -query -hasallmaps"), "1") << "no shader has that channel";
}

/// A picture of a file that was written.
Picture Saved(const std::string& path) {
    Picture picture;
    EXPECT_EQ(minihost::ReadPicture(path, 4, picture), "");
    return picture;
}

/// Works in a folder while it lives.
class InFolder {
  public:
    explicit InFolder(const fs::path& folder) : before_(fs::current_path()) {
        fs::current_path(folder);
    }
    ~InFolder() { fs::current_path(before_); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

  private:
    fs::path before_;
};

TEST_F(TextureTest, MapsThatWereChangedGoToTheirFiles) {
    const std::string left = Image("left.png", {{200, 100, 0}});
    const InFolder there(folder);
    TakeSquares(left, "");
    Must(
        "global proc int[] KelmoGetTextureSizeRes() { int $s[] = {16, 8}; return $s; }"
        "global proc KelmoGetTextureSize() {}");
    Do(0);
    Must("setAttr k.affectTexture 1; setAttr k.vertexPaintColor 1 0.5 0");
    Do(239);
    EXPECT_FALSE(fs::exists(folder / "left_orig.png")) << "nothing has changed";
    Do(107);
    Do(239);
    EXPECT_EQ(Saved(left).pixels, (std::vector<std::uint8_t>{55, 155, 255, 255}));
    EXPECT_EQ(Saved(folder / "left_orig.png").pixels,
              (std::vector<std::uint8_t>{200, 100, 0, 255}));
    // The material that had no texture has one now, of the size that the interface wants.
    const std::string texture = Run("string $textures[] = `ls -type file`; $textures[1]");
    const std::string made = Run("getAttr " + texture + ".fileTextureName");
    EXPECT_TRUE(made.ends_with("/" + texture + "_outColor.jpg")) << made;
    const Picture fresh = Saved(made);
    ASSERT_EQ(fresh.width, 16);
    EXPECT_EQ(fresh.height, 8);
    EXPECT_NEAR(fresh.pixels[0], 255 - 185, 2);
    EXPECT_EQ(Run("listConnections " + texture + ".outColor"), "right");
    EXPECT_EQ(Ask(241), 1);
    EXPECT_FALSE(told.Has("rror")) << told.text;

    Do(108);
    Do(106);
    Do(239);
    EXPECT_EQ(Saved(left).pixels, (std::vector<std::uint8_t>{200, 100, 0, 255}));
    Do(108);
    fs::remove(left);
    fs::create_directory(left);
    Do(239);
    EXPECT_TRUE(told.Has("Error: MLTexture: can not write file " + left)) << told.text;
    EXPECT_TRUE(fs::is_directory(left));
    fs::remove(made);
    EXPECT_EQ(Ask(241), 0);
    EXPECT_TRUE(told.Has("Warning: Vantrel: can not write texture " + made)) << told.text;
}

TEST_F(TextureTest, ATextureThatIsMovedIsSampledToBePainted) {
    const std::string left = Image("left.png", {{200, 100, 0}}), none = folder / "none.png";
    TakeSquares(left, none);
    Must(
        "global proc int[] KelmoGetTextureSizeRes() { int $s[] = {4}; return $s; }"
        "global proc KelmoGetTextureSize() {}; setAttr place2dTexture1.rotateUV 90");
    Do(0);
    Must("setAttr k.affectTexture 1");
    for (const char* text :
         {"Warning: Vantrel: Some transformation is applied to file texture file1, probably by "
          "place2dTexture node.",
          "Warning: Can't paint it correctly. Read only sampled texture will be created.",
          "Warning: If you want to paint this texture clear these transformation and try again.",
          "Warning: MLMaterial: texture was created by sampling the node file1. You will not be "
          "able to save it."})
        EXPECT_TRUE(told.Has(text)) << text << "\n" << told.text;
    EXPECT_TRUE(told.Has("Warning: MLMaterial: can not load texture " + none));
    EXPECT_TRUE(told.Has("Warning: MLMaterial: can not load texture from node file")) << told.text;
    EXPECT_TRUE(told.Has("Warning: MLMaterial: can not sample texture file")) << told.text;
    told.text.clear();
    Do(238);
    EXPECT_FALSE(told.Has("Warning")) << "told twice: " << told.text;
    Do(107);
    Do(239);
    EXPECT_EQ(Saved(left).pixels, (std::vector<std::uint8_t>{200, 100, 0, 255}));
}

/// With a driver. Places are parts of the picture of the squares, from its lower left corner.
class MapPictures : public TextureTest {
  protected:
    void SetUp() override {
        if (const std::string why = host.views.Begin(); !why.empty())
            GTEST_SKIP() << "no pictures are looked at here: " << why;
    }
    void TearDown() override { SetDoPix(0); }
    void SetDoPix(int on) {
        Must("global proc int KelmoGetDoPixPref() { return " + std::to_string(on) + "; }");
        Run("Kelmo -readPrefs");
    }
    Picture Draw(int width = 200, int height = 100, const std::string& camera = "eye") {
        if (camera == "eye" && !host.scene.Find("eye"))
            Must(
                "createNode camera -name eye; setAttr eyeShape.orthographic 1;"
                "setAttr eyeShape.orthographicWidth 4; xform -ws -t 0 0 10 eye");
        Picture picture;
        EXPECT_EQ(host.views.Draw({camera, width, height, 0}, picture), "");
        return picture;
    }
    static Rgb At(const Picture& picture, double x, double y) {
        const int column = static_cast<int>(x * picture.width),
                  row = static_cast<int>((1 - y) * picture.height);
        const auto* pixel =
            &picture.pixels[static_cast<size_t>(row) * picture.RowBytes() + size_t(3 * column)];
        return {pixel[0], pixel[1], pixel[2]};
    }
    /// What a colour of a map looks like without light and shine.
    static Rgb Shown(const Rgb& map, double opacity = 1) {
        const double bare[3] = {0.68, 0.65, 0.64}, ambient[3] = {0.24, 0.24, 0.27};
        Rgb shown;
        for (size_t i = 0; i < 3; ++i) {
            const double c = bare[i] * (1 - opacity) + map[i] / 255.0 * opacity;
            shown[i] = static_cast<int>(std::lround(255 * (c * (1 - ambient[i]) + ambient[i])));
        }
        return shown;
    }
    static bool Near(const Rgb& a, const Rgb& b, int by = 3) {
        return std::ranges::equal(a, b, [by](int x, int y) { return std::abs(x - y) <= by; });
    }
    static Rgb Bare() { return Shown({0, 0, 0}, 0); }
};

constexpr Rgb kRed{230, 20, 10}, kGreen{20, 200, 30}, kBlue{10, 30, 240}, kWhite{250, 250, 250},
    kBlank{185, 185, 185};

TEST_F(MapPictures, EachMaterialShowsItsMapUpright) {
    TakeSquares(Image("quarters.png", {kRed, kGreen, kBlue, kWhite}), Image("one.png", {kGreen}));
    Do(0);
    EXPECT_TRUE(Near(At(Draw(), 0.1, 0.9), Bare()));
    ShowTextures();
    EXPECT_EQ(Ask(240), 1);
    Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.1, 0.9), Shown(kRed)));
    EXPECT_TRUE(Near(At(picture, 0.4, 0.9), Shown(kGreen)));
    EXPECT_TRUE(Near(At(picture, 0.1, 0.1), Shown(kBlue)));
    EXPECT_TRUE(Near(At(picture, 0.4, 0.1), Shown(kWhite)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kGreen)));
    Must("setAttr k.textureOpac 0.25");
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kGreen, 0.25)));
    Must("setAttr k.textureOpac 1; setAttr k.useShaders 0; setAttr k.useDiffuse 1");
    picture = Draw();
    for (const auto& [x, y, color] : {std::tuple{0.1, 0.9, kRed}, {0.1, 0.1, kBlue}}) {
        // Plain light darkens it.
        const Rgb seen = At(picture, x, y);
        for (const size_t a : {0, 1, 2})
            for (const size_t b : {0, 1, 2})
                if (color[a] > color[b] + 50) {
                    EXPECT_GT(seen[a], seen[b] + 20) << x << " " << y;
                }
    }
    Must("setAttr k.useShaders 1; setAttr k.useDiffuse 0");
    // Selected faces, and the others.
    Must("select shape.f[0]");
    picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.1, 0.9), Shown(kRed)));
    EXPECT_FALSE(Near(At(picture, 0.7, 0.5), Shown(kGreen), 10));
    Do(116);
    Must("setAttr k.doSmoothGeomSubdivs 0");
    for (int level = 0; level < 2; ++level) Do(97);
    picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.7), Shown(kRed)));
    EXPECT_TRUE(Near(At(picture, 0.2, 0.3), Shown(kBlue)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kGreen)));
    ShowTextures(0);
    EXPECT_EQ(Ask(240), 0);
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Bare()));
    Do(1);
    EXPECT_FALSE(told.Has("rror")) << told.text;
}

TEST_F(MapPictures, AMaterialWithoutATextureIsBlank) {
    TakeSquares("", Image("one.png", {kGreen}));
    Do(0);
    ShowTextures();
    const Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Shown(kBlank)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kGreen)));
    Must("setAttr k.texChannel 3");
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown({0, 0, 0})));
    // A lambert has no specular colour, and no shader a ninth channel.
    for (const char* channel : {"2", "9", "-1", "0"}) {
        Must(std::string("setAttr k.texChannel ") + channel);
        EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Bare())) << channel;
        EXPECT_EQ(Ask(240), 1);
    }
}

TEST_F(MapPictures, AnImageThatIsRepeatedIsSeenSo) {
    TakeSquares(Image("quarters.png", {kRed, kGreen, kBlue, kWhite}), Image("one.png", {kGreen}));
    Must(
        "{ string $places[] = `ls -type place2dTexture`;"
        "for ($place in $places) setAttr ($place + \".repeatUV\") 2 2; }");
    Do(0);
    ShowTextures();
    const Picture picture = Draw();
    // Quarters in quarters.
    for (const double x : {0.06, 0.31})
        for (const double y : {0.37, 0.87}) {
            EXPECT_TRUE(Near(At(picture, x, y), Shown(kRed), 12)) << x << " " << y;
            EXPECT_TRUE(Near(At(picture, x + 0.13, y), Shown(kGreen), 12)) << x << " " << y;
            EXPECT_TRUE(Near(At(picture, x, y - 0.25), Shown(kBlue), 12)) << x << " " << y;
        }
}

TEST_F(MapPictures, AChooserSaysWhichUVSetATextureLiesIn) {
    File("one.mtl",
         "newmtl one\nmap_Kd " + Image("quarters.png", {kRed, kGreen, kBlue, kWhite}) + "\n");
    Must("file -import \"" +
         File("one.obj",
              "mtllib one.mtl\nv -2 -1 0\nv 2 -1 0\nv 2 1 0\nv -2 1 0\nvt 0 0\nvt 1 0\nvt 1 1\n"
              "vt 0 1\nusemtl one\nf 1/1 2/2 3/3 4/4\n") +
         "\"");
    const minihost::NodePtr shape = host.scene.NodesOfType("mesh")[0];
    {
        // The other set has the image upside down.
        MFnMesh mesh{MObject(shape)};
        const MString other = "other";
        ASSERT_TRUE(mesh.createUVSetWithName(other));
        const float us[] = {0, 1, 1, 0}, vs[] = {1, 1, 0, 0};
        const int count[] = {4}, corners[] = {0, 1, 2, 3};
        ASSERT_TRUE(mesh.setUVs(MFloatArray(us, 4), MFloatArray(vs, 4), &other));
        ASSERT_TRUE(mesh.assignUVs(MIntArray(count, 1), MIntArray(corners, 4), &other));
    }
    AddNode();
    minihost::Modifier edits(host.scene);
    const auto chooser = edits.Create("uvChooser");
    ASSERT_TRUE(edits.Connect(shape->FindPlug("uvSet").Element(1).Child(0),
                              chooser->FindPlug("uvSets").Element(0)));
    ASSERT_TRUE(edits.Connect(chooser->FindPlug("outUv"),
                              host.scene.NodesOfType("place2dTexture")[0]->FindPlug("uvCoord")));
    Do(0);
    ShowTextures();
    Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.1, 0.1), Shown(kRed)));
    EXPECT_TRUE(Near(At(picture, 0.1, 0.9), Shown(kBlue)));
    edits.Delete(chooser);
    Do(238);
    EXPECT_TRUE(Near(At(Draw(), 0.1, 0.9), Shown(kRed)));
}

TEST_F(MapPictures, WhatCanNotBeHadLeavesThePlainSurface) {
    const std::string good = Image("one.png", {kGreen}), none = folder / "missing.png",
                      junk = File("junk.png", "no image at all");
    TakeSquares(none, good);
    Do(0);
    ShowTextures();
    EXPECT_TRUE(told.Has("Warning: MLMaterial: can not load texture " + none)) << told.text;
    Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Bare()));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kGreen)));
    told.text.clear();
    Do(238);
    EXPECT_FALSE(told.Has("missing.png")) << "told twice: " << told.text;
    EXPECT_TRUE(Plug("k", "showTextures").asBool());

    // Nothing at all to show.
    host.NewScene();
    TakeSquares(none, junk);
    Do(0);
    ShowTextures();
    EXPECT_TRUE(told.Has("Warning: MLMaterial: can not load texture " + junk)) << told.text;
    EXPECT_FALSE(Plug("k", "showTextures").asBool());
    EXPECT_EQ(Ask(240), 0);
    picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Bare()));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Bare()));
    Must("setAttr k.affectTexture 1");
    ShowTextures();
    EXPECT_FALSE(Plug("k", "showTextures").asBool());
    EXPECT_EQ(Ask(240), 0);
    for (const int command : {106, 107, 108, 215, 238, 239, 241}) Do(command);
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Bare()));
}

TEST_F(MapPictures, EditsOfMapsAndTheirStencilsAreSeen) {
    TakeSquares(Image("left.png", {kGreen}), Image("right.png", {kBlue}));
    Do(0);
    ShowTextures();
    Must("setAttr k.affectTexture 1; setAttr k.vertexPaintColor 0.9 0.1 0.1");
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown(kGreen)));
    const Rgb paint{229, 25, 25};
    Do(108);
    Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Shown(paint)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(paint)));
    ShowTextures(0);
    ShowTextures();
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown(paint))) << "what was painted stays";
    Do(107);
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown({26, 230, 230})));
    Do(106);
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kBlue)));
    Must("setAttr k.affectTexture 0; setAttr k.affectTexStencil 1");
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kBlue)));
    Do(107);
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown({255, 0, 0})));
    Do(106);
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kBlue)));
    Do(108);
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown({255, 0, 0})));
    Must("setAttr k.affectTexStencil 0");
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kBlue)));
}

TEST_F(MapPictures, ColoursLieOverTheMap) {
    TakeSquares(Image("left.png", {kGreen}), Image("right.png", {kBlue}));
    Do(0);
    ShowTextures();
    Must("setAttr k.affectVertColor 1; setAttr k.vertexPaintColor 0.9 0.1 0.1");
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown(kGreen))) << "nothing is painted";
    Do(108);
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown({229, 25, 25})));
}

TEST_F(MapPictures, FacesThatAreGivenAnotherMaterialShowIt) {
    TakeSquares(Image("left.png", {kGreen}), Image("right.png", {kBlue}));
    Do(0);
    ShowTextures();
    EXPECT_TRUE(Near(At(Draw(), 0.7, 0.5), Shown(kBlue)));
    Must("sets -forceElement leftSG shape");
    Do(238);
    const Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Shown(kGreen)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kGreen)));
}

TEST_F(MapPictures, ASessionOnAHighLevelShowsThemToo) {
    TakeSquares(Image("left.png", {kGreen}), Image("right.png", {kBlue}));
    Must("setAttr k.doSmoothGeomSubdivs 0; setAttr k.numRenderSubdivLvls 2");
    Do(0);
    for (int level = 0; level < 2; ++level) Do(97);
    Do(1);
    ShowTextures();
    Points("shapeShape", "outMesh");
    Do(0);
    const Picture picture = Draw();
    EXPECT_TRUE(Near(At(picture, 0.2, 0.5), Shown(kGreen)));
    EXPECT_TRUE(Near(At(picture, 0.7, 0.5), Shown(kBlue)));
}

/// A strip of so many squares, each with a material of its own.
std::string Strip(int count) {
    std::string text = "mtllib strip.mtl\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n";
    for (int i = 0; i <= count; ++i) {
        const std::string x = std::to_string(4.0 * i / count - 2);
        text += "v " + x + " -1 0\nv " + x + " 1 0\n";
    }
    for (int i = 0; i < count; ++i) {
        const auto v = [i](int n) { return std::to_string(2 * i + n); };
        text += "usemtl m" + std::to_string(i) + "\nf " + v(1) + "/1 " + v(3) + "/2 " + v(4) +
                "/3 " + v(2) + "/4\n";
    }
    return text;
}

TEST_F(MapPictures, FortyMaterialsAreDrawnAndTheRestIsPlain) {
    const std::string red = Image("red.png", {kRed}), blue = Image("blue.png", {kBlue});
    std::string materials;
    for (int i = 0; i < 45; ++i)
        materials += "newmtl m" + std::to_string(i) + "\nmap_Kd " + (i % 2 ? red : blue) + "\n";
    File("strip.mtl", materials);
    Take(File("strip.obj", Strip(45)));
    Do(0);
    ShowTextures();
    const Picture picture = Draw(450, 100);
    for (int i = 0; i < 45; ++i) {
        const Rgb seen = At(picture, (i + 0.5) / 45, 0.5);
        EXPECT_TRUE(Near(seen, i >= 40 ? Bare() : Shown(i % 2 ? kRed : kBlue))) << i;
    }
}

TEST_F(MapPictures, ImagesOfAnyKindAndUVsAnywhere) {
    const auto write = [this](const std::string& name, int channels) {
        Picture picture{3, 5, channels, {}};
        for (int i = 0; i < 15; ++i)
            for (int c = 0; c < channels; ++c)
                picture.pixels.push_back(static_cast<std::uint8_t>(c == 3 ? 0 : 120));
        const std::string path = folder / name;
        EXPECT_EQ(minihost::WritePicture(path, picture), "");
        return path;
    };
    const Rgb grey{120, 120, 120};
    for (const std::string& image : {write("grey.png", 1), write("clear.png", 4),
                                     write("small.jpg", 3), write("deep.tif", 3)}) {
        SCOPED_TRACE(image);
        host.NewScene();
        File("far.mtl", "newmtl far\nmap_Kd " + image + "\n");
        Take(File("far.obj",
                  "mtllib far.mtl\nv -2 -1 0\nv 2 -1 0\nv 2 1 0\nv -2 1 0\nvt -7 -7\nvt 1e30 0\n"
                  "vt 1e38 1e38\nvt 0 100\nusemtl far\nf 1/1 2/2 3/3 4/4\n"));
        Do(0);
        ShowTextures();
        EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Shown(grey), 8));
    }
    host.NewScene();
    File("bare.mtl", "newmtl bare\nmap_Kd " + Image("one.png", {kGreen}) + "\n");
    Take(File("bare.obj",
              "mtllib bare.mtl\nv -2 -1 0\nv 2 -1 0\nv 2 1 0\nv -2 1 0\nusemtl bare\nf 1 2 3 4\n"));
    Do(0);
    ShowTextures();
    EXPECT_TRUE(Near(At(Draw(), 0.2, 0.5), Bare())) << "a mesh without UVs";
}

class SharedModels : public MapPictures {
  protected:
    /// A model with a material library of the test's own; false where there is none.
    bool TakeModel(const std::string& model, const std::string& library) {
        const auto path = VantrelSDK::shapes::ModelsFolder() / model;
        if (!fs::exists(path)) return false;
        File("model.mtl", library);
        Take(File("model.obj",
                  "mtllib model.mtl\nusemtl hide\n" + VantrelSDK::shapes::TextOf(path)));
        return true;
    }
};

TEST_F(SharedModels, SpotLooksAtYou) {
    const auto image = VantrelSDK::shapes::ModelsFolder() / "quad/spot_texture.png";
    if (!TakeModel("quad/spot_quadrangulated.obj", "newmtl hide\nmap_Kd " + image.string() + "\n"))
        GTEST_SKIP() << "the shared models are not here";
    Do(0);
    Do(97);
    ShowTextures();
    Must(
        "setAttr k.useDiffuse 1; setAttr k.useSpecular 1;"
        "createNode camera -name eye; xform -ws -t -2.2 0.9 -2.2 eye; xform -ws -ro -15 225 0 eye");
    Picture drawn, wanted;
    ASSERT_EQ(host.views.Draw({"eye", 320, 240, 4}, drawn), "");
    const std::string path = kPictures + "spot.png";
    if (std::getenv("KELMO_RENEW_PICTURES")) minihost::WritePicture(path, drawn);
    ASSERT_EQ(minihost::ReadPicture(path, 3, wanted), "");
    const Difference found = Compare(drawn, wanted, 24);
    EXPECT_LE(found.pixels, 320 * 240 / 100);
    EXPECT_LE(found.mean, 1);
}

TEST_F(SharedModels, AHeadOfManyMaterialsWithoutTextures) {
    const auto head = VantrelSDK::shapes::ModelsFolder() / "head/ict_neutral.obj.xz";
    const auto library = VantrelSDK::shapes::ModelsFolder() / "head/ICTFaceModelMaterial.mtl";
    if (!fs::exists(head)) GTEST_SKIP() << "the shared models are not here";
    fs::copy_file(library, folder / "ICTFaceModelMaterial.mtl");
    Take(File("ict.obj", VantrelSDK::shapes::TextOf(head)));
    EXPECT_GT(host.scene.NodesOfType("lambert").size(), 5u);
    Do(0);
    const Picture plain = Draw(320, 240, "persp");
    ShowTextures();
    const Picture shown = Draw(320, 240, "persp");
    // Everywhere the same grey over the same shape, but for the colour.
    int other = 0;
    for (size_t i = 0; i < plain.pixels.size(); i += 3) {
        const bool surface = plain.pixels[i] != plain.pixels[0];
        other += surface && plain.pixels[i] == shown.pixels[i];
        EXPECT_LE(std::abs(plain.pixels[i] - shown.pixels[i]), 14);
    }
    EXPECT_LT(other, 200);
    EXPECT_FALSE(told.Has("rror")) << told.text;
}

}  // namespace
}  // namespace kelmo
