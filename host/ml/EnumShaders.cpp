#include "host/ml/EnumShaders.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MFnMesh.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MTypeId.h>

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

int EnumShaders(const MObject& node, MObject& mesh, MObjectArray& shaders, MIntArray& indices) {
    mesh = MObject();
    for (MItDependencyGraph walk(node); mesh.isNull() && !walk.isDone(); walk.next()) {
        const MObject at = walk.thisNode();
        // What shows a session has no shaders of its own.
        const bool isOurs = MFnDependencyNode(at).typeId() == MTypeId(kSurfaceShapeId);
        if (at.hasFn(MFn::kDagNode) && !isOurs) mesh = at;
    }
    if (!mesh.hasFn(MFn::kMesh) || !MFnMesh(mesh).getConnectedShaders(0, shaders, indices))
        return 0;
    return static_cast<int>(indices.length());
}

}  // namespace VantrelSDK
