#pragma once

#include <maya/MDagModifier.h>
#include <maya/MObjectHandle.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>

#include <memory>
#include <set>

#include "host/tools/MeshPicker.h"
#include "host/tools/PointerListener.h"
#include "host/tools/ToolEvents.h"

namespace VantrelSDK {

/// The tool that selects polygons of a node's mesh, which brushes then keep to. A click takes the
/// polygon that is pointed at, a drag all that the brush's circle goes over; with Shift they are
/// added to what is selected, with Ctrl taken away. A click beside the mesh selects nothing. Undo
/// takes a selection back. While the tool is on the mesh is shown at its base level, whose polygons
/// are meant.
class KelmoSelCtx : public MPxContext, public PointerListener {
  public:
    KelmoSelCtx() { setTitleString("Select Polygons"); }

    static constexpr char ctxName[] = "KelmoSelectContext1";
    /// The node whose mesh is meant when the tool is taken up.
    static void SetKelmo(const MObject& node) { kelmo_ = MObjectHandle(node); }

    void toolOnSetup(MEvent& event) override;
    void toolOffCleanup() override;
    MStatus doPress(MEvent& event) override;
    MStatus doDrag(MEvent& event) override;
    MStatus doRelease(MEvent& event) override;
    void getClassName(MString& name) const override { name = "KelmoSelectContext"; }

    void onMouseMove(M3dView& view, short x, short y) override;
    void onMouseLeave() override;

  private:
    enum class How { kReplace, kAdd, kRemove };

    bool TakeMesh();
    void ShowBase();
    void ShowLevel();
    /// Selects what is under a place; all that the circle touches in a `drag`.
    void Take(short x, short y, bool drag);
    void Show() const;
    void Commit();
    double RadiusAt(M3dView& view, short x, short y, const MPoint& place) const;

    static inline MObjectHandle kelmo_;

    std::unique_ptr<MDagModifier> edits_;
    MObjectHandle locator_;
    ToolEvents events_;
    std::unique_ptr<MeshPicker> picker_;
    /// The node that was brought to its base, and the level that went out of it.
    MObjectHandle lowered_;
    int level_ = 0;
    How how_ = How::kReplace;
    std::set<int> before_, selected_;
    short pressx_ = 0, pressy_ = 0;
};

/// KelmoSelectContext: makes it.
class KelmoSelCtxCmd : public MPxContextCommand {
  public:
    static void* creator() { return new KelmoSelCtxCmd; }
    MPxContext* makeObj() override { return new KelmoSelCtx; }
};

}  // namespace VantrelSDK
