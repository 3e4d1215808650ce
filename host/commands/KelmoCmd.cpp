#include "host/commands/KelmoCmd.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MItMeshPolygon.h>

#include "core/sculpt/LNodeRecord.h"
#include "host/commands/KelmoCreate.h"
#include "host/commands/KelmoProxy.h"
#include "host/commands/KelmoPurge.h"
#include "host/commands/KelmoSkinOrder.h"
#include "host/commands/KelmoTweaks.h"
#include "host/ml/MLMaterialSet.h"
#include "host/ml/MLNode.h"
#include "host/nodes/Finders.h"
#include "host/nodes/GeometryLine.h"

namespace VantrelSDK {

namespace {

constexpr auto kUnsigned = MSyntax::kUnsigned;
constexpr auto kDouble = MSyntax::kDouble;
constexpr auto kBoolean = MSyntax::kBoolean;
constexpr auto kString = MSyntax::kString;

/// The mesh that -node names, or the only one that is selected.
MObject MeshToWorkOn(const MArgDatabase& words) {
    MString name;
    if (words.isFlagSet("node")) {
        words.getFlagArgument("node", 0, name);
        return FindShapeByDagName(name);
    }
    const MObjectArray selected = SelectedShapes();
    return selected.length() == 1 ? selected[0] : MObject();
}

MStatus Create(NodeCall& call) {
    const MObject mesh = MeshToWorkOn(call.words);
    if (mesh.isNull()) return call.Fail("please select single mesh node\n");
    if (HasKelmoConnected(mesh)) return call.Fail("node has Kelmo already connected\n");
    MGlobal::displayInfo("Creating Kelmo node...");
    MString script = "KelmoNew -geometry " + Quoted(NameOf(mesh));
    if (!call.words.isFlagSet("notweak")) script += " -maketweak";
    MString node;
    if (!MGlobal::executeCommand(script, node, false, true)) return MS::kFailure;
    for (const char* finish : {"KelmoTime -kelmo ", "KelmoSetVer -kelmo "})
        CHECK_MSTATUS_AND_RETURN_IT(RunUndoable(finish + Quoted(node)));
    MPxCommand::setResult(node);
    return MS::kSuccess;
}

MStatus AddToSelected(NodeCall&) {
    const MObjectArray meshes = SelectedShapes();
    if (meshes.length() == 0) MGlobal::displayWarning("Kelmo: please select mesh to select.");
    MStringArray made;
    for (const MObject& mesh : meshes) {
        if (HasKelmoConnected(mesh)) continue;
        MString node;
        if (CreateKelmoOver(mesh, node)) made.append(node);
    }
    MPxCommand::setResult(made);
    return MS::kSuccess;
}

MStatus CheckUVs(NodeCall& call) {
    const MObject mesh = MeshToWorkOn(call.words);
    if (mesh.isNull()) return call.Fail("please select single mesh node\n");
    MStringArray sets;
    MFnMesh(mesh).getUVSetNames(sets);
    bool found = false;
    if (sets.length() > 0)
        for (MItMeshPolygon walk(mesh); !walk.isDone() && !found; walk.next())
            found = walk.hasUVs(sets[0]);
    MPxCommand::setResult(int{found});
    return MS::kSuccess;
}

MStatus Delete(NodeCall& call) {
    RunUndoable("setToolTo selectSuperContext");
    return DeleteKelmo(call.node);
}

MStatus ShowInEditor(NodeCall& call) {
    RunUndoable("ToggleAttributeEditor");
    return RunUndoable("updateAE " + Quoted(NameOf(call.node)));
}

MStatus ReadPreferences(NodeCall&) {
    MLNode::LoadPreferences();
    return MS::kSuccess;
}

MStatus TellVersion(NodeCall&) {
    MPxCommand::setResult(GetKelmoVersionString().c_str());
    return MS::kSuccess;
}

MStatus TellVersionNumber(NodeCall&) {
    MPxCommand::setResult(GetKelmoVersionInt());
    return MS::kSuccess;
}

MStatus TellBuildDate(NodeCall&) {
    MPxCommand::setResult("Tue 08/21/2012");
    return MS::kSuccess;
}

MStatus ShowColors(NodeCall& call) {
    bool on = false;
    if (!call.Argument(0, on)) return MS::kFailure;
    for (const MPlug& input : GeometryBelow(MainGeometryOutput(call.node)))
        if (input.node().hasFn(MFn::kMesh)) MFnMesh(input.node()).setDisplayColors(on);
    return MS::kSuccess;
}

MStatus TellNode(const MObject& node) {
    MPxCommand::setResult(node.isNull() ? MString() : NameOf(node));
    return MS::kSuccess;
}

MStatus TellShape(NodeCall& call) {
    MString name;
    return call.Argument(0, name) ? TellNode(FindOutputShape(FindNodeByName(name))) : MS::kFailure;
}

MStatus TellInput(NodeCall& call) {
    return TellNode(FindInputShape(call.node));
}

MStatus HasPreSkin(NodeCall& call) {
    MPxCommand::setResult(int{!FindInputSkin(call.node).isNull()});
    return MS::kSuccess;
}

MStatus HasPostSkin(NodeCall& call) {
    MPxCommand::setResult(int{!FindOutputSkin(call.node).isNull()});
    return MS::kSuccess;
}

MStatus Neutralize(NodeCall& call) {
    bool on = false;
    if (!call.Argument(0, on)) return MS::kFailure;
    NodeProtocol protocol(call.node);
    protocol.SetIndex(on);
    BringUpToDate(call.node);
    protocol.Run(181, 888);
    return MGlobal::executeCommand("refresh");
}

MStatus WrapUVs(NodeCall& call) {
    bool on = false;
    if (!call.Argument(0, on)) return MS::kFailure;
    MFnDependencyNode(call.node).findPlug("wrapUVs").setValue(on);
    BringUpToDate(call.node);
    NodeProtocol(call.node).Run(131, 1099);
    return MS::kSuccess;
}

MStatus HasAllMaps(NodeCall& call) {
    const MPlug channel = MFnDependencyNode(call.node).findPlug("texChannel");
    if (channel.isNull()) return call.Fail("can't find texChannel plug");
    MPxCommand::setResult(int{MLMaterialSet::HasAllMaps(channel.asInt(), call.node)});
    return MS::kSuccess;
}

constexpr NodeAction kCreate = Call(Create), kAddToSelected = Call(AddToSelected),
                     kCheckUVs = Call(CheckUVs), kDelete = Call(Delete);

constexpr NodeFlag kFlags[] = {
    {.brief = "no",
     .name = "node",
     .arguments = {kString},
     .queryArguments = 1,
     .needsNode = false},
    {.brief = "nt", .name = "notweak", .needsNode = false},
    {.brief = "zt", .name = "zerotweak", .needsNode = false},
    {.brief = "c", .name = "create", .edit = kCreate, .needsNode = false},
    {.brief = "am", .name = "addmulti", .edit = kAddToSelected, .needsNode = false},
    {.brief = "cuv", .name = "checkuvs", .edit = kCheckUVs, .query = kCheckUVs, .needsNode = false},
    {.brief = "d", .name = "delete", .edit = kDelete},
    {.brief = "ae", .name = "showae", .edit = Call(ShowInEditor)},
    {.brief = "rp", .name = "readPrefs", .edit = Call(ReadPreferences), .needsNode = false},
    {.brief = "ed", .name = "exportDelta", .edit = Run(4).Labelled(77)},
    {.brief = "v",
     .name = "version",
     .edit = Call(TellVersion),
     .query = Call(TellVersion),
     .needsNode = false},
    {.brief = "vi",
     .name = "versionInt",
     .edit = Call(TellVersionNumber),
     .query = Call(TellVersionNumber),
     .needsNode = false},
    {.brief = "bd",
     .name = "buildDate",
     .edit = Call(TellBuildDate),
     .query = Call(TellBuildDate),
     .needsNode = false},
    {.brief = "sc", .name = "showcolors", .arguments = {kBoolean}, .edit = Call(ShowColors)},
    {.brief = "rtm", .name = "recalcTMs", .edit = Run(133).Labelled(11102)},
    {.brief = "iob",
     .name = "importObj",
     .arguments = {kUnsigned, kString},
     .edit = Run(17).Labelled(888)},
    {.brief = "imf", .name = "importFile", .arguments = {kString}, .edit = Run(31).Labelled(888)},
    {.brief = "exf", .name = "exportFile", .arguments = {kString}, .edit = Run(32).Labelled(888)},
    {.brief = "sa", .name = "skinAfter", .edit = Call(MoveBehindSkin)},
    {.brief = "sb", .name = "skinBefore", .edit = Call(MoveBeforeSkin)},
    {.brief = "hps", .name = "hasPreSkin", .edit = Call(HasPreSkin), .query = Call(HasPreSkin)},
    {.brief = "hts", .name = "hasPostSkin", .edit = Call(HasPostSkin), .query = Call(HasPostSkin)},
    {.brief = "csh", .name = "clearshots", .arguments = {kDouble}, .edit = Run(34).Labelled(10002)},
    {.brief = "pga", .name = "purgeall", .edit = Call(PurgeAll), .needsNode = false},
    {.brief = "pgt", .name = "purgethis", .edit = Call(PurgeThis)},
    {.brief = "pu",
     .name = "purge",
     .arguments = {kString},
     .edit = Call(PurgeNamed),
     .needsNode = false},
    {.brief = "sh",
     .name = "shape",
     .arguments = {kString},
     .edit = Call(TellShape),
     .query = Call(TellShape),
     .queryArguments = 1,
     .needsNode = false},
    {.brief = "zw", .name = "zerowork", .edit = Run(245).Labelled(999)},
    {.brief = "uu", .name = "updateuvsets", .edit = Run(131).Labelled(1099)},
    {.brief = "nuv",
     .name = "numuvsets",
     .edit = Ask(122).Labelled(10023),
     .query = Ask(122).Labelled(10023)},
    {.brief = "uvn",
     .name = "uvsetname",
     .arguments = {kUnsigned},
     .edit = Ask(123, NodeAction::Answer::kText).Labelled(10044),
     .query = Ask(123, NodeAction::Answer::kText).Labelled(10044),
     .queryArguments = 1},
    {.brief = "auv",
     .name = "activeuvset",
     .arguments = {kUnsigned},
     .edit = Run(124).Labelled(88),
     .query = Plug("UVchannel")},
    {.brief = "os",
     .name = "objsmit",
     .arguments = {kUnsigned},
     .edit = Run(125).Labelled(99999),
     .query = Plug("objSmIt")},
    {.brief = "neu",
     .name = "neutralize",
     .arguments = {kBoolean},
     .edit = Call(Neutralize),
     .query = Plug("neutralize")},
    {.brief = "wrp",
     .name = "wrapUVs",
     .arguments = {kBoolean},
     .edit = Call(WrapUVs),
     .query = Plug("wrapUVs")},
    {.brief = "ham", .name = "hasallmaps", .edit = Call(HasAllMaps), .query = Call(HasAllMaps)},
    {.brief = "hmt",
     .name = "hasmtlset",
     .edit = Ask(240).Labelled(1000000),
     .query = Ask(240).Labelled(1000000)},
    {.brief = "x",
     .name = "proxy",
     .arguments = {kBoolean},
     .edit = Call(MakeOrDeleteProxy),
     .query = Call(TellProxy)},
    {.brief = "in", .name = "input", .edit = Call(TellInput), .query = Call(TellInput)},
};

}  // namespace

const NodeCommandTable kKelmoCmd{"KelmoCmd", kFlags, "node"};

}  // namespace VantrelSDK
