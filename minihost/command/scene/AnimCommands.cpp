#include <limits>

#include "minihost/Host.h"
#include "minihost/anim/AnimTypes.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/base/Ticks.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

double Ticks(const Value& frames) {
    return ToTicks(MTime(frames.AsFloat()));
}
Value Frames(double ticks) {
    return Value(FromTicks(ticks).value());
}

void AddTime(Host& host) {
    Syntax time;
    time.EnableQuery(true);
    time.EnableEdit(true);
    time.SetObjects(0, 1);
    AddQuestion(host, "currentTime", std::move(time), [&host](const ParsedFlags& flags) -> Answer {
        if (flags.IsQuery()) return Frames(host.playback.time());
        if (flags.Objects().empty()) return CommandError{"say which time"};
        const double before = host.playback.time(), after = Ticks(flags.Objects()[0]);
        host.playback.SetTime(after);
        const auto done = std::make_shared<Modifier>(host.scene);
        done->Did([&host, before] { host.playback.SetTime(before); },
                  [&host, after] { host.playback.SetTime(after); });
        host.undo.Add(done);
        return Frames(host.playback.time());
    });
    Syntax options;
    options.AddFlag("min", "minTime", {Argument::Float});
    options.AddFlag("max", "maxTime", {Argument::Float});
    options.AddFlag("ps", "playbackSpeed", {Argument::Float});
    options.EnableQuery(true);
    options.EnableEdit(true);
    AddQuestion(host, "playbackOptions", std::move(options),
                [&host](const ParsedFlags& flags) -> Answer {
                    Playback& playback = host.playback;
                    if (flags.IsQuery()) {
                        if (flags.IsSet("minTime")) return Frames(playback.minTime());
                        if (flags.IsSet("maxTime")) return Frames(playback.maxTime());
                        return Value(playback.speed);
                    }
                    if (flags.IsSet("minTime")) playback.SetMinTime(Ticks(flags.Get("minTime")));
                    if (flags.IsSet("maxTime")) playback.SetMaxTime(Ticks(flags.Get("maxTime")));
                    if (flags.IsSet("playbackSpeed"))
                        playback.speed = flags.Get("playbackSpeed").AsFloat();
                    return {};
                });
    Syntax play;
    play.AddFlag("f", "forward", {Argument::Boolean});
    play.AddFlag("st", "state", {Argument::Boolean});
    play.EnableQuery(true);
    AddQuestion(host, "play", std::move(play), [&host](const ParsedFlags& flags) -> Answer {
        if (flags.IsQuery()) return Value(host.playback.isPlaying());
        if (flags.IsSet("state") && !flags.Get("state").AsBool())
            host.playback.Stop();
        else
            host.playback.Play(!flags.IsSet("forward") || flags.Get("forward").AsBool());
        return {};
    });
    Syntax autoKey;
    autoKey.AddFlag("st", "state", {Argument::Boolean});
    autoKey.EnableQuery(true);
    AddQuestion(host, "autoKeyframe", std::move(autoKey),
                [&host](const ParsedFlags& flags) -> Answer {
                    if (flags.IsQuery()) return Value(host.playback.autoKey);
                    host.playback.autoKey = !flags.IsSet("state") || flags.Get("state").AsBool();
                    return {};
                });
}

/// The keyable leaves of what the objects name, or of the attributes that -attribute names.
bool PlugsToKey(Host& host, const ParsedFlags& flags, std::vector<Plug>& plugs,
                CommandError& error) {
    std::vector<Named> objects;
    if (!FindObjects(host, flags, objects, error)) return false;
    const auto leaves = [&plugs](auto&& self, const Plug& plug) -> void {
        if (plug.attribute->IsNumber()) plugs.push_back(plug);
        for (size_t i = 0; i < plug.attribute->children.size(); ++i)
            self(self, plug.Child(static_cast<int>(i)));
    };
    for (const Named& object : objects) {
        if (!object.plug.IsNull()) {
            leaves(leaves, object.plug);
            continue;
        }
        for (size_t i = 0; i < flags.Uses("attribute"); ++i) {
            const std::string name = flags.Get("attribute", 0, i).AsString();
            const Plug plug = PlugOfNode(object.node, name);
            if (plug.IsNull()) {
                error.message = "'" + object.node->name() + "' has no attribute '" + name + "'";
                return false;
            }
            leaves(leaves, plug);
        }
        if (!flags.IsSet("attribute"))
            for (const auto& attribute : object.node->type().attributes())
                if (attribute->isKeyable && !attribute->isArray)
                    leaves(leaves, Plug(object.node, attribute.get()));
    }
    return true;
}

Answer SetKeyframe(Host& host, Modifier& edits, const ParsedFlags& flags) {
    constexpr std::pair<const char*, Tangent> kTangents[] = {{"linear", Tangent::Linear},
                                                             {"spline", Tangent::Spline},
                                                             {"step", Tangent::Step},
                                                             {"flat", Tangent::Flat}};
    std::vector<Plug> plugs;
    CommandError error;
    if (!PlugsToKey(host, flags, plugs, error)) return error;
    Key key;
    key.time = flags.IsSet("time") ? Ticks(flags.Get("time")) : host.playback.time();
    for (const auto& [name, tangent] : kTangents) {
        if (flags.Get("inTangentType").AsString() == name) key.in = tangent;
        if (flags.Get("outTangentType").AsString() == name) key.out = tangent;
    }
    int keyed = 0;
    for (const Plug& plug : plugs) {
        const Slot* slot = plug.FindToRead();
        if (slot && slot->IsFed() && !CurveOf(plug)) continue;
        key.value = flags.IsSet("value")
                        ? FromScript(*plug.attribute, flags.Get("value").AsFloat())
                        : NumberOf(slot ? Pull(*plug.Find()) : plug.attribute->defaultValue);
        if (!SetKey(edits, plug, key)) return CommandError{edits.error()};
        ++keyed;
    }
    return Value(keyed);
}

/// From and to, in ticks, of -time; everything where it is not given.
std::pair<double, double> Range(const ParsedFlags& flags) {
    constexpr double kAll = std::numeric_limits<double>::max();
    if (!flags.IsSet("time")) return {-kAll, kAll};
    const std::string text = flags.Get("time").AsString();
    const size_t colon = text.find(':');
    const double first = Ticks(ParseNumber(text.substr(0, colon)));
    return {first, colon == text.npos ? first : Ticks(ParseNumber(text.substr(colon + 1)))};
}

Answer Keyframe(Host& host, Modifier& edits, const ParsedFlags& flags) {
    std::vector<Plug> plugs;
    CommandError error;
    if (!PlugsToKey(host, flags, plugs, error)) return error;
    const auto [first, last] = Range(flags);
    std::vector<double> times, values;
    int changed = 0;
    for (const Plug& plug : plugs) {
        const NodePtr curve = CurveOf(plug);
        if (!curve) continue;
        for (const Key& key : KeysOf(*curve)) {
            if (key.time < first || key.time > last) continue;
            times.push_back(FromTicks(key.time).value());
            values.push_back(ToScript(*plug.attribute, key.value));
        }
        if (flags.IsQuery()) continue;
        const double byTime = flags.IsSet("timeChange") ? Ticks(flags.Get("timeChange")) : 0;
        const double byValue = FromScript(*plug.attribute, flags.Get("valueChange").AsFloat());
        changed += MoveKeys(edits, curve, first, last, byTime, byValue);
    }
    if (!flags.IsQuery()) return Value(changed);
    if (flags.IsSet("keyframeCount")) return Value(static_cast<int>(times.size()));
    return Value(flags.IsSet("valueChange") ? values : times);
}

Syntax KeySyntax() {
    Syntax syntax;
    syntax.AddFlag("at", "attribute", {Argument::String});
    syntax.Find("attribute")->multiUse = true;
    syntax.SetObjects(0, -1);
    return syntax;
}

void AddKeys(Host& host) {
    Syntax set = KeySyntax();
    set.AddFlag("t", "time", {Argument::Float});
    set.AddFlag("v", "value", {Argument::Float});
    set.AddFlag("itt", "inTangentType", {Argument::String});
    set.AddFlag("ott", "outTangentType", {Argument::String});
    AddEdit(host, "setKeyframe", std::move(set),
            [&host](Modifier& edits, const ParsedFlags& flags) {
                return SetKeyframe(host, edits, flags);
            });
    Syntax cut = KeySyntax();
    cut.AddFlag("t", "time", {Argument::String});
    AddEdit(host, "cutKey", std::move(cut),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<Plug> plugs;
                CommandError error;
                if (!PlugsToKey(host, flags, plugs, error)) return error;
                const auto [first, last] = Range(flags);
                int cuts = 0;
                for (const Plug& plug : plugs)
                    if (const NodePtr curve = CurveOf(plug))
                        cuts += CutKeys(edits, curve, first, last);
                return Value(cuts);
            });
    Syntax keyframe = KeySyntax();
    keyframe.AddFlag("t", "time", {Argument::String});
    keyframe.AddFlag("tc", "timeChange", {Argument::Float});
    keyframe.AddFlag("vc", "valueChange", {Argument::Float});
    keyframe.AddFlag("kc", "keyframeCount");
    keyframe.Find("time")->queryTakesArguments = true;
    keyframe.EnableQuery(true);
    keyframe.EnableEdit(true);
    AddEdit(host, "keyframe", std::move(keyframe),
            [&host](Modifier& edits, const ParsedFlags& flags) {
                return Keyframe(host, edits, flags);
            });
}

}  // namespace

void AddAnimCommands(Host& host) {
    AddTime(host);
    AddKeys(host);
}

}  // namespace minihost
