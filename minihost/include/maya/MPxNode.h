#pragma once

#include <memory>

#include "maya/MDataBlock.h"
#include "maya/MObject.h"
#include "maya/MPlug.h"
#include "maya/MPlugArray.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MTypeId.h"

namespace minihost {
class NodeType;
class PluginLogic;
}  // namespace minihost

/// A module's own node. The host makes it by the creator that the module registered, owns it, and
/// calls the operations below on its main thread.
class MPxNode {
  public:
    enum Type { kDependNode, kLocatorNode, kDeformerNode, kSurfaceShape };

    virtual ~MPxNode() = default;

    /// Once the node is in the scene: the earliest moment at which thisMObject is known.
    virtual void postConstructor() {}
    /// Computes the plug, which is stale. kUnknownParameter leaves its value as it is.
    virtual MStatus compute(const MPlug& plug, MDataBlock& data);
    /// A plug was written, at once, or became stale. What is appended becomes stale too.
    virtual MStatus setDependentsDirty(const MPlug& plug, MPlugArray& affected);
    virtual MStatus connectionMade(const MPlug& plug, const MPlug& otherPlug, bool asSrc);
    virtual MStatus connectionBroken(const MPlug& plug, const MPlug& otherPlug, bool asSrc);
    /// Sets `isLegal` and returns kSuccess, or returns kUnknownParameter to leave it to the host.
    virtual MStatus legalConnection(const MPlug& plug, const MPlug& otherPlug, bool asSrc,
                                    bool& isLegal) const;
    virtual bool isAbstractClass() const { return false; }
    virtual Type type() const { return kDependNode; }

    MObject thisMObject() const;
    MTypeId typeId() const;
    MString typeName() const;
    MString name() const;
    /// Values are always kept: there is nothing to force.
    MDataBlock forceCache();

    /// Only while the type's `initialize` runs: the attribute belongs to the type from here on.
    static MStatus addAttribute(const MObject& attribute);
    static MStatus attributeAffects(const MObject& input, const MObject& output);

    static MObject message, isHistoricallyInteresting, caching, state;

  protected:
    MPxNode() = default;

  private:
    friend class minihost::PluginLogic;

    minihost::PluginLogic* logic_ = nullptr;
};
