#pragma once

#include <maya/MPxDeformerNode.h>

#include "host/nodes/KelmoNodeOf.h"

namespace VantrelSDK {

/// The older form of the node, which old scenes hold: a deformer, whose geometry comes and goes by
/// the host's own plugs.
class KelmoNode : public KelmoNodeOf<MPxDeformerNode, NodeClass::kNode> {
  public:
    static inline const char* typeName = kKelmoNodeName;
    static inline const unsigned id = kKelmoNodeId;

    static void* creator() { return new KelmoNode; }

    MStatus compute(const MPlug& plug, MDataBlock& data) override;
    MPlug inputPlug() const override;
    MPlug outputPlug() const override;
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
