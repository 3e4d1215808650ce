#pragma once

#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LFace.h"

namespace VantrelSDK {

struct TestMesh {
    std::vector<LPoint3> verts;
    std::vector<LFace> faces;

    int NumVerts() const { return static_cast<int>(verts.size()); }
};

/// A face with an `id` of -1 and all edges visible.
LFace Triangle(int a, int b, int c);
/// A flat sheet of nx x ny unit squares, each two triangles glued along the diagonal.
TestMesh Grid(int nx, int ny);
/// A closed sphere of radius 1 with two poles, seen counterclockwise from outside.
TestMesh Sphere(int around, int rings, const LPoint3& center = LPoint3::Zero);
/// `count` triangles around vertex 0, closed to a disc.
TestMesh Fan(int count);

}  // namespace VantrelSDK
