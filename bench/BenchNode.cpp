#include <benchmark/benchmark.h>

#include "bench/SkinnedHead.h"
#include "maya/MFnDependencyNode.h"
#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshTypes.h"

using namespace minihost;

namespace {

/// The module in a scene with a skinned sphere of about as many vertices, 20 joints, and a node
/// that has a sculpt over it.
class Rig {
  public:
    Rig(int vertices, int levels) : host(Host::Get()) {
        host.NewScene();
        if (!host.modules.Find("kelmo")) host.modules.Load(KELMO_MODULE);
        Run("global proc progressWindow(string $what) {}");
        Modifier edits(host.scene);
        const SkinnedHead head(edits, vertices);
        Run("createNode mesh -name shown; createNode KelmoND -name k;"
            "connectAttr headShape.outMesh k.inputGeom; connectAttr k.outputGeom shownShape.inMesh;"
            "connectAttr time1.outTime k.inTime; setAttr k.forceRenderTopLevel 0");
        Output();
        for (int i = 0; i < levels; ++i) Do(97);
        Do(0);
        Run("createNode locator -name brush; setAttr k.sculptMode 8; setAttr k.brushNorm 0 0 1;"
            "setAttr k.toolSize[8] 6; setAttr k.startZ 10; connectAttr brush.matrix k.brush;"
            "move 0.5 0 10 brush; move 1 0.5 10 brush; disconnectAttr brush.matrix k.brush");
        Do(1);
        Run("setAttr k.numRenderSubdivLvls " + std::to_string(levels));
        for (const DagNodePtr& joint : head.joints) turns.push_back(joint->FindSlot("rotateZ"));
        Output();
    }
    ~Rig() { host.NewScene(); }

    void Run(const std::string& script) { host.interpreter.Execute(script); }
    void Do(int number) {
        Run("setAttr k.commnad " + std::to_string(number) + "; setAttr k.execute 1");
    }
    const void* Output() { return MeshOf(*host.scene.Find("shownShape"))->points().data(); }

    Host& host;
    std::vector<Slot*> turns;
};

/// A time change moves the joints; skin, node and export follow.
void NodeFrame(benchmark::State& state) {
    Rig rig(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const bool node = state.range(2) != 0;
    double angle = 0, frame = 0;
    Slot& time = *rig.host.scene.Find("time1")->FindSlot("outTime");
    for (auto _ : state) {
        angle = angle > 0.1 ? -0.1 : angle + 0.001;
        for (Slot* turn : rig.turns) Write(*turn, angle);
        Write(time, frame += 1);
        benchmark::DoNotOptimize(node ? rig.Output()
                                      : MeshOf(*rig.host.scene.Find("headShape"))->points().data());
    }
    state.SetItemsProcessed(state.iterations());
}

/// A query of the protocol through plugs.
void NodeQuery(benchmark::State& state) {
    Rig rig(2600, 0);
    const MFnDependencyNode node(MObject(rig.host.scene.Find("k")));
    MPlug command = node.findPlug("commnad"), execute = node.findPlug("execute0"),
          answer = node.findPlug("param0");
    for (auto _ : state) {
        command.setValue(19);
        execute.setValue(1);
        benchmark::DoNotOptimize(answer.asInt());
    }
}

BENCHMARK(NodeFrame)
    ->ArgNames({"vertices", "level", "node"})
    ->Args({2600, 0, 1})
    ->Args({26000, 0, 1})
    ->Args({26000, 0, 0})
    ->Args({26000, 1, 1})
    ->Args({26000, 2, 1})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(NodeQuery)->Unit(benchmark::kNanosecond);

}  // namespace
