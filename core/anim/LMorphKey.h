#pragma once

namespace VantrelSDK {

class LBlindData;

/// One key of a track: from its time on the mesh shows its target.
struct LMorphKey {
    static constexpr int ticksPerSecond = 4000;
    /// What stands for the neutral in the place of a target.
    static constexpr int kNeutral = -1;

    /// The target: on a phoneme track its place in the node's list, on a track of corrective
    /// sculpts the number of a flexor target.
    int id = 0;
    /// In ticks.
    int time = -1;
    /// Kept, and read by nothing.
    float weightIn = 1, weightOut = 1;
    /// What an editor has picked; not stored.
    bool selected = false, flagged = false;

    /// The key as a record. Both return one of LBlindData's codes.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);

    bool operator==(const LMorphKey&) const = default;
};

}  // namespace VantrelSDK
