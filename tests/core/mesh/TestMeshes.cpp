#include "tests/core/mesh/TestMeshes.h"

#include <cmath>

namespace VantrelSDK {

LFace Triangle(int a, int b, int c) {
    return {{a, b, c}};
}

TestMesh Grid(int nx, int ny) {
    TestMesh mesh;
    for (int y = 0; y <= ny; ++y)
        for (int x = 0; x <= nx; ++x) mesh.verts.emplace_back(float(x), float(y), 0.0f);
    mesh.faces.reserve(size_t{2} * nx * ny);
    for (int y = 0; y < ny; ++y)
        for (int x = 0; x < nx; ++x) {
            const int a = y * (nx + 1) + x, b = a + 1, c = b + nx + 1, d = c - 1;
            LFace lower = Triangle(a, b, c), upper = Triangle(c, d, a);
            lower.flags = upper.flags = 3 | 1 << 5;
            mesh.faces.push_back(lower);
            mesh.faces.push_back(upper);
        }
    return mesh;
}

TestMesh Sphere(int around, int rings, const LPoint3& center) {
    TestMesh mesh;
    mesh.verts.push_back(center + LPoint3(0, 0, -1));
    for (int r = 0; r < rings; ++r)
        for (int i = 0; i < around; ++i) {
            const double latitude = M_PI * ((r + 1.0) / (rings + 1) - 0.5);
            const double longitude = 2 * M_PI * i / around, flat = std::cos(latitude);
            mesh.verts.push_back(center + LPoint3(float(flat * std::cos(longitude)),
                                                  float(flat * std::sin(longitude)),
                                                  float(std::sin(latitude))));
        }
    mesh.verts.push_back(center + LPoint3(0, 0, 1));
    const int south = 0, north = mesh.NumVerts() - 1;
    const auto at = [&](int r, int i) { return 1 + r * around + i % around; };
    for (int i = 0; i < around; ++i) {
        mesh.faces.push_back(Triangle(south, at(0, i + 1), at(0, i)));
        for (int r = 0; r + 1 < rings; ++r) {
            mesh.faces.push_back(Triangle(at(r, i), at(r, i + 1), at(r + 1, i + 1)));
            mesh.faces.push_back(Triangle(at(r + 1, i + 1), at(r + 1, i), at(r, i)));
        }
        mesh.faces.push_back(Triangle(at(rings - 1, i), at(rings - 1, i + 1), north));
    }
    return mesh;
}

TestMesh Fan(int count) {
    TestMesh mesh;
    mesh.verts.resize(size_t(count) + 1);
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * M_PI * i / count;
        mesh.verts[i + 1] = {float(std::cos(angle)), float(std::sin(angle)), 0};
        mesh.faces.push_back(Triangle(0, 1 + i, 1 + (i + 1) % count));
    }
    return mesh;
}

}  // namespace VantrelSDK
