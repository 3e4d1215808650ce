#pragma once

#include "minihost/dag/DagNode.h"

namespace minihost {

/// Matrices of a place in the hierarchy. A change of one reaches all below it.
class DagLogic : public ShapeLogic {
  public:
    using ShapeLogic::ShapeLogic;

    bool WatchesDirt() const override { return true; }
    void SetDependentsDirty(const Plug& plug, std::vector<Plug>& more) override;
    MStatus Compute(const Plug& plug) override;

  protected:
    virtual MMatrix Local() { return {}; }
    DagNode& Dag() { return static_cast<DagNode&>(node_); }
};

}  // namespace minihost
