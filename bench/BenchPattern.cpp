#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "bench/BenchScene.h"
#include "bench/Timed.h"
#include "tests/core/paint/PlainPatterns.h"

// Brush Pull with a pattern beside the same without: under the brush, and over the surface by its
// UVs. The first look at a surface by UVs is apart. The counters are medians.

namespace VantrelSDK::bench {
namespace {

enum Laid { kNone, kStamp, kByUVs };

std::unique_ptr<LHeadlessNode> SceneWithUVs(long long triangles) {
    PolyMesh mesh = Hills(triangles);
    const float side = -2 * mesh.positions.front().x;
    for (const LPoint3& p : mesh.positions)
        mesh.uvs.push_back({p.x / side + 0.5f, p.y / side + 0.5f});
    mesh.cornerUVs = mesh.cornerVerts;
    auto node = std::make_unique<LHeadlessNode>(1);
    std::string error;
    node->Load(mesh, error);
    node->InitSculpt();
    GivePattern(*node, 512, 512, [](int x, int y) {
        return std::array{(x * 7) % 256, (y * 5) % 256, (x ^ y) % 256, 255};
    });
    return node;
}

/// Arguments: how it is laid, triangles, vertices under the brush.
void BM_PatternStroke(benchmark::State& state) {
    const int verts = static_cast<int>(state.range(2));
    const std::unique_ptr<LHeadlessNode> owned = SceneWithUVs(state.range(1));
    LHeadlessNode& node = *owned;
    const float radius = RadiusFor(verts);
    LNodeSettings& settings = node.settings();
    settings.sculptMode = 8;
    settings.paintPressMult.Set(8, 0.001f);
    settings.patternMode = state.range(0) == kByUVs ? 2 : 0;
    node.lpatterns()->SetAciveIndex(state.range(0) == kNone ? -1 : 0);
    std::vector<double> prepared, press, step;
    Timed(prepared, [&] { node.PreparePattern(); });
    for (auto _ : state) {
        Timed(press, [&] {
            node.InitTransform({}, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0, 0}, radius, 8, false);
        });
        for (int i = 1; i <= 8; ++i) {
            std::vector<double> first;
            Timed(i == 1 ? first : step, [&] {
                node.Transform({radius * 0.2f * i, radius * 0.02f * i, 0}, {0.002f * i, 0},
                               {0, 0, 1});
            });
        }
        node.FinishTransform(true);
        node.UndoStroke();
    }
    const char* names[] = {"no pattern", "under the brush", "by UVs"};
    state.SetLabel(names[state.range(0)]);
    state.counters["press_us"] = Median(press);
    state.counters["step_us"] = Median(step);
    state.counters["prepare_ms"] = Median(prepared) / 1000;
}
void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int laid : {kNone, kStamp, kByUVs})
        for (const int triangles : {60'000, 600'000}) bench->Args({laid, triangles, 2'000});
}
BENCHMARK(BM_PatternStroke)->Apply(Sizes)->Unit(benchmark::kMicrosecond)->Iterations(60);

/// The grids of a picture: side of the picture. The time is of the small ones, the counter of the
/// large one.
void BM_PatternLoad(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    PlainPattern pattern;
    std::vector<uint8_t> pixels(static_cast<size_t>(side) * side * 4, 200);
    std::vector<double> projection;
    for (auto _ : state) {
        pattern.Take(side, side, pixels);
        state.PauseTiming();
        Timed(projection, [&] { pattern.MakeProjection(); });
        state.ResumeTiming();
    }
    state.counters["projection_ms"] = Median(projection) / 1000;
}
BENCHMARK(BM_PatternLoad)->Arg(512)->Arg(4096)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace VantrelSDK::bench
