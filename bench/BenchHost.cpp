#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "bench/SkinnedHead.h"
#include "minihost/Host.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/shade/ObjScene.h"

using namespace minihost;

namespace {

constexpr double kFrame = 250, kFrames = 100;

/// A skinned head whose joints each turn by a curve, at a new time in every frame.
void SkinFrame(benchmark::State& state) {
    Host& host = Host::Get();
    host.NewScene();
    Modifier edits(host.scene);
    const SkinnedHead head(edits, static_cast<int>(state.range(0)));
    if (!head.error.empty()) return state.SkipWithError(head.error.c_str());
    for (const DagNodePtr& joint : head.joints)
        for (int key = 0; key <= 10; ++key)
            SetKey(edits, joint->FindPlug("rotateZ"),
                   {key * kFrame * kFrames / 10, key % 2 == 0 ? 0.1 : -0.1});
    MeshOf(*head.mesh);
    double time = 0;
    for (auto _ : state) {
        time = time < kFrame * kFrames ? time + kFrame : 0;
        host.playback.SetTime(time);
        benchmark::DoNotOptimize(MeshOf(*head.mesh)->points().data());
    }
    state.SetItemsProcessed(state.iterations());
    host.NewScene();
}

/// A mesh of about as many vertices, with UVs, read into the scene.
void ImportObjFile(benchmark::State& state) {
    Host& host = Host::Get();
    const std::string path = std::filesystem::temp_directory_path() /
                             ("minihost-bench-" + std::to_string(getpid()) + ".obj");
    const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(state.range(0)))));
    std::string error;
    {
        host.NewScene();
        Modifier edits(host.scene);
        const NodePtr mesh = CreateMesh(edits, MakeSphere(10, n, n + 1)).shape;
        if (!ExportObj({mesh}, path, error)) return state.SkipWithError(error.c_str());
    }
    for (auto _ : state) {
        host.NewScene();
        Modifier edits(host.scene);
        if (ImportObj(edits, path, error).empty()) state.SkipWithError(error.c_str());
    }
    host.NewScene();
    std::filesystem::remove(path);
}

BENCHMARK(SkinFrame)->Arg(2600)->Arg(26000)->Arg(260000)->Unit(benchmark::kMicrosecond);
BENCHMARK(ImportObjFile)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
