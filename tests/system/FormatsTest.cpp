#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "core/io/StrokeLog.h"
#include "core/sculpt/BrushMode.h"
#include "tests/Paths.h"
#include "tests/system/Markdown.h"
#include "tests/system/Program.h"

// docs/formats.md against what the program does.

using namespace kelmo_tests;
using namespace VantrelSDK;

namespace {

const std::string kPage = Read(std::string(paths::kSource) + "/docs/formats.md");

/// The names in a JSON object.
std::vector<std::string> NamesIn(const nlohmann::json& object) {
    std::vector<std::string> names;
    for (const auto& [name, value] : object.items()) names.push_back(name);
    return names;
}

std::string Code(const std::string& text) {
    return "`" + text + "`";
}

/// One of each operation, with all its fields.
template <size_t... I>
std::vector<StrokeOp> AllOps(std::index_sequence<I...>) {
    std::vector<StrokeOp> ops{std::variant_alternative_t<I, StrokeOp>()...};
    for (StrokeOp& op : ops)
        std::visit(
            [](auto& o) {
                if constexpr (requires { o.index; }) o.index = 0;
                if constexpr (requires { o.faces; }) o.faces.emplace();
            },
            op);
    return ops;
}

/// What the page says a setting takes, as Set would have to refuse and take it.
void CheckTakes(const std::string& name, const std::string& takes, const SettingValue& value,
                std::optional<int> index) {
    LNodeSettings settings;
    const auto accepts = [&](const SettingValue& v) { return bool(settings.Set(name, v, index)); };
    const bool isInt = takes.find("int") != takes.npos;
    if (std::holds_alternative<bool>(value)) {
        EXPECT_TRUE(takes.starts_with("bool")) << name;
    } else if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        EXPECT_TRUE(takes.starts_with(std::to_string(numbers->size()) + " ")) << name;
        EXPECT_EQ(accepts(std::vector<double>(numbers->size(), 0.5)), !isInt) << name;
    } else {
        EXPECT_TRUE(takes.starts_with(isInt ? "int" : "number")) << name;
        EXPECT_EQ(accepts(0.5), !isInt) << name;
    }
    int least, most;
    if (std::sscanf(takes.c_str(), "int, %d to %d", &least, &most) == 2) {
        for (const int good : {least, most}) EXPECT_TRUE(accepts(double(good))) << name;
        for (const int bad : {least - 1, most + 1}) EXPECT_FALSE(accepts(double(bad))) << name;
    } else if (isInt && std::holds_alternative<double>(value)) {
        EXPECT_TRUE(accepts(-1e9) && accepts(1e9)) << name;
    }
}

}  // namespace

TEST(Formats, HasEverySettingWithItsKindAndDefault) {
    const LNodeSettings fresh;
    for (const std::string_view view : LNodeSettings::Names()) {
        const std::string name(view);
        const auto row = TableRow(kPage, Code(name));
        ASSERT_EQ(row.size(), 4u) << name;
        int last = -1;
        const size_t at = row[1].find(", index 0 to ");
        if (at != row[1].npos) last = std::stoi(row[1].substr(at + 13));
        const std::optional<int> index = last < 0 ? std::nullopt : std::optional(last);
        ASSERT_TRUE(fresh.Get(name, index)) << name;
        if (index) {
            EXPECT_FALSE(fresh.Get(name, last + 1)) << name;
        }
        const SettingValue value = *fresh.Get(name, index);
        CheckTakes(name, row[1], value, index);
        const auto told = nlohmann::json::parse(row[2]);
        std::visit(
            [&](const auto& v) {
                const nlohmann::json had = v;
                if (had.is_number()) {
                    EXPECT_FLOAT_EQ(told.get<float>(), had.get<float>()) << name;
                } else if (had.is_boolean()) {
                    EXPECT_EQ(told, had) << name;
                } else {
                    EXPECT_EQ(told.get<std::vector<float>>(), had.get<std::vector<float>>())
                        << name;
                }
            },
            value);
    }
}

TEST(Formats, HasEveryOperationWithItsFields) {
    for (const StrokeOp& op : AllOps(std::make_index_sequence<std::variant_size_v<StrokeOp>>())) {
        const std::string name(OpName(op));
        const auto row = TableRow(kPage, Code(name));
        ASSERT_EQ(row.size(), 4u) << name;
        size_t fields = 0;
        for (const std::string& field : NamesIn(nlohmann::json::parse(WriteOp(op)))) {
            if (field == "op") continue;
            EXPECT_NE(row[1].find(Code(field)), row[1].npos) << name << " " << field;
            ++fields;
        }
        EXPECT_EQ(std::count(row[1].begin(), row[1].end(), '`'), 2 * fields)
            << name << " has fields on the page that it has not";
    }
}

TEST(Formats, HasEveryModeByNumberAndName) {
    for (int mode = 0; mode <= 19; ++mode) {
        const auto row = TableRow(kPage, std::to_string(mode));
        ASSERT_EQ(row.size(), 3u) << mode;
        EXPECT_EQ(row[1], FindBrushMode(mode) ? FindBrushMode(mode)->name : "") << mode;
    }
}

TEST(Formats, ItsLogIsOne) {
    const auto blocks = CodeBlocks(kPage, "json");
    ASSERT_GE(blocks.size(), 2u);
    const std::string log = blocks[0] + blocks[1];
    StrokeLogReader reader(log);
    StrokeOp op;
    FileError error;
    int ops = 0;
    while (reader.Next(op, error) == StrokeLogReader::Result::Operation) ++ops;
    EXPECT_EQ(error.Text(), "");
    EXPECT_EQ(ops, std::count(blocks[1].begin(), blocks[1].end(), '\n'));
}

TEST(Formats, HasEveryFieldOfTheJsonWritten) {
    Folder folder;
    const std::string head = kExamples + "/head.obj";
    const Outcome info = Kelmo("info --json " + head);
    for (const std::string& field : NamesIn(nlohmann::json::parse(info.text)))
        EXPECT_NE(kPage.find(Code(field)), kPage.npos) << field;

    const std::string stats = folder / "stats.json";
    ASSERT_EQ(Kelmo("replay " + kExamples + "/modes/00_move.jsonl --mesh " + head + " --out " +
                    (folder / "out.obj") + " --stats " + stats)
                  .code,
              0);
    const auto written = nlohmann::json::parse(Read(stats));
    const auto told = nlohmann::json::parse(CodeBlocks(kPage, "json").back());
    EXPECT_EQ(NamesIn(told), NamesIn(written));
    EXPECT_EQ(NamesIn(told["operations"]), NamesIn(written["operations"]));
    EXPECT_EQ(NamesIn(told["operations"]["press"]), NamesIn(written["operations"]["press"]));
}
