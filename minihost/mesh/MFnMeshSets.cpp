// UV sets and colour sets of MFnMesh.

#include <algorithm>

#include "maya/MFnMesh.h"
#include "minihost/api/Status.h"
#include "minihost/mesh/MeshTypes.h"

using minihost::ColorSet;
using minihost::CornerSet;
using minihost::MeshData;
using minihost::Tell;
using minihost::UV;
using minihost::UVSet;

namespace {

std::string NameOf(const MString* set) {
    return set ? set->str() : std::string();
}

/// The number of a polygon's corner in the mesh, -1 where there is none.
int CornerOf(const MeshData& mesh, int polygon, int corner) {
    const auto& polygons = mesh.polygons();
    const bool there = polygon >= 0 && polygon < polygons.count() && corner >= 0 &&
                       corner < polygons.CountOf(polygon);
    return there ? polygons.StartOf(polygon) + corner : -1;
}

template <class T>
bool HasValue(const CornerSet<T>& set, int id) {
    return id >= 0 && static_cast<size_t>(id) < set.values->size();
}

/// Lets a corner name a value of the set, -1 for none.
template <class T>
MStatus Assign(const MeshData& mesh, CornerSet<T>* set, int polygon, int corner, int id) {
    const int at = CornerOf(mesh, polygon, corner);
    if (!set || at < 0 || (id != -1 && !HasValue(*set, id))) return MS::kInvalidParameter;
    set->EditCorners(mesh.numCorners())[static_cast<size_t>(at)] = id;
    return MS::kSuccess;
}

/// Replaces the table of a set; corners whose value is no longer there lose it.
template <class T>
void SetTable(CornerSet<T>& set, std::vector<T> values) {
    const int count = static_cast<int>(values.size());
    set.values.Set(std::move(values));
    if (std::ranges::any_of(*set.corners, [count](int id) { return id >= count; }))
        for (int& id : set.corners.Edit())
            if (id >= count) id = -1;
}

template <class Sets>
MStringArray NamesOf(const Sets& sets) {
    MStringArray names;
    for (const auto& set : sets) names.append(set.name);
    return names;
}

}  // namespace

MStatus MFnMesh::SetCurrent(const char* attribute, std::string MeshData::*current,
                            const MString& name) {
    if (Shape())
        return minihost::Write(*Shape()->FindSlot(attribute),
                               std::make_shared<minihost::StringData>(name.str()));
    return Edit([&](MeshData& mesh) {
        mesh.*current = name.str();
        return MS::kSuccess;
    });
}

int MFnMesh::numUVSets(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? static_cast<int>(mesh->uvSets.size()) : 0;
}

MStatus MFnMesh::getUVSetNames(MStringArray& names) const {
    const auto mesh = Read();
    if (!mesh) return MS::kInvalidParameter;
    names = NamesOf(mesh->uvSets);
    return MS::kSuccess;
}

MString MFnMesh::currentUVSetName(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? MString(mesh->currentUVSet) : MString();
}

MStatus MFnMesh::setCurrentUVSetName(const MString& name) {
    const auto mesh = Read();
    if (!mesh || !mesh->FindUVSet(name.str())) return MS::kInvalidParameter;
    return SetCurrent("currentUVSet", &MeshData::currentUVSet, name);
}

MStatus MFnMesh::createUVSetWithName(const MString& name) {
    return Edit([&name](MeshData& mesh) -> MStatus {
        if (name.length() == 0) return MS::kInvalidParameter;
        if (mesh.FindUVSet(name.str())) return MS::kFailure;
        mesh.uvSets.emplace_back().name = name.str();
        return MS::kSuccess;
    });
}

MStatus MFnMesh::deleteUVSet(const MString& name) {
    return Edit([&name](MeshData& mesh) -> MStatus {
        const UVSet* set = mesh.FindUVSet(name.str());
        if (!set || mesh.uvSets.size() == 1) return MS::kInvalidParameter;
        mesh.uvSets.erase(mesh.uvSets.begin() + (set - mesh.uvSets.data()));
        if (!mesh.FindUVSet("")) mesh.currentUVSet = mesh.uvSets[0].name;
        return MS::kSuccess;
    });
}

int MFnMesh::numUVs(const MString* set, MStatus* status) const {
    const auto mesh = Read();
    const UVSet* uvs = mesh ? mesh->FindUVSet(NameOf(set)) : nullptr;
    Tell(status, uvs ? MS::kSuccess : MS::kInvalidParameter);
    return uvs ? static_cast<int>(uvs->values->size()) : 0;
}

MStatus MFnMesh::getUVs(MFloatArray& u, MFloatArray& v, const MString* set) const {
    const auto mesh = Read();
    const UVSet* uvs = mesh ? mesh->FindUVSet(NameOf(set)) : nullptr;
    if (!uvs) return MS::kInvalidParameter;
    const auto count = static_cast<unsigned>(uvs->values->size());
    u.setLength(count);
    v.setLength(count);
    for (unsigned i = 0; i < count; ++i) {
        u[i] = (*uvs->values)[i].u;
        v[i] = (*uvs->values)[i].v;
    }
    return MS::kSuccess;
}

MStatus MFnMesh::getUV(int id, float& u, float& v, const MString* set) const {
    const auto mesh = Read();
    const UVSet* uvs = mesh ? mesh->FindUVSet(NameOf(set)) : nullptr;
    if (!uvs || !HasValue(*uvs, id)) return MS::kInvalidParameter;
    u = (*uvs->values)[static_cast<size_t>(id)].u;
    v = (*uvs->values)[static_cast<size_t>(id)].v;
    return MS::kSuccess;
}

MStatus MFnMesh::setUVs(const MFloatArray& u, const MFloatArray& v, const MString* set) {
    if (u.length() != v.length()) return MS::kInvalidParameter;
    return Edit([&](MeshData& mesh) -> MStatus {
        UVSet* uvs = mesh.FindUVSet(NameOf(set));
        if (!uvs) return MS::kInvalidParameter;
        std::vector<UV> values(u.length());
        for (unsigned i = 0; i < u.length(); ++i) values[i] = {u[i], v[i]};
        SetTable(*uvs, std::move(values));
        return MS::kSuccess;
    });
}

MStatus MFnMesh::setUV(int id, float u, float v, const MString* set) {
    return Edit([&](MeshData& mesh) -> MStatus {
        UVSet* uvs = mesh.FindUVSet(NameOf(set));
        if (!uvs || !HasValue(*uvs, id)) return MS::kInvalidParameter;
        uvs->values.Edit()[static_cast<size_t>(id)] = {u, v};
        return MS::kSuccess;
    });
}

MStatus MFnMesh::clearUVs(const MString* set) {
    return setUVs({}, {}, set);
}

MStatus MFnMesh::getAssignedUVs(MIntArray& counts, MIntArray& ids, const MString* set) const {
    const auto mesh = Read();
    const UVSet* uvs = mesh ? mesh->FindUVSet(NameOf(set)) : nullptr;
    if (!uvs) return MS::kInvalidParameter;
    counts.clear();
    ids.clear();
    const auto& polygons = mesh->polygons();
    for (int p = 0; p < polygons.count(); ++p) {
        const int start = polygons.StartOf(p), n = polygons.CountOf(p);
        bool whole = true;
        for (int c = start; c < start + n; ++c) whole &= uvs->At(c) >= 0;
        counts.append(whole ? n : 0);
        for (int c = start; whole && c < start + n; ++c) ids.append(uvs->At(c));
    }
    return MS::kSuccess;
}

MStatus MFnMesh::assignUVs(const MIntArray& counts, const MIntArray& ids, const MString* set) {
    return Edit([&](MeshData& mesh) -> MStatus {
        UVSet* uvs = mesh.FindUVSet(NameOf(set));
        const bool fits = uvs && mesh.AssignUVs(*uvs, {counts.data(), counts.length()},
                                                {ids.data(), ids.length()});
        return fits ? MS::kSuccess : MS::kInvalidParameter;
    });
}

MStatus MFnMesh::assignUV(int polygon, int corner, int id, const MString* set) {
    return Edit([&](MeshData& mesh) {
        return Assign(mesh, mesh.FindUVSet(NameOf(set)), polygon, corner, id);
    });
}

MStatus MFnMesh::getPolygonUVid(int polygon, int corner, int& id, const MString* set) const {
    const auto mesh = Read();
    const UVSet* uvs = mesh ? mesh->FindUVSet(NameOf(set)) : nullptr;
    const int at = uvs ? CornerOf(*mesh, polygon, corner) : -1;
    if (at < 0 || uvs->At(at) < 0) return MS::kInvalidParameter;
    id = uvs->At(at);
    return MS::kSuccess;
}

int MFnMesh::numColorSets(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? static_cast<int>(mesh->colorSets.size()) : 0;
}

MStatus MFnMesh::getColorSetNames(MStringArray& names) const {
    const auto mesh = Read();
    if (!mesh) return MS::kInvalidParameter;
    names = NamesOf(mesh->colorSets);
    return MS::kSuccess;
}

MString MFnMesh::currentColorSetName(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? MString(mesh->currentColorSet) : MString();
}

MStatus MFnMesh::setCurrentColorSetName(const MString& name) {
    const auto mesh = Read();
    if (!mesh || !mesh->FindColorSet(name.str())) return MS::kInvalidParameter;
    return SetCurrent("currentColorSet", &MeshData::currentColorSet, name);
}

MStatus MFnMesh::createColorSetWithName(MString& name) {
    return Edit([&name](MeshData& mesh) -> MStatus {
        const std::string stem = name.length() ? name.str() : "colorSet";
        std::string unique = name.length() ? stem : stem + "1";
        for (int n = 1; mesh.FindColorSet(unique); ++n) unique = stem + std::to_string(n);
        mesh.colorSets.emplace_back().name = unique;
        if (mesh.currentColorSet.empty()) mesh.currentColorSet = unique;
        name = unique;
        return MS::kSuccess;
    });
}

MStatus MFnMesh::deleteColorSet(const MString& name) {
    return Edit([&name](MeshData& mesh) -> MStatus {
        const ColorSet* set = mesh.FindColorSet(name.str());
        if (!set) return MS::kInvalidParameter;
        mesh.colorSets.erase(mesh.colorSets.begin() + (set - mesh.colorSets.data()));
        if (!mesh.FindColorSet(""))
            mesh.currentColorSet = mesh.colorSets.empty() ? "" : mesh.colorSets[0].name;
        return MS::kSuccess;
    });
}

int MFnMesh::numColors(const MString* set, MStatus* status) const {
    const auto mesh = Read();
    const ColorSet* colors = mesh ? mesh->FindColorSet(NameOf(set)) : nullptr;
    Tell(status, colors ? MS::kSuccess : MS::kInvalidParameter);
    return colors ? static_cast<int>(colors->values->size()) : 0;
}

MStatus MFnMesh::setColors(const MColorArray& colors, const MString* set) {
    return Edit([&](MeshData& mesh) -> MStatus {
        ColorSet* table = mesh.FindColorSet(NameOf(set));
        if (!table) return MS::kInvalidParameter;
        SetTable(*table, {colors.begin(), colors.end()});
        return MS::kSuccess;
    });
}

MStatus MFnMesh::getColors(MColorArray& colors, const MString* set) const {
    const auto mesh = Read();
    const ColorSet* table = mesh ? mesh->FindColorSet(NameOf(set)) : nullptr;
    if (!table) return MS::kInvalidParameter;
    colors = MColorArray(table->values->data(), static_cast<unsigned>(table->values->size()));
    return MS::kSuccess;
}

MStatus MFnMesh::assignColor(int polygon, int corner, int id, const MString* set) {
    return Edit([&](MeshData& mesh) {
        return Assign(mesh, mesh.FindColorSet(NameOf(set)), polygon, corner, id);
    });
}

MStatus MFnMesh::assignColors(const MIntArray& ids, const MString* set) {
    return Edit([&](MeshData& mesh) -> MStatus {
        ColorSet* colors = mesh.FindColorSet(NameOf(set));
        if (!colors || ids.length() != mesh.numCorners()) return MS::kInvalidParameter;
        for (const int id : ids)
            if (id != -1 && !HasValue(*colors, id)) return MS::kInvalidParameter;
        colors->corners.Set({ids.begin(), ids.end()});
        return MS::kSuccess;
    });
}

namespace {

ColorSet& CurrentColors(MeshData& mesh) {
    if (ColorSet* set = mesh.FindColorSet("")) return *set;
    mesh.colorSets.emplace_back().name = mesh.currentColorSet = "colorSet1";
    return mesh.colorSets.back();
}

}  // namespace

MStatus MFnMesh::setVertexColors(const MColorArray& colors, const MIntArray& vertices) {
    if (colors.length() != vertices.length()) return MS::kInvalidParameter;
    return Edit([&](MeshData& mesh) -> MStatus {
        for (const int v : vertices)
            if (v < 0 || v >= mesh.numVertices()) return MS::kInvalidParameter;
        ColorSet& set = CurrentColors(mesh);
        // Named vertices have a colour of their own from here on. Where all are named, the table
        // holds those alone.
        std::vector<int> idOf(static_cast<size_t>(mesh.numVertices()), -1);
        for (const int v : vertices) idOf[static_cast<size_t>(v)] = 0;
        const bool all = std::ranges::count(idOf, -1) == 0;
        std::vector<MColor> table = all ? std::vector<MColor>() : *set.values;
        std::ranges::fill(idOf, -1);
        for (unsigned i = 0; i < vertices.length(); ++i) {
            int& id = idOf[static_cast<size_t>(vertices[i])];
            if (id < 0) id = static_cast<int>(table.size()), table.emplace_back();
            table[static_cast<size_t>(id)] = colors[i];
        }
        set.values.Set(std::move(table));
        std::vector<int>& corners = set.EditCorners(mesh.numCorners());
        for (size_t c = 0; c < corners.size(); ++c)
            if (const int id = idOf[static_cast<size_t>(mesh.polygons().corners[c])]; id >= 0)
                corners[c] = id;
        return MS::kSuccess;
    });
}

MStatus MFnMesh::setVertexColor(const MColor& color, int vertex) {
    return setVertexColors(MColorArray(1, color), MIntArray(1, vertex));
}

MStatus MFnMesh::setFaceColor(const MColor& color, int polygon) {
    return Edit([&](MeshData& mesh) -> MStatus {
        if (CornerOf(mesh, polygon, 0) < 0) return MS::kInvalidParameter;
        ColorSet& set = CurrentColors(mesh);
        set.values.Edit().push_back(color);
        std::vector<int>& corners = set.EditCorners(mesh.numCorners());
        std::fill_n(corners.begin() + mesh.polygons().StartOf(polygon),
                    mesh.polygons().CountOf(polygon), static_cast<int>(set.values->size()) - 1);
        return MS::kSuccess;
    });
}

MStatus MFnMesh::getFaceVertexColors(MColorArray& colors, const MString* set,
                                     const MColor* unset) const {
    const auto mesh = Read();
    const ColorSet* table = mesh ? mesh->FindColorSet(NameOf(set)) : nullptr;
    if (!table) return MS::kInvalidParameter;
    colors.setLength(static_cast<unsigned>(mesh->numCorners()));
    for (unsigned c = 0; c < colors.length(); ++c) {
        const int id = table->At(static_cast<int>(c));
        colors[c] = id >= 0 ? (*table->values)[static_cast<size_t>(id)]
                            : (unset ? *unset : MColor(-1, -1, -1, -1));
    }
    return MS::kSuccess;
}

MStatus MFnMesh::getVertexColors(MColorArray& colors, const MString* set,
                                 const MColor* unset) const {
    const auto mesh = Read();
    const ColorSet* table = mesh ? mesh->FindColorSet(NameOf(set)) : nullptr;
    if (!table) return MS::kInvalidParameter;
    const MColor none = unset ? *unset : MColor(-1, -1, -1, -1);
    colors = MColorArray(static_cast<unsigned>(mesh->numVertices()), MColor(0, 0, 0, 0));
    std::vector<int> seen(colors.length());
    for (size_t c = 0; c < mesh->numCorners(); ++c) {
        const int id = table->At(static_cast<int>(c));
        if (id < 0) continue;
        const auto v = static_cast<unsigned>(mesh->polygons().corners[c]);
        minihost::AddToMean(colors[v], (*table->values)[static_cast<size_t>(id)], ++seen[v]);
    }
    for (unsigned v = 0; v < colors.length(); ++v)
        if (seen[v] == 0) colors[v] = none;
    return MS::kSuccess;
}
