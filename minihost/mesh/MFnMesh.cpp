#include "maya/MFnMesh.h"

#include <algorithm>

#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/shade/Assign.h"

using minihost::DagNode;
using minihost::Host;
using minihost::MeshData;
using minihost::MeshPtr;
using minihost::Node;
using minihost::Tell;

MFnMesh::MFnMesh(const MObject& mesh, MStatus* status) {
    Tell(status, setObject(mesh));
}

MFnMesh::MFnMesh(const MDagPath& path, MStatus* status) {
    MDagPath shape = path;
    if (!shape.hasFn(type())) shape.extendToShape();
    Tell(status, setObject(shape.node()));
}

Node* MFnMesh::Shape() const {
    return object_.as<Node>();
}

std::shared_ptr<const MeshData> MFnMesh::Read(MStatus* status) const {
    auto data = std::dynamic_pointer_cast<MeshData>(object_.object());
    if (!data && Shape()) data = minihost::MeshOf(*Shape());
    Tell(status, data ? MS::kSuccess : MS::kInvalidParameter);
    return data;
}

MStatus MFnMesh::Edit(const std::function<MStatus(MeshData&)>& change) {
    if (auto* data = object_.as<MeshData>()) return change(*data);
    Node* shape = Shape();
    if (!shape) return MS::kInvalidParameter;
    minihost::Slot& own = *shape->FindSlot("inMesh");
    const MeshPtr before = minihost::DataOf<MeshData>(own.value);
    if (own.IsFed() || !before) return MS::kFailure;
    const auto after = std::make_shared<MeshData>(*before);
    const MStatus status = change(*after);
    return status ? minihost::Write(own, after) : status;
}

MMatrix MFnMesh::ToSpace(MSpace::Space space) const {
    auto* dag = object_.as<DagNode>();
    return dag && space == MSpace::kWorld ? dag->WorldMatrix() : MMatrix();
}

namespace {

MFloatVector Single(const MFloatPoint& p) {
    return {p.x, p.y, p.z};
}
MFloatVector Single(const MPoint& p) {
    return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

template <class Points>
MeshPtr MakeMesh(const Points& points, int numVertices, int numPolygons, const MIntArray& counts,
                 const MIntArray& connects) {
    if (numVertices < 0 || static_cast<unsigned>(numVertices) > points.length() ||
        numPolygons < 0 || static_cast<unsigned>(numPolygons) > counts.length())
        return nullptr;
    std::vector<MFloatVector> singles;
    singles.reserve(static_cast<size_t>(numVertices));
    for (int i = 0; i < numVertices; ++i) singles.push_back(Single(points[unsigned(i)]));
    std::string error;
    return MeshData::Make(std::move(singles), std::span(counts.data(), size_t(numPolygons)),
                          {connects.begin(), connects.end()}, error);
}

}  // namespace

MObject MFnMesh::Put(const MeshPtr& mesh, const MObject& owner, MStatus* status) {
    Tell(status, MS::kInvalidParameter);
    if (!mesh) return {};
    if (auto* data = owner.as<MeshData>()) {
        *data = *mesh;
        object_ = owner;
        Tell(status, MS::kSuccess);
        return owner;
    }
    auto* parent = owner.as<DagNode>();
    if (!owner.isNull() && (!parent || parent->IsShape())) return {};
    minihost::Modifier edits(Host::Get().scene);
    Tell(status, MS::kSuccess);
    if (parent) {
        const auto shape = edits.Create("mesh", parent->name() + "Shape", parent);
        minihost::SetMesh(edits, shape, mesh);
        return object_ = MObject(shape);
    }
    const auto made = minihost::CreateMesh(edits, mesh);
    object_ = MObject(made.shape);
    return MObject(made.transform);
}

template <class Points>
MObject MFnMesh::Create(const Points& points, int numVertices, int numPolygons,
                        const MIntArray& counts, const MIntArray& connects, const MObject& owner,
                        MStatus* status) {
    return Put(MakeMesh(points, numVertices, numPolygons, counts, connects), owner, status);
}

MObject MFnMesh::create(int numVertices, int numPolygons, const MFloatPointArray& points,
                        const MIntArray& counts, const MIntArray& connects, MObject owner,
                        MStatus* status) {
    return Create(points, numVertices, numPolygons, counts, connects, owner, status);
}

MObject MFnMesh::create(int numVertices, int numPolygons, const MPointArray& points,
                        const MIntArray& counts, const MIntArray& connects, MObject owner,
                        MStatus* status) {
    return Create(points, numVertices, numPolygons, counts, connects, owner, status);
}

template <class Points>
MStatus MFnMesh::Replace(const Points& points, int numVertices, int numPolygons,
                         const MIntArray& counts, const MIntArray& connects) {
    const MeshPtr mesh = MakeMesh(points, numVertices, numPolygons, counts, connects);
    if (!mesh) return MS::kInvalidParameter;
    const auto replace = [&mesh](MeshData& data) {
        const auto emptied = [](auto sets) {
            for (auto& set : sets) set.values.Set({}), set.corners.Set({});
            return sets;
        };
        mesh->uvSets = emptied(data.uvSets);
        mesh->colorSets = emptied(data.colorSets);
        mesh->currentUVSet = data.currentUVSet;
        mesh->currentColorSet = data.currentColorSet;
        data = *mesh;
        return MS::kSuccess;
    };
    if (Shape() && !minihost::MeshOf(*Shape())) {
        minihost::Modifier edits(Host::Get().scene);
        return minihost::SetMesh(edits, Shape()->Share(), mesh) ? MS::kSuccess : MS::kFailure;
    }
    return Edit(replace);
}

MStatus MFnMesh::createInPlace(int numVertices, int numPolygons, const MFloatPointArray& points,
                               const MIntArray& counts, const MIntArray& connects) {
    return Replace(points, numVertices, numPolygons, counts, connects);
}

MStatus MFnMesh::createInPlace(int numVertices, int numPolygons, const MPointArray& points,
                               const MIntArray& counts, const MIntArray& connects) {
    return Replace(points, numVertices, numPolygons, counts, connects);
}

MObject MFnMesh::copy(const MObject& source, MObject owner, MStatus* status) {
    const auto mesh = MFnMesh(source).Read();
    return Put(mesh ? std::make_shared<MeshData>(*mesh) : nullptr, owner, status);
}

int MFnMesh::numVertices(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? mesh->numVertices() : 0;
}

int MFnMesh::numPolygons(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? mesh->polygons().count() : 0;
}

int MFnMesh::numFaceVertices(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? static_cast<int>(mesh->numCorners()) : 0;
}

int MFnMesh::numEdges(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh ? mesh->CountEdges() : 0;
}

namespace {

bool HasPolygon(const MeshData* mesh, int polygon) {
    return mesh && polygon >= 0 && polygon < mesh->polygons().count();
}

}  // namespace

int MFnMesh::polygonVertexCount(int polygon, MStatus* status) const {
    const auto mesh = Read();
    const bool there = HasPolygon(mesh.get(), polygon);
    Tell(status, there ? MS::kSuccess : MS::kInvalidParameter);
    return there ? mesh->polygons().CountOf(polygon) : 0;
}

MStatus MFnMesh::getPolygonVertices(int polygon, MIntArray& vertices) const {
    const auto mesh = Read();
    if (!HasPolygon(mesh.get(), polygon)) return MS::kInvalidParameter;
    const auto ring = mesh->polygons().Of(polygon);
    vertices = MIntArray(ring.data(), static_cast<unsigned>(ring.size()));
    return MS::kSuccess;
}

MStatus MFnMesh::getVertices(MIntArray& counts, MIntArray& connects) const {
    const auto mesh = Read();
    if (!mesh) return MS::kInvalidParameter;
    const auto& polygons = mesh->polygons();
    counts.setLength(static_cast<unsigned>(polygons.count()));
    for (int p = 0; p < polygons.count(); ++p) counts[unsigned(p)] = polygons.CountOf(p);
    connects = MIntArray(polygons.corners.data(), static_cast<unsigned>(polygons.corners.size()));
    return MS::kSuccess;
}

MStatus MFnMesh::getTriangles(MIntArray& triangles, MIntArray& vertices) const {
    const auto mesh = Read();
    if (!mesh) return MS::kInvalidParameter;
    triangles.clear();
    vertices.clear();
    for (int p = 0; p < mesh->polygons().count(); ++p) {
        const auto ring = mesh->polygons().Of(p);
        triangles.append(static_cast<int>(ring.size()) - 2);
        for (size_t i = 2; i < ring.size(); ++i)
            for (const int v : {ring[0], ring[i - 1], ring[i]}) vertices.append(v);
    }
    return MS::kSuccess;
}

MStatus MFnMesh::getPoint(int vertex, MPoint& point, MSpace::Space space) const {
    const auto mesh = Read();
    if (!mesh || vertex < 0 || vertex >= mesh->numVertices()) return MS::kInvalidParameter;
    point = MPoint(MFloatPoint(mesh->points()[static_cast<size_t>(vertex)]));
    if (space == MSpace::kWorld) point = point * ToSpace(space);
    return MS::kSuccess;
}

MStatus MFnMesh::setPoint(int vertex, const MPoint& point, MSpace::Space space) {
    const MPoint local = space == MSpace::kWorld ? point * ToSpace(space).inverse() : point;
    if (Shape() && Shape()->FindSlot("inMesh")->IsFed()) {
        MPointArray points;
        if (!getPoints(points) || vertex < 0 || unsigned(vertex) >= points.length())
            return MS::kInvalidParameter;
        points[unsigned(vertex)] = local;
        return setPoints(points);
    }
    return Edit([&](MeshData& mesh) -> MStatus {
        if (vertex < 0 || vertex >= mesh.numVertices()) return MS::kInvalidParameter;
        mesh.EditPoints()[static_cast<size_t>(vertex)] = Single(local);
        return MS::kSuccess;
    });
}

namespace {

template <class Points>
MStatus TakePoints(const MeshData* mesh, const MMatrix& m, Points& points) {
    if (!mesh) return MS::kInvalidParameter;
    points.setLength(static_cast<unsigned>(mesh->numVertices()));
    auto to = points.begin();
    const bool same = m == MMatrix::identity;
    for (const MFloatVector& p : mesh->points()) {
        const MPoint point{MFloatPoint(p)};
        if constexpr (std::is_same_v<Points, MPointArray>)
            *to++ = same ? point : point * m;
        else
            *to++ = same ? MFloatPoint(p) : MFloatPoint(Single(point * m));
    }
    return MS::kSuccess;
}

}  // namespace

MStatus MFnMesh::getPoints(MPointArray& points, MSpace::Space space) const {
    return TakePoints(Read().get(), ToSpace(space), points);
}

MStatus MFnMesh::getPoints(MFloatPointArray& points, MSpace::Space space) const {
    return TakePoints(Read().get(), ToSpace(space), points);
}

MStatus MFnMesh::setPoints(const MPointArray& points, MSpace::Space space) {
    const auto shown = Read();
    if (!shown || points.length() != static_cast<unsigned>(shown->numVertices()))
        return MS::kInvalidParameter;
    if (space == MSpace::kWorld) {
        const MMatrix back = ToSpace(space).inverse();
        MPointArray local = points;
        for (MPoint& p : local) p = p * back;
        return setPoints(local);
    }
    return IsFed() ? SetTweaks(*shown, points) : SetOwnPoints(points);
}

MStatus MFnMesh::setPoints(const MFloatPointArray& points, MSpace::Space space) {
    const auto shown = Read();
    if (shown && points.length() == static_cast<unsigned>(shown->numVertices()) &&
        space != MSpace::kWorld && !IsFed())
        return SetOwnPoints(points);
    MPointArray doubles;
    doubles.setLength(points.length());
    std::copy(points.begin(), points.end(), doubles.begin());
    return setPoints(doubles, space);
}

bool MFnMesh::IsFed() const {
    return Shape() && Shape()->FindSlot("inMesh")->IsFed();
}

template <class Points>
MStatus MFnMesh::SetOwnPoints(const Points& points) {
    return Edit([&points](MeshData& mesh) {
        std::vector<MFloatVector> singles;
        singles.reserve(points.length());
        for (const auto& p : points)
            singles.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y),
                                 static_cast<float>(p.z));
        mesh.SetPoints(std::move(singles));
        return MS::kSuccess;
    });
}

MStatus MFnMesh::SetTweaks(const MeshData& shown, const MPointArray& points) {
    minihost::Slot& tweaks = *Shape()->FindSlot("pnts");
    for (unsigned i = 0; i < points.length(); ++i) {
        const MVector move = points[i] - MPoint(MFloatPoint(shown.points()[i]));
        if (move == MVector()) continue;
        minihost::Slot& tweak = *tweaks.Element(static_cast<int>(i));
        for (unsigned c = 0; c < 3; ++c)
            minihost::SetResult(*tweak.parts[c],
                                minihost::NumberOf(tweak.parts[c]->value) + move[c]);
    }
    minihost::Changed(tweaks);
    return MS::kSuccess;
}

const float* MFnMesh::getRawPoints(MStatus* status) const {
    const auto mesh = Read(status);
    return mesh && mesh->numVertices() > 0 ? &mesh->points()[0].x : nullptr;
}

MStatus MFnMesh::setDisplayColors(bool enable) {
    Node* shape = Shape();
    return shape ? minihost::Write(*shape->FindSlot("displayColors"), enable ? 1.0 : 0.0)
                 : MStatus(MS::kFailure);
}

bool MFnMesh::displayColors(MStatus* status) const {
    Node* shape = Shape();
    Tell(status, shape ? MS::kSuccess : MS::kFailure);
    return shape && minihost::NumberOf(minihost::Pull(*shape->FindSlot("displayColors"))) != 0;
}

MStatus MFnMesh::getConnectedShaders(unsigned instance, MObjectArray& shaders,
                                     MIntArray& indices) const {
    Node* shape = Shape();
    if (!shape || instance != 0) return MS::kInvalidParameter;
    const minihost::Shading shading = minihost::ShadingOf(*shape);
    shaders.clear();
    for (const auto& group : shading.groups) shaders.append(MObject(group));
    indices = MIntArray(shading.ofPolygon.data(), static_cast<unsigned>(shading.ofPolygon.size()));
    return MS::kSuccess;
}

MStatus MFnMesh::updateSurface() {
    Node* shape = Shape();
    if (shape) minihost::Changed(*shape->FindSlot("inMesh"));
    return object_.isNull() ? MS::kInvalidParameter : MS::kSuccess;
}
