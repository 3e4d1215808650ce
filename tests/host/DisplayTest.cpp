#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>

#include "core/mesh/Triangulation.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/ScreenRect.h"
#include "host/gl/VoxelGrid.h"
#include "minihost/Host.h"
#include "tests/host/ModuleFixture.h"
#include "tests/shapes/Shapes.h"

// What of the display needs no picture.

using namespace VantrelSDK;

namespace {

/// Any triangles between points, some of which lie exactly on borders of cells.
struct Soup {
    std::vector<LPoint3> verts;
    std::vector<LFace> faces[2];
    VoxelGrid grid;

    Soup() {
        const auto lattice = *rc::gen::arbitrary<bool>();
        const auto coordinate = rc::gen::map(rc::gen::inRange(0, lattice ? 9 : 100000),
                                             [](int n) { return static_cast<float>(n); });
        verts.resize(*rc::gen::inRange<size_t>(3, 60));
        for (LPoint3& p : verts) p = {*coordinate, *coordinate, *coordinate};
        const auto corner = rc::gen::inRange(0, static_cast<int>(verts.size()));
        for (auto& level : faces) {
            level.resize(*rc::gen::inRange<size_t>(0, 40));
            for (LFace& f : level)
                for (int& v : f.v) v = *corner;
        }
        RC_PRE(Least(0) < Most(0) || Least(1) < Most(1) || Least(2) < Most(2));
        // A corner that is put on the border of a cell, which does not move the others' cells.
        const std::span<const LFace> levels[] = {faces[0], faces[1]};
        grid.Build(verts, levels);
        LPoint3 min, max;
        grid.Bounds(*rc::gen::inRange(0, VoxelGrid::kCount), min, max);
        verts[0] = {std::clamp(min.x, Least(0), Most(0)), std::clamp(min.y, Least(1), Most(1)),
                    std::clamp(min.z, Least(2), Most(2))};
        grid.Build(verts, levels);
    }

    static float At(const LPoint3& p, int axis) { return axis == 0 ? p.x : axis == 1 ? p.y : p.z; }
    float Least(int axis) const {
        float least = At(verts[0], axis);
        for (const LPoint3& p : verts) least = std::min(least, At(p, axis));
        return least;
    }
    float Most(int axis) const {
        float most = At(verts[0], axis);
        for (const LPoint3& p : verts) most = std::max(most, At(p, axis));
        return most;
    }
    bool IsIn(const LPoint3& p, int cell) const {
        LPoint3 min, max;
        grid.Bounds(cell, min, max);
        return p.x >= min.x && p.x <= max.x && p.y >= min.y && p.y <= max.y && p.z >= min.z &&
               p.z <= max.z;
    }
};

RC_GTEST_PROP(VoxelGrid, HoldsWhatBruteForceFinds, ()) {
    const Soup soup;
    std::vector<std::set<int>> cellsOf(soup.verts.size());
    for (int cell = 0; cell < VoxelGrid::kCount; ++cell) {
        for (int level = 0; level < 2; ++level) {
            std::vector<int> wanted;
            for (size_t f = 0; f < soup.faces[level].size(); ++f) {
                const auto& v = soup.faces[level][f].v;
                if (std::none_of(v, v + 3, [&](int c) {
                        return soup.IsIn(soup.verts[static_cast<size_t>(c)], cell);
                    }))
                    continue;
                wanted.push_back(static_cast<int>(f));
                for (const int c : v) cellsOf[static_cast<size_t>(c)].insert(cell);
            }
            const auto held = soup.grid.Faces(cell, level);
            RC_ASSERT(std::vector<int>(held.begin(), held.end()) == wanted);
        }
    }
    for (size_t v = 0; v < soup.verts.size(); ++v) {
        std::vector<int> found;
        soup.grid.ForCellsOf(static_cast<int>(v), [&](int cell) { found.push_back(cell); });
        std::sort(found.begin(), found.end());
        RC_ASSERT(found == std::vector<int>(cellsOf[v].begin(), cellsOf[v].end()));
    }
}

RC_GTEST_PROP(ScreenProjection, CoversEachPointOfABox, ()) {
    const auto number = [](int most) {
        return static_cast<float>(*rc::gen::inRange(-most, most)) / 10;
    };
    LPoint3 a(number(100), number(100), number(100)), b(number(100), number(100), number(100));
    const LPoint3 min(std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)),
        max(std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z));
    MMatrix toClip;
    toClip[2][2] = -1.01;
    toClip[2][3] = -1;
    toClip[3][2] = -15.2;
    toClip[3][3] = 15;
    const ScreenProjection projection{toClip, 300, 200};
    const ScreenRect rect = projection.Of(min, max);
    for (int i = 0; i < 50; ++i) {
        const auto part = [&] { return static_cast<float>(*rc::gen::inRange(0, 1001)) / 1000; };
        const float x = part(), y = part(), z = part();
        MPoint p(min.x + (max.x - min.x) * x, min.y + (max.y - min.y) * y,
                 min.z + (max.z - min.z) * z);
        p = p * toClip;
        if (p.w <= 0) continue;
        const double px = (p.x / p.w + 1) * 150, py = (p.y / p.w + 1) * 100;
        if (px < 0 || px >= 300 || py < 0 || py >= 200) continue;
        RC_ASSERT(px >= rect.x0 && px <= rect.x1 && py >= rect.y0 && py <= rect.y1);
    }
}

/// A driver that lacks what shaders are compiled with, and frame buffers.
void* LackingDriver(const char* name) {
    static char there;
    const std::string asked = name;
    return asked == "glCompileShader" || asked == "glAttachObjectARB" ||
                   asked == "glGenFramebuffersEXT"
               ? nullptr
               : &there;
}

TEST(GLFunctions, WhatIsMissingIsToldAndNotUsed) {
    minihost::Host& host = minihost::Host::Get();
    kelmo::Told told;
    host.SetOutput(&told);
    SetGLResolver(LackingDriver);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(InitGLFunctionPointers());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "glAttachShader - OK\nglCompileShader not found \nglGenFramebuffersEXT not found.\n");
    EXPECT_TRUE(told.Has("InitGLFunctionPointers"));
    EXPECT_FALSE(GLUse());
    EXPECT_TRUE(GLInitialised());
    EXPECT_FALSE(MLDisplayCache::InitGLSL(false));
    EXPECT_FALSE(MLDisplayCache::shared().shadow.IsInitOK());
    EXPECT_FALSE(MLDisplayCache::shared().shadow.ActivateTexture(0));
    EXPECT_FALSE(MLDisplayCache::shared().smoothShadowedGLSL.UseProgram());
    SetGLResolver(nullptr);
    MLDisplayCache::FreeGLSL();
    EXPECT_FALSE(GLInitialised());
    host.SetOutput(nullptr);
}

TEST(glslShader, KeepsUpToSixLights) {
    glslShadowedProgram program;
    EXPECT_EQ(program.GetNumLights(), 1);
    for (int i = 1; i < 6; ++i) EXPECT_TRUE(program.AddLight());
    EXPECT_FALSE(program.AddLight());
    EXPECT_TRUE(program.SetLightDir(5, 0, 3, 4));
    EXPECT_NEAR(program.GetLightDir(5).z, 0.8, 1e-9);
    EXPECT_FALSE(program.SetLightDir(6, 0, 3, 4));
}

class NoPictures : public kelmo::ModuleFixture {
  protected:
    NoPictures() { host.views.Disable(); }
    ~NoPictures() override { host.views.Enable(); }
};

TEST_F(NoPictures, PicturesFailAndAllElseWorks) {
    MakeNode(kelmo::kHead);
    Points("k", "outputGeom");
    Do(0);
    EXPECT_NE(Run("refresh -fileName \"x.png\"").find("there is no OpenGL on this machine"),
              std::string::npos);
    Must("refresh");
    Do(1);
    EXPECT_FALSE(Output().empty());
}

}  // namespace
