#include "host/nodes/NodeEvaluation.h"

#include <maya/MGlobal.h>
#include <maya/MTime.h>

#include <algorithm>

#include "core/morph/LMeshBases.h"
#include "host/gl/KelmoSurfaceCallback.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/MLColorDelta.h"
#include "host/ml/MLGeomDelta.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/nodes/KelmoRenderMessage.h"

namespace VantrelSDK {

namespace {

/// A frame is being rendered, or there is nobody to look at anything else.
bool IsRendering() {
    return KelmoRenderMessage::isRendering || MGlobal::mayaState() == MGlobal::kBatch;
}

}  // namespace

MStatus NodeEvaluation::Compute(Output output, const std::function<MObject()>& input,
                                const std::function<bool(MTime&)>& time, MDataHandle& to) {
    const bool toScene = output != Output::kDisplay;
    // In a session the surface shows what is sculpted; what the mesh shows is left as it came.
    if (output == Output::kGeometry && node_.lnodeinited && node_.IsSculpting()) {
        const MObject mesh = input();
        return mesh.isNull() ? MS::kFailure : to.set(mesh);
    }
    const int level = ChooseLevel(output);
    if (level != node_.lastComputeLvl && !node_.keepLevel) node_.ForceEvaluation();
    node_.lastComputeLvl = level;
    node_.keepLevel = false;
    const bool due = IsInputDue(level);
    MObject mesh;
    if (toScene || due) {
        mesh = input();
        if (mesh.isNull()) return MS::kFailure;
    }
    if (due && !TakeInput(mesh, output, level)) return MS::kFailure;
    if (!node_.IsStroking() && !node_.skipTime) {
        MTime now;
        if (time(now))
            TakeTime(now, level);
        else
            node_.Error("can not get input time data handle\n");
    }
    node_.skipTime = false;
    if (toScene) return Export(mesh, output == Output::kProxy ? 0 : level, to);
    // A stroke's own changes are drawn as what they are.
    if (!node_.IsStroking()) node_.displyDirtied = true;
    return to.set(new KelmoSurfaceCallback(&node_));
}

/// The level that an output shows; -1 is the top.
int NodeEvaluation::ChooseLevel(Output output) {
    const LSubdivMesh* delta = node_.GetDeltaMesh();
    if (output == Output::kDisplay || (output == Output::kProxy && node_.IsSculpting()))
        return delta ? delta->GetActiveLevel() : 0;
    if (node_.getForceRenderTopLevel() && delta && delta->GetNumSubivLevels() > 1 && IsRendering())
        return -1;
    return std::max(node_.getNumRenderSubdivisionLevels(), 0);
}

/// Whether the input is to be read: it is another, or the geometry hasn't the levels that are
/// shown.
bool NodeEvaluation::IsInputDue(int level) const {
    return !node_.lnodeinited || node_.postload || node_.inputChanged || !HasLevels(level);
}

/// Whether the geometry has the levels for an output, and no more: what lies above costs time
/// whenever the input moves.
bool NodeEvaluation::HasLevels(int level) const {
    const LSubdivMesh* delta = node_.GetDeltaMesh();
    if (!delta) return true;
    const int top = delta->GetNumSubivLevels() - 1;
    level = LevelInUse(level);
    return node_.lobject()->GetOrigGeom()->GetNumSubivLevels() ==
           1 + (level < 0 ? top : std::min(level, top));
}

/// A session has all levels.
int NodeEvaluation::LevelInUse(int level) const {
    return node_.IsSculpting() ? -1 : level;
}

/// Reads the input. False when the node can't use it.
bool NodeEvaluation::TakeInput(const MObject& input, Output output, int level) {
    if (!node_.lnodeinited || node_.postload) {
        const bool restored = node_.postload;
        if (!node_.Init(input, restored)) {
            node_.Error("the can not update input - topo changed or no geometry.");
            return false;
        }
        KelmoRenderMessage::CheckRendererMELs();
        node_.lnodeinited = true;
        node_.postload = false;
    }
    if (node_.hasTweaks()) {
        // They are no part of the base shape, so that it waits until they are merged.
        if (!HasLevels(level))
            node_.lobject()->Update(nullptr, node_.GetDeltaMesh(), LevelInUse(level));
    } else {
        bool changed = false;
        if (!node_.meshObject()->Update(changed, input, LevelInUse(level))) {
            node_.Error("the can not update input - topo changed or no geometry.");
            return false;
        }
        if (output == Output::kDisplay && node_.GetDeltaMesh())
            node_.meshObject()->SetActiveSubdivLevel(node_.GetDeltaMesh()->GetActiveLevel());
        if (changed) node_.SurfaceReplaced();
        if (node_.IsSculpting() && changed) node_.UpdateBase();
    }
    node_.inputChanged = false;
    return true;
}

void NodeEvaluation::TakeTime(const MTime& time, int level) {
    const bool evaluated = node_.EvaluateFrame(static_cast<float>(time.as(MTime::kSeconds)),
                                               level == -1 ? -1 : level + 1);
    if (!evaluated && time == node_.lastEvalTime) return;
    node_.lastEvalTime = time;
    node_.displayGeomChanged = true;
}

MStatus NodeEvaluation::Export(const MObject& input, int level, MDataHandle& to) {
    const LSubdivMesh* delta = node_.GetDeltaMesh();
    if (!delta) return MS::kFailure;
    const int top = delta->GetNumSubivLevels() - 1;
    level = level < 0 ? top : std::min(level, top);
    MObject mesh;
    Log("gonna copy or export data\n");
    MLColorDelta* colors = node_.colorDelta();
    const bool painted = colors && !colors->IsZero();
    if (level == 0 && !node_.IsNeutralizing() && !painted) {
        mesh = CopyMesh(input);
        Log("copy done\n");
    } else {
        mesh = node_.meshObject()->Export(input, level, node_.BaseShape());
        if (mesh.isNull()) return MS::kFailure;
        Log("export done\n");
    }
    // In a session the delta is in object space already.
    LMeshBases* bases =
        node_.IsSculpting() || !node_.GetDelta()->HasOffsets() ? nullptr : node_.GetDeltaBases();
    Log("gonna deform\n");
    if (!Deform5(*node_.GetDelta(), mesh, bases, level)) return MS::kFailure;
    Log("verts updated\n");
    if (painted) {
        Log("gonna update vert colors\n");
        colors->ModifyMesh(input, mesh, level, false);
        Log("vert colors updated\n");
    }
    return to.set(mesh);
}

}  // namespace VantrelSDK
