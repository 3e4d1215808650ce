#include "minihost/command/Interpreter.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "tests/minihost/command/ScriptRun.h"
#include "tests/system/Program.h"

using namespace minihost;
using namespace kelmo_tests;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

struct Case {
    const char *script, *result;
};
void ExpectAll(const std::vector<Case>& cases) {
    for (const Case& one : cases) EXPECT_EQ(Results(one.script), one.result) << one.script;
}

/// A random sum of products with what it is worth, built beside its text. Small enough for no
/// overflow.
struct Sum {
    std::string text;
    int64_t value;
};
Sum RandomSum(int depth) {
    const int kind = depth == 0 ? 0 : *rc::gen::inRange(0, 6);
    if (kind == 0) {
        const int n = *rc::gen::inRange(-9, 10);
        return {std::to_string(n), n};
    }
    const Sum a = RandomSum(depth - 1), b = RandomSum(depth - 1);
    const std::string blank = *rc::gen::element<std::string>("", " ", "/* - */", "// x\n");
    switch (kind) {
        case 1:
            return {"(" + a.text + "+" + blank + b.text + ")", a.value + b.value};
        case 2:
            return {"(" + a.text + " -" + blank + "(" + b.text + "))", a.value - b.value};
        case 3:
            return {"(" + a.text + ")" + blank + "*" + blank + "(" + b.text + ")",
                    a.value * b.value};
        case 4:
            return {"(" + a.text + "<" + b.text + blank + "?" + a.text + ":" + b.text + ")",
                    std::min(a.value, b.value)};
        default:
            return {"(-(" + a.text + ")" + blank + "==" + b.text + ")", -a.value == b.value};
    }
}

}  // namespace

RC_GTEST_PROP(Scripts, SumsComeOutAsTheyShould, ()) {
    const Sum sum = RandomSum(4);
    // From 5 levels of products of at most 9 * 9 on, an int may not hold it.
    RC_PRE(std::abs(sum.value) < 1 << 30);
    RC_ASSERT(Results("print (" + sum.text + "); " + sum.text + ";") == std::to_string(sum.value));
}

RC_GTEST_PROP(Scripts, AnyTextAndNumberComesBackFromItsLiteral, (std::string text, double number)) {
    std::string quoted;
    for (const char c : text)
        quoted += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    ScriptRun run;
    const auto result = run.interpreter.Execute("$s = \"" + quoted + "\"; $s;");
    RC_ASSERT(!result.error);
    RC_ASSERT(result.value.AsString() == text);
    const std::string written = Value(number).AsString();
    RC_ASSERT(run.interpreter.Execute("float $f = " + written).value == Value(number));
    RC_ASSERT(run.interpreter.Execute("string " + written).value == Value(written));
    RC_ASSERT(Value(written).AsFloat() == number);
}

TEST(Scripts, OperatorsAndTypes) {
    ExpectAll(
        {{"5/2; 5/2.0; -7%3; 7.5%2; 2147483647+1; -(-2147483647-1);",
          "2 | 2.5 | -1 | 1.5 | -2147483648 | -2147483648"},
         {"1+2*3-4/2; (1+2)*3; -2*-3; 2-3-4; !1+1; 1<2==1; 1||0&&0;", "5 | 9 | 6 | -5 | 1 | 1 | 1"},
         {"\"a\"+1+2.5; 1+2+\"a\"; \"b\">\"a\"; \"1\"==1; $o = on; $o = no;",
          "a12.5 | 3a | 1 | 1 | 1 | 0"},
         {"<<1,2,3>>+<<1,1,1>>; <<1,2,3>>*2; 2*<<1,2,3>>; <<1,2,3>>*<<4,5,6>>; "
          "<<1,0,0>>^<<0,1,0>>;",
          "2 3 4 | 2 4 6 | 2 4 6 | 32 | 0 0 1"},
         {"int $i = 3.9; $i; $i = \"42 apples\"; string $s = 1.5; vector $v = 2; $v.y = 5; $v; "
          "$v.y += 1;",
          "3 | 3 | 42 | 1.5 | 2 2 2 | 5 | 2 5 2 | 6"},
         {"$a[3] = 7; $a; $a[9]; $a[3]++; ++$a[3]; $a[0] -= 2; $a; size $a;",
          "7 | 0 0 0 7 | 0 | 7 | 9 | -2 | -2 0 0 9 | 4"},
         {"$b = {1, 2.5}; $b[0] = \"3\"; $c = $b; $c[0] = 9; $b; $c; $e = {\"a\", 1}; $f = {}; "
          "string $d[2]; "
          "size $d;",
          "1 2.5 | 3 | 3 2.5 | 9 | 3 2.5 | 9 2.5 | a 1 |  | 2"},
         {"int(\"7x\"); float(1); string(1.50); (cross(<<1,0,0>>, <<0,1,0>>)).z; (`stringArrayCat "
          "{\"a\"} {\"b\"}`)[1];",
          "7 | 1 | 1.5 | 1 | b"},
         {"0x10; 1e3; .5; 3000000000; 1e999; -1e999;", "16 | 1000 | 0.5 | 3e+09 | inf | -inf"}});
}

TEST(Scripts, Flow) {
    ScriptRun run;
    EXPECT_EQ(run(R"(
        for ($i = 0, $n = 0; $i < 9; $i++, $n += 2) {
            if ($i == 2) continue;
            else if ($i == 5) break;
            else print ($i + " ");
        }
        $n;
        while ($i-- > 3) print "w"; do { print "d"; } while (0);
        for ($word in {"x", "y"}) for (int $k = 0; $k < 2; ++$k) { print ($word + $k); if ($k == 0) continue; }
        for ($j = 7; $j < 12; $j++)
            switch ($j % 5) { case 2: print "two "; case 3: print "three "; break; default: print "other "; case 0: print "zero "; }
        switch ("b") { case "a": print "A"; break; case "b": print "B"; }
        $word;)"),
              "10 | y");
    EXPECT_EQ(run.printed, "0 1 3 4 wwdx0x1y0y1two three three other zero zero other zero B");
}

TEST(Scripts, Procedures) {
    ExpectAll({{"proc int f(int $n) { if ($n < 2) return $n; return f($n - 1) + `f ($n - 2)`; } f "
                "15; f(\"10\");",
                "610 | 55"},
               {"proc fill(string $a[], int $n) { $a[$n] = \"new\"; $n = 0; } $l = {\"a\"}; $k = "
                "1; fill($l, $k); $l; $k;",
                "a | 1 | a new | 1"},
               {"proc string[] g() { return {1, 2}; } proc int h() { } size(g()); h; (g())[1];",
                "2 | 0 | 2"},
               {"global int $count = 1; proc up() { global int $count = 5; $count += 2; } up; up; "
                "$count;",
                "1 | 5"},
               {"int $x = 1; { int $x = 2; { string $x = $x + \"!\"; } $x = 3; } $x; if (1) { $y = "
                "5; } $y;",
                "1 | 1!s:1:86: $y is an undeclared variable"},
               {"proc f() { if (1) $z = 1; } f; whatIs f; exists f; exists print; exists nope; "
                "whatIs \"$nope\";",
                "Unknown | 0 | 1 | 0 | Unknown"}});
    // What is typed piece by piece stays; of scripts what is global.
    ScriptRun run;
    EXPECT_EQ(run("proc f() { print \"1\"; } int $g = 4;", true), "4");
    EXPECT_EQ(run("f; whatIs f; whatIs \"$g\"; $g + 1;"),
              "Mel procedure found in: s | int variable | 5");
    EXPECT_EQ(run("global proc f() { print \"2\"; } proc g() { f; } f; g;"), "");
    EXPECT_EQ(run("global proc f() { eval \"global proc f() { print 4; }\"; print \"3\"; } f; f;"),
              "");
    EXPECT_EQ(run.printed, "12234");
    EXPECT_THAT(run("g;"), HasSubstr("'g' is an unknown"));
    EXPECT_EQ(run("help f; help \"size\";"), "f() | size(VALUE)");
}

/// The ways in which commands are written, seen by a command that tells its words.
TEST(Scripts, WordsOfCommands) {
    ScriptRun run;
    run.commands.Add("words", "words", [](CommandCall& call) -> Answer {
        std::string text;
        for (const Value& word : call.arguments)
            text += "[" + std::string(TypeName(word.GetType())) + " " + word.AsString() + "]";
        return text;
    });
    const std::vector<Case> cases = {
        {"words -e -tx -5 -.5 1e3 on \"-x y\" |a|b:c.vtx[0:3] *S?;",
         "[string -e][string -tx][int -5][float -0.5][float 1000][string on][string -x y][string "
         "|a|b:c.vtx[0:3]][string *S?]"},
        {"$a = {1, 2}; $v = <<1,2,3>>; words $a $a[1] $v.y ($a[0] + \".tx\") -flag `words 1` "
         "{\"q\"};",
         "1 2 | 1 2 3 | [int[] 1 2][int 2][float 2][string 1.tx][string -flag][string [int "
         "1]][string[] q]"},
        {"words(1, -2 - 3, \"x\"); words (1) + \"x\"; words (1) -x (2) -3; words(\"a\") $v;",
         "[int 1][int -5][string x] | [int 1]x | [int 1][string -x][int 2][int -3] | [string "
         "a][vector 1 2 3]"},
        {"words/*c*/a//b\n\t-status \"x\ty\\\"\\\\\" false; words; words()",
         "[string a][string -status][string x\ty\"\\][string false] |  | "},
        {"$t = `words a`; words $t;$r = `words (\"a\") -b \"c\"`;",
         "[string a] | [string [string a]] | [string a][string -b][string c]"}};
    for (const Case& one : cases) EXPECT_EQ(run(one.script), one.result) << one.script;
}

TEST(Scripts, ErrorsTellWhereAndWhat) {
    const std::vector<Case> cases = {
        {"\n  nope 1;", "s:2:3: 'nope' is an unknown command"},
        {"int $x = ;", "s:1:10: an expression is expected, not ';'"},
        {"print \"a", "s:1:7: the string has no end"},
        {"1; /* ", "s:1:4: the comment has no end"},
        {"if (1) { print 1;", "has no '}'"},
        {"$u + 1;", "s:1:1: $u is an undeclared variable"},
        {"proc f() { print $u; }", "s:1:18: $u is an undeclared variable"},
        {"int $a[]; $a = 3;", "$a is int[] and can't be set to int"},
        {"int $a = {1};", "can't be set to int[]"},
        {"int $a; string $a;", "$a is int already"},
        {"$a = {1}; $a[-1];", "'-1' is not an index"},
        {"$x = {1} + 1;", "'+' can't be applied to int[] and int"},
        {"1 + {1};", "s:1:3: '+' can't be applied"},
        {"\"a\" - 1;", "'-' can't be applied to string and int"},
        {"1 / 0;", "s:1:3: division by zero"},
        {"1.0 % 0;", "division by zero"},
        {"if ({1}) {}", "a condition is a number, not int[]"},
        {"proc f(int $a) {} f 1 2;", "f(int $a) takes 1 arguments, not 2"},
        {"proc f(int $a[]) {} f 1;", "argument 1 is int"},
        {"proc f() { return 1; }", "has no return type"},
        {"return;", "stands in no procedure"},
        {"break;", "stands in no loop"},
        {"else 1;", "'else' has no 'if'"},
        {"{ proc f() {} }", "can't be defined inside a block"},
        {"$x = print 1;", "'print' is no value"},
        {"$a = 1; print $a.tx;", "x, y or z is expected"},
        {"print a$b;", "blanks are expected behind 'a'"},
        {"print /tmp;", "put the text in quotes"},
        {"print a }", "'}' can't begin a word"},
        {"$x = `print`;", "print VALUE"},
        {"for ($x in 3) {}", "'in' goes through an array, not int"},
        {"<<1, 2>>;", "a vector has 3 numbers, not 2"},
        {"$x = 12ab;", "'ab'"},
        {"\x01;", "byte 0x01 has no meaning"},
        {"proc f() { g; } proc g() { error \"deep\"; }\nf;",
         "s:1:28: deep\n  called by s:1:12\n  called by s:2:1"}};
    for (const Case& one : cases)
        EXPECT_THAT(Results(one.script), HasSubstr(one.result)) << one.script;
    // A script that can't be read does nothing at all; one that fails stops there.
    ScriptRun run;
    EXPECT_THAT(run("print 1; print (2;"), HasSubstr("')' is expected"));
    EXPECT_EQ(run.printed, "");
    run("print 1; nope; print 2;");
    EXPECT_EQ(run.printed, "1");
    for (const char* const open : {"if (1) {", "print \"", "foo (1,", "$x = `size", "1 + /*"})
        EXPECT_TRUE(run.interpreter.Execute(open).error->atEnd) << open;
    for (const char* const wrong : {"print )", "1 + ;", "nope"})
        EXPECT_FALSE(run.interpreter.Execute(wrong).error->atEnd) << wrong;
}

TEST(Scripts, NestingIsLimitedAndRecovers) {
    ScriptRun run;
    const auto times = [](const char* text, int n) {
        std::string all;
        for (int i = 0; i < n; ++i) all += text;
        return all;
    };
    const int many = 100000;
    for (const std::string& deep :
         {times("(", many), times("{", many), times("- ", many), times("!", many),
          times("if (1) ", many), times("1 ? 1 : ", many), times("$a = ", many),
          times("print (`size (", many), times("{{", many), times("f(", many)})
        EXPECT_THAT(run(deep + "1"), HasSubstr("nested too deeply")) << deep.substr(0, 12);
    EXPECT_EQ(run(times("1 + ", many) + "1;"), std::to_string(many + 1));
    EXPECT_EQ(run("if (0) 1; " + times("else if (0) 1; ", many) + " else 2; 3;"), "3");
    // The worst that the stack has to hold: brackets as deep as they may be in each call.
    const std::string call = "f(" + times("(1 ? -", 60) + "$n" + times(" : 0)", 60) + ")";
    EXPECT_THAT(run("proc int f(int $n) { return " + call + "; } f 1;"),
                HasSubstr("nested too deeply"));
    EXPECT_THAT(run("global proc e() { eval \"e\"; } e;"), HasSubstr("nested too deeply"));
    EXPECT_EQ(run("1 + 1;"), "2");
}

TEST(Scripts, LimitsAndTheUserStopThem) {
    ScriptRun run;
    run.interpreter.Limits() = {500, 10000, 100, 1000};
    EXPECT_THAT(run("while (1) catch(eval(\"while (1) {}\"));"), HasSubstr("10000 steps"));
    EXPECT_THAT(run("$s = \"x\"; while (1) $s += $s;"), HasSubstr("more than 1000 bytes"));
    EXPECT_THAT(run("$a = {\"x\"}; while (1) $a = stringArrayCat($a, $a);"),
                HasSubstr("more than 100 elements"));
    EXPECT_THAT(run("$i[100] = 1;"), HasSubstr("not an index"));
    EXPECT_THAT(run("int $b[101];"), HasSubstr("not the size of an array"));
    run.interpreter.Limits() = {};
    bool stop = false;
    run.interpreter.SetStop([&] { return std::exchange(stop, true); });
    EXPECT_THAT(run("proc f() { while (1) {} } catch(f());"), HasSubstr("stopped"));
}

namespace {

/// Notes what a scope is told.
class NotedScope : public StatementScope {
  public:
    void Begin() override { notes += "("; }
    void Commit() override { notes += ")"; }
    void Rollback() override { notes += "!"; }

    std::string notes;
};

}  // namespace

TEST(Scripts, StatementsAreScoped) {
    ScriptRun run;
    NotedScope scope;
    run.interpreter.SetStatementScope(&scope);
    const std::vector<Case> cases = {{"1; { 2; 3; } eval \"4; 5;\";", "()()()"},
                                     {"1; nope; 2;", "()(!"},
                                     {"catch(nope()); catchQuiet(1);", "((!)(())"},
                                     {"eval \"1; nope;\"; 2;", "(!"},
                                     {"1 +", ""}};
    for (const Case& one : cases) {
        scope.notes.clear();
        run(one.script);
        EXPECT_EQ(scope.notes, one.result) << one.script;
    }
    EXPECT_EQ(run.messages, "E:s:1:7: 'nope' is an unknown command or procedure\n");
}

TEST(Scripts, DeferredOnesRunAfterwardsInOrder) {
    ScriptRun run;
    run("evalDeferred \"print 1; evalDeferred (\\\"print 4\\\");\"; evalDeferred nope; "
        "evalDeferred print 3; print 0;");
    EXPECT_EQ(run.printed, "0");
    const auto errors = run.interpreter.RunDeferred();
    EXPECT_EQ(run.printed, "0134");
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_THAT(errors[0].Text(), StartsWith("<deferred>:1:1: 'nope'"));
}

/// A command may remove itself, another one, or take a procedure's name, while scripts that called
/// it before go on.
TEST(Scripts, NamesMayChangeWhileAScriptRuns) {
    ScriptRun run;
    run.commands.Add("once", "once", [&](CommandCall& call) -> Answer {
        EXPECT_TRUE(run.commands.Remove("once"));
        return std::string(call.name);
    });
    EXPECT_EQ(run("proc f() { print `once`; } f; catchQuiet(f()); whatIs once;"), "1 | Unknown");
    EXPECT_TRUE(run.commands.SetProcedure("pref", [](CommandCall&) -> Answer { return 3; }));
    EXPECT_TRUE(run.commands.SetProcedure("pref", [](CommandCall&) -> Answer { return 4; }));
    EXPECT_FALSE(run.commands.SetProcedure("print", nullptr));
    EXPECT_FALSE(run.commands.Add("pref", "", nullptr));
    EXPECT_EQ(run("pref; whatIs pref; global proc int pref() { return 5; } pref; whatIs print;"),
              "4 | Mel procedure entered interactively. | 5 | Command");
}

TEST(Scripts, FilesAreSourced) {
    Folder folder;
    const std::string good =
        folder.Write("good.mel", "global proc int there() { return 8; }\nint $set = 2;");
    const std::string bad = folder.Write("bad.mel", "1;\nnope;");
    ScriptRun run;
    EXPECT_EQ(run("source \"" + good + "\"; there; $set; whatIs there;"),
              "2 | 8 | 2 | Mel procedure found in: " + good);
    EXPECT_THAT(run("source \"" + bad + "\";"), HasSubstr(bad + ":2:1: 'nope'"));
    EXPECT_THAT(run("source \"" + (folder / "none") + "\";"), HasSubstr("No such file"));
    EXPECT_THAT(run("source \"" + (folder / ".") + "\";"), HasSubstr("is a folder"));
}
