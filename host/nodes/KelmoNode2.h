#pragma once

#include <maya/MPxNode.h>

#include "host/ml/MLNode.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

/// The node that stands between what a mesh comes from, a skin or a base shape, and the shape that
/// shows it. It keeps what is sculpted over the input and makes the output of both.
class KelmoNode2 : public MPxNode, public MLNode {
  public:
    static inline const char* typeName = kKelmoNode2Name;
    static inline const unsigned id = kKelmoNode2Id;

    static void* creator() { return new KelmoNode2; }
    static MStatus initialize() { return attributes_.Add(NodeClass::kNode2); }
    /// Before the module goes.
    static void release() { attributes_.Clear(); }

    MStatus compute(const MPlug& plug, MDataBlock& data) override;
    MStatus setDependentsDirty(const MPlug& plug, MPlugArray& affected) override;
    MStatus connectionMade(const MPlug& plug, const MPlug& other, bool asSrc) override;
    MStatus connectionBroken(const MPlug& plug, const MPlug& other, bool asSrc) override;

    MObject getThisMObject() const override { return thisMObject(); }
    NodeClass nodeClass() const override { return NodeClass::kNode2; }
    const NodeAttributes& attributes() const override { return attributes_; }
    MPlug inputPlug() const override;
    MPlug outputPlug() const override { return plug(&NodeAttributes::m_moOutputGeom); }

  private:
    static NodeAttributes attributes_;
};

}  // namespace VantrelSDK
