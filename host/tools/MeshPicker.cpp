#include "host/tools/MeshPicker.h"

#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>

#include <cmath>
#include <limits>

namespace VantrelSDK {

namespace {

/// Moeller and Trumbore; from either side.
bool HitTriangle(const MPoint& origin, const MVector& dir, const MPoint& a, const MPoint& b,
                 const MPoint& c, double& distance) {
    const MVector ab = b - a, ac = c - a, across = dir ^ ac;
    const double det = ab * across;
    if (det == 0) return false;
    const MVector from = origin - a, other = from ^ ab;
    const double u = from * across / det, v = dir * other / det;
    distance = ac * other / det;
    return u >= 0 && v >= 0 && u + v <= 1 && distance >= 0;
}

}  // namespace

MeshPicker::MeshPicker(const MObject& shape) : shape_(shape) {
    MDagPath path;
    MPointArray points;
    MIntArray counts, connects;
    if (!MDagPath::getAPathTo(shape, path)) return;
    const MFnMesh mesh(shape);
    mesh.getPoints(points);
    mesh.getVertices(counts, connects);
    const MMatrix place = path.inclusiveMatrix();
    for (unsigned i = 0; i < points.length(); ++i) points_.push_back(points[i] * place);
    for (unsigned i = 0; i < connects.length(); ++i)
        corners_.push_back(static_cast<size_t>(connects[i]));
    for (unsigned p = 0; p < counts.length(); ++p)
        starts_.push_back(starts_.back() + static_cast<size_t>(counts[p]));
}

bool MeshPicker::Pick(const MPoint& origin, const MVector& dir, Hit& hit) const {
    hit = {-1, std::numeric_limits<double>::max(), origin};
    for (size_t p = 0; p + 1 < starts_.size(); ++p) {
        const MPoint& first = points_[corners_[starts_[p]]];
        for (size_t i = starts_[p] + 2; i < starts_[p + 1]; ++i) {
            double distance = 0;
            if (!HitTriangle(origin, dir, first, points_[corners_[i - 1]], points_[corners_[i]],
                             distance) ||
                distance >= hit.distance)
                continue;
            hit = {static_cast<int>(p), distance, origin + dir * distance};
        }
    }
    return hit.polygon >= 0;
}

/// Of any length.
MVector MeshPicker::NormalOf(size_t polygon) const {
    MVector normal;
    const MPoint& first = points_[corners_[starts_[polygon]]];
    for (size_t i = starts_[polygon] + 2; i < starts_[polygon + 1]; ++i)
        normal += (points_[corners_[i - 1]] - first) ^ (points_[corners_[i]] - first);
    return normal;
}

void MeshPicker::AddNear(const MPoint& center, double radius, const MVector& dir,
                         std::set<int>& polygons) const {
    for (size_t p = 0; p + 1 < starts_.size(); ++p) {
        bool near = false;
        MVector middle;
        for (size_t i = starts_[p]; i < starts_[p + 1]; ++i) {
            const MVector from = points_[corners_[i]] - center;
            near = near || from.length() < radius;
            middle += from / static_cast<double>(starts_[p + 1] - starts_[p]);
        }
        if ((near || middle.length() < radius) && NormalOf(p) * dir < 0)
            polygons.insert(static_cast<int>(p));
    }
}

}  // namespace VantrelSDK
