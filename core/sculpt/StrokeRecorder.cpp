#include "core/sculpt/StrokeRecorder.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/sculpt/LDynMask.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

/// What a stroke or a new level may come out otherwise by; without the mode, which a press tells.
constexpr std::string_view kSettings[] = {
    "useFalloff",
    "useRamp",
    "falloffMin",
    "falloffMax",
    "useFalloff2",
    "useRamp2",
    "falloffMin2",
    "falloffMax2",
    "accumulate",
    "symmetry",
    "pushPullMode",
    "doSymmetrySnapping",
    "symmetrySnapRadius",
    "brushSmoothIterations",
    "brushSharpenIterations",
    "sculptSmoothIterations",
    "sculptSharpenIterations",
    "affectGeometry",
    "affectVertColor",
    "affectStencil",
    "vertexPaintColor",
    "useStencil",
    "blendTarg",
    "blendSpace",
    "doSmoothGeomSubdivs",
    "doSmoothProtectOpenEdges",
};

/// Those with a value for each mode.
constexpr std::string_view kModeSettings[] = {"paintPressMult", "vertColorStrength"};

}  // namespace

StrokeRecorder::StrokeRecorder(StrokeTarget& target, StrokeJournal& journal)
    : target_(target), journal_(journal) {
    target_.node().SetListener(this);
    HiddenChanged();
    SelectionChanged();
}

StrokeRecorder::~StrokeRecorder() {
    target_.node().SetListener(nullptr);
}

void StrokeRecorder::Add(const StrokeOp& op) {
    AppendOp(journal_.chunk(), op);
    journal_.chunk() += '\n';
}

void StrokeRecorder::AddWhole(const StrokeOp& op) {
    Add(op);
    journal_.Commit();
}

void StrokeRecorder::AddSet(std::string_view name, int index, const SettingValue& value) {
    const auto [found, fresh] = written_.try_emplace({name, index}, value);
    if (!fresh && found->second == value) return;
    found->second = value;
    SetOp op{std::string(name), value, {}};
    if (index >= 0) op.index = index;
    Add(op);
}

void StrokeRecorder::AddSetting(std::string_view name, int index) {
    const std::optional<int> at = index < 0 ? std::nullopt : std::optional(index);
    if (const auto value = target_.GetSetting(name, at)) AddSet(name, index, *value);
}

void StrokeRecorder::AddFalloff(int curve) {
    Ramp ramp = target_.GetFalloff(curve);
    if (ramp == falloffs_[curve - 1]) return;
    Add(FalloffOp{curve, ramp});
    falloffs_[curve - 1] = std::move(ramp);
}

/// What has changed since it was written.
void StrokeRecorder::AddSettings() {
    settingsChanged_ = false;
    for (const std::string_view name : kSettings) AddSetting(name, -1);
    AddSet("useSelected", -1, target_.node().luseSelected());
    AddFalloff(1);
    AddFalloff(2);
}

/// The keys, and what counts in the mode that they make of the tool's.
void StrokeRecorder::AddModifiers() {
    if (IsShiftPressed() != shift_ || IsCtrlPressed() != ctrl_) {
        shift_ = IsShiftPressed();
        ctrl_ = IsCtrlPressed();
        Add(ModifiersOp{shift_, ctrl_});
    }
    const int mode = target_.node().getTransformMode(false);
    if (mode == mode_ || mode < 0) return;
    mode_ = mode;
    for (const std::string_view name : kModeSettings) AddSetting(name, mode);
}

void StrokeRecorder::AddMask() {
    const LDynMask* mask = target_.node().GetMask();
    if (mask ? mask_ == mask->picture() : !mask_) return;
    if (mask)
        Add(MaskOp{mask->picture()});
    else
        Add(UnmaskOp{});
    mask_ = mask ? std::optional(mask->picture()) : std::nullopt;
}

/// Polygons that are hidden, or those that are selected.
std::vector<int> StrokeRecorder::PolygonsWhere(bool hidden) {
    const LMeshObject* object = target_.node().lobject();
    std::vector<int> found;
    if (!object || !(hidden ? object->HasHidden() : object->HasSelection())) return found;
    for (int p = 0; p < target_.NumPolygons(); ++p) {
        const int face = target_.FirstFaceOf(p);
        if (hidden ? !object->IsFaceVisible(face, 0) : object->IsFaceSelected(face, 0))
            found.push_back(p);
    }
    return found;
}

void StrokeRecorder::Pressed(const LPoint3& pos, const LPoint3& dir, const LPoint3& orth,
                             const LPoint3& normal, const LPoint2& screen, float radius, int mode) {
    journal_.Join();
    if (inStroke_) Released();
    mode_ = -1;
    patterned_ = target_.node().GetActivePattern();
    if (patterned_) return;
    AddSettings();
    AddModifiers();
    AddMask();
    Add(PressOp{mode, pos, dir, orth, normal, screen, radius, target_.GetPressure()});
    inStroke_ = true;
}

void StrokeRecorder::Moved(const LPoint3& pos, const LPoint2& screen, const LPoint3& normal) {
    if (!inStroke_) return;
    patterned_ |= target_.node().GetActivePattern() != nullptr;
    if (settingsChanged_) {
        AddSettings();
        mode_ = -1;
    }
    AddModifiers();
    Add(MoveOp{pos, screen, normal, target_.GetPressure()});
}

void StrokeRecorder::Released() {
    if (std::exchange(patterned_, false)) Replaced();
    if (!inStroke_) return;
    inStroke_ = false;
    ++strokes_;
    ++undoable_;
    // Settings may say what the release looks at.
    if (settingsChanged_) AddSettings();
    AddWhole(ReleaseOp{});
}

void StrokeRecorder::Undone() {
    // A stroke from before the recording.
    if (undoable_ == 0) return Replaced();
    --undoable_;
    AddWhole(UndoOp{});
}

void StrokeRecorder::Subdivided(bool quad) {
    AddSettings();
    AddWhole(SubdivideOp{quad ? SubdivideKind::Quad : SubdivideKind::Loop});
}

void StrokeRecorder::LevelDeleted() {
    AddWhole(DeleteLevelOp{});
}

void StrokeRecorder::LevelSet(int level) {
    AddWhole(LevelOp{level});
}

void StrokeRecorder::HiddenChanged() {
    std::vector<int> hidden = PolygonsWhere(true), gone, come;
    std::ranges::set_difference(hidden_, hidden, std::back_inserter(gone));
    std::ranges::set_difference(hidden, hidden_, std::back_inserter(come));
    if (!gone.empty()) Add(hidden.empty() ? ShowOp{} : ShowOp{gone});
    if (!come.empty()) Add(HideOp{come});
    hidden_ = std::move(hidden);
    journal_.Commit();
}

void StrokeRecorder::SelectionChanged() {
    std::vector<int> selected = PolygonsWhere(false);
    if (selected == selected_) return;
    selected_ = std::move(selected);
    AddWhole(SelectOp{selected_});
}

void StrokeRecorder::Painted(PaintEdit edit) {
    AddSettings();
    AddWhole(PaintOp{edit});
    ++undoable_;
}

void StrokeRecorder::NeutralMade() {
    AddWhole(NeutralOp{});
}

void StrokeRecorder::NeutralCleared() {
    AddWhole(ClearNeutralOp{});
}

void StrokeRecorder::SessionClosed() {
    if (inStroke_) Released();
    AddWhole(FinishOp{});
}

void StrokeRecorder::Replaced() {
    broken_ = true;
}

}  // namespace VantrelSDK
