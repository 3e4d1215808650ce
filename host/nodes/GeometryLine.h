#pragma once

#include <maya/MObject.h>
#include <maya/MPlug.h>

#include <vector>

namespace VantrelSDK {

// The way that a mesh's geometry takes, node by node: out of a shape, through deformers, their
// groups and our own nodes, into a shape. What else feeds a node (targets, matrices, the mesh as it
// was before it was deformed) is no part of it.

/// Where a node takes the geometry that comes out at `output`; null where the node makes it.
MPlug GeometryInput(const MPlug& output);
/// Where the geometry comes out that a node takes at `input`; none where `input` is no part of the
/// way.
std::vector<MPlug> GeometryOutputs(const MPlug& input);
/// Where a node takes the geometry that it hands on: the first one of a deformer. Null for a node
/// that takes none.
MPlug MainGeometryInput(const MObject& node);
/// Where the geometry leaves a node for good or for the next: the first one of a deformer.
MPlug MainGeometryOutput(const MObject& node);

/// The outputs of the nodes up the way from `input`, the nearest first, each node once.
std::vector<MPlug> GeometryAbove(const MPlug& input);
/// The inputs of the nodes down the ways from `output` or its elements, depth first, each once.
std::vector<MPlug> GeometryBelow(const MPlug& output);

}  // namespace VantrelSDK
