#pragma once

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "minihost/Host.h"
#include "minihost/graph/Modifier.h"
#include "minihost/mesh/MeshTypes.h"

namespace minihost {

/// An empty scene, and edits of it.
class SceneTest : public testing::Test {
  protected:
    SceneTest() : host(Host::Get()), edits(host.scene) { host.NewScene(); }
    ~SceneTest() override { host.NewScene(); }

    Host& host;
    Modifier edits;
};

/// A valid mesh of any polygons, whose vertices and UVs are named in any order.
inline MeshPtr AnyMesh() {
    const auto coordinate = rc::gen::map(rc::gen::inRange(-1000000, 1000000),
                                         [](int n) { return static_cast<float>(n) / 7777.f; });
    std::vector<MFloatVector> points(*rc::gen::inRange<size_t>(1, 30));
    for (MFloatVector& p : points) p = {*coordinate, *coordinate, *coordinate};
    const auto counts = *rc::gen::container<std::vector<int>>(rc::gen::inRange(3, 7));
    std::vector<int> corners, ids;
    std::vector<UV> uvs(*rc::gen::inRange<size_t>(1, 20));
    for (UV& uv : uvs) uv = {*coordinate, *coordinate};
    for (const int n : counts)
        for (int i = 0; i < n; ++i) {
            corners.push_back(*rc::gen::inRange(0, static_cast<int>(points.size())));
            ids.push_back(*rc::gen::inRange(-1, static_cast<int>(uvs.size())));
        }
    std::string error;
    const MeshPtr mesh = MeshData::Make(std::move(points), counts, std::move(corners), error);
    mesh->uvSets[0].values.Set(uvs);
    if (std::ranges::any_of(ids, [](int id) { return id >= 0; })) mesh->uvSets[0].corners.Set(ids);
    return mesh;
}

}  // namespace minihost
