#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>

#include "bench/MemoryWatch.h"
#include "core/mesh/LFace.h"
#include "host/gl/VoxelGrid.h"
#include "minihost/Host.h"
#include "minihost/graph/Modifier.h"
#include "minihost/image/ImageFile.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/mesh/Sets.h"
#include "minihost/shade/Assign.h"

using namespace minihost;

namespace {

constexpr int kWidth = 1280, kHeight = 960;

/// A sphere of so many triangles in a session of the module, drawn into a view.
class Shown {
  public:
    explicit Shown(long long triangles, bool keepPixels) : host(Host::Get()) {
        host.NewScene();
        if (!host.modules.Find("kelmo")) host.modules.Load(KELMO_MODULE);
        Run("global proc progressWindow(string $what) {}"
            "global proc int KelmoGetDoPixPref() { return " +
            std::to_string(keepPixels) + "; } Kelmo -readPrefs");
        Modifier edits(host.scene);
        const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(triangles) / 2)));
        CreateMesh(edits, MakeSphere(10, n, n + 1), "head");
        Run("createNode mesh -name shown; createNode KelmoND -name k;"
            "connectAttr headShape.outMesh k.inputGeom; connectAttr k.outputGeom shownShape.inMesh;"
            "connectAttr time1.outTime k.inTime; setAttr k.displayMode 2;"
            "createNode locator -name brush; setAttr brushShape.visibility 0");
        MeshOf(*host.scene.Find("shownShape"));
        Run("setAttr k.commnad 0; setAttr k.execute 1; setAttr head.visibility 0; setAttr "
            "k.useSSAO[0] 0; setAttr k.useShadow[0] 0;"
            "setAttr k.sculptMode 8; setAttr k.brushNorm 0 0 1;"
            "setAttr k.toolSize[8] 3.5; setAttr k.startZ 10");
        std::string error;
        view = host.views.Open({"front", kWidth, kHeight, 0}, error);
        if (!view) Run("print \"" + error + "\"");
        Run("viewFit front");
    }
    ~Shown() {
        Run("global proc int KelmoGetDoPixPref() { return 0; } Kelmo -readPrefs");
        host.NewScene();
    }

    /// Gives it a material with a texture of squares.
    void Assign() {
        Picture squares{1024, 1024, 3, {}};
        for (int i = 0; i < 1024 * 1024; ++i)
            squares.pixels.insert(squares.pixels.end(), 3, (i >> 5 ^ i >> 15) & 1 ? 220 : 60);
        const auto path = std::filesystem::temp_directory_path() / "kelmo-bench-squares.png";
        WritePicture(path, squares);
        Modifier edits(host.scene);
        const NodePtr group =
            CreateAndAssignShader(edits, "lambert", host.scene.Find("shownShape"));
        edits.Connect(CreateFileTexture(edits, path)->FindPlug("outColor"),
                      SourceNode(group->FindPlug("surfaceShader"))->FindPlug("color"));
    }
    void ShowTexture() { Run("setAttr k.showTextures 1"); }

    void Run(const std::string& script) { host.interpreter.Execute(script); }
    /// To the last pixel.
    void Draw() {
        view->Draw();
        glFinish();
    }

    Host& host;
    View* view = nullptr;
};

/// The surface for the first time: cut into voxels, compiled and drawn.
void DisplayFirst(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            Shown shown(state.range(0), false);
            if (!shown.view) return state.SkipWithError("no OpenGL");
            const VantrelSDK::bench::MemoryWatch memory;
            state.ResumeTiming();
            shown.Draw();
            state.PauseTiming();
            state.counters["bytes_a_triangle"] =
                memory.Held() / static_cast<double>(state.range(0));
        }
        state.ResumeTiming();
    }
}

/// All of it again.
void DisplayFull(benchmark::State& state) {
    Shown shown(state.range(0), false);
    if (!shown.view) return state.SkipWithError("no OpenGL");
    shown.Draw();
    for (auto _ : state) shown.Draw();
}

/// The same with a texture.
void DisplayTextured(benchmark::State& state) {
    Shown shown(state.range(0), false);
    if (!shown.view) return state.SkipWithError("no OpenGL");
    shown.Assign();
    shown.ShowTexture();
    shown.Draw();
    for (auto _ : state) shown.Draw();
}

/// A texture is turned on and drawn for the first time.
void DisplayTexturedFirst(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            Shown shown(state.range(0), false);
            if (!shown.view) return state.SkipWithError("no OpenGL");
            shown.Assign();
            shown.Draw();
            state.ResumeTiming();
            shown.ShowTexture();
            shown.Draw();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

/// After a step of a stroke with a brush over a tenth of the view; the step is not in it. The
/// second argument: only changed pixels are drawn anew. The third: with occlusion. The fourth: the
/// surface fills the view, rather than fits in it.
void DisplayStep(benchmark::State& state) {
    Shown shown(state.range(0), state.range(1) != 0);
    if (!shown.view) return state.SkipWithError("no OpenGL");
    const double scale = state.range(3) ? 0.5 : 1;
    shown.Run("setAttr k.useSSAO[0] " + std::to_string(state.range(2)) +
              "; setAttr k.toolSize[8] " + std::to_string(3.5 * scale) +
              "; float $w = `getAttr frontShape.orthographicWidth`;"
              "setAttr frontShape.orthographicWidth ($w * " +
              std::to_string(scale) + ")");
    shown.Draw();
    shown.Run("connectAttr brush.matrix k.brush");
    double at = 0;
    const auto step = [&] {
        at += 0.15;
        shown.Run("move " + std::to_string(1.5 * scale * std::sin(at)) + " " +
                  std::to_string(1.5 * scale * std::cos(at)) + " 10 brush");
    };
    // The driver compiles what it has not drawn before.
    for (int i = 0; i < 4; ++i) step(), shown.Draw();
    for (auto _ : state) {
        state.PauseTiming();
        step();
        state.ResumeTiming();
        shown.Draw();
    }
    shown.Run("disconnectAttr brush.matrix k.brush");
}

/// Cutting a surface into voxels.
void DisplayVoxels(benchmark::State& state) {
    const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(state.range(0)) / 2)));
    std::vector<VantrelSDK::LPoint3> verts;
    std::vector<VantrelSDK::LFace> faces;
    for (int y = 0; y <= n; ++y)
        for (int x = 0; x <= n; ++x) {
            const float a = 6.2832f * static_cast<float>(x) / static_cast<float>(n),
                        b = 3.1416f * static_cast<float>(y) / static_cast<float>(n);
            verts.emplace_back(std::cos(a) * std::sin(b), std::cos(b), std::sin(a) * std::sin(b));
            if (x == n || y == n) continue;
            const int v = y * (n + 1) + x;
            VantrelSDK::LFace f;
            f.v[0] = v, f.v[1] = v + 1, f.v[2] = v + n + 2;
            faces.push_back(f);
            f.v[0] = v, f.v[1] = v + n + 2, f.v[2] = v + n + 1;
            faces.push_back(f);
        }
    const std::span<const VantrelSDK::LFace> levels[] = {faces};
    VantrelSDK::VoxelGrid grid;
    for (auto _ : state) grid.Build(verts, levels);
    state.counters["bytes_a_triangle"] =
        static_cast<double>(grid.Memory()) / static_cast<double>(faces.size());
}

BENCHMARK(DisplayFirst)->Arg(60000)->Arg(1500000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DisplayFull)->Arg(60000)->Arg(1500000)->Unit(benchmark::kMillisecond);
BENCHMARK(DisplayTexturedFirst)
    ->Arg(60000)
    ->Arg(1500000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DisplayTextured)->Arg(60000)->Arg(1500000)->Unit(benchmark::kMillisecond);
BENCHMARK(DisplayStep)
    ->ArgsProduct({{60000, 1500000}, {0, 1}, {0, 1}, {0, 1}})
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(DisplayVoxels)->Arg(60000)->Arg(600000)->Arg(6000000)->Unit(benchmark::kMillisecond);

}  // namespace
