#include <benchmark/benchmark.h>

#include <random>

#include "bench/BenchScene.h"
#include "core/morph/LMorphTarget.h"
#include "tests/shapes/Generators.h"

// A frame: the sum of targets over the vertices of a head.

namespace VantrelSDK::bench {
namespace {

/// Targets over `verts` vertices, each with offsets in one region of a share of them, as an
/// expression moves one part of a face.
std::vector<LMorphTarget> Targets(int count, int verts, double share) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> offset(-1, 1);
    const int touched = static_cast<int>(verts * share);
    std::vector<LMorphTarget> targets;
    for (int t = 0; t < count; ++t) {
        std::vector<LPoint3> offsets(verts);
        const int first = touched < verts ? static_cast<int>(random() % (verts - touched)) : 0;
        for (int v = first; v < first + touched; ++v)
            offsets[v] = {offset(random), offset(random), offset(random)};
        targets.emplace_back(nullptr, "", verts);
        targets.back().CopyFromMorph(offsets.data(), verts);
    }
    return targets;
}

/// 50 targets summed at level 0. Arguments: vertices, percent of them that each target moves.
void BM_SumTargets(benchmark::State& state) {
    const int verts = static_cast<int>(state.range(0));
    const auto targets = Targets(50, verts, state.range(1) / 100.0);
    LMesh mesh(verts, 1);
    for (auto _ : state) {
        mesh.ClearVerts();
        for (const LMorphTarget& target : targets) target.ApllyMorph(&mesh, 0.7f);
        benchmark::DoNotOptimize(mesh.GetVertsPtr());
    }
    state.counters["frames"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_SumTargets)
    ->Args({26'000, 10})
    ->Args({26'000, 100})
    ->Args({260'000, 10})
    ->Args({260'000, 100})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace VantrelSDK::bench
