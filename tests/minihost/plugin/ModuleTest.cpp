#include <gtest/gtest.h>

#include "maya/MFnDependencyNode.h"
#include "maya/MFnPluginData.h"
#include "maya/MGlobal.h"
#include "minihost/Host.h"
#include "tests/Paths.h"

// The sample module, loaded as any other: what it registers works, and goes with it.

namespace minihost {
namespace {

class Collected : public ScriptOutput {
  public:
    void Print(std::string_view t) override { text += t; }
    void Info(std::string_view t) override { text.append(t) += "\n"; }
    void Warning(std::string_view t) override { text.append("W ").append(t) += "\n"; }
    void Error(std::string_view t) override { text.append("E ").append(t) += "\n"; }
    std::string Take() { return std::exchange(text, ""); }
    std::string text;
};

class ModuleTest : public testing::Test {
  protected:
    ModuleTest() : host(Host::Get()) {
        host.NewScene();
        host.SetOutput(&said);
        EXPECT_EQ(host.modules.Load(paths::kSample), "");
    }
    ~ModuleTest() override {
        host.NewScene();
        if (host.modules.Find("sample")) {
            EXPECT_EQ(host.modules.Unload("sample"), "");
        }
        host.SetOutput(nullptr);
    }
    std::string Run(const std::string& script) {
        const auto done = host.interpreter.Execute(script);
        return done.error ? done.error->Text() : done.value.AsString();
    }

    Host& host;
    Collected said;
};

TEST_F(ModuleTest, ANodeComputesWhenItIsAskedAndStale) {
    EXPECT_EQ(Run("sample -make one"), "one");
    const NodePtr node = host.scene.Find("one");
    ASSERT_NE(node, nullptr);
    const MFnDependencyNode one((MObject(node)));
    EXPECT_EQ(one.findPlug("output").asDouble(), 2);
    one.findPlug("input").setValue(4.0);
    EXPECT_EQ(one.findPlug("computes").asInt(), 1);
    EXPECT_EQ(one.findPlug("output").asDouble(), 8);
    EXPECT_EQ(one.findPlug("output").asDouble(), 8);
    EXPECT_EQ(one.findPlug("computes").asInt(), 2);
    const MFnPluginData packed(one.findPlug("packed").asMObject());
    EXPECT_EQ(packed.typeId(), MTypeId(0x7001));
    EXPECT_EQ(one.findPlug("nothing").isNull(), true);
}

TEST_F(ModuleTest, CommandsAreUndoneAndTellWhatIsWrong) {
    Run("sample -mk one; sample -mk one");
    EXPECT_NE(host.scene.Find("one1"), nullptr);
    EXPECT_EQ(Run("sample -q -c"), "2");
    EXPECT_TRUE(host.undo.Undo());
    EXPECT_EQ(host.scene.Find("one1"), nullptr);
    EXPECT_EQ(Run("sample -q -c"), "1");
    EXPECT_TRUE(host.undo.Redo());
    EXPECT_NE(host.scene.Find("one1"), nullptr);
    EXPECT_NE(Run("sample -colour red").find("failed"), std::string::npos);
    EXPECT_NE(said.Take().find("sample: there is no flag -colour"), std::string::npos);
    EXPECT_NE(Run("sample").find("failed"), std::string::npos);
    EXPECT_NE(said.Take().find("say what to make"), std::string::npos);
}

TEST_F(ModuleTest, ToolsComeGoAndAreEdited) {
    EXPECT_EQ(Run("sampleTool brush"), "brush");
    EXPECT_EQ(Run("sampleTool -exists brush"), "1");
    EXPECT_EQ(Run("sampleTool -exists other"), "0");
    Run("sampleTool -e -size 2.5 brush");
    EXPECT_EQ(Run("sampleTool -q -size brush"), "2.5");
    EXPECT_TRUE(host.tools.SetTo("brush"));
    EXPECT_EQ(said.Take(), "sample tool on\n");
    EXPECT_FALSE(host.tools.SetTo("nothing"));
    EXPECT_EQ(host.modules.Unload("sample"), "");
    EXPECT_EQ(said.Take(), "sample tool off\n");
    EXPECT_EQ(host.tools.current(), Tools::kSelect);
    EXPECT_EQ(host.interpreter.WhatIs("sample"), "Unknown");
}

TEST_F(ModuleTest, AModuleInUseStays) {
    Run("sample -make one");
    EXPECT_NE(host.modules.Unload("sample").find("one"), std::string::npos);
    EXPECT_EQ(Run("sample -q -c").empty(), false);
}

TEST_F(ModuleTest, LoadedAndUnloadedAHundredTimes) {
    for (int i = 0; i < 100; ++i) {
        Run("sample -make one; sampleTool; ");
        host.NewScene();
        ASSERT_EQ(host.modules.Unload("sample"), "");
        ASSERT_EQ(host.modules.Load(paths::kSample), "");
        ASSERT_EQ(host.listeners.Count({"Scene", "2"}), 1);
    }
}

TEST_F(ModuleTest, WhatIsNoModuleIsToldOf) {
    EXPECT_NE(host.modules.Load("/nowhere/lost.so").find("lost.so"), std::string::npos);
    EXPECT_NE(host.modules.Load(paths::kHostLibrary).find("is no module"), std::string::npos);
    EXPECT_NE(host.modules.Unload("lost").find("lost"), std::string::npos);
}

}  // namespace
}  // namespace minihost
