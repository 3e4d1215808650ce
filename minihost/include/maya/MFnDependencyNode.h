#pragma once

#include "maya/MFnBase.h"
#include "maya/MPlug.h"
#include "maya/MString.h"
#include "maya/MTypeId.h"

class MPxNode;

/// Any node.
class MFnDependencyNode : public MFnBase {
  public:
    MFnDependencyNode() = default;
    explicit MFnDependencyNode(const MObject& node, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kDependencyNode; }

    /// Makes a node outside the undo queue and attaches to it.
    MObject create(const MTypeId& type, MStatus* status = nullptr);
    MObject create(const MTypeId& type, const MString& name, MStatus* status = nullptr);
    MObject create(const MString& type, MStatus* status = nullptr);
    MObject create(const MString& type, const MString& name, MStatus* status = nullptr);

    MTypeId typeId(MStatus* status = nullptr) const;
    MString typeName(MStatus* status = nullptr) const;
    /// The shortest name that finds the node.
    MString name(MStatus* status = nullptr) const;
    /// The name that it got, which has a number behind where it was taken.
    MString setName(const MString& name, MStatus* status = nullptr);
    /// A module's own object of the node, null for the host's nodes.
    MPxNode* userNode(MStatus* status = nullptr) const;

    unsigned attributeCount(MStatus* status = nullptr) const;
    MObject attribute(unsigned index, MStatus* status = nullptr) const;
    MObject attribute(const MString& name, MStatus* status = nullptr) const;
    bool hasAttribute(const MString& name, MStatus* status = nullptr) const;
    MPlug findPlug(const MString& name, MStatus* status = nullptr) const;
    MPlug findPlug(const MString& name, bool wantNetworked, MStatus* status = nullptr) const;
    MPlug findPlug(const MObject& attribute, MStatus* status = nullptr) const;
    MPlug findPlug(const MObject& attribute, bool wantNetworked, MStatus* status = nullptr) const;
    /// Plugs of the node that are connected, either way.
    MStatus getConnections(class MPlugArray& plugs) const;
    /// Scenes are saved without the node and what is below it.
    MStatus setDoNotWrite(bool on);
    bool canBeWritten(MStatus* status = nullptr) const;
    bool isFromReferencedFile(MStatus* status = nullptr) const;

  protected:
    minihost::Node* node() const;
};
