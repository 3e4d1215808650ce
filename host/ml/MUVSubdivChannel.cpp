#include "host/ml/MUVSubdivChannel.h"

#include <maya/MFloatArray.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>

namespace VantrelSDK {

namespace {

bool HasSet(const MFnMesh& mesh, const MString& name) {
    MStringArray names;
    mesh.getUVSetNames(names);
    for (unsigned i = 0; i < names.length(); ++i)
        if (names[i] == name) return true;
    return false;
}

bool Failed(const char* text, const MString& name) {
    MGlobal::displayError(MString(text) + name);
    return false;
}

}  // namespace

bool WriteUVSet(const LUVSubdivChannel& channel, int level, const LevelPolygons& polygons,
                const MObject& object) {
    const std::span<const LUVChannel::MFace> faces = channel.LevelFaces(level);
    const int count = channel.GetNumLevelVerts(level);
    const MString name = channel.name();
    if (faces.empty() || count == 0 || name.length() == 0) return true;
    MFnMesh mesh(object);
    if (!HasSet(mesh, name) && !mesh.createUVSetWithName(name))
        return Failed("MUVSubdivChannel: can not create UVSet data ", name);
    const auto number = static_cast<unsigned>(count);
    MFloatArray u(number), v(number);
    const std::span<const LPoint2> points = channel.AllVerts();
    for (unsigned i = 0; i < number; ++i) u[i] = points[i].x, v[i] = points[i].y;
    if (!mesh.setUVs(u, v, &name))
        return Failed("MUVSubdivChannel: can not set verts for UVSet ", name);
    MIntArray counts(static_cast<unsigned>(polygons.count())), ids;
    for (int p = 0; p < polygons.count(); ++p) {
        const int first = polygons.starts[p], end = polygons.starts[p + 1];
        const unsigned before = ids.length();
        bool whole = true;
        for (int c = first; c < end; ++c) {
            const int corner = polygons.corners[c];
            const int id = faces[static_cast<size_t>(corner / 3)].v[corner % 3];
            whole &= id >= 0 && id < count;
            ids.append(id);
        }
        counts[static_cast<unsigned>(p)] = whole ? end - first : 0;
        if (!whole) ids.setLength(before);
    }
    return mesh.assignUVs(counts, ids, &name) ||
           Failed("MUVSubdivChannel: can not assign UVs of UVSet ", name);
}

}  // namespace VantrelSDK
