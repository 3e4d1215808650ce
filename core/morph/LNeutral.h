#pragma once

#include <memory>

#include "core/mesh/LMesh.h"

namespace VantrelSDK {

class LBlindData;

/// A shape that stands in for its input: as it is, or as what it differs by from an input that has
/// been tweaked since.
class LNeutral {
  public:
    virtual ~LNeutral() = default;

    /// All of them let the input through while this is off.
    static bool enabled;

    /// The shape, and its difference from the last input that came without tweaks; null: none.
    std::unique_ptr<LMesh> mesh, delta;
    bool inputchanged = false;

    /// What the input becomes. A shape of another number of vertices lets it through.
    LMesh Evaluate(const LMesh& input, bool hasTweaks);

    /// The shape as a record. Both return one of LBlindData's codes; a failed reading leaves the
    /// shape as it was.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);
};

}  // namespace VantrelSDK
