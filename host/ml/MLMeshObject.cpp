#include "host/ml/MLMeshObject.h"

#include <maya/MFloatPointArray.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>

#include <algorithm>

#include "core/subdiv/LUVSubdivChannel.h"
#include "core/subdiv/LevelPolygons.h"
#include "host/ml/EnumShaders.h"
#include "host/ml/MLMesh.h"
#include "host/ml/MLNode.h"
#include "host/ml/MUVSubdivChannel.h"

namespace VantrelSDK {

namespace {

MFloatPointArray HostPoints(const LPoint3* positions, int count) {
    MFloatPointArray points(static_cast<unsigned>(count));
    for (int v = 0; v < count; ++v)
        points[static_cast<unsigned>(v)] =
            MFloatPoint(positions[v].x, positions[v].y, positions[v].z);
    return points;
}

/// Changes when a group's number, kind or members do.
size_t MarkOfGroups(const MObject& mesh) {
    const MFnGeometryData data(mesh);
    size_t mark = 1469598103934665603u;
    const auto mix = [&](int value) {
        mark = (mark ^ static_cast<unsigned>(value)) * 1099511628211u;
    };
    for (unsigned place = 0; place < data.objectGroupCount(); ++place) {
        const unsigned id = data.objectGroup(place);
        mix(static_cast<int>(id));
        const MObject component = data.objectGroupComponent(id);
        mix(static_cast<int>(component.apiType()));
        MIntArray elements;
        MFnSingleIndexedComponent(component).getElements(elements);
        for (unsigned i = 0; i < elements.length(); ++i) mix(elements[i]);
    }
    return mark;
}

/// Of a polygon component, the polygons of a level.
MObject OnLevel(const MObject& component, const LevelPolygons& polygons) {
    MStatus status;
    MFnSingleIndexedComponent out;
    const MObject made = out.create(MFn::kMeshPolygonComponent, &status);
    if (!status) {
        MGlobal::displayError("MLMeshObject: can not create kMeshPolygonComponent");
        return MObject::kNullObj;
    }
    MIntArray elements, onLevel;
    MFnSingleIndexedComponent(component).getElements(elements);
    for (unsigned i = 0; i < elements.length(); ++i) {
        const int p = elements[i];
        if (p < 0 || p + 1 >= static_cast<int>(polygons.firstOf.size())) continue;
        for (int q = polygons.firstOf[p]; q < polygons.firstOf[p + 1]; ++q) onLevel.append(q);
    }
    out.addElements(onLevel);
    return made;
}

}  // namespace

MObject CopyMesh(const MObject& mesh) {
    const MObject copy = MFnMeshData().create();
    MFnMesh().copy(mesh, copy);
    MFnGeometryData(copy).copyObjectGroups(mesh);
    return copy;
}

MLMeshObject::MLMeshObject(MLNode* owner) : LMeshObject(owner) {}

MLMeshObject::MLMeshObject(MLNode* owner, const MObject& mesh) : LMeshObject(owner) {
    MLMesh geometry(mesh);
    if (geometry.GetNumVerts() == 0 || geometry.GetNumFaces() == 0) return;
    poly2faces_ = std::move(geometry.firstFaces);
    InitGeom(geometry);
    AddNewUVSets(mesh);
}

MLMeshObject::~MLMeshObject() = default;

std::unique_ptr<LProgressCallback> MLMeshObject::getProgressCallbck() {
    return owner()->getProgressCallbck();
}

void MLMeshObject::StorePoly2Faces(const MObject& mesh) {
    if (poly2faces_.empty()) poly2faces_ = std::move(MLMesh(mesh).firstFaces);
}

void MLMeshObject::AddNewUVSets(const MObject& mesh) {
    const int count = MFnMesh(mesh).numUVSets();
    for (int set = GetNumUVChannels(); set < count; ++set) {
        std::unique_ptr<LUVSubdivChannel> channel = ReadUVSet(mesh, set);
        // A set without a point is nothing that a frame could use; those behind it keep their
        // places.
        if (!channel) return;
        AddChannel(std::move(channel));
    }
}

void MLMeshObject::SetUVSets(const MObject& mesh) {
    ClearUVChannels();
    AddNewUVSets(mesh);
    UpdateBases();
}

bool MLMeshObject::Update(bool& changed, const MObject& mesh, int level) {
    const LSubdivMesh* geom = GetOrigGeom();
    const std::vector<LPoint3> positions = ReadPositions(mesh);
    if (!geom || positions.empty() ||
        static_cast<int>(positions.size()) != geom->GetNumLevelVerts(0))
        return false;
    const LSubdivMesh* delta = owner()->GetDeltaMesh();
    const int top = delta ? delta->GetNumSubivLevels() - 1 : 0;
    level = level == -1 ? top : std::clamp(level, 0, top);
    int count = 0;
    const LPoint3* input = GetInput(count);
    changed =
        !input || !std::ranges::equal(positions, std::span(input, static_cast<size_t>(count)));
    const bool rebuild = changed || geom->GetNumSubivLevels() != level + 1;
    if (rebuild && !LMeshObject::Update(positions.data(), delta, level)) return false;
    AddNewUVSets(mesh);
    return true;
}

void MLMeshObject::SelectPolygons(const std::set<int>& polygons, const std::set<int>& vertices) {
    SelectAll(false);
    for (const int p : polygons)
        if (p >= 0 && p < GetNumPolys())
            for (int f = GetFirstFace(p); f < GetFirstFace(p + 1); ++f) SelectFace(f, true, false);
    if (!vertices.empty()) {
        const std::vector<LFace>& faces = GetOrigGeom()->GetLevelTopology(0)->Faces();
        for (size_t f = 0; f < faces.size(); ++f)
            if (std::ranges::any_of(faces[f].v,
                                    [&](unsigned v) { return vertices.contains(int(v)); }))
                SelectFace(static_cast<int>(f), true, false);
    }
    UpdateSelectionFlag();
    UpdateLevelSelction();
}

void MLMeshObject::UpdateMtlIds(const MObject& node) {
    if (HasMtlIds()) return UpdateLevelMtlIds();
    ProgressScope progress(getProgressCallbck());
    progress.Reach(0.1f);
    MObject mesh;
    MObjectArray shaders;
    MIntArray indices;
    if (EnumShaders(node, mesh, shaders, indices) != GetNumPolys()) return;
    progress.Reach(0.3f);
    std::vector<int> ids(static_cast<size_t>(GetOrigGeom()->GetNumLevelFaces(0)));
    for (int p = 0; p < GetNumPolys(); ++p)
        std::fill(ids.begin() + GetFirstFace(p), ids.begin() + GetFirstFace(p + 1),
                  indices[static_cast<unsigned>(p)]);
    SetMtlIds(ids);
    progress.Reach(0.9f);
}

MObject MLMeshObject::ExportLevel(int level, const LSubdivMesh& shape) const {
    const LSubdivMesh& geom = *GetOrigGeom();
    const LevelPolygons polygons(geom, level, poly2faces_);
    const std::vector<LFace>& faces = geom.GetLevelTopology(static_cast<unsigned>(level))->Faces();
    MIntArray counts(static_cast<unsigned>(polygons.count())),
        connects(static_cast<unsigned>(polygons.corners.size()));
    for (unsigned p = 0; p < counts.length(); ++p)
        counts[p] = polygons.starts[p + 1] - polygons.starts[p];
    for (unsigned c = 0; c < connects.length(); ++c)
        connects[c] =
            faces[static_cast<size_t>(polygons.corners[c] / 3)].v[polygons.corners[c] % 3];
    const int nverts = geom.GetNumLevelVerts(static_cast<unsigned>(level));
    const MObject data = MFnMeshData().create();
    MStatus status;
    MFnMesh mesh;
    mesh.create(nverts, polygons.count(), HostPoints(shape.GetAllVertsPtr(), nverts), counts,
                connects, data, &status);
    if (!status) return MObject::kNullObj;
    for (int i = 0; i < GetNumUVChannels(); ++i)
        WriteUVSet(*GetUVChannel(i), level, polygons, data);
    return data;
}

void MLMeshObject::CarryGroups(const MObject& input, const MObject& output,
                               const LevelPolygons& polygons) {
    const MFnGeometryData from(input);
    MFnGeometryData to(output);
    for (unsigned place = 0; place < from.objectGroupCount(); ++place) {
        const unsigned id = from.objectGroup(place);
        const MObject component = from.objectGroupComponent(id);
        if (component.apiType() != MFn::kMeshPolygonComponent) continue;
        const MObject onLevel = OnLevel(component, polygons);
        if (onLevel.isNull()) continue;
        to.addObjectGroup(id);
        to.setObjectGroupComponent(id, onLevel);
    }
}

MObject MLMeshObject::Export(const MObject& input, int level, const LSubdivMesh& shape) {
    const LSubdivMesh* geom = GetOrigGeom();
    if (!geom || level < 0 || level >= geom->GetNumSubivLevels()) return MObject::kNullObj;
    MObject from = input;
    if (level > 0) {
        const auto topology = geom->GetLevelTopology(static_cast<unsigned>(level));
        const size_t groups = MarkOfGroups(input);
        if (exported_.level != level || exported_.topology != topology ||
            exported_.groups != groups) {
            exported_ = {level, topology, groups, ExportLevel(level, shape)};
            if (!exported_.mesh.isNull())
                CarryGroups(input, exported_.mesh, LevelPolygons(*geom, level, poly2faces_));
        }
        from = exported_.mesh;
        if (from.isNull()) {
            exported_ = {};
            return from;
        }
    }
    const MObject copy = CopyMesh(from);
    const int nverts = geom->GetNumLevelVerts(static_cast<unsigned>(level));
    MFnMesh(copy).setPoints(HostPoints(shape.GetAllVertsPtr(), nverts));
    return copy;
}

}  // namespace VantrelSDK
