#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "maya/M3dView.h"
#include "maya/MEvent.h"
#include "maya/MFnTransform.h"
#include "maya/MPxContext.h"
#include "minihost/dag/DagNode.h"
#include "minihost/view/Views.h"
#include "tests/host/ModuleFixture.h"

namespace kelmo {

/// The sculpt tool on the sample head, in a view without a window that looks at its face.
class ToolFixture : public ModuleFixture {
  protected:
    void SetUp() override {
        if (const std::string why = host.views.Begin(); !why.empty())
            GTEST_SKIP() << "no views to sculpt in: " << why;
        MakeNode(kHead);
        Must(
            "for ($i = 0; $i < 20; $i++) { setAttr (\"k.toolSize[\" + $i + \"]\") 0.0625;"
            "setAttr (\"k.paintPressMult[\" + $i + \"]\") 1;"
            "setAttr (\"k.vertColorStrength[\" + $i + \"]\") 1;"
            "setAttr (\"k.textureStrength[\" + $i + \"]\") 1; }");
        Output();
        Must("setAttr " + source + ".visibility 0; select shown");
        Look("front", 400, 300);
        Must("KelmoToolContext KelmoToolContext1");
    }
    void Look(const std::string& camera, int width, int height) {
        std::string error;
        ASSERT_NE(host.views.Open({camera, width, height, 0}, error), nullptr) << error;
    }
    void TakeTool() { Must("setToolTo KelmoToolContext1"); }
    void LeaveTool() { Must("setToolTo selectSuperContext"); }
    MPxContext& tool() { return *host.tools.Find("KelmoToolContext1"); }

    using Places = std::initializer_list<std::pair<int, int>>;
    static MEvent At(int x, int y, unsigned modifiers = 0,
                     MEvent::MouseButtonType button = MEvent::kLeftMouse) {
        return {static_cast<short>(x), static_cast<short>(y), button, modifiers};
    }
    bool Press(int x, int y, unsigned modifiers = 0) {
        MEvent event = At(x, y, modifiers);
        return bool{tool().doPress(event)};
    }
    void Drag(int x, int y, unsigned modifiers = 0) {
        MEvent event = At(x, y, modifiers);
        tool().doDrag(event);
    }
    void Release(int x, int y, unsigned modifiers = 0) {
        MEvent event = At(x, y, modifiers);
        tool().doRelease(event);
    }
    void Stroke(Places places, unsigned modifiers = 0) {
        const auto& [x, y] = *places.begin();
        Press(x, y, modifiers);
        for (const auto& [px, py] : places) Drag(px, py, modifiers);
        Release((places.end() - 1)->first, (places.end() - 1)->second, modifiers);
    }

    int Count(const std::string& type) { return std::stoi(Run("size(`ls -type " + type + "`)")); }
    /// The tool's locators.
    std::vector<std::shared_ptr<minihost::DagNode>> Locators() {
        std::vector<std::shared_ptr<minihost::DagNode>> found;
        for (const auto& node : host.scene.Nodes())
            if (node->type().name == "kelmoTool")
                found.push_back(std::static_pointer_cast<minihost::DagNode>(node));
        return found;
    }
    MPlug Plug(const minihost::NodePtr& node, const char* attribute) {
        return MFnDependencyNode(MObject(node)).findPlug(attribute);
    }
    using ModuleFixture::Plug;
    /// Where the first one is.
    MPoint Place() {
        const MFnTransform transform(MObject(Locators().at(0)->parent()->ShareDag()));
        return MPoint() + transform.getTranslation(MSpace::kTransform);
    }
    bool IsOutlined() { return Plug(Locators().at(0), "visibility2").asBool(); }
    bool InStroke() { return Plug("k", "brush").isDestination(); }
    /// What is sculpted.
    std::vector<float> Surface() {
        Must("undoInfo -stateWithoutFlush 0");
        Do(4);
        std::vector<float> points = Points("kMeshShape", "outMesh");
        Must("delete kMesh; undoInfo -stateWithoutFlush 1");
        return points;
    }
};

}  // namespace kelmo
