#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>

#include "maya/MAnimControl.h"
#include "maya/MAnimMessage.h"
#include "maya/MDGModifier.h"
#include "maya/MDoubleArray.h"
#include "maya/MFnAnimCurve.h"
#include "maya/MFnKeyframeDeltaAddRemove.h"
#include "maya/MFnKeyframeDeltaBlockAddRemove.h"
#include "maya/MFnKeyframeDeltaMove.h"
#include "maya/MFnKeyframeDeltaScale.h"
#include "maya/MObjectArray.h"
#include "maya/MTimeArray.h"
#include "minihost/Host.h"
#include "minihost/anim/AnimTypes.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/base/Ticks.h"
#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

TEST(Ticks, WholeFramesStayWholeInEveryUnit) {
    for (int from = MTime::kHours; from <= MTime::kNTSCField; ++from)
        for (int to = MTime::kHours; to <= MTime::kNTSCField; ++to)
            for (const double n : {0.0, 1.0, 7.0, 1001.0, -86399.0}) {
                const auto a = static_cast<MTime::Unit>(from), b = static_cast<MTime::Unit>(to);
                EXPECT_EQ(FromTicks(ToTicks(MTime(n, a)), a).value(), n) << from;
                EXPECT_EQ(FromTicks(ToTicks(MTime(MTime(n, a).as(b), b)), a).value(), n)
                    << from << " " << to;
            }
    EXPECT_EQ(MTime(36, MTime::kFilm).as(MTime::kSeconds), 1.5);
    EXPECT_EQ(MTime(1, MTime::kNTSCField).as(MTime::kGames), 0.25);
}

Keys AnyKeys(bool anyBits = false) {
    Keys keys;
    for (int i = *rc::gen::inRange(0, 12); i > 0; --i) {
        const auto tangent = [] {
            return *rc::gen::element(Tangent::Linear, Tangent::Flat, Tangent::Spline,
                                     Tangent::Step);
        };
        Key key{double(*rc::gen::inRange(-50, 50)), double(*rc::gen::inRange(-9, 9)) / 4, tangent(),
                tangent(), false};
        if (anyBits) key.value = std::bit_cast<double>(*rc::gen::arbitrary<std::uint64_t>());
        PutKey(keys, key);
    }
    return keys;
}

/// A cubic with given ends and slopes, by the basis functions of Hermite, and neighbours looked for
/// by walking over all keys.
double Plain(const Keys& keys, double t) {
    const Key *k0 = nullptr, *k1 = nullptr, *k2 = nullptr, *k3 = nullptr;
    for (const Key& key : keys)
        if (key.time <= t) k0 = std::exchange(k1, &key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        if (key->time > t) k3 = std::exchange(k2, &*key);
    if (!k1 || !k2) return k1 ? k1->value : k2->value;
    if (k1->out == Tangent::Step) return k1->value;
    const auto slope = [](const Key* a, const Key* b) {
        return (b->value - a->value) / (b->time - a->time);
    };
    const double line = slope(k1, k2), d = k2->time - k1->time, u = (t - k1->time) / d;
    const double m1 = k1->out == Tangent::Linear   ? line
                      : k1->out == Tangent::Spline ? slope(k0 ? k0 : k1, k2)
                                                   : 0;
    const double m2 = k2->in == Tangent::Linear   ? line
                      : k2->in == Tangent::Spline ? slope(k1, k3 ? k3 : k2)
                                                  : 0;
    return (1 + 2 * u) * (1 - u) * (1 - u) * k1->value + u * (1 - u) * (1 - u) * d * m1 +
           u * u * (3 - 2 * u) * k2->value - u * u * (1 - u) * d * m2;
}

RC_GTEST_PROP(Curve, IsThePlainFormulaBetweenKeys, ()) {
    const Keys keys = AnyKeys();
    RC_PRE(!keys.empty());
    for (double t = -55; t < 55; t += 0.37)
        RC_ASSERT(std::abs(ValueAt(keys, t) - Plain(keys, t)) < 1e-9);
    const double length = keys.back().time - keys.front().time;
    for (double t = keys.front().time + 0.25; t < keys.back().time; t += 0.25)
        for (const double turns : {-3, 1, 2})
            RC_ASSERT(ValueAt(keys, t + turns * length, Infinity::Cycle, Infinity::Cycle) ==
                      ValueAt(keys, t));
}

RC_GTEST_PROP(Curve, GivesTheBitsOfAKeyAtItsTime, ()) {
    const Keys keys = AnyKeys(true);
    Host& host = Host::Get();
    host.NewScene();
    Modifier edits(host.scene);
    const NodePtr node = edits.Create("transform", "n");
    for (const Key& key : keys) SetKey(edits, node->FindPlug("translateX"), key);
    for (const Key& key : keys) {
        host.playback.SetTime(key.time);
        const double got = NumberOf(Pull(*node->FindSlot("translateX")));
        RC_ASSERT(std::bit_cast<std::uint64_t>(got) == std::bit_cast<std::uint64_t>(key.value));
    }
    for (int i = 0; i < static_cast<int>(keys.size()); ++i) {
        const Key& key = keys[static_cast<size_t>(i)];
        RC_ASSERT(ClosestKey(keys, key.time) == i);
        RC_ASSERT(FirstKeyFrom(keys, std::nextafter(key.time, 1e9)) == i + 1);
    }
}

/// Keys as someone knows them who only hears of edits: by time.
class Mirror {
  public:
    explicit Mirror(Host& host) : host_(host) {
        id_ = host.listeners.Add({"KeyframesEdited", ""}, [this](const void* what) {
            for (const auto& delta : static_cast<const KeyframesEdited*>(what)->deltas) See(*delta);
        });
    }
    ~Mirror() { host_.listeners.Remove(id_); }

    std::map<double, double> keys;
    bool lost = false;

  private:
    void See(const KeyframeDelta& delta) {
        if (delta.kind == MFn::kKeyframeDeltaMove) {
            lost |= keys.erase(delta.before.time) == 0 || keys.contains(delta.after.time);
            keys[delta.after.time] = delta.after.value;
        } else if (delta.kind == MFn::kKeyframeDeltaAddRemove) {
            if (delta.change == KeyframeDelta::Added) lost |= keys.contains(delta.after.time);
            if (delta.change == KeyframeDelta::Removed)
                lost |= keys.erase(delta.before.time) == 0;
            else
                keys[delta.after.time] = delta.after.value;
        } else if (delta.kind == MFn::kKeyframeDeltaBlockAddRemove) {
            for (const Key& key : delta.block)
                if (delta.change == KeyframeDelta::Added)
                    keys[key.time] = key.value;
                else
                    lost |= keys.erase(key.time) == 0;
        }
    }

    Host& host_;
    Listeners::Id id_;
};

RC_GTEST_PROP(KeyEdits, WhoHearsOfThemKnowsTheKeysAndUndoGivesThemBack, ()) {
    Host& host = Host::Get();
    host.NewScene();
    Modifier make(host.scene);
    const NodePtr node = make.Create("transform", "n");
    const Plug plug = node->FindPlug("rotateX");
    const NodePtr curve = MakeCurve(make, plug);
    RC_ASSERT(curve && curve->type().name == "animCurveTA" && CurveOf(plug) == curve);
    Mirror mirror(host);
    const auto check = [&] {
        std::map<double, double> now;
        for (const Key& key : KeysOf(*curve)) now[key.time] = key.value;
        RC_ASSERT(now == mirror.keys);
        RC_ASSERT(!mirror.lost);
    };
    const auto time = [] { return double(*rc::gen::inRange(0, 12)); };
    std::vector<Keys> states;
    std::vector<std::shared_ptr<Modifier>> done;
    for (int i = *rc::gen::inRange(1, 20); i > 0; --i) {
        states.push_back(KeysOf(*curve));
        done.push_back(std::make_shared<Modifier>(host.scene));
        Modifier& edits = *done.back();
        const double first = time(), last = first + time() / 3;
        switch (*rc::gen::inRange(0, 7)) {
            case 0:
            case 1:
                SetKey(edits, plug, {first, last, Tangent::Spline, Tangent::Step, false});
                break;
            case 2:
                CutKeys(edits, curve, first, last);
                break;
            case 3:
                PasteKeys(edits, curve, AnyKeys());
                break;
            case 4:
                SetBreakdown(edits, curve, first, last, *rc::gen::arbitrary<bool>());
                break;
            default:
                MoveKeys(edits, curve, first, last, time() - 6, time());
        }
        check();
    }
    const Keys end = KeysOf(*curve);
    for (size_t i = done.size(); i-- > 0;) {
        done[i]->Undo();
        RC_ASSERT(KeysOf(*curve) == states[i]);
        check();
    }
    for (const auto& edit : done) edit->Redo();
    RC_ASSERT(KeysOf(*curve) == end);
    check();
}

TEST(Turns, PlayFramesTickTimersAndDoWhatWaits) {
    Host& host = Host::Get();
    host.NewScene();
    double now = 100;
    const auto clock = std::exchange(host.timers.clock, [&now] { return now; });
    const auto frame = [&] { return FromTicks(host.playback.time()).value(); };
    std::vector<double> heard;
    int idle = 0;
    const auto id = host.timers.Add(
        0.03, [&heard](const Timers::Tick& tick) { heard.push_back(tick.elapsed); });
    const std::function<void()> again = [&] {
        ++idle;
        if (idle < 5) host.idle.Add(again);
    };
    again();
    host.playback.SetMaxTime(ToTicks(MTime(3)));
    host.playback.mode = Playback::Mode::Once;
    host.playback.Play();
    std::vector<double> frames;
    while (host.playback.isPlaying()) {
        now += 0.01;
        host.Turn();
        frames.push_back(frame());
    }
    EXPECT_EQ(frames, (std::vector<double>{2, 3, 3}));
    EXPECT_EQ(idle, 4);
    EXPECT_EQ(heard.size(), 1u);
    now += 0.075;  // late: told once, with what passed
    host.Turn();
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_NEAR(heard[1], 0.075, 1e-9);
    EXPECT_NEAR(host.timers.Wait(), 0.03, 1e-9);
    EXPECT_TRUE(host.listeners.Remove(id));
    EXPECT_LT(host.timers.Wait(), 0);
    host.playback.mode = Playback::Mode::Continuous;
    host.playback.speed = 2;
    host.playback.Play(false);
    frames.clear();
    for (int i = 0; i < 6; ++i, now += 0.5 / 48) {
        host.Turn();
        frames.push_back(frame());
    }
    EXPECT_EQ(frames, (std::vector<double>{2, 2, 1, 1, 3, 3}));
    host.playback.Stop();
    host.timers.clock = clock;
}

/// What a module hears of edits, in words.
void Hear(MObject& curve, MObjectArray& edits, void* said) {
    auto& words = *static_cast<std::vector<std::string>*>(said);
    for (unsigned i = 0; i < edits.length(); ++i) {
        const auto number = [](double n) { return std::to_string(static_cast<int>(n)); };
        if (edits[i].apiType() == MFn::kKeyframeDeltaMove) {
            const MFnKeyframeDeltaMove move(edits[i]);
            words.push_back("move " + number(move.previousTime().value()) + " " +
                            number(move.currentTime().value()) + " " + number(move.currentValue()));
        } else if (edits[i].apiType() == MFn::kKeyframeDeltaAddRemove) {
            const MFnKeyframeDeltaAddRemove change(edits[i]);
            words.push_back(number(change.deltaType()) + " at " + number(change.time().value()) +
                            " of " + number(change.value()));
        } else if (edits[i].apiType() == MFn::kKeyframeDeltaBlockAddRemove) {
            const MFnKeyframeDeltaBlockAddRemove block(edits[i]);
            MTimeArray times;
            MDoubleArray values;
            block.getTimes(times);
            block.getValues(values);
            words.push_back(number(block.deltaType()) + " block " +
                            number(block.startTime().value()) + " " +
                            number(block.endTime().value()) + " " + number(times[1].value()) + " " +
                            number(values[1]));
        } else {
            const MFnKeyframeDeltaScale scale(edits[i]);
            MStatus status;
            EXPECT_FALSE(MFnKeyframeDeltaMove(edits[i], &status).hasObj(edits[i]) || status);
            words.push_back("scale to " + number(scale.currentEndTime().value()));
        }
        EXPECT_EQ(MFnKeyframeDeltaMove().paramCurve(), MObject());
    }
    EXPECT_TRUE(curve.hasFn(MFn::kAnimCurve));
}

TEST(CurveOfAModule, TakesKeysAndIsToldOfEdits) {
    Host& host = Host::Get();
    host.NewScene();
    Modifier edits(host.scene);
    const Plug plug = edits.Create("transform", "n")->FindPlug("translateY");
    MStatus status;
    MFnAnimCurve none(MPlug(plug), &status);
    EXPECT_FALSE(status);
    MFnAnimCurve curve;
    MDGModifier modifier;
    MObject node = curve.create(MPlug(plug), &modifier);
    EXPECT_FALSE(CurveOf(plug));
    ASSERT_TRUE(modifier.doIt());
    EXPECT_EQ(MFnAnimCurve(MPlug(plug)).object(), node);
    EXPECT_EQ(curve.animCurveType(), MFnAnimCurve::kAnimCurveTU);
    std::vector<std::string> said;
    const MCallbackId id = MAnimMessage::addAnimKeyframeEditedCallback(node, Hear, &said);
    for (const double frame : {9, 3, 6, 3})
        curve.addKey(MTime(frame), frame * 2, MFnAnimCurve::kTangentGlobal,
                     MFnAnimCurve::kTangentStep);
    EXPECT_EQ(curve.numKeys(), 3u);
    EXPECT_EQ(curve.time(1), MTime(0.25, MTime::kSeconds));
    EXPECT_EQ(curve.outTangentType(2), MFnAnimCurve::kTangentStep);
    MAnimControl::setCurrentTime(MTime(7));
    EXPECT_EQ(MPlug(plug).asDouble(), 12);
    unsigned index = 77;
    EXPECT_TRUE(curve.find(MTime(9), index) && index == 2);
    EXPECT_FALSE(curve.find(MTime(8), index));
    EXPECT_EQ(curve.findClosest(MTime(7)), 1u);
    EXPECT_TRUE(curve.setValue(1, 5));
    EXPECT_EQ(MPlug(plug).asDouble(), 5);
    EXPECT_TRUE(curve.remove(0));
    EXPECT_FALSE(curve.remove(2));
    EXPECT_EQ(said, std::vector<std::string>());
    const auto ticks = [](double frame) { return ToTicks(MTime(frame)); };
    const NodePtr own = CurveOf(plug);
    MoveKeys(edits, own, ticks(9), ticks(9), ticks(2), 1);
    PasteKeys(edits, own, {{ticks(6), 4}, {ticks(20), 40}});
    ScaleKeys(edits, own, ticks(20), ticks(20), 2, 0);
    CutKeys(edits, own, 0, ticks(6));
    EXPECT_EQ(said, (std::vector<std::string>{"move 9 11 19", "1 at 6 of 5", "0 block 6 20 20 40",
                                              "scale to 40", "1 at 6 of 4"}));
    EXPECT_TRUE(MAnimMessage::removeCallback(id));
}

}  // namespace
}  // namespace minihost
