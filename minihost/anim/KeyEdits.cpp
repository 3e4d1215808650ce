#include "minihost/anim/KeyEdits.h"

#include <algorithm>
#include <cmath>

#include "minihost/anim/AnimTypes.h"
#include "minihost/anim/Playback.h"

namespace minihost {
namespace {

using Deltas = KeyframeDeltas;
using Delta = KeyframeDelta;

std::shared_ptr<Delta> Make(MFn::Type kind, const NodePtr& curve, int index) {
    auto delta = std::make_shared<Delta>(kind, curve);
    delta->index = delta->indexBefore = index;
    return delta;
}

std::shared_ptr<Delta> MakeAddRemove(const NodePtr& curve, int index, Delta::Change change,
                                     const Key& before, const Key& after) {
    auto delta = Make(MFn::kKeyframeDeltaAddRemove, curve, index);
    delta->change = change;
    delta->before = before;
    delta->after = after;
    return delta;
}

void Tell(const NodePtr& curve, const Deltas& deltas) {
    const KeyframesEdited edited{curve, deltas};
    curve->scene().listeners().Tell({"KeyframesEdited", ""}, &edited);
}

/// Gives a curve its keys and tells what that did.
void Apply(Modifier& modifier, const NodePtr& curve, const Keys& after, const Deltas& deltas) {
    if (deltas.empty()) return;
    const Keys before = KeysOf(*curve);
    const auto put = [curve](const Keys& keys, const Deltas& told) {
        EditKeys(*curve, [&keys](Keys& mine) { mine = keys; });
        Tell(curve, told);
    };
    Deltas back;
    for (auto delta = deltas.rbegin(); delta != deltas.rend(); ++delta)
        back.push_back((*delta)->Inverse());
    put(after, deltas);
    modifier.Did([put, before, back] { put(before, back); },
                 [put, after, deltas] { put(after, deltas); });
}

Key Whole(Key key) {
    key.time = std::nearbyint(key.time);
    return key;
}

/// The places of the keys from `first` to `last`, and one past them.
std::pair<size_t, size_t> Range(const Keys& keys, double first, double last) {
    const auto begin = static_cast<size_t>(FirstKeyFrom(keys, first));
    size_t end = begin;
    while (end < keys.size() && keys[end].time <= last) ++end;
    return {begin, end};
}

/// Puts a key among others and notes which one it replaces.
void PutAndNote(Keys& keys, const Key& key, const NodePtr& curve, Deltas& deltas) {
    if (const int there = KeyAt(keys, key.time); there >= 0) {
        const Key& old = keys[static_cast<size_t>(there)];
        deltas.push_back(MakeAddRemove(curve, there, Delta::Removed, old, old));
    }
    PutKey(keys, key);
}

}  // namespace

std::shared_ptr<KeyframeDelta> KeyframeDelta::Inverse() const {
    auto inverse = std::make_shared<KeyframeDelta>(*this);
    std::swap(inverse->before, inverse->after);
    std::swap(inverse->index, inverse->indexBefore);
    std::swap(inverse->startBefore, inverse->startAfter);
    std::swap(inverse->endBefore, inverse->endAfter);
    if (change != Replaced) inverse->change = change == Added ? Removed : Added;
    return inverse;
}

std::string CurveTypeFor(const Attribute& attribute) {
    switch (attribute.kind) {
        case AttributeKind::Time:
            return "animCurveTT";
        case AttributeKind::Angle:
            return "animCurveTA";
        case AttributeKind::Distance:
            return "animCurveTL";
        default:
            return "animCurveTU";
    }
}

NodePtr CurveOf(const Plug& plug) {
    const Slot* slot = plug.Find();
    const Slot* source = slot ? slot->Source() : nullptr;
    return source && IsCurve(*source->node) ? source->node->Share() : nullptr;
}

NodePtr MakeCurve(Modifier& modifier, const Plug& plug) {
    Scene& scene = plug.node->scene();
    std::string name = plug.node->name() + "_" + plug.Name(false);
    std::erase_if(name, [](char c) { return c == '[' || c == ']'; });
    const NodePtr curve = modifier.Create(CurveTypeFor(*plug.attribute), name);
    if (!modifier.Connect(curve->FindPlug("output"), plug)) {
        modifier.Delete(curve);
        return nullptr;
    }
    if (const NodePtr time = TimeNode(scene))
        modifier.Connect(time->FindPlug("outTime"), curve->FindPlug("input"));
    return curve;
}

bool SetKey(Modifier& modifier, const Plug& plug, const Key& wanted) {
    if (!std::isfinite(wanted.time)) return false;
    NodePtr curve = CurveOf(plug);
    if (!curve) curve = MakeCurve(modifier, plug);
    if (!curve) return false;
    const Key key = Whole(wanted);
    Keys keys = KeysOf(*curve);
    const int there = KeyAt(keys, key.time);
    const Key before = there >= 0 ? keys[static_cast<size_t>(there)] : key;
    const int at = PutKey(keys, key);
    Apply(modifier, curve, keys,
          {MakeAddRemove(curve, at, there >= 0 ? Delta::Replaced : Delta::Added, before, key)});
    return true;
}

void PasteKeys(Modifier& modifier, const NodePtr& curve, const Keys& wanted) {
    Keys keys = KeysOf(*curve), block;
    for (const Key& key : wanted)
        if (std::isfinite(key.time)) PutKey(block, Whole(key));
    if (block.empty()) return;
    Deltas deltas;
    for (const Key& key : block) PutAndNote(keys, key, curve, deltas);
    deltas.push_back(
        Make(MFn::kKeyframeDeltaBlockAddRemove, curve, KeyAt(keys, block.front().time)));
    deltas.back()->block = block;
    Apply(modifier, curve, keys, deltas);
}

int CutKeys(Modifier& modifier, const NodePtr& curve, double first, double last) {
    Keys keys = KeysOf(*curve);
    const auto [begin, end] = Range(keys, first, last);
    Deltas deltas;
    // A key at a time: a block's bounds would leave open whether keys on them are meant.
    for (size_t i = end; i-- > begin;)
        deltas.push_back(
            MakeAddRemove(curve, static_cast<int>(i), Delta::Removed, keys[i], keys[i]));
    const auto from = keys.begin() + static_cast<std::ptrdiff_t>(begin);
    keys.erase(from, from + static_cast<std::ptrdiff_t>(end - begin));
    Apply(modifier, curve, keys, deltas);
    return static_cast<int>(end - begin);
}

namespace {

/// Gives the keys of a range new times and values; those that come to stand on others replace them.
int Place(Modifier& modifier, const NodePtr& curve, std::pair<size_t, size_t> range,
          const std::function<Key(Key)>& place, bool asScale) {
    const Keys before = KeysOf(*curve);
    const auto from = [&before](size_t i) {
        return before.begin() + static_cast<std::ptrdiff_t>(i);
    };
    Keys keys(before.begin(), from(range.first));
    keys.insert(keys.end(), from(range.second), before.end());
    Deltas deltas;
    Keys placed;
    for (size_t i = range.first; i < range.second; ++i) {
        placed.push_back(Whole(place(before[i])));
        PutAndNote(keys, placed.back(), curve, deltas);
    }
    // Each moves to a time that those told before it have left.
    const bool later = !placed.empty() && placed[0].time > before[range.first].time;
    for (size_t n = 0; n < placed.size() && !asScale; ++n) {
        const size_t i = later ? placed.size() - 1 - n : n;
        deltas.push_back(Make(MFn::kKeyframeDeltaMove, curve, KeyAt(keys, placed[i].time)));
        deltas.back()->indexBefore = static_cast<int>(range.first + i);
        deltas.back()->before = before[range.first + i];
        deltas.back()->after = placed[i];
    }
    if (asScale && !placed.empty()) {
        deltas.push_back(Make(MFn::kKeyframeDeltaScale, curve, KeyAt(keys, placed.front().time)));
        deltas.back()->startBefore = before[range.first].time;
        deltas.back()->endBefore = before[range.second - 1].time;
        deltas.back()->startAfter = placed.front().time;
        deltas.back()->endAfter = placed.back().time;
    }
    Apply(modifier, curve, keys, deltas);
    return static_cast<int>(placed.size());
}

}  // namespace

int MoveKeys(Modifier& modifier, const NodePtr& curve, double first, double last, double byTime,
             double byValue) {
    if (!std::isfinite(byTime)) return 0;
    const auto move = [&](Key key) {
        key.time += byTime;
        if (byValue != 0) key.value += byValue;  // a value that stays keeps its bits
        return key;
    };
    return Place(modifier, curve, Range(KeysOf(*curve), first, last), move, false);
}

int ScaleKeys(Modifier& modifier, const NodePtr& curve, double first, double last, double factor,
              double pivot) {
    if (!(factor > 0) || !std::isfinite(factor)) return 0;
    const auto scale = [&](Key key) {
        key.time = pivot + (key.time - pivot) * factor;
        return key;
    };
    return Place(modifier, curve, Range(KeysOf(*curve), first, last), scale, true);
}

int SetBreakdown(Modifier& modifier, const NodePtr& curve, double first, double last, bool on) {
    Keys keys = KeysOf(*curve);
    const auto [begin, end] = Range(keys, first, last);
    Deltas deltas;
    for (size_t i = begin; i < end; ++i) {
        if (keys[i].breakdown == on) continue;
        deltas.push_back(Make(MFn::kKeyframeDeltaBreakdown, curve, static_cast<int>(i)));
        deltas.back()->before = keys[i];
        keys[i].breakdown = on;
        deltas.back()->after = keys[i];
    }
    Apply(modifier, curve, keys, deltas);
    return static_cast<int>(deltas.size());
}

}  // namespace minihost
