#include "host/commands/KelmoNewCmd.h"

#include <maya/MArgDatabase.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>

#include "host/commands/KelmoTweaks.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/MLNode.h"
#include "host/nodes/GeometryLine.h"
#include "host/nodes/NodeTypes.h"
#include "host/nodes/ToolArrays.h"

namespace VantrelSDK {

namespace {

MPlug Find(const MObject& node, const char* name) {
    return MFnDependencyNode(node).findPlug(name);
}

}  // namespace

MStatus ConnectPreDeformed(const MObject& node, MDGModifier& edits) {
    const MPlug input = Find(node, "inputGeom");
    MPlug source;
    if (const MObject skin = FindInputSkin(node); !skin.isNull()) {
        source = Find(skin, "outputGeometry").elementByLogicalIndex(0);
        if (source.isNull()) return Failed("Kelmo: can't find skinCluster's ouputGeometry");
    } else if (const MObject shape = FindInputShape(node); !shape.isNull()) {
        source = Find(shape, "worldMesh").elementByLogicalIndex(0);
    } else if (const auto above = GeometryAbove(input); !above.empty()) {
        source = above.back();
    }
    if (source.isNull()) return MS::kSuccess;
    if (edits.connect(source, Find(node, "inputGeomPreDef"))) return MS::kSuccess;
    return Failed("KelmoNewCmd: can't connect igp");
}

MStatus InsertBefore(const MObject& shape, const MObject& node, MDGModifier& edits) {
    const MPlug inMesh = Find(shape, "inMesh"), source = inMesh.source();
    if (!edits.disconnect(source, inMesh)) return Failed("KelmoNewCmd: can't disconnect");
    if (!edits.connect(source, Find(node, "inputGeom")) || !edits.doIt())
        return Failed("KelmoNewCmd: can't connect ig");
    CHECK_MSTATUS_AND_RETURN_IT(ConnectPreDeformed(node, edits));
    if (!edits.connect(Find(node, "outputGeom"), inMesh) || !edits.doIt())
        return Failed("KelmoNewCmd: can't connect og");
    return MS::kSuccess;
}

MSyntax KelmoNewCmd::newSyntax() {
    MSyntax syntax;
    syntax.addFlag("g", "geometry", MSyntax::kString);
    syntax.addFlag("d", "isdeformer");
    syntax.addFlag("t", "maketweak");
    return syntax;
}

MStatus KelmoNewCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoNewCmd: can not parse arguments\n");
    MString geometry;
    parsed.getFlagArgument("geometry", 0, geometry);
    const MObject shape = FindShapeByDagName(geometry);
    if (shape.isNull()) return Failed("KelmoNewCmd: name a mesh with -geometry\n");
    if (parsed.isFlagSet("isdeformer")) return CreateDeformer(shape);
    return Ended(CreateNonDeformer(shape, parsed.isFlagSet("maketweak")));
}

MStatus KelmoNewCmd::CreateDeformer(const MObject& shape) {
    Log("GONNA CREATE KELMO NODE");
    RunUndoable("select -r " + Quoted(NameOf(shape)));
    MStringArray made;
    const MStatus status = MGlobal::executeCommand("deformer -type Kelmo", made, false, true);
    if (!status || made.length() == 0) return Failed("KelmoNewCmd: can't create");
    Log("KELMO NODE CREATED");
    if (MLNode* node = MLNode::FromObject(FindNodeByName(made[0]))) FillToolArrays(*node, false);
    setResult(made[0]);
    return MS::kSuccess;
}

MStatus KelmoNewCmd::CreateNonDeformer(const MObject& shape, bool makeTweak) {
    const bool hasHistory = !Find(shape, "inMesh").source().isNull();
    if (makeTweak || !hasHistory) CHECK_MSTATUS_AND_RETURN_IT(GatherTweaks(shape, Edits()));
    return Insert(shape);
}

MStatus KelmoNewCmd::Insert(const MObject& shape) {
    const MObject node = Edits().createNode(MTypeId(kKelmoNode2Id));
    if (node.isNull()) return Failed("KelmoNewCmd: can't create");
    FillToolArrays(*MLNode::FromObject(node), false);
    CHECK_MSTATUS_AND_RETURN_IT(InsertBefore(shape, node, Edits()));
    setResult(NameOf(node));
    return MS::kSuccess;
}

}  // namespace VantrelSDK
