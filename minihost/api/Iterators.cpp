#include <algorithm>

#include "maya/MItDag.h"
#include "maya/MItDependencyGraph.h"
#include "maya/MItDependencyNodes.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"

using minihost::DagNode;
using minihost::Host;
using minihost::Node;
using minihost::Slot;
using minihost::Tell;

MItDependencyNodes::MItDependencyNodes(MFn::Type filter, MStatus* status) {
    for (const auto& node : Host::Get().scene.Nodes())
        if (filter == MFn::kInvalid || node->Is(filter)) nodes_.push_back(MObject(node));
    Tell(status, MS::kSuccess);
}

void MItDependencyNodes::Skip() {
    while (at_ < nodes_.size() && !nodes_[at_].as<Node>()->isInScene()) ++at_;
}

bool MItDependencyNodes::isDone(MStatus* status) const {
    return Tell(status, MS::kSuccess, at_ >= nodes_.size());
}

MStatus MItDependencyNodes::next() {
    if (isDone()) return MS::kFailure;
    ++at_;
    Skip();
    return MS::kSuccess;
}

MObject MItDependencyNodes::thisNode(MStatus* status) const {
    return Tell(status, isDone() ? MS::kFailure : MS::kSuccess) ? nodes_[at_] : MObject();
}

MItDependencyGraph::MItDependencyGraph(const MObject& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level, MStatus* status)
    : direction_(direction), traversal_(traversal), filter_(filter) {
    if (Tell(status, root.as<Node>() ? MS::kSuccess : MS::kInvalidParameter)) Start(root, MPlug());
}

MItDependencyGraph::MItDependencyGraph(const MPlug& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level, MStatus* status)
    : direction_(direction), traversal_(traversal), filter_(filter) {
    if (Tell(status, root.isNull() ? MS::kInvalidParameter : MS::kSuccess))
        Start(root.node(), root);
}

void MItDependencyGraph::Start(const MObject& node, const MPlug& plug) {
    rootPlug_ = plug;
    seen_.insert(node.object().get());
    current_ = {node, MPlug()};
    expanded_ = false;
    if (!node.hasFn(filter_)) Seek();
}

void MItDependencyGraph::Expand() {
    expanded_ = true;
    std::vector<Stop> found;
    const auto meet = [&](const Slot& slot) {
        const MObject node(slot.node->Share());
        if (seen_.insert(node.object().get()).second)
            found.push_back({node, MPlug(minihost::Plug(slot))});
    };
    const auto walk = [&](auto&& self, const Slot& slot) -> void {
        if (direction_ == kUpstream && slot.source) meet(*slot.source);
        if (direction_ == kDownstream)
            for (const Slot* target : slot.destinations) meet(*target);
        for (const auto& part : slot.parts) self(self, *part);
    };
    if (!rootPlug_.isNull()) {
        if (const Slot* slot = rootPlug_.plug().Find()) walk(walk, *slot);
        rootPlug_ = MPlug();
    } else {
        for (const Slot& root : current_.node.as<Node>()->roots()) walk(walk, root);
    }
    const auto at = traversal_ == kDepthFirst ? open_.begin() : open_.end();
    open_.insert(at, found.begin(), found.end());
}

void MItDependencyGraph::Seek() {
    do {
        if (!expanded_) Expand();
        if (open_.empty()) {
            current_ = {};
            expanded_ = true;
            return;
        }
        current_ = open_.front();
        open_.pop_front();
        expanded_ = false;
    } while (!current_.node.hasFn(filter_));
}

bool MItDependencyGraph::isDone(MStatus* status) const {
    return Tell(status, MS::kSuccess, current_.node.isNull());
}

MStatus MItDependencyGraph::next() {
    if (isDone()) return MS::kFailure;
    Seek();
    return MS::kSuccess;
}

MObject MItDependencyGraph::thisNode(MStatus* status) const {
    return Tell(status, isDone() ? MS::kFailure : MS::kSuccess, current_.node);
}

MPlug MItDependencyGraph::thisPlug(MStatus* status) const {
    return Tell(status, isDone() ? MS::kFailure : MS::kSuccess, current_.plug);
}

MStatus MItDependencyGraph::prune() {
    if (isDone()) return MS::kFailure;
    expanded_ = true;
    return MS::kSuccess;
}

MItDag::MItDag(TraversalType traversal, MFn::Type filter, MStatus* status) {
    Tell(status, reset(MObject(Host::Get().scene.world().ShareDag()), traversal, filter));
}

MStatus MItDag::reset(const MObject& root, TraversalType traversal, MFn::Type filter) {
    if (!root.as<DagNode>()) return MS::kInvalidParameter;
    traversal_ = traversal;
    filter_ = filter;
    pruned_ = false;
    open_ = {root};
    if (!root.hasFn(filter)) next();
    return MS::kSuccess;
}

bool MItDag::isDone(MStatus* status) const {
    return Tell(status, MS::kSuccess, open_.empty());
}

void MItDag::Advance() {
    const MObject at = open_.front();
    open_.pop_front();
    if (std::exchange(pruned_, false)) return;
    const auto& children = at.as<DagNode>()->children();
    const auto place = traversal_ == kBreadthFirst ? open_.end() : open_.begin();
    std::vector<MObject> below;
    for (const auto& child : children) below.push_back(MObject(child));
    open_.insert(place, below.begin(), below.end());
}

MStatus MItDag::next() {
    if (open_.empty()) return MS::kFailure;
    do Advance();
    while (!open_.empty() && !open_.front().hasFn(filter_));
    return MS::kSuccess;
}

MStatus MItDag::prune() {
    if (open_.empty()) return MS::kFailure;
    pruned_ = true;
    return MS::kSuccess;
}

MObject MItDag::currentItem(MStatus* status) const {
    return Tell(status, open_.empty() ? MS::kFailure : MS::kSuccess) ? open_.front() : MObject();
}

MStatus MItDag::getPath(MDagPath& path) const {
    return open_.empty() ? MS::kFailure : MDagPath::getAPathTo(open_.front(), path);
}
