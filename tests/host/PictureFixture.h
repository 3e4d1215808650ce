#pragma once

#include <cstdlib>

#include "minihost/image/ImageFile.h"
#include "tests/host/ModuleFixture.h"

namespace kelmo {

/// How far apart two pictures are.
struct Difference {
    /// Of all channels, 0 to 255.
    double mean = 0;
    int most = 0;
    /// Pixels that differ by more than a little in some channel.
    int pixels = 0;
};

inline Difference Compare(const minihost::Picture& a, const minihost::Picture& b, int little) {
    Difference found;
    EXPECT_EQ(a.width, b.width);
    EXPECT_EQ(a.height, b.height);
    EXPECT_EQ(a.channels, b.channels);
    if (a.pixels.size() != b.pixels.size()) return {255, 255, a.width * a.height};
    const auto channels = static_cast<size_t>(a.channels);
    for (size_t i = 0; i < a.pixels.size(); i += channels) {
        int most = 0;
        for (size_t c = i; c < i + channels; ++c) {
            const int by = std::abs(int{a.pixels[c]} - int{b.pixels[c]});
            found.mean += by;
            most = std::max(most, by);
        }
        found.most = std::max(found.most, most);
        found.pixels += most > little;
    }
    found.mean /= static_cast<double>(a.pixels.size());
    return found;
}

/// The sample head in a session, shown by a surface shape in the place of the mesh.
class PictureFixture : public ModuleFixture {
  protected:
    PictureFixture() { SetDoPix(0); }
    ~PictureFixture() override { SetDoPix(0); }

    void SetUp() override {
        if (const std::string why = host.views.Begin(); !why.empty())
            GTEST_SKIP() << "no pictures are compared here: " << why;
        MakeNode(kHead);
        Must("createNode locator -name brush; setAttr brushShape.visibility 0");
        Must("setAttr k.useSSAO[0] 0; setAttr k.useShadow[0] 0");
        Points("k", "outputGeom");
    }
    /// Whether only changed pixels are drawn anew, as the preference says.
    void SetDoPix(int on) {
        Must("global proc int KelmoGetDoPixPref() { return " + std::to_string(on) + "; }");
        Run("Kelmo -readPrefs");
    }
    void Open(int levels = 0) {
        for (int i = 0; i < levels; ++i) Do(97);
        Do(0);
        Must("string $all[] = `ls -type mesh`; for ($m in $all) setAttr ($m + \".visibility\") 0");
    }
    void Press(int mode, float radius, float strength, const std::string& from) {
        const std::string m = std::to_string(mode);
        Must("setAttr k.sculptMode " + m + "; setAttr k.brushNorm 0 0 1; setAttr k.toolSize[" + m +
             "] " + std::to_string(radius) + "; setAttr k.paintPressMult[" + m + "] " +
             std::to_string(strength) + "; float $p[] = {" + from +
             "}; setAttr k.startX $p[0]; setAttr k.startY $p[1]; setAttr k.startZ $p[2];"
             "move $p[0] $p[1] $p[2] brush; connectAttr brush.matrix k.brush");
    }
    void Move(float x, float y, float z) {
        Must("move " + std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z) +
             " brush");
    }
    void Release() { Must("disconnectAttr brush.matrix k.brush"); }

    minihost::Picture Draw(const std::string& camera, int width, int height, int samples) {
        minihost::Picture picture;
        EXPECT_EQ(host.views.Draw({camera, width, height, samples}, picture), "");
        return picture;
    }
};

}  // namespace kelmo
