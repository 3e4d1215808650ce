#include <benchmark/benchmark.h>

#include <cmath>

#include "minihost/Host.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshData.h"
#include "minihost/scene/SceneReader.h"
#include "minihost/scene/SceneWriter.h"

// The small host: scenes, writes that spread, graphs that have nothing to do.

namespace minihost {
namespace {

/// Transforms in groups of ten, each with a curve.
void MakeNodes(Host& host, int count) {
    host.NewScene();
    Modifier edits(host.scene);
    NodePtr group;
    for (int i = 0; i < count / 2; ++i) {
        auto* parent = i % 10 == 0 ? nullptr : static_cast<DagNode*>(group.get());
        const NodePtr node = edits.Create("transform", "", parent);
        if (i % 10 == 0) group = node;
        edits.SetNumbers(node->FindPlug("translate"), {0.1 * i, 1. / 3, 7});
        for (const double time : {0, 10, 20})
            SetKey(edits, node->FindPlug("rotateX"), {time, time / 3});
    }
}

/// A grid of quads with UVs on a mesh node.
void MakeMesh(Host& host, int vertices) {
    const int side = static_cast<int>(std::sqrt(vertices));
    std::vector<MFloatVector> points;
    UVSet uvs{"map1", {}, {}};
    for (int i = 0; i < side * side; ++i) {
        const float u = float(i % side) / float(side), v = float(i / side) / float(side);
        points.push_back({u, v, u * v / 3});
        uvs.values.Edit().push_back({u, v});
    }
    std::vector<int> corners;
    for (int i = 0; i + side + 1 < side * side; ++i)
        if (i % side + 1 < side)
            for (const int corner : {i, i + 1, i + side + 1, i + side}) corners.push_back(corner);
    uvs.corners.Set(corners);
    std::string error;
    const std::vector<int> counts(corners.size() / 4, 4);
    const auto mesh = MeshData::Make(points, counts, corners, error);
    mesh->uvSets = {uvs};
    host.NewScene();
    Modifier edits(host.scene);
    const NodePtr node = edits.Create("mesh", "m", nullptr);
    edits.Set(node->FindPlug("inMesh"), std::shared_ptr<Data>(mesh));
}

void SaveAndLoad(benchmark::State& state, void (*make)(Host&, int)) {
    Host& host = Host::Get();
    make(host, static_cast<int>(state.range(0)));
    const auto form = state.range(1) ? SceneForm::Binary : SceneForm::Text;
    std::string content = WriteScene(host, form);
    if (state.range(2)) {
        for (auto _ : state) benchmark::DoNotOptimize(content = WriteScene(host, form));
    } else {
        for (auto _ : state) {
            ScenePlan plan(host, content);
            host.NewScene();
            plan.Apply();
        }
    }
    state.counters["bytes"] = static_cast<double>(content.size());
    state.counters["nodes"] = host.scene.count();
    host.NewScene();
}

void BM_SceneNodes(benchmark::State& state) {
    SaveAndLoad(state, MakeNodes);
}
BENCHMARK(BM_SceneNodes)
    ->ArgNames({"nodes", "binary", "save"})
    ->ArgsProduct({{1000, 10000}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void BM_SceneMesh(benchmark::State& state) {
    SaveAndLoad(state, MakeMesh);
}
BENCHMARK(BM_SceneMesh)
    ->ArgNames({"vertices", "binary", "save"})
    ->ArgsProduct({{100000, 1000000}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

/// A plug whose staleness reaches as many nodes, one after another.
NodePtr MakeChain(Host& host, int length) {
    host.NewScene();
    Modifier edits(host.scene);
    const NodePtr first = edits.Create("transform", "");
    NodePtr last = first;
    for (int i = 1; i < length; ++i) {
        const NodePtr next = edits.Create("animCurveTT", "");
        const char* from = i == 1 ? "translateX" : "output";
        edits.Connect(last->FindPlug(from), next->FindPlug("input"));
        last = next;
    }
    return first;
}

void BM_PlugWrite(benchmark::State& state) {
    Host& host = Host::Get();
    const NodePtr first = MakeChain(host, static_cast<int>(state.range(0)));
    const NodePtr last = host.scene.Nodes().back();
    Slot& plug = *first->FindSlot("translateX");
    Slot& end = *last->FindSlot("output");
    double value = 0;
    for (auto _ : state) {
        Write(plug, value += 1);
        state.PauseTiming();
        Pull(end);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_PlugWrite)->Arg(20)->Arg(200)->Iterations(20000);

void BM_UnchangedGraph(benchmark::State& state) {
    Host& host = Host::Get();
    MakeChain(host, static_cast<int>(state.range(0)));
    Slot& end = *host.scene.Nodes().back()->FindSlot("output");
    for (auto _ : state) benchmark::DoNotOptimize(Pull(end));
}
BENCHMARK(BM_UnchangedGraph)->Arg(20)->Arg(200);

}  // namespace
}  // namespace minihost
