#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "maya/MFnAttribute.h"
#include "maya/MFnDependencyNode.h"
#include "maya/MFnMesh.h"
#include "minihost/Host.h"
#include "minihost/command/builtins/Builtins.h"
#include "tests/Paths.h"

namespace kelmo {

/// What the host tells, by kind.
class Told : public minihost::ScriptOutput {
  public:
    void Print(std::string_view t) override { text.append(t); }
    void Info(std::string_view t) override { text.append(t) += "\n"; }
    void Warning(std::string_view t) override { text.append("Warning: ").append(t) += "\n"; }
    void Error(std::string_view t) override { text.append("Error: ").append(t) += "\n"; }

    bool Has(const std::string& part) const { return text.find(part) != text.npos; }

    std::string text;
};

/// The module in an empty scene of the host's, and a node over the sample head.
class ModuleFixture : public testing::Test {
  protected:
    ModuleFixture() : host(minihost::Host::Get()) {
        static const bool once = [this] {
            minihost::AddBuiltins(host.commands, {"", false, ""});
            return true;
        }();
        (void)once;
        host.NewScene();
        host.SetOutput(&told);
        EXPECT_EQ(host.modules.Load(paths::kModule), "");
        folder =
            std::filesystem::temp_directory_path() / ("kelmo-module-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
    }
    ~ModuleFixture() override {
        host.NewScene();
        EXPECT_EQ(host.modules.Unload("kelmo"), "");
        host.SetOutput(nullptr);
        std::filesystem::remove_all(folder);
    }

    std::string Run(const std::string& script) {
        const auto done = host.interpreter.Execute(script);
        return done.error ? "error: " + done.error->Text() : done.value.AsString();
    }
    /// A script that has to go well.
    void Must(const std::string& script) {
        const std::string result = Run(script);
        EXPECT_FALSE(result.starts_with("error: ")) << script << "\n" << result;
    }
    MPlug Plug(const std::string& node, const std::string& attribute) {
        return MFnDependencyNode(MObject(host.scene.Find(node))).findPlug(attribute.c_str());
    }
    /// A node "k" between polygons of a file and a mesh "shown".
    void MakeNode(const std::string& obj) {
        Must("file -import \"" + obj + "\"");
        source = Run("string $made[] = `ls -type mesh`; $made[0]");
        Must(
            "createNode mesh -name shown; createNode KelmoND -name k;"
            "connectAttr " +
            source +
            ".outMesh k.inputGeom;"
            "connectAttr k.outputGeom shownShape.inMesh; connectAttr time1.outTime k.inTime;"
            "setAttr k.forceRenderTopLevel 0");
    }
    /// Does a command of the node's protocol.
    void Do(int number, const std::string& node = "k") {
        Must("setAttr " + node + ".commnad " + std::to_string(number) + "; setAttr " + node +
             ".execute 1");
    }
    int Ask(int number, int index = 0) {
        Must("setAttr k.param0 " + std::to_string(index) + "; setAttr k.commnad " +
             std::to_string(number) + "; setAttr k.execute0 1");
        return Plug("k", "param0").asInt();
    }
    std::vector<float> Points(const std::string& node, const std::string& attribute) {
        const MObject mesh = Plug(node, attribute).asMObject();
        const MFnMesh fn(mesh);
        const float* raw = fn.getRawPoints();
        return raw ? std::vector<float>(raw, raw + 3 * fn.numVertices()) : std::vector<float>();
    }
    std::vector<float> Output() { return Points("k", "outputGeom"); }

    minihost::Host& host;
    Told told;
    std::filesystem::path folder;
    std::string source;
};

inline const std::string kHead = std::string(paths::kSource) + "/examples/head.obj";

}  // namespace kelmo
