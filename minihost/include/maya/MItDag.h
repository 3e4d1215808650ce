#pragma once

#include <deque>

#include "maya/MDagPath.h"

/// Walks the hierarchy from its root, or from a node, over the nodes of a kind.
class MItDag {
  public:
    enum TraversalType { kInvalidType, kDepthFirst, kBreadthFirst };

    explicit MItDag(TraversalType traversal = kDepthFirst, MFn::Type filter = MFn::kInvalid,
                    MStatus* status = nullptr);

    MStatus reset(const MObject& root, TraversalType traversal = kDepthFirst,
                  MFn::Type filter = MFn::kInvalid);
    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    MStatus prune();
    MObject currentItem(MStatus* status = nullptr) const;
    MObject item(MStatus* status = nullptr) const { return currentItem(status); }
    MStatus getPath(MDagPath& path) const;

  private:
    void Advance();

    TraversalType traversal_;
    MFn::Type filter_;
    std::deque<MObject> open_;
    bool pruned_ = false;
};
