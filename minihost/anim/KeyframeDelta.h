#pragma once

#include <vector>

#include "minihost/anim/Keys.h"
#include "minihost/graph/Node.h"

namespace minihost {

/// What one edit did to the keys of a curve.
class KeyframeDelta : public Object {
  public:
    enum Change { Added = 0, Removed = 1, Replaced = 2 };

    KeyframeDelta(MFn::Type type, NodePtr node) : kind(type), curve(std::move(node)) {}
    MFn::Type apiType() const override { return kind; }
    /// What taking the edit back does.
    std::shared_ptr<KeyframeDelta> Inverse() const;

    /// The key that came or went.
    const Key& Subject() const { return change == Removed ? before : after; }

    /// One of the kKeyframeDelta... kinds.
    MFn::Type kind;
    NodePtr curve;
    /// The place of the (first) key after the edit; of a removed one, before it.
    int index = 0;
    Change change = Added;
    /// The key before and after. Of an added key only the latter counts, of a removed one only the
    /// former.
    Key before, after;
    /// Place of a moved key before.
    int indexBefore = 0;
    /// All keys of a block.
    Keys block;
    /// Scaled: the times from which and to which, before and after.
    double startBefore = 0, endBefore = 0, startAfter = 0, endAfter = 0;
};

using KeyframeDeltas = std::vector<std::shared_ptr<KeyframeDelta>>;

/// Edits of one curve, as the topic {"KeyframesEdited", ""} tells them.
struct KeyframesEdited {
    NodePtr curve;
    KeyframeDeltas deltas;
};

}  // namespace minihost
