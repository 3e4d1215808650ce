#pragma once

#include <maya/M3dView.h>
#include <maya/MDagModifier.h>
#include <maya/MMatrix.h>
#include <maya/MObjectHandle.h>
#include <maya/MPxContext.h>
#include <maya/MTypes.h>

#include <memory>

#include "host/ml/MLNode.h"
#include "host/tools/PointerListener.h"
#include "host/tools/ToolEvents.h"
#include "host/tools/ViewRay.h"

namespace VantrelSDK {

/// The sculpt tool: it turns what the pointer does into strokes of a node.
///
/// A locator follows the pointer over the surface. A press connects its matrix to the node's
/// `brush`, which begins the stroke; each place that the locator takes is a step; the release cuts
/// the connection. The engine knows nothing of the tool, and the tool reaches it through plugs and
/// numbered commands alone.
///
/// Hover arrives through the events of the views' windows, press, drag and release through the
/// host. In a view without a window the pointer is where press and drag say. Taken up with no node,
/// the tool waits for a selection that leads to one, and it follows the selection from then on,
/// but not in a stroke.
class KelmoToolContext : public MPxContext, public PointerListener {
  public:
    KelmoToolContext();
    ~KelmoToolContext() override;

    /// The brush that copies textures from a source.
    static constexpr int kCloneMode = 18;
    /// The tool that is on; null without one.
    static KelmoToolContext* GetActiveContext() { return m_activeContext; }
    /// The name under which the interface makes it.
    static constexpr char ctxName[] = "KelmoToolContext1";

    void toolOnSetup(MEvent& event) override;
    void toolOffCleanup() override;
    MStatus doEnterRegion(MEvent& event) override;
    MStatus doPress(MEvent& event) override;
    MStatus doDrag(MEvent& event) override;
    MStatus doRelease(MEvent& event) override;
    /// Ends the stroke that is under way; nothing without one.
    void FinishStroke();
    /// The same, and takes it back.
    void abortAction() override;
    void getClassName(MString& name) const override { name = "KelmoToolContext"; }

    void onMouseMove(M3dView& view, short x, short y) override;
    void onMouseLeave() override;
    void onCancel() override { abortAction(); }
    /// The curve of the brush may have been edited: what shows it follows.
    void BeforeMove() override;

    /// The tool goes to the node that is selected. What leads to none leaves it where it is.
    void FollowSelection();

    /// The node that is sculpted, or the current one while the tool is off; null where there is
    /// none.
    MLNode* node() const;
    const MObject& brushNode() const { return brushNode_.objectRef(); }
    bool dragging() const { return dragging_; }

    /// The share of the view's width that the brush's radius is, for a mode; -1 is the present one.
    /// Both report what is missing; a size that can't be read is 0.
    void setToolSize(double size, int index);
    double getToolSize(int index = -1) const;
    void setBrushMode(int mode);
    int brushMode() const;
    /// The strength that the brush has on what it affects.
    double getPaintPressure() const;
    void setPaintPressure(double strength);
    void setResizeHotKeyPressed(bool pressed);
    bool resizeKey() const { return resizeKey_; }
    /// What a drag does in place of a stroke.
    bool resizeStencil = false, rotateStencil = false, reopacStencil = false;
    bool trackStencil = false, trackRefImage = false;
    /// A change of `porjEditMush` is the person's, not a change of mode's.
    static inline bool resetByMush = true;
    /// Of the target whose name the tool's command edits.
    int nameIndex = 0;

  private:
    // Taking up and leaving.
    bool TakeNode();
    void LeaveNode();
    void MakeLocator();
    void DeleteLocators();
    void LoadTablet();

    // The stroke.
    bool BeginStroke(MLNode& node);
    void EndStroke();
    void MakeSecondLocator(const MVector& place);
    bool PutStart(const MVector& place);
    void PutSpaces(MLNode& node);
    void TakeSpaces(MLNode& node);
    void SetClone(const MEvent& event, short x, short y);
    void KeyFlexor();
    void Resize(const M3dView& view, double dx, double dy);
    void DragStencil(double by);

    // Hover.
    bool PutRay(const ViewRay& ray, MPoint& point, MVector& normal);
    bool WantsHit() const;
    void ShowMarks(short x, short y);
    MPoint PlaceAt(const ViewRay& ray);

    MPlug Plug(NodeAttributes::Member attribute) const;
    MPlug Element(NodeAttributes::Member attribute, const char* name, int index) const;
    MPlug PressurePlug() const;
    void LeaveMush(int mode);
    bool Put(NodeAttributes::Member attribute, const char* name, double value) const;
    /// `quiet`: through the channel that makes no output stale.
    bool Send(int command, int label, bool quiet = false);
    void updateCursor();
    bool IsDragMode() const;

    static inline KelmoToolContext* m_activeContext = nullptr;

    MObjectHandle brushNode_;
    /// The transforms above locators.
    MObjectHandle brushLocator_, brushLocator2_;
    std::unique_ptr<MDagModifier> dagMod_;
    ToolEvents events_;
    MCallbackId onSelection_ = 0;

    bool dragging_ = false, resizing_ = false, resizeKey_ = false, following_ = false;
    bool transformGeom_ = false;
    /// Out of the object, and the object's own place; see TakeSpaces.
    MMatrix geomMatrix_, objToWorld_, worldToObj_;
    short xdrag_[2] = {}, ydrag_[2] = {};
    MString rampOld_;
};

/// Where a place is in a view whose corners are -1 and 1; beyond them it stays so.
void toCenterCoords(const M3dView& view, short x, short y, double& screenx, double& screeny);

}  // namespace VantrelSDK
