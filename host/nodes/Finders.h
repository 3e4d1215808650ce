#pragma once

#include <maya/MDGModifier.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MPlug.h>
#include <maya/MPointArray.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <utility>
#include <vector>

namespace VantrelSDK {

// How commands and callbacks find their way in a scene. All return false or a null object where
// there is nothing to find, and say nothing.

bool IsKelmoNode2(const MObject& node);
/// Of either class.
bool IsKelmo(const MObject& node);

// The node to work on, and the shape that it feeds (null where it feeds none).

/// What is selected: the node behind the first mesh, else the first node that is one or has one on
/// its geometry's way.
bool FindCurrentKelmoNode(MObject& node, MObject& shape);
/// The same for what the attribute editor shows, as the interface tells.
bool FindCurrentKelmoNodeAE(MObject& node, MObject& shape);
/// The node behind a mesh of which components are selected.
bool FindCurrentKelmoNodeComponent(MObject& node, MObject& shape);
/// All three in turn.
bool FindWorkingKelmoNode(MObject& node, MObject& shape);
/// Every node behind a mesh of which components are selected.
MObjectArray FindAllKelmoNodesByComponent();

/// Up the leads to the node that has none: the node itself when it follows nobody.
void FindTopParentConnected(const MObject& node, MObject& top);

// Around a node, or a shape: what its geometry comes from and goes to.

MObject FindInputSkin(const MObject& node);
MObject FindOutputSkin(const MObject& node);
/// The shape that the geometry starts from, before it is deformed.
MObject FindInputShape(const MObject& node);
MObject FindOutputShape(const MObject& node);
/// The tweaks before a node, the nearest first.
MObjectArray FindInputTweaks(const MObject& node);
MObject FindInputTweak(const MObject& node);
/// The node of either class behind a shape.
MObject FindInputKelmo(const MObject& shape);
bool HasKelmoConnected(const MObject& shape);
/// Behind a node something parts the polygons, as several shaders on one mesh need.
bool HasOutputGroupParts(const MObject& node);

/// Moved vertices, in a shape's own coordinates.
using Tweaks = std::vector<std::pair<unsigned, MPoint>>;
/// What all tweaks before a node or shape, and those of a shape itself, do together; in the order
/// of the vertices.
Tweaks GetTweakData(const MObject& node);
/// Makes them the first geometry's of a tweak node, whose others stay, in the modifier's doIt.
void SetTweakData(const MObject& tweak, const Tweaks& tweaks, MDGModifier& edits);

// By name and type.

/// The only node that a name finds.
MObject FindNodeByName(const MString& name);
MObjectArray FindNodesByTypeId(const MTypeId& type);
/// The mesh that a name stands for: a shape, or a transform above one that is shown.
MObject FindShapeByDagName(const MString& name);
/// The same for a node or a path that is at hand.
MObject ShapeOf(const MObject& node);
/// The meshes that are selected as wholes, or above which a transform is; or those of which
/// components are.
MObjectArray SelectedShapes(bool components = false);

/// The shortest name that finds a node.
MString NameOf(const MObject& node);
/// Lets a node see its input and the time, where nobody has looked at its output yet.
void BringUpToDate(const MObject& node);

}  // namespace VantrelSDK
