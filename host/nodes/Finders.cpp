#include "host/nodes/Finders.h"

#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include <algorithm>
#include <map>

#include "host/nodes/GeometryLine.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

MTypeId TypeOf(const MObject& node) {
    return MFnDependencyNode(node).typeId();
}

template <class Test>
MObject FirstAbove(const MObject& node, const Test& test) {
    for (const MPlug& output : GeometryAbove(MainGeometryInput(node)))
        if (test(output.node())) return output.node();
    return MObject();
}

template <class Test>
MObject FirstBelow(const MObject& node, const Test& test) {
    for (const MPlug& input : GeometryBelow(MainGeometryOutput(node)))
        if (test(input.node())) return input.node();
    return MObject();
}

bool IsShown(const MObject& shape) {
    return shape.hasFn(MFn::kMesh) && !MFnDagNode(shape).isIntermediateObject();
}

bool Take(const MObject& found, MObject& node, MObject& shape) {
    if (found.isNull()) return false;
    node = found;
    shape = FindOutputShape(found);
    return true;
}

/// The node that another is, or has before or behind it.
MObject FindAround(const MObject& node) {
    if (IsKelmoNode2(node)) return node;
    const MObject above = FirstAbove(node, IsKelmoNode2);
    return above.isNull() ? FirstBelow(node, IsKelmoNode2) : above;
}

bool FindOn(const MSelectionList& list, bool components, MObject& node, MObject& shape) {
    MObjectArray others;
    for (unsigned i = 0; i < list.length(); ++i) {
        MDagPath path;
        MObject component, item;
        if (list.getDagPath(i, path, component)) {
            if (component.isNull() == components) continue;
            item = ShapeOf(path.node());
            if (!item.isNull() && Take(FirstAbove(item, IsKelmoNode2), node, shape)) return true;
        } else if (!components && list.getDependNode(i, item)) {
            others.append(item);
        }
    }
    return std::ranges::any_of(
        others, [&](const MObject& other) { return Take(FindAround(other), node, shape); });
}

}  // namespace

bool IsKelmoNode2(const MObject& node) {
    return TypeOf(node) == MTypeId(kKelmoNode2Id);
}

bool IsKelmo(const MObject& node) {
    return IsKelmoNode2(node) || TypeOf(node) == MTypeId(kKelmoNodeId);
}

bool FindCurrentKelmoNode(MObject& node, MObject& shape) {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    return FindOn(selected, false, node, shape);
}

bool FindCurrentKelmoNodeAE(MObject& node, MObject& shape) {
    MStringArray shown;
    if (!MGlobal::executeCommand("KelmoGetAENodes", shown)) return false;
    MSelectionList list;
    for (const MString& name : shown) list.add(name);
    return FindOn(list, false, node, shape);
}

bool FindCurrentKelmoNodeComponent(MObject& node, MObject& shape) {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    return FindOn(selected, true, node, shape);
}

bool FindWorkingKelmoNode(MObject& node, MObject& shape) {
    return FindCurrentKelmoNode(node, shape) || FindCurrentKelmoNodeAE(node, shape) ||
           FindCurrentKelmoNodeComponent(node, shape);
}

MObjectArray FindAllKelmoNodesByComponent() {
    MObjectArray nodes;
    for (const MObject& shape : SelectedShapes(true)) {
        const MObject node = FindInputKelmo(shape);
        if (!node.isNull() && !std::ranges::count(nodes, node)) nodes.append(node);
    }
    return nodes;
}

void FindTopParentConnected(const MObject& node, MObject& top) {
    MObjectArray passed;
    for (MObject at = node; !at.isNull() && !std::ranges::count(passed, at);) {
        passed.append(top = at);
        const MPlug lead = MFnDependencyNode(at).findPlug("lead");
        at = lead.isNull() ? MObject() : lead.source().node();
    }
}

MObject FindInputSkin(const MObject& node) {
    return FirstAbove(node, [](const MObject& n) { return n.hasFn(MFn::kSkinClusterFilter); });
}

MObject FindOutputSkin(const MObject& node) {
    return FirstBelow(node, [](const MObject& n) { return n.hasFn(MFn::kSkinClusterFilter); });
}

MObject FindInputShape(const MObject& node) {
    return FirstAbove(node, [](const MObject& n) { return n.hasFn(MFn::kMesh); });
}

MObject FindOutputShape(const MObject& node) {
    return FirstBelow(node, IsShown);
}

MObjectArray FindInputTweaks(const MObject& node) {
    MObjectArray tweaks;
    for (const MPlug& output : GeometryAbove(MainGeometryInput(node)))
        if (output.node().hasFn(MFn::kTweak)) tweaks.append(output.node());
    return tweaks;
}

MObject FindInputTweak(const MObject& node) {
    const MObjectArray tweaks = FindInputTweaks(node);
    return tweaks.length() > 0 ? tweaks[0] : MObject();
}

MObject FindInputKelmo(const MObject& shape) {
    return FirstAbove(shape, IsKelmo);
}

bool HasKelmoConnected(const MObject& shape) {
    return !FindInputKelmo(shape).isNull();
}

bool HasOutputGroupParts(const MObject& node) {
    return !FirstBelow(node, [](const MObject& n) { return n.hasFn(MFn::kGroupParts); }).isNull();
}

Tweaks GetTweakData(const MObject& node) {
    std::map<unsigned, MPoint> sums;
    const auto add = [&sums](const MPlug& moved) {
        for (unsigned i = 0; i < moved.numElements(); ++i) {
            const MPlug vertex = moved[i];
            MPoint& sum = sums[vertex.logicalIndex()];
            sum.x += vertex.child(0).asDouble();
            sum.y += vertex.child(1).asDouble();
            sum.z += vertex.child(2).asDouble();
        }
    };
    for (const MPlug& output : GeometryAbove(MainGeometryInput(node))) {
        const MFnDependencyNode above(output.node());
        if (!output.node().hasFn(MFn::kTweak) || !output.isElement()) continue;
        add(above.findPlug("vlist").elementByLogicalIndex(output.logicalIndex()).child(0));
    }
    if (node.hasFn(MFn::kMesh)) add(MFnDependencyNode(node).findPlug("pnts"));
    std::erase_if(sums, [](const auto& sum) { return sum.second == MPoint(); });
    return Tweaks(sums.begin(), sums.end());
}

void SetTweakData(const MObject& tweak, const Tweaks& tweaks, MDGModifier& edits) {
    const MPlug vertices =
        MFnDependencyNode(tweak).findPlug("vlist").elementByLogicalIndex(0).child(0);
    for (const auto& [index, offset] : tweaks) {
        const MPlug vertex = vertices.elementByLogicalIndex(index);
        for (unsigned c = 0; c < 3; ++c) edits.newPlugValueDouble(vertex.child(c), offset[c]);
    }
}

MObject FindNodeByName(const MString& name) {
    MSelectionList list;
    MObject node;
    return list.add(name) && list.length() == 1 && list.getDependNode(0, node) ? node : MObject();
}

MObjectArray FindNodesByTypeId(const MTypeId& type) {
    MObjectArray nodes;
    for (MItDependencyNodes walk; !walk.isDone(); walk.next())
        if (TypeOf(walk.thisNode()) == type) nodes.append(walk.thisNode());
    return nodes;
}

MObject ShapeOf(const MObject& node) {
    if (node.hasFn(MFn::kMesh)) return node;
    if (!node.hasFn(MFn::kTransform)) return MObject();
    const MFnDagNode transform(node);
    for (unsigned i = 0; i < transform.childCount(); ++i)
        if (IsShown(transform.child(i))) return transform.child(i);
    return MObject();
}

MObject FindShapeByDagName(const MString& name) {
    return ShapeOf(FindNodeByName(name));
}

MObjectArray SelectedShapes(bool components) {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    MObjectArray shapes;
    for (unsigned i = 0; i < selected.length(); ++i) {
        MDagPath path;
        MObject component;
        if (!selected.getDagPath(i, path, component) || component.isNull() == components) continue;
        const MObject shape = ShapeOf(path.node());
        if (!shape.isNull() && !std::ranges::count(shapes, shape)) shapes.append(shape);
    }
    return shapes;
}

MString NameOf(const MObject& node) {
    return MFnDependencyNode(node).name();
}

void BringUpToDate(const MObject& node) {
    if (const MPlug output = MainGeometryOutput(node); !output.isNull()) output.asMObject();
}

}  // namespace VantrelSDK
