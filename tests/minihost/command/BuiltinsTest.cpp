#include "minihost/command/builtins/Builtins.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "tests/minihost/command/ScriptRun.h"

using namespace minihost;
using namespace kelmo_tests;
using testing::HasSubstr;

TEST(Builtins, TextsAndArrays) {
    EXPECT_EQ(
        Results(
            R"(match("[0-9]+", "ab123c"); match("x*", "ab"); match("^a.*(b|c)$", "aabc"); substitute("b+", "abbbcb", "X"); substitute("q", "abc", "X");)"),
        "123 |  | aabc | aXcb | abc");
    EXPECT_EQ(
        Results(
            R"(substring("hello", 2, 4); substring("hello", 0, 99); substring("hello", 4, 2); toupper("aZ1"); tolower("aZ1"); strip("  a b\n"); startsWith("abc", "ab"); endsWith("abc", "ab");)"),
        "ell | hello |  | AZ1 | az1 | a b | 1 | 0");
    EXPECT_EQ(
        Results(
            R"($n = tokenize("a,b,,c", ",", $p); $p; `tokenize "a b" $p`; $p; tokenize("x y"); tokenize("x-y", "-"); size("abc"); clear($p); size $p;)"),
        "3 | a b c | 2 | a b | x y | x y | 3 | 0");
    EXPECT_EQ(
        Results(
            R"(sort({3, 1, 2}); sort({"b", "a"}); sort({2.5, -1}); stringArrayContains("b", {"a", "b"}); stringArrayToString({"a", "b"}, "-"); stringArrayCat({"a"}, {1});)"),
        "1 2 3 | a b | -1 2.5 | 1 | a-b | a 1");
    EXPECT_THAT(Results("match(\"(\", \"a\");"), HasSubstr("'(' is not a pattern"));
    EXPECT_THAT(Results("clear(3);"), HasSubstr("clear takes an array"));
}

RC_GTEST_PROP(Builtins, TokensJoinedAgainAreTheText, (std::vector<unsigned> numbers)) {
    std::string text;
    for (const unsigned n : numbers) text += (text.empty() ? "" : ";") + std::to_string(n);
    ScriptRun run;
    RC_ASSERT(run("tokenize(\"" + text + "\", \";\", $p); stringArrayToString($p, \";\");") ==
              std::to_string(numbers.size()) + " | " + text);
}

TEST(Builtins, Numbers) {
    EXPECT_EQ(Results("abs(-3); abs(-2.5); abs(-2147483647 - 1); sign(-2); min(1, 2.5); max(1, "
                      "2.5); max(3, 2); clamp(0, 1, 5); floor(-1.5); ceil(1.2); trunc(-1.7); "
                      "sqrt(9); pow(2, 10); fmod(7.5, 2); hypot(3, 4);"),
              "3 | 2.5 | -2147483648 | -1 | 1 | 2.5 | 3 | 1 | -2 | 2 | -1 | 3 | 1024 | 1.5 | 5");
    EXPECT_EQ(Results("cos(0); deg_to_rad(180) == acos(-1); rad_to_deg(atan2(1, 1)); smoothstep(0, "
                      "2, 1); mag(<<3, 4, 0>>); unit(<<0, 5, 0>>); dot(<<1, 2, 3>>, <<1, 1, 1>>); "
                      "cross(<<1, 0, 0>>, <<0, 1, 0>>);"),
              "1 | 1 | 45 | 0.5 | 5 | 0 1 0 | 6 | 0 0 1");
    EXPECT_EQ(
        Results(
            "seed(5); $a = rand(10); seed(5); $a == rand(10); $b = rand(3, 4); $b >= 3 && $b < 4;")
            .substr(0, 2),
        "5 ");
    const std::string seeded = "seed(7); rand(1); rand(2, 3);";
    EXPECT_EQ(Results(seeded), Results(seeded));
    EXPECT_THAT(Results("sqrt(\"4\");"), HasSubstr("sqrt takes numbers, not string"));
}

TEST(Builtins, SystemAndLanguage) {
    setenv("KELMO_TEST_VARIABLE", "set", 1);
    EXPECT_EQ(Results("getenv \"KELMO_TEST_VARIABLE\"; getenv KELMO_TEST_NONE; about -version; "
                      "about -batch; internalVar -userPrefDir; internalVar -ubd;"),
              "set |  | 7 | 1 | /user/prefs/ | /user/icons/");
    EXPECT_EQ(
        Results(
            "optionVar -iv a 1 -sv b \"x y\" -iv c 2; optionVar -q a; optionVar -query b; "
            "optionVar -rm a; optionVar -ex a; optionVar -ex b; optionVar -l; optionVar -q none;"),
        "1 | x y | 0 | 1 | b c | 0");
    EXPECT_EQ(Results("$t = timerX(); $d = `timerX -st $t`; $t > 0 && $d >= 0 && $d < 60;").back(),
              '1');
    ScriptRun run;
    EXPECT_EQ(run("print {1, 2}; print <<1,2,3>>; print 2.50; warning \"careful\"; eval \"int $e = "
                  "3;\" \"$e + 1;\""),
              "4");
    EXPECT_EQ(run.printed, "1\n2\n1 2 32.5");
    EXPECT_EQ(run.messages, "W:careful\n");
    for (const std::string& name : run.interpreter.Names())
        EXPECT_NE(run("help \"" + name + "\";"), "") << name;
}

namespace {

Syntax Sample() {
    using A = Syntax::Argument;
    Syntax syntax;
    syntax.EnableQuery(true);
    syntax.EnableEdit(true);
    syntax.SetObjects(0, 2);
    EXPECT_TRUE(syntax.AddFlag("-n", "-name", {A::String}));
    EXPECT_TRUE(syntax.AddFlag("t", "translate", {A::Float, A::Float, A::Int}));
    EXPECT_TRUE(syntax.AddFlag("on", "enabled", {A::Boolean}));
    EXPECT_TRUE(syntax.AddFlag("i", "index", {A::Unsigned}));
    EXPECT_TRUE(syntax.AddFlag("f", "force"));
    EXPECT_FALSE(syntax.AddFlag("n", "other"));
    EXPECT_FALSE(syntax.AddFlag("o", "force"));
    syntax.Find("index")->multiUse = true;
    syntax.Find("i")->queryTakesArguments = syntax.Find("i")->queryArgumentsOptional = true;
    return syntax;
}

}  // namespace

TEST(ParsedFlags, SortsWords) {
    const Syntax syntax = Sample();
    CommandError error;
    auto parsed =
        ParsedFlags::Parse(syntax, "c",
                           {"-e", "one", "-translate", -1, "2.5", 3.0, "-i", 4, "-index", 5, "-on",
                            "off", "-name", "-7", std::vector<std::string>{"two"}},
                           error);
    ASSERT_TRUE(parsed) << error.message;
    EXPECT_TRUE(parsed->IsEdit() && !parsed->IsQuery() && !parsed->IsSet("-force"));
    EXPECT_EQ(parsed->Get("t", 0), Value(-1.0));
    EXPECT_EQ(parsed->Get("t", 1), Value(2.5));
    EXPECT_EQ(parsed->Get("t", 2), Value(3));
    EXPECT_EQ(parsed->Uses("index"), 2u);
    EXPECT_EQ(parsed->Get("-i", 0, 1), Value(5));
    EXPECT_EQ(parsed->Get("enabled"), Value(0));
    EXPECT_EQ(parsed->Get("n"), Value("-7"));
    EXPECT_TRUE(parsed->Get("n", 1).IsNone() && parsed->Get("nope").IsNone());
    EXPECT_EQ(parsed->Objects(), (std::vector<Value>{"one", "two"}));

    parsed = ParsedFlags::Parse(syntax, "c", {"-name", "-i", "object", "-query"}, error);
    ASSERT_TRUE(parsed) << error.message;
    EXPECT_TRUE(parsed->IsQuery() && parsed->IsSet("name") && parsed->IsSet("i"));
    EXPECT_EQ(parsed->Objects(), std::vector<Value>{"object"});
    parsed = ParsedFlags::Parse(syntax, "c", {"-q", "-i", 3}, error);
    EXPECT_EQ(parsed->Get("i"), Value(3));
}

TEST(ParsedFlags, ErrorsNameTheFlag) {
    const Syntax syntax = Sample();
    const std::vector<std::pair<std::vector<Value>, const char*>> cases = {
        {{"-nope"}, "c: there is no flag -nope"},
        {{"-f", "-force"}, "flag -force may be given once only"},
        {{"-name"}, "flag -name takes 1 arguments; number 1, string, is missing"},
        {{"-t", 1, 2, "-f"}, "number 3, int, is missing"},
        {{"-t", 1, "x", 3}, "argument 2 of flag -t is float, not 'x'"},
        {{"-i", -1}, "argument 1 of flag -i is unsigned, not '-1'"},
        {{"-on", "maybe"}, "is bool, not 'maybe'"},
        {{"a", "b", "d"}, "c: 'd' is one word too many"},
        {{"-q", "-e"}, "exclude each other"}};
    for (const auto& [words, text] : cases) {
        CommandError error;
        EXPECT_FALSE(ParsedFlags::Parse(syntax, "c", words, error));
        EXPECT_THAT(error.message, HasSubstr(text));
    }
}
