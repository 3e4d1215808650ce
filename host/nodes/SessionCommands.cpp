#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MPxNode.h>

#include "core/paint/LPatternCollection.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLMorphTarget.h"
#include "host/ml/MLNode.h"
#include "host/ml/StageTimes.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

MVector Triple(const MLNode& node, N::Member x, N::Member y, N::Member z) {
    return {node.plug(x).asFloat(), node.plug(y).asFloat(), node.plug(z).asFloat()};
}

}  // namespace

std::span<const NodeCommands::Row> NodeCommands::SessionRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {0, &C::BeginSculpt},      {1, &C::EndSculpt},        {4, &C::ExportMesh},
        {5, &C::PickByRay},        {6, &C::UndoStroke},       {34, &C::ClearShots},
        {111, &C::UpdateFalloffs}, {112, &C::UpdateFalloffs}, {113, &C::PreRender},
        {114, &C::PostRender},     {132, &C::MergeTweaks},    {134, &C::EvaluateAgain},
        {237, &C::ForceCache},     {242, &C::RebuildOctree},  {243, &C::EvaluateAgain},
        {244, &C::EvaluateAgain},  {245, &C::ZeroWork},
    };
    return rows;
}

void NodeCommands::BeginSculpt() {
    if (!HasGeometry()) return Error("no geometry to sculpt.");
    if (node_.IsSculpting()) return;
    if (!node_.HasNeutral()) node_.createNeutral();
    node_.InitSculpt();
    OutputChanged();
}

void NodeCommands::EndSculpt() {
    if (!node_.IsSculpting()) return;
    node_.FinishSculpt(true);
    OutputChanged();
}

void NodeCommands::ExportMesh() {
    if (!HasGeometry()) return;
    node_.RaiseLevels();
    LSubdivMesh shape(node_.BaseShape(), false);
    shape.AddAllVerts(*node_.GetObjectDelta(), 1);
    ExportToDag(node_, shape, -1, MFnDependencyNode(node_.getThisMObject()).name() + "Mesh");
}

void NodeCommands::PickByRay() {
    MPoint point;
    MVector normal;
    const MPoint origin = Triple(node_, &N::m_moRayPosX, &N::m_moRayPosY, &N::m_moRayPosZ);
    bool hit = false;
    {
        const StageTimer timer(StageTimes::All().hit);
        ++StageTimes::All().hits;
        hit = node_.IntersectRay(origin,
                                 Triple(node_, &N::m_moRayDirX, &N::m_moRayDirY, &N::m_moRayDirZ),
                                 point, normal);
    }
    Answer(hit ? 1 : 0);
    if (!hit) return;
    node_.plug(&N::m_moRayPosX).setValue(point.x);
    node_.plug(&N::m_moRayPosY).setValue(point.y);
    node_.plug(&N::m_moRayPosZ).setValue(point.z);
    const MPlug out = node_.plug(&N::m_moBrushNorm);
    for (unsigned c = 0; c < 3; ++c) out.child(c).setValue(normal[c]);
}

void NodeCommands::UndoStroke() {
    if (node_.UndoStroke()) OutputChanged();
}

void NodeCommands::ClearShots() {
    if (HasGeometry() && node_.ZeroShortOffsets(Number())) OutputChanged();
}

void NodeCommands::UpdateFalloffs() {
    if (node_.lnodeinited) node_.UpdateFalloffs();
}

void NodeCommands::PreRender() {
    if (node_.IsSculpting()) MGlobal::executeCommand("setToolTo selectSuperContext");
    EndSculpt();
    // A render has better use for the memory.
    for (int i = 0; node_.lpatterns() && i < node_.lpatterns()->GetNumPatterns(); ++i)
        node_.lpatterns()->GetPattern(i)->ReleaseProjection();
    OutputChanged();
}

void NodeCommands::PostRender() {
    OutputChanged();
}

void NodeCommands::MergeTweaks() {
    if (!HasGeometry() || !node_.mergeTweaks()) return;
    node_.SurfaceReplaced();
    OutputChanged();
    MGlobal::executeCommand("refresh");
}

void NodeCommands::EvaluateAgain() {
    node_.inputChanged = true;
    OutputChanged();
}

void NodeCommands::ForceCache() {
    if (auto* host = MFnDependencyNode(node_.getThisMObject()).userNode()) host->forceCache();
}

void NodeCommands::RebuildOctree() {
    node_.buildOctTree();
}

void NodeCommands::ZeroWork() {
    if (HasGeometry() && node_.ZeroDelta()) OutputChanged();
}

}  // namespace VantrelSDK
