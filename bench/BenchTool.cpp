#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "bench/Timed.h"
#include "maya/M3dView.h"
#include "maya/MEvent.h"
#include "maya/MPxContext.h"
#include "minihost/Host.h"
#include "minihost/graph/Modifier.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Primitives.h"

// The sculpt tool from the pointer's event to the evaluated surface, through the host: all but the
// drawing.

using namespace minihost;
using VantrelSDK::bench::Median;
using VantrelSDK::bench::Timed;

namespace {

constexpr double kRadius = 10;
constexpr int kWidth = 1200, kHeight = 900;

/// The tool on a ball of about as many triangles, at the top of so many levels, in a view that
/// looks at it from the front; the brush has about `verts` vertices under it.
class ToolScene {
  public:
    ToolScene(int triangles, int levels, int verts) : host_(Host::Get()) {
        host_.NewScene();
        if (!host_.modules.Find("kelmo")) host_.modules.Load(KELMO_MODULE);
        Run("global proc progressWindow(string $what) {}");
        Modifier edits(host_.scene);
        const int quads = triangles / 2 >> (2 * levels),
                  side = static_cast<int>(std::lround(std::sqrt(quads)));
        CreateMesh(edits, MakeSphere(kRadius, side, side), "ball");
        std::string error;
        if (!host_.views.Open({"front", kWidth, kHeight, 0}, error)) return;
        Run("select ball; Kelmo -create; select ball");
        for (int i = 0; i < levels; ++i) Run("KelmoSubdivs -newsubdiv");
        Run("KelmoSculpt -mode 1; KelmoToolContext -edit -paintPressure 0.1 KelmoToolContext1");
        tool_ = host_.tools.Find("KelmoToolContext1");
        if (!tool_) return;
        MPoint left, right;
        MVector dir;
        const M3dView view = M3dView::active3dView();
        view.viewToWorld(0, 0, left, dir);
        view.viewToWorld(kWidth, 0, right, dir);
        // At the equator, where meridians are as far apart as they get.
        const double all = triangles / 2.,
                     reach = kRadius * std::sqrt(2 * std::numbers::pi * verts / all);
        share_ = reach / (right - left).length();
        Run("KelmoToolContext -edit -iconSize " + std::to_string(share_) + " KelmoToolContext1");
    }
    ~ToolScene() { host_.NewScene(); }

    bool isReady() const { return tool_ != nullptr; }
    /// In pixels of the view.
    int reach() const { return static_cast<int>(share_ * kWidth); }
    void Run(const std::string& script) { host_.interpreter.Execute(script); }
    void Tell(MStatus (MPxContext::*what)(MEvent&), int x, int y) {
        MEvent event(static_cast<short>(x), static_cast<short>(y), MEvent::kLeftMouse, 0);
        (tool_->*what)(event);
    }

  private:
    Host& host_;
    MPxContext* tool_ = nullptr;
    double share_ = 0;
};

/// Strokes of twelve moves, a fifth of the brush's radius apart, each told as the pointer's events.
void ToolStroke(benchmark::State& state) {
    ToolScene scene(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                    static_cast<int>(state.range(2)));
    if (!scene.isReady()) return state.SkipWithError("there is no view");
    std::vector<double> hover, press, move, release, undo;
    int place = 0;
    for (auto _ : state) {
        const int by = std::max(scene.reach() / 5, 1), y = kHeight / 2 - 20 + place++ % 40;
        int x = kWidth / 2 - 6 * by;
        for (int i = 0; i < 12; ++i)
            Timed(hover, [&] { scene.Tell(&MPxContext::doDrag, x + i * by, y); });
        Timed(press, [&] { scene.Tell(&MPxContext::doPress, x, y); });
        for (int i = 1; i <= 12; ++i)
            Timed(move, [&] { scene.Tell(&MPxContext::doDrag, x += by, y); });
        Timed(release, [&] { scene.Tell(&MPxContext::doRelease, x, y); });
        Timed(undo, [&] { scene.Run("undo"); });
    }
    state.counters["hover_us"] = Median(hover);
    state.counters["press_us"] = Median(press);
    state.counters["move_us"] = Median(move);
    state.counters["release_us"] = Median(release);
    state.counters["undo_us"] = Median(undo);
}

BENCHMARK(ToolStroke)
    ->ArgNames({"triangles", "levels", "verts"})
    ->Args({60000, 1, 10000})
    ->Args({600000, 2, 10000})
    ->Args({6000000, 3, 10000})
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
