#pragma once

#include <gtest/gtest.h>

#include <random>

#include "core/sculpt/BrushWeights.h"
#include "core/sculpt/LHeadlessNode.h"
#include "tests/core/math/SameBits.h"
#include "tests/core/subdiv/Levels.h"
#include "tests/shapes/Shapes.h"

/// Strokes on small meshes, for tests of the brushes.
namespace VantrelSDK::strokes {

/// The numbers of the modes that move geometry.
inline const std::vector<int>& GeometryModes() {
    static const std::vector<int> modes = {0,  1,  2,  3,  4,  5,  6,  7,  8, 9,
                                           10, 11, 12, 13, 14, 15, 16, 17, 19};
    return modes;
}

struct Press {
    int mode = 8;
    LPoint3 pos, dir{0, 0, -1}, orth{1, 0, 0}, normal{0, 0, 1};
    float radius = 0.4f;
};

/// A node over a mesh, in a session.
inline std::unique_ptr<LHeadlessNode> OpenNode(const PolyMesh& mesh, int workers = 1,
                                               int levels = 0) {
    auto node = std::make_unique<LHeadlessNode>(workers);
    std::string error;
    EXPECT_TRUE(node->Load(mesh, error)) << error;
    for (int i = 0; i < levels; ++i) EXPECT_TRUE(node->SubdivideAll_Loop());
    EXPECT_TRUE(node->InitSculpt());
    return node;
}

/// Presses, moves through the points with the pointer going right, and releases unless told not to.
inline void Stroke(LHeadlessNode& node, const Press& press, const std::vector<LPoint3>& moves,
                   bool release = true) {
    node.settings().sculptMode = press.mode;
    node._luseSelected() = node.settings().useSelected;
    node.InitTransform(press.pos, press.dir, press.orth, press.normal, {0, 0}, press.radius,
                       press.mode, false);
    float x = 0;
    for (const LPoint3& p : moves) node.Transform(p, {x += 0.05f, 0}, press.normal);
    if (release) node.FinishTransform(true);
}

/// A few moves that go on from a point without a sharp turn.
inline std::vector<LPoint3> Path(const LPoint3& from, const LPoint3& step, int count) {
    std::vector<LPoint3> path;
    for (int i = 1; i <= count; ++i)
        path.push_back(from + step * static_cast<float>(i) +
                       LPoint3(0, 0.01f * i * i, 0) * step.Len());
    return path;
}

/// The surface of the active level.
inline std::vector<LPoint3> Surface(const LHeadlessNode& node) {
    const LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
    std::vector<LPoint3> verts(geom.GetNumVerts());
    for (int v = 0; v < geom.GetNumVerts(); ++v)
        verts[v] = geom.GetVert(v) + node.GetDelta()->MorphVector(v);
    return verts;
}

/// The deltas of all levels.
inline std::vector<LPoint3> Deltas(const LHeadlessNode& node) {
    return AllVerts(*node.GetDelta()->GetOrigMesh());
}

/// A sphere that is not quite round, so that no symmetry hides a mistake.
inline PolyMesh Boulder(int level) {
    PolyMesh mesh = shapes::Sphere(level);
    for (LPoint3& p : mesh.positions)
        p *= 1 + 0.1f * std::sin(3 * p.x + 1) + 0.08f * std::cos(4 * p.y) + 0.05f * p.z;
    return mesh;
}

/// Checks that tree and display cache show the surface as it is. "" when they do.
inline std::string CheckCaches(LHeadlessNode& node) {
    const std::vector<LPoint3> surface = Surface(node);
    const LDisplayCache& display = *node.ldisplayCache();
    if (!SameBits(display.verts(), surface)) return "positions of the display cache";
    LDisplayCache fresh(&node);
    fresh.Init(node.lobject()->GetSubdivGeom(), node.GetDelta()->GetMesh());
    fresh.CalcAll();
    if (!SameBits(display.fnormals(), fresh.fnormals())) return "face normals";
    if (!SameBits(display.vnormals(), fresh.vnormals())) return "vertex normals";
    if (!SameBits(std::span(node.lmeshCache()->GetVertsPtr(), surface.size()), surface))
        return "the stroke's start positions";
    if (const std::string broken = node.loctTree()->Validate(); !broken.empty()) return broken;
    LOctTree whole(*node.loctTree());
    whole.Recalc(surface.data());
    if (!node.loctTree()->HasSameBoxes(whole)) return "boxes of the tree";
    if (node.lobject()->HasVertsWeights()) return "weights are left";
    for (int v = 0; v < node.lobject()->GetNumVerts(); ++v)
        if (node.lobject()->GetWeight(v) != 0) return "a weight is left";
    return {};
}

}  // namespace VantrelSDK::strokes
