#pragma once

#include "maya/MSelectionList.h"

/// Walks a list, over the items of a kind.
class MItSelectionList {
  public:
    explicit MItSelectionList(const MSelectionList& list, MFn::Type filter = MFn::kInvalid,
                              MStatus* status = nullptr);

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    MStatus reset();
    MStatus getDependNode(MObject& node) const;
    MStatus getDagPath(MDagPath& path) const;
    MStatus getDagPath(MDagPath& path, MObject& component) const;
    bool hasComponents(MStatus* status = nullptr) const;

  private:
    void Skip();

    MSelectionList list_;
    MFn::Type filter_;
    unsigned at_ = 0;
};
