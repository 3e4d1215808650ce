#pragma once

#include <vector>

#include "maya/MObject.h"
#include "maya/MStatus.h"

/// Walks the scene's nodes of a kind, in the order in which they came. What is added meanwhile is
/// not met; what is deleted meanwhile is passed over.
class MItDependencyNodes {
  public:
    explicit MItDependencyNodes(MFn::Type filter = MFn::kInvalid, MStatus* status = nullptr);

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    MObject thisNode(MStatus* status = nullptr) const;
    MObject item(MStatus* status = nullptr) const { return thisNode(status); }

  private:
    void Skip();

    std::vector<MObject> nodes_;
    size_t at_ = 0;
};
