#pragma once

#include <vector>

#include "maya/MDagPath.h"
#include "maya/MObject.h"
#include "maya/MPlug.h"
#include "maya/MStatus.h"
#include "maya/MString.h"

class MStringArray;

/// A list of nodes, of their components, and of plugs.
class MSelectionList {
  public:
    /// All that a name fits: nodes ("head*"), components ("head.f[0:5]"), plugs ("head.tx").
    MStatus add(const MString& name, bool searchChildNamespaces = false);
    MStatus add(const MObject& node);
    MStatus add(const MDagPath& path, const MObject& component = MObject::kNullObj);
    MStatus add(const MPlug& plug);
    MStatus clear();
    MStatus remove(unsigned index);

    unsigned length(MStatus* status = nullptr) const;
    bool isEmpty() const { return items_.empty(); }
    MStatus getDependNode(unsigned index, MObject& node) const;
    MStatus getDagPath(unsigned index, MDagPath& path) const;
    /// `component` is null where the node as a whole is in the list.
    MStatus getDagPath(unsigned index, MDagPath& path, MObject& component) const;
    MStatus getPlug(unsigned index, MPlug& plug) const;
    /// Names that `add` takes; components in as few ranges as there are.
    MStatus getSelectionStrings(unsigned index, MStringArray& names) const;
    MStatus getSelectionStrings(MStringArray& names) const;
    bool hasItem(const MObject& node, MStatus* status = nullptr) const;

    struct Item {
        MObject node, component;
        MPlug plug;
    };
    const std::vector<Item>& items() const { return items_; }

  private:
    std::vector<Item> items_;
};
