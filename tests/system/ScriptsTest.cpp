#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "minihost/Host.h"
#include "minihost/command/builtins/Builtins.h"
#include "tests/Paths.h"
#include "tests/system/Markdown.h"
#include "tests/system/Program.h"
#include "tests/system/Terminal.h"

using namespace kelmo_tests;

namespace {

const std::string kDocs = std::string(paths::kSource) + "/docs/";
const std::string kPage = Read(kDocs + "scripts.md");

Outcome RunText(const std::string& options, const std::string& script) {
    const Folder folder;
    return Kelmo("run " + options + " " + folder.Write("script.mel", script));
}

}  // namespace

TEST(ScriptsPage, ItsExamplesGiveWhatItSays) {
    auto scripts = CodeBlocks(kPage, "mel"), results = CodeBlocks(kPage, "result");
    ASSERT_GE(scripts.size(), 5u);
    const std::string module = Read(kDocs + "module.md");
    for (const std::string& script : CodeBlocks(module, "mel")) scripts.push_back(script);
    for (const std::string& result : CodeBlocks(module, "result")) results.push_back(result);
    ASSERT_EQ(scripts.size(), results.size());
    for (size_t i = 0; i < scripts.size(); ++i) {
        const Outcome outcome = RunText("--results", scripts[i]);
        EXPECT_EQ(outcome.code, 0) << scripts[i];
        EXPECT_EQ(outcome.text, results[i]) << scripts[i];
    }
}

/// As the host is made, before a test adds what a program or a module brings.
const std::vector<std::string> kHostCommands = minihost::Host::Get().commands.Names();

TEST(ScriptsPage, HasEveryCommand) {
    minihost::CommandTable commands;
    minihost::AddBuiltins(commands, {});
    const std::string table = kPage.substr(kPage.find("## Commands that need no scene"));
    for (const std::string& name : commands.Names()) {
        EXPECT_NE(table.find("`" + name), table.npos) << name;
    }
    for (const std::string& name : kHostCommands) {
        EXPECT_NE(table.find("`" + name), table.npos) << name;
    }
}

TEST(Program, PolygonsThatPartBehindANodeAreTold) {
    const std::string script =
        "global proc int KelmoGetRehashMtlsPref() { return PREF; }"
        "global proc kelmoRehasMaterials(string $node) { print(\"again: \" + $node + \"\\n\"); }"
        "polySphere -n ball; select ball; Kelmo -create; select ball; $n = `ls -type KelmoND`;"
        "createNode groupParts -ss -n parts;"
        "connectAttr ($n[0] + \".outputGeom\") parts.inputGeometry; createNode groupParts -ss";
    for (const char* wanted : {"1", "0"}) {
        std::string with = script;
        with.replace(with.find("PREF"), 4, wanted);
        const Outcome told = RunText("", with);
        EXPECT_EQ(told.code, 0) << told.text;
        EXPECT_EQ(told.text.find("again: KelmoND1\n") != told.text.npos, *wanted == '1');
    }
}

TEST(Program, AScriptsSceneIsThereForTheNext) {
    const Folder folder;
    const std::string scene = folder / "scene.mhs", again = folder / "again.mhb";
    const Outcome made = Kelmo(
        "run -c 'polySphere -n ball; createNode joint -n a; createNode joint -n b -p a;"
        " move 0 1 0 b; skinCluster a b ball; setKeyframe -t 1 -at rotateX a;"
        " setAttr a.rotateX 80; setKeyframe -t 9 -at rotateX a; file -rename \"" +
        scene + "\"; file -save;'");
    EXPECT_EQ(made.code, 0) << made.text;
    const std::string ask =
        "currentTime 4; file -exportAll \"" + (folder / "NAME.obj") + "\"; getAttr a.rotateX;";
    const auto exported = [&](const std::string& from, const std::string& name) {
        std::string script = "file -open \"" + from + "\"; " + ask;
        script.replace(script.find("NAME"), 4, name);
        const Outcome outcome = Kelmo("run --results -c '" + script + "'");
        EXPECT_EQ(outcome.code, 0) << outcome.text;
        return Read(folder / (name + ".obj"));
    };
    const std::string first = exported(scene, "one");
    EXPECT_EQ(
        Kelmo("run -c 'file -open \"" + scene + "\"; file -rename \"" + again + "\"; file -save;'")
            .code,
        0);
    EXPECT_GT(first.size(), 10000u);
    EXPECT_EQ(exported(again, "two"), first) << "evaluated to the same bits";
}

TEST(Program, RunsScripts) {
    const Folder folder;
    const std::string good = folder.Write("good.mel", "print \"a\\n\"; 1 + 1; {}; 5;");
    const std::string bad = folder.Write("bad.mel", "print \"a\\n\";\n  nope;");
    EXPECT_EQ(Kelmo("run " + good).text, "a\n");
    EXPECT_EQ(Kelmo("run --results " + good).text, "a\n2\n5\n");
    EXPECT_EQ(Kelmo("run - --results < " + good).text, "a\n2\n5\n");
    EXPECT_EQ(Kelmo("run --results -c '$a = {1, 2}; size $a'").text, "1 2\n2\n");
    EXPECT_EQ(Kelmo("run -c ''").code, 0);
    const Outcome failed = Kelmo("run " + bad);
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.text,
              "a\nkelmo: " + bad + ":2:3: 'nope' is an unknown command or procedure\n");
    const Outcome deferred = Kelmo("run -c 'evalDeferred \"error \\\"late\\\"\"; print 1'");
    EXPECT_EQ(deferred.code, 1);
    EXPECT_EQ(deferred.text, "1kelmo: <deferred>:1:1: late\n");
    for (const char* const wrong : {"run", "run x.mel -c '1'", "run --nope"})
        EXPECT_EQ(Kelmo(wrong).code, 2) << wrong;
    EXPECT_EQ(Kelmo("run " + (folder / "none.mel")).code, 1);
}

/// The module lies beside the program; without it a script does not begin.
TEST(Program, LoadsTheModule) {
    EXPECT_EQ(Kelmo("run --results -c 'pluginInfo -q -l kelmo; KelmoVersion'").text,
              "1\nv 6.5.03\n");
    EXPECT_EQ(Kelmo("run --no-module --results -c 'pluginInfo -q -l kelmo'").text, "0\n");
    const Folder folder;
    const std::string alone = folder / "kelmo";
    std::filesystem::copy_file(paths::kProgram, alone);
    const Outcome missing = Shell(alone + " run -c 'print 1'");
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.text.find("kelmo: the module cannot be loaded: "), 0u) << missing.text;
    EXPECT_NE(missing.text.find("--no-module"), missing.text.npos);
    folder.Write("kelmo.so", "this is no module");
    EXPECT_EQ(Shell(alone + " run -c 'print 1'").code, 1);
    EXPECT_EQ(Shell(alone + " run --no-module -c 'print 1'").text, "1");
}

/// What is typed goes on after an error, and over several lines.
TEST(Program, RunsWhatIsTyped) {
    const Folder folder;
    const std::string typed = folder.Write(
        "typed", "proc int f() {\n  return 3;\n}\nf\nnope\nif (1) {\n\nprint \"on\"; f() + 1;\n");
    EXPECT_EQ(Kelmo("run --interactive < " + typed).text,
              "3\nkelmo: <stdin>:1:1: 'nope' is an unknown command or procedure\n"
              "kelmo: <stdin>:3:1: the block that begins in line 1 has no '}'\non4\n");
}

/// At a terminal names are completed, lines remembered from run to run, and Ctrl-C goes on asking.
TEST(Program, HelpsWhoTypesAtATerminal) {
    using testing::EndsWith;
    const Folder folder;
    Terminal first(folder / "home", "run", "--interactive");
    EXPECT_THAT(first.Until("kelmo> "), EndsWith("kelmo> "));
    first.Type("stringArrayCo\t");
    EXPECT_THAT(first.Until("ntains "), EndsWith("ntains "));
    first.Type("\x15stringArray\t");
    EXPECT_THAT(first.Until("stringArrayToString  "), testing::HasSubstr("stringArrayCat  "));
    first.Type("\x15proc int f() {\n");
    EXPECT_THAT(first.Until("     > "), EndsWith("     > "));
    first.Type("return 5; }\nprint \"on\\n\"; while (1) {}\n");
    EXPECT_THAT(first.Until("\non\r\n"), EndsWith("\non\r\n"));
    first.Type("\x03");
    EXPECT_THAT(first.Until("stopped\r\nkelmo> "), EndsWith("stopped\r\nkelmo> "));
    first.Type("f() + 18\n");
    EXPECT_THAT(first.Until("23\r\nkelmo> "), EndsWith("23\r\nkelmo> "));
    first.Type("7 * 6\n");
    EXPECT_THAT(first.Until("42\r\nkelmo> "), EndsWith("42\r\nkelmo> "));
    // An end that is typed before the prompt is the terminal's, which forgets it.
    first.Type("\x04");
    EXPECT_EQ(first.Wait(), 0);
    Terminal second(folder / "home", "run", "--interactive");
    second.Until("kelmo> ");
    second.Type("\x1b[A\n");
    EXPECT_THAT(second.Until("42\r\nkelmo> "), EndsWith("42\r\nkelmo> "));
    second.Type("\x04");
    EXPECT_EQ(second.Wait(), 0);
}

/// Ctrl-C stops a script that would go on for ever.
TEST(Program, StopsAScriptOnInterrupt) {
    const Outcome stopped = Shell("timeout -s INT 2 " + std::string(paths::kProgram) +
                                  " run -c 'while (1) catch(eval(\"1;\"));'");
    EXPECT_NE(stopped.text.find("stopped"), stopped.text.npos) << stopped.text;
}
