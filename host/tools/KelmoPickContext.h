#pragma once

#include <maya/MObjectHandle.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>

namespace VantrelSDK {

/// The tool that takes the mesh that is clicked on as a new target of a node. It has to have as
/// many triangles as the node's. The tool is left after a click on a mesh.
class KelmoPickContext : public MPxContext {
  public:
    KelmoPickContext() { setTitleString("Pick Target"); }

    static constexpr char ctxName[] = "KelmoPickContext1";
    static void SetKelmo(const MObject& node) { kelmo_ = MObjectHandle(node); }

    void toolOnSetup(MEvent& event) override;
    MStatus doPress(MEvent& event) override;
    MStatus doRelease(MEvent& event) override;
    void getClassName(MString& name) const override { name = "KelmoPickContext"; }

  private:
    static inline MObjectHandle kelmo_;
    bool picked_ = false;
};

/// KelmoPickContext: makes it.
class KelmoPickContextCmd : public MPxContextCommand {
  public:
    static void* creator() { return new KelmoPickContextCmd; }
    MPxContext* makeObj() override { return new KelmoPickContext; }
};

}  // namespace VantrelSDK
