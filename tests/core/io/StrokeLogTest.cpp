#include "core/io/StrokeLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/core/math/Generators.h"

using namespace VantrelSDK;
using Result = StrokeLogReader::Result;

namespace {

const std::string Header = std::string(StrokeLogHeader) + "\n";
const std::string Press =
    R"({"op":"press","mode":3,"pos":[1,2,3],"dir":[0,0,-1],"orth":[0,1,0],"normal":[0,0,1],)"
    R"("screen":[320,240.5],"radius":0.25,"pressure":0.5}
)";
const std::string Move = R"({"op":"move","pos":[1,2,3],"screen":[0,0],"normal":[0,0,1]}
)";
const std::string Release = R"({"op":"release"}
)";

struct Log {
    std::vector<StrokeOp> ops;
    std::vector<size_t> lines;
    /// Empty when the log was read to its end.
    std::string error;
};

Log ReadAll(StrokeLogReader& reader) {
    Log log;
    StrokeOp op;
    FileError error;
    Result result;
    while ((result = reader.Next(op, error)) == Result::Operation) {
        log.ops.push_back(op);
        log.lines.push_back(reader.Line());
    }
    if (result == Result::Failed) log.error = error.Text();
    EXPECT_EQ(reader.Next(op, error), result) << "the end stays the end";
    return log;
}

Log ReadText(std::string_view text) {
    StrokeLogReader reader(text);
    return ReadAll(reader);
}

TEST(StrokeLog, ReadsEveryOperation) {
    const Log log = ReadText(Header + R"({"op":"set","name":"symmetry","value":1})" + "\r\n" +
                             R"({"index":3,"value":0.5,"name":"toolSize","op":"set"}
 {"op" : "set", "name":"screenOffset", "value":[1, -2.5e-1]} 
{"op":"falloff","curve":2,"points":[[0,1],[0.5,0.25],[0.5,0],[1,0]]}
{"op":"subdivide","kind":"loop"}
{"op":"level","value":1.0}
{"op":"delete_level"}
{"op":"modifiers","shift":true,"ctrl":false}
)" + Press + Move + Release + R"({"op":"undo"}
{"op":"select","faces":[]}
{"op":"hide","faces":[7,2147483647]}
{"op":"show"}
{"op":"store","target":"smile \u00e9"}
{"op":"load","target":"AH"}
{"op":"apply","weight":-0.5,"target":"AH"}
{"op":"neutral"}
{"op":"clear_neutral"}
{"op":"paint","edit":"color_to_stencil"}
{"op":"mask","width":3,"height":2,"to_clip":[1,0,0,0,0,1,0,0,0,0,0.1,0,-0.0,0,0,1],"runs":[0,2]}
{"op":"unmask"}
{"op":"finish"})");
    const std::vector<StrokeOp> expected = {
        SetOp{"symmetry", 1.0, {}},
        SetOp{"toolSize", 0.5, 3},
        SetOp{"screenOffset", std::vector<double>{1, -0.25}, {}},
        FalloffOp{2, {{0, 1}, {0.5f, 0.25f}, {0.5f, 0}, {1, 0}}},
        SubdivideOp{SubdivideKind::Loop},
        LevelOp{1},
        DeleteLevelOp{},
        ModifiersOp{true, false},
        PressOp{3, {1, 2, 3}, {0, 0, -1}, {0, 1, 0}, {0, 0, 1}, {320, 240.5f}, 0.25f, 0.5f},
        MoveOp{{1, 2, 3}, {0, 0}, {0, 0, 1}, 1},
        ReleaseOp{},
        UndoOp{},
        SelectOp{std::vector<int>{}},
        HideOp{std::vector<int>{7, 2147483647}},
        ShowOp{},
        StoreOp{"smile \u00e9"},
        LoadOp{"AH"},
        ApplyOp{"AH", -0.5f},
        NeutralOp{},
        ClearNeutralOp{},
        PaintOp{PaintEdit::ColorToStencil},
        MaskOp{{3, 2, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.1, 0, -0.0, 0, 0, 1}, {0, 2}}},
        UnmaskOp{},
        FinishOp{},
    };
    EXPECT_EQ(log.error, "");
    EXPECT_TRUE(log.ops == expected);
    for (size_t i = 0; i < log.lines.size(); ++i) EXPECT_EQ(log.lines[i], i + 2);
    const std::string zero = Header + Press + WriteOp(MoveOp{{-0.0f, 0, 0}, {}, {}, 1});
    EXPECT_TRUE(std::signbit(std::get<MoveOp>(ReadText(zero).ops.at(1)).pos.x));
}

TEST(StrokeLog, TheEndInsideAStrokeReleasesIt) {
    const Log log = ReadText(Header + Press + Move);
    EXPECT_EQ(log.error, "");
    ASSERT_EQ(log.ops.size(), 3u);
    EXPECT_TRUE(log.ops[2] == StrokeOp(ReleaseOp()));
    EXPECT_EQ(log.lines[2], 3u);
}

TEST(StrokeLog, AHeaderAloneIsALog) {
    for (const std::string& text : {Header, std::string(StrokeLogHeader), "\xef\xbb\xbf" + Header,
                                    std::string(R"({"version": 1, "kelmo": "strokes"})")}) {
        EXPECT_EQ(ReadText(text).error, "");
        EXPECT_TRUE(ReadText(text).ops.empty());
    }
}

TEST(StrokeLog, RefusesAWrongFirstLine) {
    for (const char* line :
         {"", "\n", "{}", "[]", R"({"kelmo":"strokes"})", R"({"kelmo":"strokes","version":2})",
          R"({"kelmo":"strokes","version":"1"})", R"({"kelmo":"scene","version":1})",
          R"({"kelmo":"strokes","version":1,"by":"me"})", R"({"op":"undo"})", "OFF"}) {
        EXPECT_EQ(ReadText(line).error,
                  R"(line 1: the first line must be {"kelmo":"strokes","version":1})")
            << line;
    }
}

/// A line with the press of above in which one field has another value; "" leaves it out.
std::string PressWith(const std::string& field, const std::string& value) {
    nlohmann::ordered_json press = nlohmann::ordered_json::parse(Press);
    press.erase(field);
    std::string line = press.dump();
    if (!value.empty()) line.insert(line.size() - 1, ",\"" + field + "\":" + value);
    return line;
}

TEST(StrokeLog, NamesTheLineAndWhatWasExpected) {
    const std::pair<std::string, const char*> cases[] = {
        // lines that are no object, or no operation
        {"", "an empty line"},
        {"  ", "broken JSON at column 3"},
        {"{", "broken JSON at column 2"},
        {"{\"op\":\"undo\"} {}", "broken JSON at column 15"},
        {"{\"op\":\"undo\",}", "broken JSON at column 14"},
        {"{\"op\":\"un\xff\"}", "broken JSON at column 10"},
        {"\xef\xbb\xbf{\"op\":\"undo\"}", "broken JSON: a byte that no line may hold"},
        {std::string("{\"op\":\"undo\"}\0x", 15), "broken JSON: a byte that no line may hold"},
        {"3", "a line must be a JSON object"},
        {"{}", "a line needs \"op\""},
        {R"({"op":"draw"})", "there is no operation \"draw\""},
        {R"({"op":"undo","op":"undo"})", "\"op\" stands there twice"},
        {R"({"op":"undo","times":2})", "\"undo\" has no field \"times\""},
        {R"({"op":"select","faces":{}})", "\"faces\" must be true, false"},
        {R"({"op":"select","faces":[1,[2,3]]})", "\"faces\" must be true, false"},
        {R"({"op":"falloff","curve":1,"points":[[0,1,2]]})", "\"points\" must be true, false"},
        {R"({"op":"falloff","curve":1,"points":[[[0,1]]]})", "\"points\" must be true, false"},
        // fields
        {PressWith("mode", ""), "\"press\" needs \"mode\": a whole number from 0 to 19"},
        {PressWith("mode", "20"), "\"mode\" of \"press\" must be a whole number from 0 to 19"},
        {PressWith("mode", "1.5"), "\"mode\" of \"press\" must be a whole number from 0 to 19"},
        {PressWith("mode", "true"), "\"mode\" of \"press\" must be a whole number from 0 to 19"},
        {PressWith("pos", "[1,2]"), "\"pos\" of \"press\" must be 3 numbers"},
        {PressWith("pos", "[1,2,1e39]"), "\"pos\" of \"press\" must be 3 numbers"},
        {PressWith("pos", "[1,2,1e400]"), "a number out of range at column"},
        {PressWith("pos", "[1,2,NaN]"), "broken JSON at column"},
        {PressWith("radius", "0"), "\"radius\" of \"press\" must be a number above 0"},
        {PressWith("radius", "1e-60"), "\"radius\" of \"press\" must be a number above 0"},
        {PressWith("radius", "1e39"), "\"radius\" of \"press\" must be a number above 0"},
        {PressWith("pressure", "1.01"), "\"pressure\" of \"press\" must be a number from 0 to 1"},
        {R"({"op":"level","value":-1})", "\"value\" of \"level\" must be a whole number from 0"},
        {R"({"op":"level","value":2147483648})", "\"value\" of \"level\" must be a whole number"},
        {R"({"op":"subdivide","kind":"tri"})",
         "\"kind\" of \"subdivide\" must be \"quad\" or \"loop\""},
        {R"({"op":"modifiers","shift":true})", "\"modifiers\" needs \"ctrl\": true or false"},
        {R"({"op":"modifiers","shift":1,"ctrl":0})",
         "\"shift\" of \"modifiers\" must be true or false"},
        {R"({"op":"hide","faces":[-1]})", "\"faces\" of \"hide\" must be polygon numbers"},
        {R"({"op":"falloff","curve":3,"points":[[0,1]]})",
         "\"curve\" of \"falloff\" must be 1 or 2"},
        {R"({"op":"falloff","curve":1,"points":[[0,2]]})",
         "\"points\" of \"falloff\" must be [[pos"},
        {R"({"op":"falloff","curve":1,"points":[[1,0],[0,1]]})",
         "\"points\" of \"falloff\" must be"},
        // settings
        {R"({"op":"set","name":"symmetry"})", "\"set\" needs \"value\""},
        {R"({"op":"set","name":"symmetry","value":"x"})",
         "\"value\" of \"set\" must be true, false"},
        {R"({"op":"set","name":"symmetry","value":5})", "the setting \"symmetry\" takes a whole"},
        {R"({"op":"set","name":"toolSize","value":5,"index":0.5})", "\"index\" of \"set\" must be"},
    };
    for (const auto& [line, message] : cases) {
        const std::string error = ReadText(Header + Press + Release + line + "\n").error;
        EXPECT_THAT(error, testing::StartsWith(std::string("line 4: ") + message)) << line;
    }
}

TEST(StrokeLog, EveryOperationHasItsPlace) {
    const char* anywhere[] = {R"({"op":"set","name":"accumulate","value":true})",
                              R"({"op":"falloff","curve":1,"points":[[0,1]]})",
                              R"({"op":"modifiers","shift":true,"ctrl":true})"};
    const char* outside[] = {R"({"op":"undo"})",         R"({"op":"level","value":0})",
                             R"({"op":"show"})",         R"({"op":"subdivide","kind":"quad"})",
                             R"({"op":"delete_level"})", R"({"op":"select"})",
                             R"({"op":"hide"})",         Press.c_str(),
                             R"({"op":"neutral"})",      R"({"op":"store","target":"a"})",
                             R"({"op":"finish"})"};
    for (const std::string line : anywhere) {
        EXPECT_EQ(ReadText(Header + line + "\n" + Press + line).error, "") << line;
    }
    for (const std::string line : outside) {
        EXPECT_EQ(ReadText(Header + line).error, "") << line;
        EXPECT_THAT(ReadText(Header + Press + Move + line).error,
                    testing::MatchesRegex("line 4: .* inside a stroke: release the stroke first"));
    }
    for (const std::string& line : {Move, Release}) {
        EXPECT_THAT(ReadText(Header + Press + Release + line).error,
                    testing::MatchesRegex("line 4: .* outside a stroke: a press must come first"));
    }
}

TEST(StrokeLog, TakesNoHarmFromDeepWideOrLongLines) {
    constexpr size_t N = 1000000;
    std::string deep = R"({"op":"select","faces":)" + std::string(N, '[');
    std::string wide = R"({"op":"undo")", list = R"({"op":"select","faces":[0)";
    for (size_t i = 0; i < N; ++i) {
        wide += ",\"" + std::to_string(i) + "\":0";
        list += ",1";
    }
    EXPECT_THAT(ReadText(Header + deep).error, testing::StartsWith("line 2: \"faces\" must be"));
    EXPECT_EQ(ReadText(Header + wide + "}").error, "line 2: no operation has so many fields");
    const Log log = ReadText(Header + list + "]}");
    EXPECT_EQ(log.error, "");
    EXPECT_EQ(std::get<SelectOp>(log.ops.at(0)).faces->size(), N + 1);
}

// Each in a buffer of its very size, so that the address sanitizer sees a step past the end.
TEST(StrokeLog, SurvivesEveryPrefix) {
    const std::string text = Header +
                             R"({"op":"set","name":"screenOffset","value":[1,2]})"
                             "\r\n" +
                             Press + Move + Release +
                             R"({"op":"falloff","curve":1,"points":[[0,1],[1,0]]})"
                             "\n";
    for (size_t size = 0; size <= text.size(); ++size) {
        const std::vector<char> prefix(text.begin(), text.begin() + size);
        const Log log = ReadText({prefix.data(), size});
        const bool whole =
            size > 0 && (text[size - 1] == '\n' || text[size - 1] == '}' || text[size - 1] == '\r');
        EXPECT_EQ(log.error.empty(), whole) << text.substr(0, size);
    }
}

float AnyUnit() {
    return static_cast<float>(*rc::gen::inRange(0, 1 << 20)) / (1 << 20);
}
LPoint2 AnyPoint2() {
    return {*AnyFloat(), *AnyFloat()};
}
LPoint3 AnyPoint3() {
    return {*AnyFloat(), *AnyFloat(), *AnyFloat()};
}

std::optional<std::vector<int>> AnyFaces() {
    if (*rc::gen::arbitrary<bool>()) return std::nullopt;
    return *rc::gen::container<std::vector<int>>(rc::gen::nonNegative<int>());
}

FalloffOp AnyFalloff() {
    Ramp points(*rc::gen::inRange(1, 6));
    float position = 0;
    for (RampPoint& point : points) {
        position += (1 - position) * AnyUnit();
        point = {position, AnyUnit()};
    }
    return {*rc::gen::inRange(1, 3), points};
}

SetOp AnySet() {
    return *rc::gen::elementOf(std::vector<SetOp>{
        {"accumulate", *rc::gen::arbitrary<bool>(), {}},
        {"shadowAlt", static_cast<double>(*rc::gen::arbitrary<int>()), {}},
        {"textureStrength", static_cast<double>(*AnyFloat()), *rc::gen::inRange(0, 20)},
        {"refimageSize", std::vector<double>{*AnyFloat(), *AnyFloat()}, {}}});
}

PressOp AnyPress() {
    const float radius = std::abs(*AnyFloat());
    return {
        *rc::gen::inRange(0, 20), AnyPoint3(), AnyPoint3(), AnyPoint3(), AnyPoint3(), AnyPoint2(),
        radius > 0 ? radius : 1,  AnyUnit()};
}

std::string AnyName() {
    return *rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::inRange(' ', '~')));
}

/// An operation that may stand where the log is.
StrokeOp AnyOp(bool inStroke) {
    using Make = std::function<StrokeOp()>;
    static const std::vector<Make> anywhere = {
        AnySet,
        AnyFalloff,
        [] {
            return ModifiersOp{*rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>()};
        },
    };
    static const std::vector<Make> inside = {
        [] {
            return MoveOp{AnyPoint3(), AnyPoint2(), AnyPoint3(), AnyUnit()};
        },
        [] { return ReleaseOp(); },
    };
    static const std::vector<Make> outside = {
        AnyPress,
        [] { return SubdivideOp{*rc::gen::element(SubdivideKind::Quad, SubdivideKind::Loop)}; },
        [] { return DeleteLevelOp(); },
        [] { return LevelOp{*rc::gen::nonNegative<int>()}; },
        [] { return UndoOp(); },
        [] { return SelectOp{AnyFaces()}; },
        [] { return HideOp{AnyFaces()}; },
        [] { return ShowOp{AnyFaces()}; },
        [] { return StoreOp{AnyName()}; },
        [] { return LoadOp{AnyName()}; },
        [] {
            return ApplyOp{AnyName(), AnyPoint2().x};
        },
        [] { return NeutralOp(); },
        [] { return PaintOp{static_cast<PaintEdit>(*rc::gen::inRange(0, 5))}; },
    };
    const auto& ops = *rc::gen::arbitrary<bool>() ? anywhere : inStroke ? inside : outside;
    return ops[*rc::gen::inRange<size_t>(0, ops.size())]();
}

RC_GTEST_PROP(StrokeLog, GivesBackWhatWasWritten, ()) {
    std::vector<StrokeOp> ops;
    bool inStroke = false;
    for (int n = *rc::gen::inRange(0, 12); n > 0 || inStroke; --n) {
        ops.push_back(n > 0 ? AnyOp(inStroke) : ReleaseOp());
        if (std::holds_alternative<PressOp>(ops.back())) inStroke = true;
        if (std::holds_alternative<ReleaseOp>(ops.back())) inStroke = false;
    }
    std::ostringstream out;
    StrokeLogWriter writer(out);
    for (const StrokeOp& op : ops) writer.Write(op);
    const Log log = ReadText(out.str());
    RC_ASSERT(log.error == "");
    RC_ASSERT(log.ops == ops);
    // Equal numbers may still differ in the sign of a zero; their texts do not hide it.
    for (size_t i = 0; i < ops.size(); ++i) RC_ASSERT(WriteOp(log.ops[i]) == WriteOp(ops[i]));
}

// A file larger than the reader's buffer, so that lines lie across its pieces.
TEST(StrokeLog, ReadsAFileAsItReadsText) {
    const auto path =
        std::filesystem::temp_directory_path() / ("kelmo-log-" + std::to_string(getpid()));
    std::string text = Header + Press;
    for (int i = 0; i < 5000; ++i) text += Move;
    text += R"({"op":"set","name":"nothing","value":0})";
    std::ofstream(path) << text;
    StrokeLogReader reader;
    FileError error;
    ASSERT_TRUE(reader.Open(path, error)) << error.Text();
    const Log log = ReadAll(reader);
    std::filesystem::remove(path);
    EXPECT_TRUE(log.ops == ReadText(text).ops);
    EXPECT_EQ(log.error, path.string() + ":5003: there is no setting \"nothing\"");
    EXPECT_FALSE(reader.Open("/nowhere/log", error));
    EXPECT_EQ(error.Text(), "/nowhere/log: cannot open: No such file or directory");
}

}  // namespace
