#pragma once

#include <span>
#include <vector>

#include "minihost/graph/Data.h"

namespace minihost {

/// How a curve leaves or reaches a key. The numbers are those of MFnAnimCurve::TangentType.
enum class Tangent { Linear = 2, Flat = 3, Spline = 4, Step = 5 };

/// What a curve does before its first key and after its last.
enum class Infinity { Constant = 0, Cycle = 3 };

/// One key: from its time on a curve comes from its value.
struct Key {
    /// Ticks.
    double time = 0;
    /// Any 64 bits; at its time the curve gives them back as they are.
    double value = 0;
    Tangent in = Tangent::Spline, out = Tangent::Spline;
    /// A key that keeps its place between its neighbours for who edits; it means nothing here.
    bool breakdown = false;
    bool operator==(const Key& other) const;
};

/// The keys of a curve, times rising, no two at one time.
using Keys = std::vector<Key>;
using KeysData = PlainData<Keys, MFn::kData, MFnData::kKeys>;

/// The value at a time: a key's own at its time, between keys a cubic Hermite curve whose ends have
/// the slopes of the keys' tangents: Spline that of the line between the neighbours (at the ends of
/// the curve, to the one neighbour), Linear that to the next key, Flat none. Step keeps the value
/// until the next key. 0 without keys.
double ValueAt(std::span<const Key> keys, double time, Infinity before = Infinity::Constant,
               Infinity after = Infinity::Constant);

/// The place of the first key at or after a time; the number of keys where there is none.
int FirstKeyFrom(std::span<const Key> keys, double time);
/// The place of the key at a time, -1 for none.
int KeyAt(std::span<const Key> keys, double time);
/// The place of the key that is closest to a time, the earlier one of two; -1 without keys.
int ClosestKey(std::span<const Key> keys, double time);
/// Puts a key in its place, and in place of one that is there at its time. Where it came to.
int PutKey(Keys& keys, const Key& key);

}  // namespace minihost
