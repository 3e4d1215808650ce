#pragma once

#include <maya/MPxNode.h>

#include "host/nodes/KelmoNodeOf.h"

namespace VantrelSDK {

/// The node that stands between what a mesh comes from, a skin or a base shape, and the shape that
/// shows it. It keeps what is sculpted over the input and makes the output of both.
class KelmoNode2 : public KelmoNodeOf<MPxNode, NodeClass::kNode2> {
  public:
    static inline const char* typeName = kKelmoNode2Name;
    static inline const unsigned id = kKelmoNode2Id;

    static void* creator() { return new KelmoNode2; }

    MStatus compute(const MPlug& plug, MDataBlock& data) override;
    MPlug inputPlug() const override;
    MPlug outputPlug() const override { return plug(&NodeAttributes::m_moOutputGeom); }
};

}  // namespace VantrelSDK
