#include "core/sculpt/StrokePlayer.h"

#include <new>

#include "core/io/Quoted.h"
#include "core/mesh/Triangulation.h"

namespace VantrelSDK {

StrokePlayer::~StrokePlayer() {
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
    const LNodeSettings former = node_.settings();
    const SettingResult result = node_.settings().Set(op.name, op.value, op.index);
    if (!result) {
        error = result.message;
        return false;
    }
    node_._luseSelected() = node_.settings().useSelected;
    if (Follow(former, error)) return true;
    node_.settings() = former;
    return false;
}

/// Some settings change what is there.
bool StrokePlayer::Follow(const LNodeSettings& former, std::string& error) {
    const LNodeSettings& now = node_.settings();
    const bool smoothed = now.objSmIt != former.objSmIt,
               neutral = now.neutralize != former.neutralize;
    const bool moved = now.UVchannel != former.UVchannel;
    if (node_.IsStroking() && (smoothed || neutral || moved)) {
        error = std::string(smoothed  ? "objSmIt"
                            : neutral ? "neutralize"
                                      : "UVchannel") +
                " can't change inside a stroke; release the stroke first";
        return false;
    }
    if (smoothed) {
        node_.ConvertSmoothing3(former.objSmIt, now.objSmIt);
        node_.UpdateBase();
    }
    if (now.blendTarg != former.blendTarg || now.blendSpace != former.blendSpace)
        node_.setBlendCache(now.blendTarg);
    if (moved) node_.MoveToChannel(former.UVchannel);
    return !neutral || node_.Neutralize(now.neutralize, error);
}

bool StrokePlayer::Do(const FalloffOp& op, std::string&) {
    (op.curve == 1 ? node_.settings().falloff : node_.settings().falloff2) = op.points;
    node_.UpdateFalloffs();
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
    node_.settings().sculptMode = op.mode;
    node_.SetPenPressure(op.pressure);
    node_.InitTransform(op.pos, op.dir, op.orth, op.normal, op.screen, op.radius, op.mode, false);
    return true;
}

bool StrokePlayer::Do(const MoveOp& op, std::string&) {
    node_.SetPenPressure(op.pressure);
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
    for (const int p : polygons)
        if (p < 0 || p >= mesh_.NumPolygons()) {
            error = "polygon " + std::to_string(p) +
                    " does not exist: the mesh has polygons 0 to " +
                    std::to_string(mesh_.NumPolygons() - 1);
            return false;
        }
    return true;
}

template <class Edit>
void StrokePlayer::ForFaces(const std::vector<int>& polygons, Edit edit) {
    for (const int p : polygons)
        for (int f = FirstFaceOf(mesh_, p); f < FirstFaceOf(mesh_, p + 1); ++f) edit(f);
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
    if (!Find(op.target, error)) return false;
    node_.weights().Set(op.target, op.weight);
    return node_.SetTime(node_.ltime(), -1);
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
