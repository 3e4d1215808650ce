#include "host/ml/MLGeomDelta.h"

#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>

#include "core/morph/LMeshBases.h"
#include "core/morph/LMorphDelta.h"

namespace VantrelSDK {

bool Deform5(const LMorphDelta& delta, const MObject& object, LMeshBases* bases, int level) {
    const LSubdivMesh& offsets = *delta.GetOrigMesh();
    if (level < 0) level = offsets.GetNumSubivLevels() - 1;
    const int count = offsets.GetNumLevelVerts(static_cast<unsigned>(level));
    MFnMesh mesh(object);
    MFloatPointArray points;
    if (!mesh.getPoints(points)) {
        MGlobal::displayError("MLGeomDelta: can not acces geometry verts\n");
        return false;
    }
    if (static_cast<int>(points.length()) != count) {
        MGlobal::displayError(
            "MLGeomDelta: number of verts does not match" +
            MString(" " + std::to_string(count) + " " + std::to_string(points.length())));
        return false;
    }
    const BasesDirection heading(bases, LMeshBases::kTangentToObject);
    const LPoint3* vectors = offsets.GetAllVertsPtr();
    bool moved = false;
    for (int v = 0; v < count; ++v) {
        if (vectors[v] == LPoint3::Zero) continue;
        LPoint3 offset = vectors[v];
        if (bases) bases->TransformAt(level, v, offset);
        MFloatPoint& p = points[static_cast<unsigned>(v)];
        p = MFloatPoint(p.x + offset.x, p.y + offset.y, p.z + offset.z);
        moved = true;
    }
    return !moved || mesh.setPoints(points);
}

}  // namespace VantrelSDK
