#include "core/io/LStrFile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/system/Program.h"

using namespace VantrelSDK;

namespace {

/// The codes of the first reads of a list: how many, then each record, up to the first that fails.
std::vector<int> Codes(const std::string& text) {
    const kelmo_tests::Folder folder;
    folder.Write("list", text);
    LStrFile list;
    EXPECT_TRUE(list.Open((folder / "list").c_str(), "rt"));
    int count = -7;
    std::vector<int> codes{list.ReadNumPatternsTag(count)};
    if (codes[0] != 1) {
        EXPECT_EQ(count, -7);
        return codes;
    }
    codes.push_back(count);
    LStrFile::Text name, field, file;
    do {
        codes.push_back(list.ReadPatternTag(name, field, file));
    } while (codes.back() == 1);
    return codes;
}

}  // namespace

TEST(LStrFile, RecordsComeBackAsTheyWereWritten) {
    const kelmo_tests::Folder folder;
    LStrFile list;
    ASSERT_TRUE(list.Open((folder / "list").c_str(), "wt"));
    EXPECT_TRUE(list.WriteNumPatternsTag(2));
    EXPECT_TRUE(list.WritePatternTag("dots", {}, "dots.tif"));
    EXPECT_TRUE(list.WritePatternTag({}, "f", {}));
    EXPECT_EQ(kelmo_tests::Read(folder / "list"),
              "[num_patterns] 2 [/num_patterns] \n[pattern] dots ### dots.tif [/pattern] \n"
              "[pattern] ### f ### [/pattern] \n");
    ASSERT_TRUE(list.Open((folder / "list").c_str(), "rt"));
    int count = 0;
    LStrFile::Text name, field, file;
    EXPECT_EQ(list.ReadNumPatternsTag(count), 1);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(list.ReadPatternTag(name, field, file), 1);
    EXPECT_EQ(name, "dots");
    EXPECT_FALSE(field);
    EXPECT_EQ(file, "dots.tif");
    EXPECT_EQ(list.ReadPatternTag(name, field, file), 1);
    EXPECT_FALSE(name || file);
    EXPECT_EQ(list.ReadPatternTag(name, field, file), 0) << "the end";
}

TEST(LStrFile, WhatIsNoListIsToldApart) {
    using C = std::vector<int>;
    EXPECT_EQ(Codes(""), C({0}));
    EXPECT_EQ(Codes("[num_pattern] 1 [/num_pattern]"), C({-1}));
    EXPECT_EQ(Codes("[num_patterns] one x"), C({0}));
    EXPECT_EQ(Codes("[num_patterns] 1"), C({0})) << "no closing tag";
    EXPECT_EQ(Codes("\t[num_patterns]\n3\r\nx [pattern] a b c d [pattern] a b c"), C({1, 3, 1, 0}))
        << "closing tags may be any word";
    EXPECT_EQ(Codes("[num_patterns] 3 x [patron] a b c d"), C({1, 3, -1}));
    EXPECT_EQ(Codes(std::string("[num_patterns] 1 x [pattern] a\0b c d e", 38)), C({1, 1, 0}));
    const std::string longest(LStrFile::kMaxWord, 'a');
    EXPECT_EQ(Codes("[num_patterns] 1 x [pattern] " + longest + " b c d"), C({1, 1, 1, 0}));
    EXPECT_EQ(Codes("[num_patterns] 1 x [pattern] " + longest + "a b c d"), C({1, 1, 0}));
}
