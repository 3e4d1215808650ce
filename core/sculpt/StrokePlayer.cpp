#include "core/sculpt/StrokePlayer.h"

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

bool StrokePlayer::Play(const StrokeOp& op, std::string& error) {
    return std::visit([&](const auto& o) { return Do(o, error); }, op);
}

bool StrokePlayer::Do(const SetOp& op, std::string& error) {
    const int smoothing = node_.settings().objSmIt;
    const SettingResult result = node_.settings().Set(op.name, op.value, op.index);
    if (!result) {
        error = result.message;
        return false;
    }
    node_._luseSelected() = node_.settings().useSelected;
    if (node_.settings().objSmIt == smoothing || node_.UpdateBase()) return true;
    node_.settings().objSmIt = smoothing;
    error = "objSmIt can't change inside a stroke; release the stroke first";
    return false;
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
