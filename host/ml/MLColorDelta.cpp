#include "host/ml/MLColorDelta.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>

#include <algorithm>

namespace VantrelSDK {

namespace {

void Tell(const char* what) {
    MGlobal::displayError(MString("MLColorDelta: ") + what);
}

bool HasSet(const MFnMesh& mesh, const MString& name) {
    MStringArray names;
    mesh.getColorSetNames(names);
    for (unsigned i = 0; i < names.length(); ++i)
        if (names[i] == name) return true;
    return false;
}

/// Makes the set of painted colours the current one. False, which is told, when it can't be made.
bool TakeSet(MFnMesh& mesh) {
    if (!HasSet(mesh, MLColorDelta::colorSetName)) {
        const bool any = mesh.numColorSets() > 0;
        MString name = MLColorDelta::colorSetName;
        if (!mesh.createColorSetWithName(name)) {
            Tell(any ? "can not create Kelmo color set"
                     : "no color sets, can not create Kelmo color set");
            return false;
        }
    }
    return bool{mesh.setCurrentColorSetName(MLColorDelta::colorSetName)};
}

/// A table of one colour a vertex, and each corner that of its vertex.
void StoreTable(MFnMesh& mesh, const MColorArray& colors) {
    const MString& set = MLColorDelta::colorSetName;
    if (!mesh.setColors(colors, &set))
        MGlobal::displayWarning("MLColorDelta: can not set vertex colors");
    MIntArray counts, connects;
    mesh.getVertices(counts, connects);
    if (!mesh.assignColors(connects, &set)) Tell("can not assign face colors");
}

}  // namespace

bool MLColorDelta::readInput(const MObject& object) {
    const size_t count = static_cast<size_t>(GetNumVerts(0));
    const MFnMesh mesh(object);
    if (!object.hasFn(MFn::kMesh) && !object.hasFn(MFn::kMeshData)) {
        Tell("no Mesh API");
        return false;
    }
    if (static_cast<size_t>(mesh.numVertices()) != count) {
        Tell("the number of vertex differs");
        return false;
    }
    if (mesh.numColorSets() == 0) return true;
    const MColor unset(-1, -1, -1, -1);
    MColorArray read;
    if (!mesh.getVertexColors(read, nullptr, &unset) || read.length() != count) return true;
    std::vector<LColor> colors(count);
    for (size_t v = 0; v < count; ++v) {
        const MColor& c = read[static_cast<unsigned>(v)];
        colors[v] = c == unset ? GetLevelColor(static_cast<int>(v), 0) : LColor(c.r, c.g, c.b);
    }
    if (colors == input_) return true;
    SetIncomingColors(colors);
    input_ = std::move(colors);
    return true;
}

bool MLColorDelta::ModifyMesh(const MObject& in, const MObject& out, int level, bool force) {
    if (IsZero() && !force) return false;
    if (!readInput(in)) return false;
    if (level > GetActiveLevel()) UpdateUpperLayers();
    return storeColor(out, level);
}

bool MLColorDelta::storeColor(const MObject& object, int level) {
    MFnMesh mesh(object);
    if (mesh.numVertices() != GetNumVerts(level)) {
        Tell("the number of vertex differs");
        return false;
    }
    if (!TakeSet(mesh)) return false;
    const unsigned count = static_cast<unsigned>(GetNumVerts(level));
    MColorArray colors(count);
    for (unsigned v = 0; v < count; ++v) {
        LColor c = GetResLevelColor(static_cast<int>(v), level);
        c.ClampMinMax();
        colors[v] = MColor(c.r, c.g, c.b, 1);
    }
    if (level > 0) {
        StoreTable(mesh, colors);
        return true;
    }
    MIntArray vertices(count);
    for (unsigned v = 0; v < count; ++v) vertices[v] = static_cast<int>(v);
    if (!mesh.setVertexColors(colors, vertices)) Tell("can not set vertex color");
    return true;
}

}  // namespace VantrelSDK
