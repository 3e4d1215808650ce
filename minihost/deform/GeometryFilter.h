#pragma once

#include <optional>

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"
#include "minihost/mesh/MeshData.h"

namespace minihost {

/// What a deformer works on: one of its geometries, of the vertices that its group has.
struct DeformInput {
    /// As it comes in; null for none.
    MeshPtr mesh;
    int index = 0;
    double envelope = 1;
    /// Vertices in increasing order; none: all.
    std::optional<std::vector<int>> members;

    void ForEachMember(auto&& act) const {
        if (members)
            for (const int v : *members) act(v);
        else
            for (int v = 0; v < mesh->numVertices(); ++v) act(v);
    }
};

/// Reads input[index], the envelope, and the group that the input's groupId names.
DeformInput ReadDeformInput(Node& node, int index);

/// A built-in deformer: passes its geometries on with points moved. With an envelope of 0, or a
/// nodeState other than normal, it passes them on as they are.
class DeformerLogic : public NodeLogic {
  public:
    using NodeLogic::NodeLogic;
    MStatus Compute(const Plug& plug) override;

  protected:
    /// Moves the points of `out`, which is a copy of the input.
    virtual void Deform(const DeformInput& in, MeshData& out) = 0;
};

/// Registers "geometryFilter", which plug-in deformers are built on too, and the built-in deformers
/// "tweak", "skinCluster", "blendShape". Sets must be registered.
void RegisterDeformTypes(NodeTypes& types);

void RegisterTweak(NodeTypes& types);
void RegisterSkinCluster(NodeTypes& types);
void RegisterBlendShape(NodeTypes& types);

}  // namespace minihost
