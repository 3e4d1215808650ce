#include "core/sculpt/StrokePlayer.h"

#include <new>

#include "core/io/Quoted.h"
#include "core/sculpt/LDynMask.h"

namespace VantrelSDK {

StrokePlayer::StrokePlayer(StrokeTarget& target) : target_(target), node_(target.node()) {
    SetShiftPressed(false);
    SetCtrlPressed(false);
}

StrokePlayer::~StrokePlayer() {
    node_.PlayMask(nullptr);
    SetShiftPressed(false);
    SetCtrlPressed(false);
}

bool StrokePlayer::OpenSession(std::string& error) {
    if (node_.IsSculpting() || node_.InitSculpt()) return true;
    error = "the sculpt session was stopped while it opened";
    return false;
}

bool StrokePlayer::Play(const StrokeOp& op, std::string& error) try {
    return std::visit([&](const auto& o) { return Do(o, error); }, op);
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for it";
    return false;
}

bool StrokePlayer::Do(const SetOp& op, std::string& error) {
    if (op.name == "useSelected")
        if (const bool* use = std::get_if<bool>(&op.value)) node_._luseSelected() = *use;
    return target_.SetSetting(op.name, op.value, op.index, error);
}

bool StrokePlayer::Do(const FalloffOp& op, std::string&) {
    target_.SetFalloff(op.curve, op.points);
    return true;
}

bool StrokePlayer::Do(const SubdivideOp& op, std::string& error) {
    const bool quad = op.kind == SubdivideKind::Quad;
    if (!node_.CanSubdivide(quad, error)) return false;
    if (quad ? node_.SubdivideAll_Quad() : node_.SubdivideAll_Loop()) return true;
    error = "the level can't be made: there is not enough memory";
    return false;
}

bool StrokePlayer::Do(const DeleteLevelOp&, std::string& error) {
    if (node_.DeleteTopLevelSudiv()) return true;
    error = "there is no level to delete: the mesh has level 0 alone";
    return false;
}

bool StrokePlayer::Do(const LevelOp& op, std::string& error) {
    if (node_.SetActiveSubdivLevel(op.value)) return true;
    const int top = node_.lobject()->GetOrigGeom()->GetNumSubivLevels() - 1;
    error = "level " + std::to_string(op.value) + " does not exist: the mesh has levels 0 to " +
            std::to_string(top);
    return false;
}

bool StrokePlayer::Do(const PressOp& op, std::string& error) {
    if (!OpenSession(error)) return false;
    if (!target_.SetSetting("sculptMode", static_cast<double>(op.mode), {}, error)) return false;
    target_.SetPressure(op.pressure);
    node_.InitTransform(op.pos, op.dir, op.orth, op.normal, op.screen, op.radius, op.mode, false);
    return true;
}

bool StrokePlayer::Do(const MoveOp& op, std::string&) {
    target_.SetPressure(op.pressure);
    node_.Transform(op.pos, op.screen, op.normal);
    return true;
}

bool StrokePlayer::Do(const ReleaseOp&, std::string&) {
    node_.FinishTransform(true);
    touched_ += node_.GetNumTouched();
    return true;
}

bool StrokePlayer::Do(const UndoOp&, std::string&) {
    node_.UndoStroke();
    return true;
}

bool StrokePlayer::Do(const ModifiersOp& op, std::string&) {
    SetShiftPressed(op.shift);
    SetCtrlPressed(op.ctrl);
    return true;
}

bool StrokePlayer::CheckPolygons(const std::vector<int>& polygons, std::string& error) const {
    const int count = target_.NumPolygons();
    for (const int p : polygons)
        if (p < 0 || p >= count) {
            error = "polygon " + std::to_string(p) +
                    " does not exist: the mesh has polygons 0 to " + std::to_string(count - 1);
            return false;
        }
    return true;
}

template <class Edit>
void StrokePlayer::ForFaces(const std::vector<int>& polygons, Edit edit) {
    for (const int p : polygons)
        for (int f = target_.FirstFaceOf(p); f < target_.FirstFaceOf(p + 1); ++f) edit(f);
}

bool StrokePlayer::Do(const SelectOp& op, std::string& error) {
    LMeshObject& object = *node_.lobject();
    if (op.faces && !CheckPolygons(*op.faces, error)) return false;
    object.SelectAll(!op.faces);
    if (op.faces) ForFaces(*op.faces, [&](int f) { object.SelectFace(f, true, false); });
    object.UpdateSelectionFlag();
    object.UpdateLevelSelction();
    return true;
}

LMorphTarget* StrokePlayer::Find(const std::string& target, std::string& error) const {
    LMorphTarget* found = node_.GetMorph(node_.FindMorph(target));
    if (!found) error = "there is no target " + Quoted(target) + "; store it first";
    return found;
}

bool StrokePlayer::Do(const StoreOp& op, std::string&) {
    LMorphTarget* target = node_.GetMorph(node_.FindMorph(op.target));
    if (!target) {
        target = node_.AddMorph();
        target->SetName(op.target);
    }
    return node_.StoreTarget(target);
}

bool StrokePlayer::Do(const LoadOp& op, std::string& error) {
    LMorphTarget* target = Find(op.target, error);
    return target && node_.LoadTarget(target);
}

bool StrokePlayer::Do(const ApplyOp& op, std::string& error) {
    return Find(op.target, error) && target_.Apply(op.target, op.weight, error);
}

bool StrokePlayer::Do(const NeutralOp&, std::string& error) {
    if (node_.createNeutral()) return true;
    error = "the neutral can't be made of what there is";
    return false;
}

bool StrokePlayer::Do(const ClearNeutralOp&, std::string& error) {
    if (node_.clearNeutral()) return true;
    error = "NEUTRAL is empty already.";
    return false;
}

bool StrokePlayer::Do(const PaintOp& op, std::string&) {
    node_.EditPaint(op.edit);
    return true;
}

bool StrokePlayer::Do(const MaskOp& op, std::string& error) {
    if (!op.mask.Check(error)) return false;
    node_.PlayMask(std::make_unique<LDynMask>(op.mask));
    return true;
}

bool StrokePlayer::Do(const UnmaskOp&, std::string&) {
    node_.PlayMask(nullptr);
    return true;
}

bool StrokePlayer::Do(const FinishOp&, std::string&) {
    node_.FinishSculpt(true);
    return true;
}

bool StrokePlayer::Do(const HideOp& op, std::string& error) {
    LMeshObject& object = *node_.lobject();
    if (op.faces && !CheckPolygons(*op.faces, error)) return false;
    if (!op.faces) object.HideAll();
    if (op.faces) ForFaces(*op.faces, [&](int f) { object.HideFace(f); });
    object.UpdateLevelVisibility();
    node_.UpdateHidden();
    return true;
}

bool StrokePlayer::Do(const ShowOp& op, std::string& error) {
    LMeshObject& object = *node_.lobject();
    if (op.faces && !CheckPolygons(*op.faces, error)) return false;
    if (!op.faces) object.ShowAll();
    if (op.faces) ForFaces(*op.faces, [&](int f) { object.ShowFace(f); });
    object.UpdateLevelVisibility();
    node_.UpdateHidden();
    return true;
}

}  // namespace VantrelSDK
