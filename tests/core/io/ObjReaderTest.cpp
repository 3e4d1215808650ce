#include "core/io/ObjReader.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <sstream>

#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::shapes;

namespace {

/// The mesh of a text that must be good.
PolyMesh Parsed(std::string_view text) {
    PolyMesh mesh;
    FileError error;
    EXPECT_TRUE(ParseObj(text, mesh, error)) << error.Text() << "\n" << text.substr(0, 200);
    return mesh;
}

/// The message for a text that must be refused.
std::string Refused(std::string_view text) {
    PolyMesh mesh = Grid(1, 1);
    FileError error;
    EXPECT_FALSE(ParseObj(text, mesh, error)) << text.substr(0, 200);
    EXPECT_TRUE(SameBits(mesh, Grid(1, 1))) << "a failure must leave the mesh alone";
    return error.Text();
}

/// Well-formed files read the slow way: streams, strtof, tokens.
PolyMesh PlainRead(const std::string& text) {
    PolyMesh mesh;
    std::istringstream lines(text);
    const auto index = [](const std::string& number, size_t count) {
        const int i = std::stoi(number);
        return i > 0 ? i - 1 : static_cast<int>(count) + i;
    };
    bool anyUV = false;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::istringstream words(line.substr(0, line.find('#')));
        std::string keyword, word;
        words >> keyword;
        std::vector<float> numbers;
        if (keyword == "v" || keyword == "vt") {
            while (words >> word) numbers.push_back(std::strtof(word.c_str(), nullptr));
        }
        if (keyword == "v") mesh.positions.emplace_back(numbers[0], numbers[1], numbers[2]);
        if (keyword == "v" && numbers.size() == 6) {
            mesh.colours.emplace_back(numbers[3], numbers[4], numbers[5]);
        }
        if (keyword == "vt") mesh.uvs.emplace_back(numbers[0], numbers[1]);
        if (keyword == "f") {
            while (words >> word) {
                const size_t slash = word.find('/');
                const bool hasUV =
                    slash + 1 < word.size() && word[slash + 1] != '/' && slash != word.npos;
                mesh.cornerVerts.push_back(index(word, mesh.positions.size()));
                mesh.cornerUVs.push_back(hasUV ? index(word.substr(slash + 1), mesh.uvs.size())
                                               : -1);
                anyUV |= hasUV;
            }
            mesh.polygonStart.push_back(static_cast<int>(mesh.cornerVerts.size()));
        }
        const std::set<std::string> kept = {"g", "o", "s", "usemtl", "mtllib"};
        if (kept.contains(keyword)) mesh.statements.Add(mesh.NumPolygons(), line);
    }
    if (!anyUV) mesh.cornerUVs.clear();
    return mesh;
}

TEST(ObjReader, ReadsRealFilesAsAPlainReaderDoes) {
    const auto files = RealObjFiles();
    if (files.empty()) GTEST_SKIP() << "neither shared models nor assimp-testmodels are here";
    for (const auto& file : files) {
        const std::string text = TextOf(file);
        // One holds numbers like 3.1+e2, the other is UTF-16, which the plain reader doesn't know.
        if (file.filename() == "number_formats.obj" || file.filename() == "box_UTF16BE.obj")
            continue;
        EXPECT_TRUE(SameBits(Parsed(text), PlainRead(text))) << file;
    }
}

constexpr std::string_view Small =
    "# a comment\\\n"
    "mtllib a b.mtl\n"
    "v 0 0 0 1 0 0\nv 1.5 -0 1e-3 0 1 0\nv .5 1. +2 0 0 1\nv -1 2E+1 3.1-e1 1 1 1\n"
    "vt 0 0\nvt 1 0 0\nvt .5 1\n"
    "vn 0 0 1\n"
    "o thing\ng left \ts on\nusemtl skin # 1\ns 1\n"
    "f 1/1 2/2 3/3\n"
    "f -4//1 -3 -2/-1/1 4//\n"
    "g\n";

TEST(ObjReader, ReadsAllThatItKeeps) {
    PolyMesh expected;
    expected.positions = {{0, 0, 0}, {1.5f, -0.0f, 1e-3f}, {0.5f, 1, 2}, {-1, 20, 0.31f}};
    expected.colours = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    expected.uvs = {{0, 0}, {1, 0}, {0.5f, 1}};
    expected.polygonStart = {0, 3, 7};
    expected.cornerVerts = {0, 1, 2, 0, 1, 2, 3};
    expected.cornerUVs = {0, 1, 2, -1, -1, 2, -1};
    expected.statements = {{0, "mtllib a b.mtl"},  {0, "o thing"}, {0, "g left \ts on"},
                           {0, "usemtl skin # 1"}, {0, "s 1"},     {2, "g"}};
    EXPECT_TRUE(SameBits(Parsed(Small), expected));
}

std::string Replaced(std::string_view text, char from, std::string_view to) {
    std::string result;
    for (const char c : text) c == from ? result += to : result += c;
    return result;
}

std::string Utf16(std::string_view ascii, bool bigEndian) {
    std::string text = bigEndian ? "\xfe\xff" : "\xff\xfe";
    for (const char c : ascii) {
        text += bigEndian ? '\0' : c;
        text += bigEndian ? c : '\0';
    }
    return text;
}

TEST(ObjReader, TakesTheSameFromEveryWayToWriteAText) {
    const PolyMesh expected = Parsed(Small);
    // A continued line; the comment's backslash must not swallow the line after it.
    const std::string continued = Replaced(Small.substr(Small.find("v 0")), ' ', " \\\n ");
    PolyMesh unstated = expected;
    unstated.statements.clear();
    PolyMesh read = Parsed(continued);
    read.statements.clear();
    EXPECT_TRUE(SameBits(read, unstated));

    for (const char* end : {"\r\n", "\r", "\n \t\n", "\n\t "})
        EXPECT_TRUE(SameBits(Parsed(Replaced(Small, '\n', end)), expected));
    const std::string whole(Small);
    for (const std::string& text : {whole.substr(0, whole.size() - 1), "\xef\xbb\xbf" + whole,
                                    Utf16(Small, true), Utf16(Small, false)})
        EXPECT_TRUE(SameBits(Parsed(text), expected));
}

TEST(ObjReader, TurnsUtf16NamesIntoUtf8) {
    // e acute, a CJK character, a face from beyond the first plane, half a pair
    const std::string name("\0o\0 \0\xe9\x4e\x2d\xd8\x3d\xde\x00\xd8\x3d", 14);
    const PolyMesh mesh = Parsed("\xfe\xff" + name);
    ASSERT_EQ(mesh.statements.size(), 1u);
    EXPECT_EQ(mesh.statements[0].text, "o \u00e9\u4e2d\U0001f600\ufffd");
}

TEST(ObjReader, PassesOverWhatItDoesNotKeepAndKeepsOddFaces) {
    PolyMesh mesh = Parsed(
        "p 1 2\nl 1 2 \\\n 3\nvp 0.1\ncstype bezier\ncurv 0 1 x\nfoo\nvn nan -inf 1e99\n"
        "v 1 2 3 4 # weight\nv 1 2 3 0.5 0.5 0.5#colour\nend");
    EXPECT_EQ(mesh.positions, (std::vector<LPoint3>{{1, 2, 3}, {1, 2, 3}}));
    EXPECT_TRUE(mesh.colours.empty()) << "not every vertex has a colour";
    EXPECT_EQ(mesh.NumPolygons(), 0);
    EXPECT_TRUE(SameBits(Parsed(""), PolyMesh()));
    // Forward references, and corners that name one vertex.
    mesh = Parsed("f 1/2 2/2 3/2\nv 0 0 0\nf 1 1 1\nv 0 0 0\nv 0 0 0\nvt 0 0\nvt 0 0\n");
    EXPECT_EQ(mesh.cornerVerts, (std::vector{0, 1, 2, 0, 0, 0}));
    EXPECT_EQ(mesh.cornerUVs, (std::vector{1, 1, 1, -1, -1, -1}));
}

TEST(ObjReader, NamesTheLineAndTheReason) {
    const std::pair<const char*, const char*> cases[] = {
        {"v 0 0", "line 1: a vertex has 3 coordinates"},
        {"v 0 0 0 0 0 0 0 0", "line 1: more than 7 numbers"},
        {"\n\nv 0 x 0", "line 3: \"x\" is not a number"},
        {"v 0 0 0x10", "line 1: \"0x10\" is not a number"},
        {"v 0 0 3.1+e2x", "line 1: \"3.1+e2x\" is not a number"},
        {"v 0 0 1e", "line 1: \"1e\" is not a number"},
        {"v 0 \\\r\n0 \\\r\n-", "line 3: \"-\" is not a number"},
        {"v 0 0 nan", "line 1: \"nan\" is not a finite number"},
        {"v -inf 0 0", "line 1: \"-inf\" is not a finite number"},
        {"v 0 0 1e39", "line 1: \"1e39\" is not a finite number"},
        {"v 0 0 -1e999999999999999999999", "line 1: \"-1e999999"},
        {"vt 0", "line 1: a UV has 2 coordinates"},
        {"vt 0 0 0 0", "line 1: more than 3 numbers"},
        {"vn 0 0", "line 1: a normal has 3 coordinates"},
        {"v 0 0 0\nf 1 1 \\\n\n", "line 2: a polygon has at least 3 corners; this one has 2"},
        {"v 0 0 0\r\nf 1 1 0\r\n", "line 2: vertex numbers start at 1"},
        {"v 0 0 0\rf 1 1 -2\r", "line 2: vertex -2 does not exist: there are 1 so far"},
        {"v 0 0 0\n\nf 1 1 1\nf 1 2 1\nf 1 9 1\nf 1 1 3",
         "line 4: vertex 2 does not exist: the file has 1"},
        {"f 1 2 3\nf 4 5 6\nv 0 0 0\nv 0 0 0\nv 0 0 0\nv 0 0 0", "line 2: vertex 5 does not exist"},
        {"v 0 0 0\nf 1 1 2147483648", "line 2: \"2147483648\" is out of the range"},
        {"v 0 0 0\nf 1 1 -2147483648", "line 2: vertex -2147483648 does not exist"},
        {"v 0 0 0\nvt 0 0\nf 1/1 1/1 1/2", "line 3: UV 2 does not exist: the file has 1"},
        {"v 0 0 0\nvt 0 0\nf 1/1 1/1 1/0", "line 3: UV numbers start at 1"},
        {"v 0 0 0\nf 1 1 1.5", "line 2: \"1.5\" is not a corner"},
        {"v 0 0 0\nf 1 1 1/x", "line 2: \"x\" is not a corner"},
        {"v 0 0 0\nf 1 1 /1", "line 2: \"/1\" is not a corner"},
        {"v 0 0 0\nf 1 1 1/1/1/1", "line 2: \"1/1/1/1\" is not a corner"},
        {"v 0 0 0\nf 1 1 1\x01\xff", "line 2: \"1??\" is not a corner"},
    };
    for (const auto& [text, message] : cases) {
        const std::string refused = Refused(text);
        EXPECT_TRUE(refused.starts_with(message)) << refused << "\n" << text;
    }
    EXPECT_TRUE(Refused({"v 0 0 0\n\0", 9}).starts_with("line 2: a byte that is 0"));
}

// The oracle is the C library's strtof, on numbers of all shapes around the edges of a float.
RC_GTEST_PROP(ObjReader, ReadsEveryNumberToTheNearestFloat, ()) {
    const auto digits = [](int most) {
        return rc::gen::resize(most, rc::gen::container<std::string>(rc::gen::inRange('0', ':')));
    };
    const std::string whole = *digits(50), fraction = *digits(50);
    RC_PRE(!whole.empty() || !fraction.empty());
    std::string number = *rc::gen::element("", "-", "+") + whole;
    if (!fraction.empty() || *rc::gen::arbitrary<bool>()) number += "." + fraction;
    if (*rc::gen::arbitrary<bool>()) number += "e" + std::to_string(*rc::gen::inRange(-99, 60));
    const float expected = std::strtof(number.c_str(), nullptr);
    const std::string text = "v " + number + " 0 0";
    if (std::isinf(expected)) {
        RC_ASSERT(Refused(text).find("not a finite number") != std::string::npos);
    } else {
        const float read = Parsed(text).positions.at(0).x;
        RC_ASSERT(std::memcmp(&read, &expected, sizeof read) == 0);
    }
}

// Each in a buffer of its very size, so that the address sanitizer sees a step past the end.
TEST(ObjReader, SurvivesEveryPrefix) {
    const std::string texts[] = {std::string(Small), Replaced(Small, ' ', "\\\r\n"),
                                 Utf16(Small, true)};
    for (const std::string& text : texts) {
        for (size_t size = 0; size <= text.size(); ++size) {
            const std::vector<char> prefix(text.begin(), text.begin() + size);
            PolyMesh mesh;
            FileError error;
            if (!ParseObj({prefix.data(), size}, mesh, error)) {
                EXPECT_FALSE(error.message.empty());
                const bool cutPair = size > 0 && prefix.back() == '\r';
                const auto ends = std::count(prefix.begin(), prefix.end(), '\n') + cutPair;
                EXPECT_LE(error.line, 1 + ends);
            }
        }
    }
}

TEST(ObjReader, ReadsAPolygonOfAMillionCorners) {
    constexpr int N = 1000000;
    std::string text, face = "f";
    for (int i = 1; i <= N; ++i) {
        text += "v 0 0 0\n";
        face += ' ' + std::to_string(i);
    }
    const PolyMesh mesh = Parsed(face + "\n" + text);
    ASSERT_EQ(mesh.polygonStart, (std::vector{0, N}));
    for (int i = 0; i < N; ++i) ASSERT_EQ(mesh.cornerVerts[i], i);
}

class Watcher : public LProgressCallback {
  public:
    explicit Watcher(float stopAt = 2) : stopAt_(stopAt) {}
    void Show() override { ++shown; }
    void SetProgress(float done) override {
        EXPECT_GE(done, done_);
        EXPECT_LE(done, 1);
        done_ = done;
        ++reports;
    }
    float GetProgress() override { return done_; }
    void Hide() override { --shown; }
    bool IsCancelled() const override { return done_ >= stopAt_; }

    int shown = 0, reports = 0;

  private:
    float stopAt_, done_ = 0;
};

TEST(ObjReader, ShowsProgressAndStops) {
    const std::string text =
        "v 0 0 0\n" + Replaced(std::string(1 << 20, 'x'), 'x', "f 1 1 1 1 1 1 1\n");
    Watcher watcher;
    PolyMesh mesh;
    FileError error;
    EXPECT_TRUE(ParseObj(text, mesh, error, &watcher));
    EXPECT_GE(watcher.reports, 3);
    EXPECT_EQ(watcher.shown, 0);

    Watcher stopper(0.5f);
    PolyMesh untouched;
    EXPECT_FALSE(ParseObj(text, untouched, error, &stopper));
    EXPECT_EQ(error.Text(), "stopped");
    EXPECT_EQ(stopper.shown, 0);
    EXPECT_TRUE(SameBits(untouched, PolyMesh()));
}

TEST(ObjReader, SaysWhyAFileCannotBeRead) {
    PolyMesh mesh;
    FileError error;
    EXPECT_FALSE(ReadObj("/nowhere/a.obj", mesh, error));
    EXPECT_EQ(error.Text(), "/nowhere/a.obj: cannot open: No such file or directory");
    EXPECT_FALSE(ReadObj("/tmp", mesh, error));
    EXPECT_EQ(error.Text(), "/tmp: this is a directory");
    EXPECT_FALSE(ReadObj("/dev/zero", mesh, error));
    EXPECT_EQ(error.Text(), "/dev/zero: this is not a regular file");
}

}  // namespace
