#include <algorithm>

#include "maya/MItMeshPolygon.h"
#include "maya/MItMeshVertex.h"
#include "minihost/api/Status.h"
#include "minihost/mesh/MeshData.h"

using minihost::MeshData;
using minihost::Tell;
using minihost::UVSet;

MItMeshPolygon::MItMeshPolygon(const MObject& mesh, MStatus* status)
    : MItMeshPolygon(mesh, MObject(), status) {}

MItMeshPolygon::MItMeshPolygon(const MObject& mesh, const MObject& component, MStatus* status)
    : MeshWalk(mesh, component, MFn::kMeshPolygonComponent, status) {}

MItMeshPolygon::MItMeshPolygon(const MDagPath& mesh, const MObject& component, MStatus* status)
    : MItMeshPolygon(mesh.node(), component, status) {}

unsigned MItMeshPolygon::polygonVertexCount(MStatus* status) const {
    Tell(status, isDone() ? MS::kFailure : MS::kSuccess);
    return isDone() ? 0 : static_cast<unsigned>(mesh_->polygons().CountOf(index()));
}

int MItMeshPolygon::vertexIndex(int corner, MStatus* status) const {
    const bool there = corner >= 0 && unsigned(corner) < polygonVertexCount();
    Tell(status, there ? MS::kSuccess : MS::kInvalidParameter);
    return there ? mesh_->polygons().Of(index())[static_cast<size_t>(corner)] : -1;
}

MStatus MItMeshPolygon::getVertices(MIntArray& vertices) const {
    if (isDone()) return MS::kFailure;
    const auto ring = mesh_->polygons().Of(index());
    vertices = MIntArray(ring.data(), static_cast<unsigned>(ring.size()));
    return MS::kSuccess;
}

MPoint MItMeshPolygon::point(int corner, MSpace::Space, MStatus* status) const {
    const int v = vertexIndex(corner, status);
    return v < 0 ? MPoint() : MPoint(MFloatPoint(mesh_->points()[static_cast<size_t>(v)]));
}

void MItMeshPolygon::getPoints(MPointArray& points, MSpace::Space, MStatus* status) const {
    points.setLength(polygonVertexCount(status));
    for (unsigned i = 0; i < points.length(); ++i) points[i] = point(static_cast<int>(i));
}

MStatus MItMeshPolygon::numTriangles(int& count) const {
    if (isDone()) return MS::kFailure;
    count = static_cast<int>(polygonVertexCount()) - 2;
    return MS::kSuccess;
}

MStatus MItMeshPolygon::getTriangle(int triangle, MPointArray& points, MIntArray& vertices,
                                    MSpace::Space) const {
    int n = 0;
    if (!numTriangles(n)) return MS::kFailure;
    if (triangle < 0 || triangle >= n) return MS::kInvalidParameter;
    points.setLength(3);
    vertices.setLength(3);
    for (unsigned i = 0; i < 3; ++i) {
        const int corner = i == 0 ? 0 : triangle + static_cast<int>(i);
        points[i] = point(corner);
        vertices[i] = vertexIndex(corner);
    }
    return MS::kSuccess;
}

MStatus MItMeshPolygon::getTriangles(MPointArray& points, MIntArray& vertices,
                                     MSpace::Space) const {
    int n = 0;
    if (!numTriangles(n)) return MS::kFailure;
    points.clear();
    vertices.clear();
    for (int t = 0; t < n; ++t)
        for (const int corner : {0, t + 1, t + 2}) {
            points.append(point(corner));
            vertices.append(vertexIndex(corner));
        }
    return MS::kSuccess;
}

namespace {

/// The set where it gives all corners of a polygon a UV, else null.
const UVSet* UVsOf(const MeshData& mesh, int polygon, const std::string& name) {
    const UVSet* set = mesh.FindUVSet(name);
    if (!set) return nullptr;
    const int start = mesh.polygons().StartOf(polygon);
    for (int c = start; c < start + mesh.polygons().CountOf(polygon); ++c)
        if (set->At(c) < 0) return nullptr;
    return set;
}

}  // namespace

bool MItMeshPolygon::hasUVs(MStatus* status) const {
    return hasUVs(MString(), status);
}

bool MItMeshPolygon::hasUVs(const MString& set, MStatus* status) const {
    Tell(status, isDone() ? MS::kFailure : MS::kSuccess);
    return !isDone() && UVsOf(*mesh_, index(), set.str());
}

MStatus MItMeshPolygon::getUVIndex(int corner, int& id, const MString* set) const {
    if (vertexIndex(corner) < 0) return MS::kInvalidParameter;
    const UVSet* uvs = mesh_->FindUVSet(set ? set->str() : "");
    const int found = uvs ? uvs->At(mesh_->polygons().StartOf(index()) + corner) : -1;
    if (found < 0) return MS::kInvalidParameter;
    id = found;
    return MS::kSuccess;
}

MStatus MItMeshPolygon::getUVs(MFloatArray& u, MFloatArray& v, const MString* set) const {
    const UVSet* uvs = isDone() ? nullptr : UVsOf(*mesh_, index(), set ? set->str() : "");
    if (!uvs) return MS::kInvalidParameter;
    u.clear();
    v.clear();
    const int start = mesh_->polygons().StartOf(index());
    for (int c = start; c < start + mesh_->polygons().CountOf(index()); ++c) {
        const minihost::UV& uv = (*uvs->values)[static_cast<size_t>(uvs->At(c))];
        u.append(uv.u);
        v.append(uv.v);
    }
    return MS::kSuccess;
}

MItMeshVertex::MItMeshVertex(const MObject& mesh, MStatus* status)
    : MItMeshVertex(mesh, MObject(), status) {}

MItMeshVertex::MItMeshVertex(const MObject& mesh, const MObject& component, MStatus* status)
    : MeshWalk(mesh, component, MFn::kMeshVertComponent, status) {}

MItMeshVertex::MItMeshVertex(const MDagPath& mesh, const MObject& component, MStatus* status)
    : MItMeshVertex(mesh.node(), component, status) {}

MPoint MItMeshVertex::position(MSpace::Space, MStatus* status) const {
    Tell(status, isDone() ? MS::kFailure : MS::kSuccess);
    return isDone() ? MPoint() : MPoint(MFloatPoint(mesh_->points()[static_cast<size_t>(index())]));
}

void MItMeshVertex::FindCorners(int& first, int& end) const {
    if (starts_.empty()) {
        const std::vector<int>& all = mesh_->polygons().corners;
        starts_.resize(mesh_->points().size() + 2);
        corners_.resize(all.size());
        for (const int v : all) ++starts_[static_cast<size_t>(v) + 2];
        for (size_t v = 2; v < starts_.size(); ++v) starts_[v] += starts_[v - 1];
        for (size_t c = 0; c < all.size(); ++c)
            corners_[static_cast<size_t>(starts_[static_cast<size_t>(all[c]) + 1]++)] =
                static_cast<int>(c);
    }
    first = starts_[static_cast<size_t>(index())];
    end = starts_[static_cast<size_t>(index()) + 1];
}

bool MItMeshVertex::hasColor() const {
    MColor color;
    return getColor(color);
}

MStatus MItMeshVertex::getColor(MColor& color, const MString* set) const {
    const auto* colors = isDone() ? nullptr : mesh_->FindColorSet(set ? set->str() : "");
    if (!colors) return MS::kFailure;
    int first = 0, end = 0, seen = 0;
    FindCorners(first, end);
    MColor mean(0, 0, 0, 0);
    for (int i = first; i < end; ++i) {
        const int id = colors->At(corners_[static_cast<size_t>(i)]);
        if (id < 0) continue;
        minihost::AddToMean(mean, (*colors->values)[static_cast<size_t>(id)], ++seen);
    }
    if (seen == 0) return MS::kFailure;
    color = mean;
    return MS::kSuccess;
}

MStatus MItMeshVertex::getConnectedFaces(MIntArray& polygons) const {
    if (isDone()) return MS::kFailure;
    int first = 0, end = 0;
    FindCorners(first, end);
    polygons.clear();
    const auto& starts = mesh_->polygons().starts;
    for (int i = first; i < end; ++i) {
        const auto at = std::ranges::upper_bound(starts, corners_[static_cast<size_t>(i)]);
        const int polygon = static_cast<int>(at - starts.begin()) - 1;
        if (polygons.length() == 0 || polygons[polygons.length() - 1] != polygon)
            polygons.append(polygon);
    }
    return MS::kSuccess;
}
