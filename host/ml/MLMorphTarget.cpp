#include "host/ml/MLMorphTarget.h"

#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>

#include "core/io/ObjReader.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/SkinFrames.h"
#include "host/ml/InterfaceProcedures.h"
#include "host/ml/MLMesh.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

MString Mismatch(size_t given, int wanted) {
    return "the mesh has " + MString(std::to_string(given)) + " vertices, the node " +
           MString(std::to_string(wanted));
}

}  // namespace

MObject ExportToDag(MLNode& node, const LSubdivMesh& shape, int level, const MString& name) {
    if (level < 0) level = node.GetDeltaMesh()->GetActiveLevel();
    const MObject data = node.meshObject()->Export(node.inputPlug().asMObject(), level, shape);
    MObject transform;
    if (!data.isNull()) transform = MFnMesh().copy(data);
    if (transform.isNull()) {
        MGlobal::displayError("MLMorphTarget: failed to create mesh\n");
        return transform;
    }
    MFnDependencyNode made(transform);
    made.setName(name);
    MDagPath path(transform);
    if (path.extendToShape()) MFnDependencyNode(path.node()).setName(name + "Shape");
    RunIfKnown("createAndAssignShader", "lambert " + made.name());
    return transform;
}

MObject ExportToDag(MLNode& node, LMorphTarget& target, int level) {
    node.RaiseLevels();
    const LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
    SkinFrames frames(geom, node.lobject()->GetActiveUVChannel(), -1, 0, node.lthGrp());
    LSubdivMesh offsets(geom, false);
    target.CopyToLevels(&offsets);
    if (target.GetSpace() == kTangentSpace)
        frames.Transform(offsets, target.skin(), LMeshBases::kTangentToObject);
    offsets.AddAllVerts(target.skin().empty() ? geom : frames.On(target.skin()), 1);
    return ExportToDag(node, offsets, level, target.GetName().c_str());
}

bool MakeMorphFromMesh(MLNode& node, const MObject& object, LMorphTarget& target, MString& error) {
    node.RaiseLevels();
    const MLMesh mesh(object);
    const LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
    const int wanted = geom.GetNumLevelVerts(static_cast<unsigned>(geom.GetNumSubivLevels() - 1));
    if (node.MakeMorphFromMesh(&mesh, &target)) return true;
    error = Mismatch(static_cast<size_t>(mesh.GetNumVerts()), wanted);
    return false;
}

bool MakeMorphFromObj(MLNode& node, const MString& path, LMorphTarget& target, MString& error) {
    PolyMesh mesh;
    FileError problem;
    if (!ReadObj(path.str(), mesh, problem)) {
        error = problem.Text().c_str();
        return false;
    }
    node.RaiseLevels();
    const size_t count = mesh.positions.size();
    std::vector<float> xs(count), ys(count), zs(count);
    for (size_t v = 0; v < count; ++v)
        xs[v] = mesh.positions[v].x, ys[v] = mesh.positions[v].y, zs[v] = mesh.positions[v].z;
    if (node.MakeMorph(xs, ys, zs, &target)) return true;
    error = path + ": " + Mismatch(count, node.lobject()->GetNumVerts());
    return false;
}

}  // namespace VantrelSDK
