#include <gmock/gmock.h>

#include <regex>
#include <sstream>

#include "app/cli/InterfaceProcedures.h"
#include "core/io/Profile.h"
#include "minihost/plugin/PluginCommand.h"
#include "tests/host/ModuleFixture.h"
#include "tests/system/Markdown.h"
#include "tests/system/Program.h"

// The module as a whole: what it registers, says and reads when it is loaded, and that it goes.

namespace kelmo {
namespace {

using testing::HasSubstr;
using testing::Not;

class ModuleTest : public testing::Test {
  protected:
    ModuleTest() : host(minihost::Host::Get()) {
        minihost::AddBuiltins(host.commands, {"", false, ""});
        AddInterfaceProcedures(host.commands);
        host.NewScene();
        host.SetOutput(&told);
    }
    ~ModuleTest() override {
        host.NewScene();
        host.modules.Unload("kelmo");
        host.SetOutput(nullptr);
    }
    std::string Run(const std::string& script) {
        const auto done = host.interpreter.Execute(script);
        return done.error ? "error: " + done.error->Text() : done.value.AsString();
    }

    minihost::Host& host;
    Told told;
};

const std::vector<std::string> kCommands = {
    "KelmoNew",    "KelmoVersion", "Kelmo",         "KelmoTime",   "KelmoSetVer",
    "KelmoDiag",   "KelmoSculpt",  "KelmoSel",      "KelmoPick",   "KelmoNeutral",
    "KelmoTarget", "KelmoTracks",  "KelmoMasks",    "KelmoStroke", "KelmoSubdivs",
    "KelmoRender", "KelmoJournal", "KelmoPatterns", "KelmoTimes"};

std::vector<unsigned> Numbers(const std::vector<MTypeId>& ids) {
    std::vector<unsigned> numbers;
    for (const MTypeId& id : ids) numbers.push_back(id.id());
    return numbers;
}

TEST_F(ModuleTest, RegistersInOrderAndGoes) {
    ASSERT_EQ(host.modules.Load(paths::kModule), "");
    const auto module = host.modules.Find("kelmo");
    EXPECT_EQ(module->commands, kCommands);
    EXPECT_EQ(Numbers(module->dataTypes),
              (std::vector<unsigned>{1059262, 1059266, 1059267, 1059268}));
    EXPECT_EQ(Numbers(module->nodeTypes),
              (std::vector<unsigned>{1059261, 1059272, 1059273, 1059263, 1059265}));
    EXPECT_EQ(module->tools, (std::vector<std::string>{"KelmoToolContext", "KelmoPickContext",
                                                       "KelmoSelectContext"}));
    EXPECT_EQ(module->createProcedure + module->deleteProcedure, "KelmoCreateUIKelmoDeleteUI");
    EXPECT_EQ(module->version, "v 6.5.03");
    EXPECT_EQ(host.modules.Unload("kelmo"), "");
    EXPECT_TRUE(module->commands.empty() && module->dataTypes.empty() &&
                module->nodeTypes.empty() && module->tools.empty())
        << "it took all down itself";
}

/// A name that is taken stops it, with the text of the step, and nothing of it stays.
TEST_F(ModuleTest, SaysWhatCouldNotBeRegistered) {
    minihost::CommandTable& commands = host.commands;
    for (const auto& [name, text] :
         {std::pair{"KelmoSubdivs", "KelmoSubdivs: ("}, {"KelmoNew", "KelmoNew: ("}}) {
        commands.Add(name, "", [](minihost::CommandCall&) { return minihost::Answer(); });
        testing::internal::CaptureStderr();
        EXPECT_THAT(host.modules.Load(paths::kModule), HasSubstr("failed to start"));
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(text));
        commands.Remove(name);
        EXPECT_EQ(host.types.Find("KelmoND"), nullptr);
    }
    const auto type = std::make_shared<minihost::NodeType>(
        "KelmoND", MTypeId(7), MFn::kDependencyNode, host.types.Find("dependNode"));
    host.types.Register(type);
    testing::internal::CaptureStderr();
    EXPECT_NE(host.modules.Load(paths::kModule), "");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("register Kelmo2 node: ("));
    host.types.Unregister(MTypeId(7));
}

TEST_F(ModuleTest, IsLoadedUsedAndUnloadedAHundredTimes) {
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(host.modules.Load(paths::kModule), "");
        ASSERT_EQ(
            Run("polySphere -sx 8 -sy 6 -n ball; Kelmo -create; KelmoSubdivs -newsubdiv;"
                "select ball; KelmoToolContext KelmoToolContext1; setToolTo KelmoToolContext1;"
                "KelmoSubdivs -q -tl"),
            "2")
            << told.text;
        EXPECT_THAT(host.modules.Unload("kelmo"), HasSubstr("KelmoND1"));
        Run("file -new");
        ASSERT_EQ(host.modules.Unload("kelmo"), "");
        EXPECT_EQ(Run("whatIs Kelmo"), "Unknown");
    }
}

/// Every flag of every command is on the page with its arguments, and takes them.
TEST_F(ModuleTest, ThePageHasEveryFlag) {
    const std::string page = kelmo_tests::Read(std::string(paths::kSource) + "/docs/module.md");
    const kelmo_tests::Folder folder;
    ASSERT_EQ(host.modules.Load(paths::kModule), "");
    int flags = 0;
    for (const std::string& command : kCommands) {
        const size_t section = page.find("\n### " + command + "\n");
        ASSERT_NE(section, page.npos) << command;
        const std::string part = page.substr(section, page.find("\n##", section + 4) - section);
        std::istringstream lines(host.interpreter.Usage(command));
        std::string line, brief, name, argument;
        for (std::getline(lines, line); std::getline(lines, line);) {
            std::istringstream words(line);
            words >> brief >> name;
            if (name == "-query" || name == "-nodename") continue;
            std::string given, arguments;
            for (; words >> argument; arguments += (arguments.empty() ? "" : ", ") + argument)
                given += argument == "string" ? " \"" + (folder / "nothing") + "\"" : " 0";
            const auto row = kelmo_tests::TableRow(part, "`" + brief + "` `" + name + "`");
            ASSERT_GE(row.size(), 2u) << command << line;
            if (row.size() > 2) {
                EXPECT_EQ(row[1], arguments) << command << line;
            }
            told.text.clear();
            Run(command + " " + name + given +
                (command == "KelmoJournal" || command == "KelmoPatterns" ? " k" : ""));
            EXPECT_THAT(told.text, Not(HasSubstr("parse"))) << command << line;
            ++flags;
        }
    }
    EXPECT_GE(flags, 75);
}

TEST_F(ModuleTest, ReadsPreferencesAndFindsItsFiles) {
    const kelmo_tests::Folder folder;
    folder.Write("kmmove.xpm", "");
    const std::string path = folder / "";
    setenv("XBMLANGPATH", ("/nowhere:" + path + "%B").c_str(), 1);
    ASSERT_EQ(host.modules.Load(paths::kModule), "");
    unsetenv("XBMLANGPATH");
    EXPECT_TRUE(told.Has("Vantrel: icons are found in\n" + path + "/\n")) << told.text;
    EXPECT_TRUE(told.Has("Error: Vantrel: file patterns.cfg not found in default location:\n//"));
    EXPECT_TRUE(told.Has("/2012.0-x64/icons/\n//nor in any of paths specified by XBMLANGPATH:\n"));
    EXPECT_TRUE(told.Has("TABLET SENSIVITY IS OF - YOU CAN TURN IT ON KELMO PREFERENCES\n"));
    // As long as nothing was drawn there is no context to ask.
    EXPECT_TRUE(told.Has("OpenGL is not supported.\n") || told.Has("GL_VERSION   "));
    EXPECT_TRUE(told.text.ends_with("Vantrel (v 6.5.03) is loaded.\n"));
    told.text.clear();
    Run("optionVar -iv KelmoDumpDiagsPref 1; Kelmo -readPrefs");
    const std::string log = (std::filesystem::temp_directory_path() / "kelmo_maya.log").string();
    EXPECT_TRUE(told.Has("Vantrel: writing log to " + log + "\n")) << told.text;
    Run("polySphere -n ball; Kelmo -create");
    EXPECT_THAT(kelmo_tests::Read(log), HasSubstr("| GONNA CREATE TIME CONNECTION\n"));
    // Off and on again begins a new one.
    Run("optionVar -iv KelmoDumpDiagsPref 0; Kelmo -readPrefs");
    Run("optionVar -iv KelmoDumpDiagsPref 1; Kelmo -readPrefs");
    EXPECT_TRUE(
        std::regex_match(kelmo_tests::Read(log), std::regex("\\[\\d+:\\d+:\\d+\\] initalized\n")));
    Run("optionVar -rm KelmoDumpDiagsPref; Kelmo -readPrefs");
    told.text.clear();
    host.commands.Remove("KelmoGetNumSmoothIterationsPref");
    Run("Kelmo -readPrefs");
    EXPECT_TRUE(told.Has("MLNode: can not read number of smooth iterations\n")) << told.text;
}

/// Lines of the log: the clock, seconds to the nanosecond since the last line and in all.
TEST(Profile, LinesTellTime) {
    using namespace VantrelSDK;
    const kelmo_tests::Folder folder;
    const std::string path = folder / "log";
    LStrFile file;
    EXPECT_FALSE(file.Write("nothing"));
    ASSERT_TRUE(file.Open(path.c_str(), "wt"));
    ProfileStart(&file);
    for (const char* text : {"one", "two", "three"}) ProfileDump(text, &file);
    const std::string clock = "\\[\\d{1,2}:\\d{1,2}:\\d{1,2}\\] ", time = "(\\d+\\.\\d{9})";
    const std::string later = clock + time + " \\(total " + time + "\\) \\| ";
    std::smatch found;
    const std::string written = kelmo_tests::Read(path);
    ASSERT_TRUE(std::regex_match(written, found,
                                 std::regex(clock + "initalized\n" + clock + "started \\| one\n" +
                                            later + "two\n" + later + "three\n")))
        << written;
    EXPECT_EQ(found[1], found[2]);
    EXPECT_NEAR(std::stod(found[1]) + std::stod(found[3]), std::stod(found[4]), 1e-8);
    testing::internal::CaptureStdout();
    ProfileDump("to nobody", nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("| to nobody\n"));
    EXPECT_FALSE(file.Open((folder / "no/such").c_str(), "wt"));
}

}  // namespace
}  // namespace kelmo
