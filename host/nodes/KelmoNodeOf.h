#pragma once

#include <maya/MDataBlock.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>

#include <functional>

#include "host/ml/MLNode.h"
#include "host/nodes/NodeEvaluation.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

/// What both forms of the node have in common. `HostBase` is the class of the host that a form
/// stands on.
template <class HostBase, NodeClass kClass>
class KelmoNodeOf : public HostBase, public MLNode {
  public:
    static MStatus initialize() { return attributes_.Add(kClass); }
    /// Before the module goes.
    static void release() { attributes_.Clear(); }

    MStatus setDependentsDirty(const MPlug& plug, MPlugArray& affected) override {
        NodeEvaluation(*this).SetDependentsDirty(plug, affected);
        return HostBase::setDependentsDirty(plug, affected);
    }
    MStatus connectionMade(const MPlug& plug, const MPlug& other, bool asSrc) override {
        NodeEvaluation(*this).ConnectionMade(plug, other, asSrc);
        return HostBase::connectionMade(plug, other, asSrc);
    }
    MStatus connectionBroken(const MPlug& plug, const MPlug& other, bool asSrc) override {
        NodeEvaluation(*this).ConnectionBroken(plug, other, asSrc);
        return HostBase::connectionBroken(plug, other, asSrc);
    }

    MObject getThisMObject() const override { return HostBase::thisMObject(); }
    NodeClass nodeClass() const override { return kClass; }
    const NodeAttributes& attributes() const override { return attributes_; }

  protected:
    /// Answers for a plug that is one of the outputs.
    MStatus Compute(NodeEvaluation::Output output, const MPlug& asked,
                    const std::function<MObject()>& input, MDataBlock& data) {
        const auto time = [&data](MTime& now) {
            MStatus status;
            now = data.inputValue(attributes_.m_moInTime, &status).asTime();
            return status == MS::kSuccess;
        };
        MDataHandle to = data.outputValue(asked);
        const MStatus status = NodeEvaluation(*this).Compute(output, input, time, to);
        if (status) data.setClean(asked);
        return status;
    }

    static inline NodeAttributes attributes_;
};

}  // namespace VantrelSDK
