#pragma once

#include <cstdint>

#include "maya/MStatus.h"
#include "minihost/graph/Slot.h"

// How values flow: writing makes what depends on it stale, at once; reading computes what is stale,
// and nothing else.

namespace minihost {

/// Brings a slot and its parts up to date: takes stale values over connections, and asks the node's
/// logic for stale results. A cycle of connections, or a chain of more than kMaxChain nodes, fails
/// and leaves the value as it was.
MStatus Evaluate(Slot& slot);
inline constexpr int kMaxChain = 1000;

/// The value of a leaf, up to date.
const Datum& Pull(Slot& leaf);

/// Sets a leaf. Refused with kFailure where a connection feeds it whose source does not yield (an
/// animation curve does, until the time changes), with kInvalidParameter where the
/// value is of another kind.
MStatus Write(Slot& leaf, Datum value);
/// Sets the leaves of a compound in order, and tells of it once.
MStatus WriteNumbers(Slot& compound, const double* numbers, int count);
/// Sets a leaf as a result of a compute: clean, and nothing is told.
void SetResult(Slot& leaf, Datum value);

/// Tells the node, then what depends on the slot, that it was written.
void Changed(Slot& slot);
/// Makes a slot stale, with what depends on it. Stops where all is stale already.
void MarkDirty(Slot& slot);

/// A number that grows with whatever changes of the scene: values, connections, nodes and their
/// places, what is selected. Whoever shows the scene compares it.
std::uint64_t SceneRevision();
void ReviseScene();

/// While one lives, slots and nodes that are taken out of the scene are kept in memory.
class PropagationGuard {
  public:
    PropagationGuard();
    ~PropagationGuard();
    PropagationGuard(const PropagationGuard&) = delete;
    PropagationGuard& operator=(const PropagationGuard&) = delete;

    static bool active();
    /// Destroys a slot or node when nobody walks over the graph any more.
    static void Bury(std::unique_ptr<Slot> slot);
    static void Bury(std::shared_ptr<Object> object);
};

}  // namespace minihost
