#include <maya/MFnMatrixData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnPluginData.h>
#include <maya/MGlobal.h>

#include <exception>
#include <set>
#include <string>

#include "core/paint/LPatternCollection.h"
#include "host/gl/KelmoSurfaceCallback.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/InterfaceProcedures.h"
#include "host/ml/MLNode.h"
#include "host/ml/StageTimes.h"
#include "host/nodes/Finders.h"
#include "host/nodes/KelmoMorphControl2.h"
#include "host/nodes/NodeCommands.h"
#include "host/nodes/NodeEvaluation.h"
#include "host/nodes/NodeJournal.h"
#include "host/nodes/SurfaceDisplay.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

MMatrix MatrixOf(const MPlug& plug) {
    return MFnMatrixData(plug.asMObject()).matrix();
}

MVector TripleOf(const MPlug& plug) {
    return {plug.child(0).asFloat(), plug.child(1).asFloat(), plug.child(2).asFloat()};
}

MVector Row(const MMatrix& m, unsigned row) {
    return {m(row, 0), m(row, 1), m(row, 2)};
}

/// Without its element, index or parent.
std::string BaseName(const MPlug& plug) {
    const std::string name = plug.partialName().str();
    return name.substr(0, name.find('['));
}

}  // namespace

void NodeEvaluation::SetDependentsDirty(const MPlug& plug, MPlugArray& affected) {
    static const std::set<std::string> kMaterials{"shtx", "afft", "aftc", "tch"};
    static const std::set<std::string> kShown{
        "affc", "dimo", "affs", "sten", "pmod", "puv",  "shaz", "shal", "oo", "usop",
        "ssao", "ssar", "sssa", "glsl", "cull", "txop", "pouc", "dmo",  "dma"};
    const std::string name = BaseName(plug);
    Log(name.c_str());
    if (name == "ex" || name == "ex0") {
        NodeCommands(node_).Run(affected);
    } else if (name == "ig" || name == "igp" || name == "ip") {
        InputBecameStale();
    } else if (name == "br") {
        Step();
        AppendOutputs(affected);
    } else if (name == "bt" || name == "bs") {
        node_.setBlendCache(node_.plug(&N::m_moBlendTarg).asInt());
    } else if (name == "it") {
        TimeChanged();
    } else if (name == "fl" || name == "fl2") {
        if (node_.lnodeinited) node_.UpdateFalloffs();
    } else if (name == "nrsl" || name == "frtl") {
        node_.ForceEvaluation();
        AppendOutputs(affected);
    } else if (name == "poao" || name == "exp" || name == "scl") {
        node_.ForceEvaluation();
    } else if (name == "mt") {
        node_.ForceEvaluation(100);
        affected.append(node_.outputPlug());
    } else if (kMaterials.contains(name)) {
        node_.UpdateMaterials();
    } else if (kShown.contains(name)) {
        node_.displyDirtied = true;
        if (name == "pouc") node_.inputChanged = true;
        if (name == "affc" || name == "affs") node_.PrepareColours();
        if (name == "affc") ShowColors();
        if (name == "pmod" || name == "puv") node_.PreparePattern();
    } else if (name == "csa") {
        RefreshPatterns();
    }
}

void NodeEvaluation::AppendOutputs(MPlugArray& affected) const {
    affected.append(node_.outputPlug());
    affected.append(node_.plug(&N::m_moDisplayCbk));
}

/// The next evaluation reads the input. The caches of a session hold what is sculpted, whatever
/// comes in.
void NodeEvaluation::InputBecameStale() {
    if (!node_.lnodeinited) return;
    node_.inputChanged = node_.displyDirtied = node_.displayGeomChanged = true;
    if (!node_.IsSculpting()) node_.deleteAllLevelTrees();
}

void NodeEvaluation::TimeChanged() {
    if (!node_.lnodeinited || node_.IsStroking()) return;
    if (node_.GetDelta()) node_.GetDelta()->FlushUndo();
    node_.displayGeomChanged = true;
    MTime now;
    if (!node_.IsSculpting() || !node_.plug(&N::m_moInTime).getValue(now) ||
        now == node_.sculptTime)
        return;
    node_.TakeWorldMatrices();
    const int mode = node_.getTransformMode(false);
    MLNode::offontimechange = IsSculptTransformMode(mode);
    if (MLNode::offontimechange) MLNode::offbrushmode = mode;
    MGlobal::executeCommand("setToolTo selectSuperContext");
}

/// The press: the tool has put the start of the stroke into plugs and connected its place.
void NodeEvaluation::BeginStroke() {
    const auto single = [&](N::Member attribute) { return node_.plug(attribute).asFloat(); };
    const MMatrix brush = MatrixOf(node_.plug(&N::m_moBrush));
    BrushView view{-Row(brush, 2).normal(), Row(brush, 0).normal(), node_.getToolSize()};
    if (MLNode::brushView) view = *MLNode::brushView;
    const MMatrix toObject =
        MatrixOf(node_.plug(&N::m_moWorldToObj)) * MatrixOf(node_.plug(&N::m_moBrushadj));
    const MPoint start(single(&N::m_moStartX), single(&N::m_moStartY), single(&N::m_moStartZ));
    const MPoint from = start * toObject, to = (start + view.orth * view.radius) * toObject;
    node_.InitTransform(from, (view.view * toObject).normal(), (view.orth * toObject).normal(),
                        TripleOf(node_.plug(&N::m_moBrushNorm)), single(&N::m_moScreenx),
                        single(&N::m_moScreeny), static_cast<float>(from.distanceTo(to)),
                        node_.plug(&N::m_moSculptMode).asInt(), true);
}

/// A move.
void NodeEvaluation::Step() {
    if (!node_.IsSculpting() || !node_.IsStroking()) return;
    try {
        const MMatrix brush = MatrixOf(node_.plug(&N::m_moBrush));
        const MMatrix toObject =
            MatrixOf(node_.plug(&N::m_moWorldToObj)) * MatrixOf(node_.plug(&N::m_moBrushadj));
        const MPoint place = MPoint(Row(brush, 3)) * toObject;
        StageTimes& times = StageTimes::All();
        const double evaluated = times.recalculation;
        {
            const StageTimer timer(times.step);
            ++times.steps;
            node_.Transform(place, node_.plug(&N::m_moScreenx).asFloat(),
                            node_.plug(&N::m_moScreeny).asFloat(),
                            TripleOf(node_.plug(&N::m_moBrushNorm)));
        }
        times.step -= times.recalculation - evaluated;
    } catch (const std::exception&) {
        Log("!!! exception in Transform !!!");
    }
}

/// The track whose curve feeds a plug; null for another plug.
KelmoMorphControl2* NodeEvaluation::TrackOf(const MPlug& plug) const {
    if (!plug.isElement() || BaseName(plug) != "st") return nullptr;
    LControlCollection* tracks = node_.GetAnimControls();
    LMorphControl2* track =
        tracks ? tracks->GetMorphCtrl(static_cast<int>(plug.logicalIndex())) : nullptr;
    return static_cast<KelmoMorphControl2*>(track);
}

void NodeEvaluation::ConnectionMade(const MPlug& plug, const MPlug& other, bool asSrc) {
    if (asSrc) {
        if (BaseName(plug) == "dcb") SurfaceConnected(node_, other.node());
        return;
    }
    Log("connected " + plug.name() + "-->" + other.name());
    const std::string name = BaseName(plug);
    if (name == "br" && node_.IsSculpting()) {
        try {
            BeginStroke();
        } catch (const std::exception&) {
            Log("!!! exception in InitTransform !!!");
        }
    } else if (KelmoMorphControl2* track = TrackOf(plug)) {
        track->RegisterKeysCallback(plug);
    }
}

void NodeEvaluation::ConnectionBroken(const MPlug& plug, const MPlug& other, bool asSrc) {
    if (asSrc) {
        if (BaseName(plug) == "dcb") SurfaceDisconnected(node_, other.node());
        return;
    }
    Log("disconnected " + plug.name() + " X " + other.name());
    const std::string name = BaseName(plug);
    if (name == "br" && node_.IsStroking()) {
        try {
            node_.FinishTransform(true);
        } catch (const std::exception&) {
            Log("!!! exception in FinishTransform !!!");
        }
        // What no frame has shown of the stroke, no step tells any more.
        node_.displyDirtied = true;
        PassSurface();
        UseStencil();
    } else if (KelmoMorphControl2* track = TrackOf(plug)) {
        track->UnRegisterKeysCallback();
    } else if (name == "it") {
        MGlobal::executeCommand("setToolTo selectSuperContext");
    }
}

void NodeEvaluation::RefreshPatterns() {
    if (!node_.lpatterns()) return;
    for (int i = 0; i < node_.lpatterns()->GetNumPatterns(); ++i)
        node_.lpatterns()->GetPattern(i)->Refresh();
    node_.PreparePattern();
    node_.displyDirtied = true;
}

/// The mesh shows vertex colours while they are painted.
void NodeEvaluation::ShowColors() {
    const MObject shape = FindOutputShape(node_.getThisMObject());
    if (!shape.isNull()) MFnMesh(shape).setDisplayColors(node_.getAffectVertexColor());
}

/// What was painted as a stencil protects the surface from then on.
void NodeEvaluation::UseStencil() {
    if (!node_.lcolorDelta() || node_.lcolorDelta()->IsZeroStencil() || node_.getUseStencil())
        return;
    node_.plug(&N::m_moUseStencil).setValue(true);
    RunIfKnown("kelmoUpdateUseStencilBoxes");
}

/// What shows the node learns that its surface is another.
void NodeEvaluation::PassSurface() {
    MFnPluginData data;
    MStatus status;
    const MObject made = data.create(MTypeId(kSurfaceCallbackId), &status);
    auto* callback = status ? dynamic_cast<KelmoSurfaceCallback*>(data.data()) : nullptr;
    if (callback) callback->kelmo = &node_;
    if (!callback || !node_.plug(&N::m_moDisplayCbk).setValue(made))
        node_.Error("Can not pass KelmoSurfaceCallback");
}

}  // namespace VantrelSDK
