#pragma once

#include <maya/MPxData.h>

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

class MLNode;

/// Values that hand a node to what stands around it: its locators and, see KelmoSurfaceCallback,
/// its shape. Nothing of them is kept in scenes.
template <unsigned Id, const char* Name>
class NodeLink : public MPxData {
  public:
    NodeLink() = default;
    explicit NodeLink(MLNode* node) : kelmo(node) {}

    static void* creator() { return new NodeLink; }

    void copy(const MPxData& other) override {
        if (other.typeId() == typeId()) kelmo = static_cast<const NodeLink&>(other).kelmo;
    }
    MTypeId typeId() const override { return MTypeId(Id); }
    MString name() const override { return Name; }

    /// Borrowed; null on a value that nobody has set.
    MLNode* kelmo = nullptr;
};

using KelmoStencilCallback = NodeLink<kStencilCallbackId, kStencilCallbackName>;
using KelmoRefImageCallback = NodeLink<kRefImageCallbackId, kRefImageCallbackName>;

}  // namespace VantrelSDK
