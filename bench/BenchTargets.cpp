#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cmath>
#include <random>

#include "bench/BenchScene.h"
#include "core/anim/LControlCollection.h"
#include "core/morph/LMorphTarget.h"
#include "tests/shapes/Generators.h"

// Frames: sums of targets over the vertices of a head, and what it takes to change their space.

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

/// A node over a torus of about `quads` quads with UVs, on levels of quads, with targets that each
/// move a share of all vertices. With `skins`, each was made on a skin of its own.
std::unique_ptr<LHeadlessNode> NodeWithTargets(int quads, int levels, int count, double share,
                                               bool skins = false) {
    auto node = std::make_unique<LHeadlessNode>(1);
    const int side = static_cast<int>(std::sqrt(quads));
    std::string error;
    node->Load(shapes::Torus(side, side), error);
    for (int level = 0; level < levels; ++level) node->SubdivideAll_Quad();
    const LSubdivMesh& geom = *node->lobject()->GetOrigGeom();
    int level0 = 0;
    const LPoint3* input = node->lobject()->GetInput(level0);
    std::vector<LPoint3> skin(input, input + level0);
    auto targets = Targets(count, geom.GetNumVerts(), share);
    for (int t = 0; t < count; ++t) {
        LMorphTarget& target = *node->AddMorph();
        target.SetName(std::to_string(t));
        target.SetGeom(targets[t].geom(), targets[t].proxy());
        if (skins) skin[0].x += 0.001f;
        target.CopySkin(skin.data(), level0);
    }
    return node;
}

/// A frame at level 3 of 5,776 quads, from the weights of 5 targets to positions, with the share of
/// each stage.
void BM_Frame(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    const auto node = NodeWithTargets(5776, 3, 5, state.range(0) / 100.0);
    for (int t = 0; t < 5; ++t) node->weights().Set(std::to_string(t), 0.2f);
    const LSubdivMesh& geom = *node->lobject()->GetOrigGeom();
    LMesh surface(*geom.GetTopLevelCopy());
    std::array<Clock::duration, 3> spent{};
    for (auto _ : state) {
        const auto start = Clock::now();
        node->SetTime(0, -1);
        const auto summed = Clock::now();
        const auto delta = node->GetObjectDelta();
        const auto turned = Clock::now();
        const LPoint3 *base = geom.GetAllVertsPtr(), *offset = delta->GetAllVertsPtr();
        for (int v = 0; v < surface.GetNumVerts(); ++v)
            surface.GetVertsPtr()[v] = base[v] + offset[v];
        const auto added = Clock::now();
        spent[0] += summed - start;
        spent[1] += turned - summed;
        spent[2] += added - turned;
    }
    const char* stages[] = {"sum", "frames", "add"};
    for (int i = 0; i < 3; ++i)
        state.counters[stages[i]] =
            benchmark::Counter(std::chrono::duration<double, std::micro>(spent[i]).count(),
                               benchmark::Counter::kAvgIterations);
    state.counters["vertices"] = surface.GetNumVerts();
}
BENCHMARK(BM_Frame)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

/// A frame between two keys of a track, four targets deep, at another time in each. Arguments:
/// vertices of level 0, percent of them that each target moves.
void BM_TrackFrame(benchmark::State& state) {
    const auto node =
        NodeWithTargets(static_cast<int>(state.range(0)), 0, 4, state.range(1) / 100.0);
    LControlCollection& tracks = node->NeedAnimControls();
    LMorphControl2& track = *tracks.GetMorphCtrl(tracks.AddMorphCtrl(tracks.createNewControl()));
    track.SetType(LMorphControl2::kPhoneme);
    for (int k = 0; k < 200; ++k)
        track.AddKey({.id = node->GetNumStdMorphs() + k % 4, .time = 1000 * k});
    int time = 0;
    for (auto _ : state) {
        time = (time + 1667) % 199'000;
        node->SetTime(time, -1);
        benchmark::DoNotOptimize(node->GetDeltaMesh()->GetAllVertsPtr());
    }
    state.counters["frames"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_TrackFrame)
    ->Args({26'000, 10})
    ->Args({26'000, 100})
    ->Args({260'000, 10})
    ->Unit(benchmark::kMicrosecond);

/// 50 targets at level 2 to object space and back. Arguments: quads of level 0, percent of the
/// vertices that each target moves, whether each has a skin of its own.
void BM_ConvertTargets(benchmark::State& state) {
    const auto node = NodeWithTargets(static_cast<int>(state.range(0)), 2, 50,
                                      state.range(1) / 100.0, state.range(2) != 0);
    size_t offsets = 0;
    for (const LMorphTarget* target : node->AllTargets()) offsets += target->SizeGeom();
    for (auto _ : state) {
        node->ConvertTang2Obj(0, 0);
        node->ConvertObj2Tang(0, 0, 0);
    }
    state.counters["per_offset"] = benchmark::Counter(
        2e-9 * static_cast<double>(offsets),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ConvertTargets)
    ->Args({578, 10, 0})
    ->Args({5776, 10, 0})
    ->Args({5776, 100, 0})
    ->Args({5776, 10, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace VantrelSDK::bench
