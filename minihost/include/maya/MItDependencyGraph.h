#pragma once

#include <deque>
#include <set>

#include "maya/MObject.h"
#include "maya/MPlug.h"
#include "maya/MStatus.h"

/// Walks the graph along connections from a node or plug, each node once, the root first. A plug
/// at which a walk down starts leads on by its own connections; behind it the walk goes on from
/// all plugs of a node.
class MItDependencyGraph {
  public:
    enum Direction { kDownstream, kUpstream };
    enum Traversal { kDepthFirst, kBreadthFirst };
    enum Level { kNodeLevel, kPlugLevel };

    MItDependencyGraph(const MObject& root, MFn::Type filter = MFn::kInvalid,
                       Direction direction = kDownstream, Traversal traversal = kDepthFirst,
                       Level level = kNodeLevel, MStatus* status = nullptr);
    MItDependencyGraph(const MPlug& root, MFn::Type filter = MFn::kInvalid,
                       Direction direction = kDownstream, Traversal traversal = kDepthFirst,
                       Level level = kNodeLevel, MStatus* status = nullptr);

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    MObject thisNode(MStatus* status = nullptr) const;
    MObject currentItem(MStatus* status = nullptr) const { return thisNode(status); }
    /// The plug by which the node was reached; null for the root.
    MPlug thisPlug(MStatus* status = nullptr) const;
    /// Does not go on from the current node.
    MStatus prune();

  private:
    struct Stop {
        MObject node;
        MPlug plug;
    };

    void Start(const MObject& node, const MPlug& plug);
    void Expand();
    void Seek();

    Direction direction_;
    Traversal traversal_;
    MFn::Type filter_;
    std::deque<Stop> open_;
    std::set<const minihost::Object*> seen_;
    Stop current_;
    MPlug rootPlug_;
    bool expanded_ = true;
};
