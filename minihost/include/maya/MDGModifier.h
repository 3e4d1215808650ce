#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "maya/MObject.h"
#include "maya/MPlug.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MTypeId.h"

namespace minihost {
class Modifier;
}

/// Edits of the graph that are done together and can be taken back. Nodes are made when they are
/// asked for; all else is done by doIt, what was asked for since the last doIt only.
class MDGModifier {
  public:
    MDGModifier();
    virtual ~MDGModifier();
    MDGModifier(const MDGModifier&) = delete;
    MDGModifier& operator=(const MDGModifier&) = delete;

    MObject createNode(const MTypeId& type, MStatus* status = nullptr);
    MObject createNode(const MString& type, MStatus* status = nullptr);
    MStatus deleteNode(const MObject& node);
    MStatus renameNode(const MObject& node, const MString& name);
    MStatus connect(const MPlug& source, const MPlug& destination);
    MStatus connect(const MObject& sourceNode, const MObject& sourceAttribute,
                    const MObject& destinationNode, const MObject& destinationAttribute);
    MStatus disconnect(const MPlug& source, const MPlug& destination);
    MStatus disconnect(const MObject& sourceNode, const MObject& sourceAttribute,
                       const MObject& destinationNode, const MObject& destinationAttribute);
    /// Script that doIt runs, with its own undo.
    MStatus commandToExecute(const MString& command);
    MStatus newPlugValueInt(const MPlug& plug, int value);
    MStatus newPlugValueDouble(const MPlug& plug, double value);
    MStatus newPlugValueString(const MPlug& plug, const MString& value);

    /// Stops at the first edit that fails; what was done before it stays, and undoIt takes it back.
    virtual MStatus doIt();
    virtual MStatus undoIt();
    virtual MStatus redoIt();

  protected:
    using Edit = std::function<MStatus(minihost::Modifier&)>;

    void Later(Edit edit) { pending_.push_back(std::move(edit)); }
    minihost::Modifier& done() { return *done_; }

  private:
    std::shared_ptr<minihost::Modifier> done_;
    std::vector<Edit> pending_;
    bool undone_ = false;
};
