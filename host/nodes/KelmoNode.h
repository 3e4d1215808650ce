#pragma once

#include <maya/MPxDeformerNode.h>

#include "host/ml/MLNode.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

/// The older form of the node, which old scenes hold: a deformer, whose geometry comes and goes by
/// the host's own plugs.
class KelmoNode : public MPxDeformerNode, public MLNode {
  public:
    static inline const char* typeName = kKelmoNodeName;
    static inline const unsigned id = kKelmoNodeId;

    static void* creator() { return new KelmoNode; }
    static MStatus initialize() { return attributes_.Add(NodeClass::kNode); }
    /// Before the module goes.
    static void release() { attributes_.Clear(); }

    MStatus compute(const MPlug& plug, MDataBlock& data) override;
    MStatus setDependentsDirty(const MPlug& plug, MPlugArray& affected) override;
    MStatus connectionMade(const MPlug& plug, const MPlug& other, bool asSrc) override;
    MStatus connectionBroken(const MPlug& plug, const MPlug& other, bool asSrc) override;

    MObject getThisMObject() const override { return thisMObject(); }
    NodeClass nodeClass() const override { return NodeClass::kNode; }
    const NodeAttributes& attributes() const override { return attributes_; }
    MPlug inputPlug() const override;
    MPlug outputPlug() const override;

  private:
    static NodeAttributes attributes_;
};

/// A deformer that moves nothing: put on a mesh it brings the host's own tweak node with it, and
/// keeps the place until the node stands there.
class KelmoHelper : public MPxDeformerNode {
  public:
    static inline const char* typeName = kKelmoHelperName;
    static inline const unsigned id = kKelmoHelperId;

    static void* creator() { return new KelmoHelper; }
    static MStatus initialize() { return MS::kSuccess; }
};

}  // namespace VantrelSDK
