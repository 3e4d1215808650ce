#pragma once

#include <span>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/ZeroedArray.h"

namespace VantrelSDK {

/// Points with a weight each by a number from 0 up, such as the normals of the vertices under a
/// brush. Costs follow what is in it, as with LIndexCache. Not to be changed by two threads at a
/// time.
class LPointCache {
  public:
    struct Entry {
        int key;
        float weight;
        LPoint3 point;
    };

    /// Keys below `universe` need no growth of the lookup; larger ones are welcome.
    explicit LPointCache(int universe = 0) { slots_.Reset(universe > 0 ? universe : 0); }
    LPointCache(const LPointCache&) = delete;
    LPointCache& operator=(const LPointCache&) = delete;

    /// True when the key is new. A key that is present keeps its entry, and one below 0 is refused.
    bool AddPoint(int key, float weight, const LPoint3& point);
    /// Changes the point of a key that is present; false for one that isn't.
    bool SetPoint(int key, const LPoint3& point);
    /// The zero point for a key that isn't present.
    LPoint3 GetPoint(int key) const;

    /// Scales each point to unit length; zero points stay zero.
    void Normalize();
    /// Normalizes and writes the point of each key to out[key]; keys past the end are passed over,
    /// and the rest of `out` stays as it is.
    void NormalizeAndExport(std::span<LPoint3> out);
    /// Takes all out, and keeps the memory.
    void Clear();

    /// In the order in which they were added. Valid until the next AddPoint or Clear.
    std::span<const Entry> Items() const { return entries_; }

  private:
    const Entry* Find(int key) const;
    bool Grow(int key);

    /// Per key its place in `entries_` plus 1, or 0.
    ZeroedArray<int> slots_;
    std::vector<Entry> entries_;
};

}  // namespace VantrelSDK
