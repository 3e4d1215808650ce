#pragma once

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "core/io/SystemMemory.h"
#include "core/sculpt/LHeadlessNode.h"

/// Meshes and nodes for the benchmarks.
namespace VantrelSDK::bench {

/// A sheet of about `triangles` triangles with hills, 1 unit a cell, through the origin in its
/// middle: there a brush has the same vertices under it at every size.
inline PolyMesh Hills(long long triangles) {
    const int half = static_cast<int>(std::sqrt(triangles / 8.0)), n = 2 * half;
    PolyMesh mesh;
    mesh.positions.reserve(static_cast<size_t>(n + 1) * (n + 1));
    for (int y = 0; y <= n; ++y)
        for (int x = 0; x <= n; ++x)
            mesh.positions.emplace_back(
                x - half, y - half,
                8 * std::sin((x - half) * 0.031f) * std::cos((y - half) * 0.027f));
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const int a = y * (n + 1) + x, b = a + 1, c = b + n + 1, d = a + n + 1;
            for (const int v : {a, b, c, a, c, d}) mesh.cornerVerts.push_back(v);
            for (int k = 0; k < 2; ++k) mesh.polygonStart.push_back(mesh.polygonStart.back() + 3);
        }
    return mesh;
}

/// A node in a session over such a sheet, with the sheet raised by a unit to blend to. Each is
/// opened once and kept, so that benchmarks may come in any order.
inline LHeadlessNode& OpenScene(long long triangles, int workers) {
    static std::map<std::pair<long long, int>, std::unique_ptr<LHeadlessNode>> scenes;
    std::unique_ptr<LHeadlessNode>& node = scenes[{triangles, workers}];
    if (node) return *node;
    node = std::make_unique<LHeadlessNode>(workers);
    std::string error;
    node->Load(Hills(triangles), error);
    node->InitSculpt();
    auto raised = std::make_unique<LMesh>(*node->lmeshCache());
    for (int v = 0; v < raised->GetNumVerts(); ++v) raised->OffsetVert(v, {0, 0, 1});
    node->SetBlendCache(std::move(raised));
    return *node;
}

/// The radius of a brush with about `verts` vertices under it.
inline float RadiusFor(int verts) {
    return std::sqrt(verts / 3.14159265f);
}

}  // namespace VantrelSDK::bench
