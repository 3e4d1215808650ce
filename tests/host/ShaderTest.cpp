#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/MLTexture.h"
#include "host/gl/glslShadowedTexProgram.h"
#include "host/gl/glslStencilTexProgram.h"
#include "minihost/Host.h"
#include "tests/host/ModuleFixture.h"

// What the programs that show textures make of one quad, against their formulas.

using namespace VantrelSDK;

namespace {

constexpr int kSize = 8;

/// Red, green; above them blue, white.
constexpr unsigned char kTexels[] = {255, 0, 0,   255, 0,   255, 0,   255,  //
                                     0,   0, 255, 255, 255, 255, 255, 128};

struct Rgb {
    double c[3];
    double& operator[](int i) { return c[i]; }
    double operator[](int i) const { return c[i]; }
};

/// A view of kSize pixels a side, drawn into with no matrices but the identity.
class ShaderTest : public testing::Test {
  protected:
    void SetUp() override {
        host.NewScene();
        host.SetOutput(&told);
        std::string error;
        minihost::View* opened = host.views.Open({"persp", kSize, kSize, 0}, error);
        if (!opened) GTEST_SKIP() << "no shaders are tested here: " << error;
        view = M3dView(opened);
        view.beginGL();
        ASSERT_TRUE(MLDisplayCache::InitGLSL(true));
        for (const GLenum mode : {GL_PROJECTION, GL_TEXTURE, GL_MODELVIEW}) {
            glMatrixMode(mode);
            glLoadIdentity();
        }
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_BLEND);
        glGenTextures(1, &texture);
        for (const GLenum unit : {GL_TEXTURE0, GL_TEXTURE3}) {
            glActiveTexture(unit);
            glBindTexture(GL_TEXTURE_2D, texture);
        }
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, kTexels);
        for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
            glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
        glActiveTexture(GL_TEXTURE0);
    }
    void TearDown() override {
        if (view.view()) {
            glDeleteTextures(1, &texture);
            MLDisplayCache::FreeGLSL();
            view.endGL();
        }
        host.SetOutput(nullptr);
    }

    /// The whole view at depth -0.5, the texture once over it; what is drawn, by pixel from below.
    std::vector<unsigned char> DrawQuad() {
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glNormal3f(0, 0, 1);
        glColor4f(kPaint[0], kPaint[1], kPaint[2], kPaint[3]);
        glVertexAttrib1f(glslShadowedProgram::kStencilLoc, kStencil);
        glBegin(GL_QUADS);
        for (const auto& [x, y] : {std::pair{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}}) {
            glTexCoord2f(x, y);
            glVertex3f(2 * x - 1, 2 * y - 1, -0.5f);
        }
        glEnd();
        std::vector<unsigned char> pixels(4 * kSize * kSize);
        glReadPixels(0, 0, kSize, kSize, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    static constexpr float kPaint[4] = {0.9f, 0.5f, 0.1f, 0.25f}, kStencil = 0.75f;
    minihost::Host& host = minihost::Host::Get();
    kelmo::Told told;
    M3dView view;
    unsigned texture = 0;
};

struct Settings {
    double texopac = 0.5, opacity = 1;
    bool color = false, diffuse = true, specular = false, stencil = false, inverted = false,
         selected = true;
};

constexpr double kLight[3] = {0.48, 0, 0.8772684879784524};

Rgb Texel(int x, int y) {
    const unsigned char* t = kTexels + 4 * ((x >= kSize / 2) + 2 * (y >= kSize / 2));
    return {{t[0] / 255.0, t[1] / 255.0, t[2] / 255.0}};
}

Rgb Wanted(int px, int py, const Settings& s) {
    const double bare[3] = {0.68, 0.65, 0.64}, ambient[3] = {0.24, 0.24, 0.27},
                 shine[3] = {0.20, 0.20, 0.29};
    const Rgb texel = Texel(px, py);
    double lit = std::min((kLight[2] * 0.75 + 0.25) * 1.3, 1.0);
    if (!s.diffuse) lit = 1;
    Rgb c{};
    for (int i = 0; i < 3; ++i) {
        c[i] = bare[i] * (1 - s.texopac) + texel[i] * s.texopac;
        const float paint[4] = {0.9f, 0.5f, 0.1f, 0.25f};
        if (s.color) c[i] = c[i] * (1 - paint[3]) + paint[i] * paint[3];
        c[i] = lit * c[i] * (1 - ambient[i]) + ambient[i];
    }
    if (s.specular) {
        // The light mirrored at (0, 0, 1) and turned round, against the way to the eye.
        const double r[3] = {-kLight[0], -kLight[1], kLight[2]};
        const double v[3] = {-((px + 0.5) / kSize * 2 - 1), -((py + 0.5) / kSize * 2 - 1), 0.5};
        const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        const double rv = (v[0] * r[0] + v[1] * r[1] + v[2] * r[2]) / length;
        const double shining = std::min(std::pow(rv, 4) * 2, 0.45);
        // What is below 0 is left to the driver.
        if (rv < 0.05) return {{-1, -1, -1}};
        for (int i = 0; i < 3; ++i) c[i] += shine[i] * shining;
    }
    if (s.stencil) {
        const double held = s.inverted ? 0.25 : 0.75;
        c[0] *= 1 - 0.5 * held;
        c[1] *= 1 - 0.8 * held;
        c[2] *= 1 - 0.8 * held;
    }
    if (!s.selected)
        for (int i = 0; i < 3; ++i) c[i] = (c[i] * 0.7 + 0.15) * (i == 0 ? 1 : 0.9);
    return c;
}

TEST_F(ShaderTest, TheSurfaceWithAMap) {
    std::vector<Settings> all(9);
    all[1].texopac = 1;
    all[2].color = true;
    all[3].diffuse = false;
    all[4].specular = true;
    all[5].stencil = true;
    all[6].stencil = all[6].inverted = true;
    all[7].selected = false;
    all[8] = {0.8, 0.6, true, false, true, true, false, false};
    glslShadowedTexProgram program;
    program.SetLightDir(0, kLight[0], kLight[1], kLight[2]);
    program.SetUseShadow(false);
    for (const Settings& s : all) {
        SCOPED_TRACE(&s - all.data());
        program.SetTextureOpacity(static_cast<float>(s.texopac));
        program.SetOpacity(static_cast<float>(s.opacity));
        program.SetUseColor(s.color);
        program.SetUseDiffuse(s.diffuse);
        program.SetUseSpeculars(s.specular);
        program.SetUseStencil(s.stencil);
        program.SetInvertStencil(s.inverted);
        // Is a part of the map, and changes nothing here.
        program.SetUseStencilTex(s.stencil);
        program.SetSelected(s.selected);
        ASSERT_TRUE(program.UseProgram());
        const auto drawn = DrawQuad();
        program.UnUseProgram();
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                const Rgb wanted = Wanted(x, y, s);
                const unsigned char* pixel = &drawn[static_cast<size_t>(4 * (y * kSize + x))];
                if (wanted[0] < 0) continue;
                for (int i = 0; i < 3; ++i)
                    ASSERT_NEAR(pixel[i], 255 * std::min(wanted[i], 1.0), 2.01)
                        << x << ", " << y << " channel " << i;
                ASSERT_NEAR(pixel[3], 255 * s.opacity, 1.01);
            }
    }
    program.UnLoadShaders();
    EXPECT_FALSE(told.Has("Error")) << told.text;
}

TEST_F(ShaderTest, ShadowAndOcclusionComeWithAMapToo) {
    glslShadowedTexProgram program;
    program.SetFilterSize(1);
    program.SetUseSSAO(true);
    program.SetViewSize(kSize, kSize);
    MLDisplayCache::shared().shadow.ActivateTexture(0);
    MLDisplayCache::shared().ssao.ActivateTexture(1);
    ASSERT_TRUE(program.UseProgram());
    DrawQuad();
    program.UnUseProgram();
    program.UnLoadShaders();
    EXPECT_FALSE(told.Has("Error")) << told.text;
}

TEST_F(ShaderTest, AnOverlay) {
    glslStencilTexProgram program;
    ASSERT_TRUE(program.LoadShaders());
    EXPECT_FALSE(program.UseProgram());
    EXPECT_TRUE(told.Has("Error: texid is 0\n"));
    told.text.clear();
    program.SetTexId(texture);
    for (const bool colored : {false, true}) {
        program.SetColored(colored);
        if (colored) program.SetOpacity(0.8f);
        ASSERT_TRUE(program.UseProgram());
        const auto drawn = DrawQuad();
        program.UnUseProgram();
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                const Rgb texel = Texel(x, y);
                const unsigned char* pixel = &drawn[static_cast<size_t>(4 * (y * kSize + x))];
                for (int i = 0; i < 3; ++i)
                    ASSERT_NEAR(pixel[i], 255 * texel[colored ? i : 0], 1) << x << ", " << y;
                const double alpha = x >= kSize / 2 && y >= kSize / 2 ? 128 / 255.0 : 1;
                ASSERT_NEAR(pixel[3], 255 * alpha * (colored ? 0.8 : 0.5), 1.01);
            }
    }
    program.UnLoadShaders();
    EXPECT_FALSE(told.Has("Error")) << told.text;
}

TEST_F(ShaderTest, ADisplayMapIsTheImageAndItsStencil) {
    MFloatVectorArray colors;
    for (int i = 0; i < 6; ++i) colors.append(MFloatVector(static_cast<float>(i) / 5, 0.5f, 2));
    MLTexture map(colors, 3, 2);
    ASSERT_TRUE(map.CreateGlMaps(nullptr));
    std::vector<uint8_t> bytes(4 * 6);
    ASSERT_TRUE(map.displayMap()->ReadTexture(bytes.data()));
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(bytes[4 * i], 255 * i / 5);
        EXPECT_EQ(bytes[4 * i + 1], 127);
        EXPECT_EQ(bytes[4 * i + 2], 255);
        EXPECT_EQ(bytes[4 * i + 3], 255);
    }
    map.Invert();
    ASSERT_TRUE(map.CreateGlMaps(nullptr));
    ASSERT_TRUE(map.displayMap()->ReadTexture(bytes.data()));
    EXPECT_EQ(bytes[1], 128);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(ShaderTest, AMapThatTheDriverRefusesIsTold) {
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    MLTexture map(1, 2 * most, 1);
    ASSERT_NE(map.GetPixels(), nullptr);
    for (int times = 0; times < 2; ++times) EXPECT_FALSE(map.CreateGlMaps(nullptr));
    const std::string text = "Error: MLTexture::UpdateGlMap GL_RGBA texture with size " +
                             std::to_string(2 * most) + "x1 is not supported by GPU.\n";
    EXPECT_EQ(told.text.substr(told.text.size() - text.size()), text);
    EXPECT_EQ(told.text.find(text), told.text.size() - text.size()) << "told twice";
}

TEST(MLTexture, WithoutAnImageOrADriverThereIsNothingToShow) {
    for (const int channel : {1, 2, 3, 4}) {
        MLTexture map(channel, 2, 2);
        EXPECT_EQ(map.GetPixels()[4], channel == 1 ? 185 : channel == 2 ? 255 : 0);
        EXPECT_EQ(map.GetPixels()[7], 0);
        EXPECT_FALSE(map.CreateGlMaps(nullptr));
        EXPECT_FALSE(map.Save());
        EXPECT_TRUE(map.CheckWritePermissions() && map.CheckReadPermissions());
    }
    EXPECT_EQ(MLTexture("none.png").GetPixels(), nullptr);
    EXPECT_EQ(MLTexture(MObject()).GetPixels(), nullptr);
    EXPECT_EQ(MLTexture(MFloatVectorArray(3), 2, 2).GetPixels(), nullptr);
    EXPECT_EQ(MLTexture(1, -2, 2).GetPixels(), nullptr);
    kelmo::Told told;
    minihost::Host::Get().SetOutput(&told);
    MLTexture map(1, 2, 2);
    for (const char* name : {"skin", "./skin", "a.b/skin", "skin."}) {
        map.SetFileName(name);
        EXPECT_FALSE(map.Save());
        EXPECT_TRUE(told.Has(std::string("Error: MLTexture: incorrect name ") + name + "\n"));
    }
    minihost::Host::Get().SetOutput(nullptr);
}

}  // namespace
