#include <maya/MGlobal.h>

#include "core/anim/LControlCollection.h"
#include "host/ml/MLMorphTarget.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::TargetRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {7, &C::TargetName},       {8, &C::SetTargetName}, {9, &C::LoadTarget},
        {10, &C::TargetToDelta},   {16, &C::ImportTarget}, {17, &C::ImportTargetObj},
        {18, &C::ExportTarget},    {19, &C::TotalTargets}, {20, &C::StandardTargets},
        {21, &C::ExtendedTargets}, {22, &C::AddTarget},    {23, &C::DeleteTarget},
        {24, &C::IsTargetZero},    {157, &C::ClearTarget}, {247, &C::AddProxies},
    };
    return rows;
}

void NodeCommands::TargetName() {
    const LMorphTarget* target = Target();
    Answer(target ? MString(target->GetName().c_str()) : MString("error"));
}

void NodeCommands::SetTargetName() {
    if (Target()) node_.SetMorphName(Index(), Text().str());
}

void NodeCommands::LoadTarget() {
    LMorphTarget* target = Target();
    if (!target || !HasGeometry()) return;
    node_.RaiseLevels();
    if (!node_.StoreTarget(target)) Error("can not create target.\n");
}

void NodeCommands::TargetToDelta() {
    LMorphTarget* target = Target();
    if (!target || !HasGeometry() || node_.IsStroking()) return;
    node_.RaiseLevels();
    if (!node_.LoadTarget(target)) return Error("can not create delta from target.\n");
    OutputChanged();
}

void NodeCommands::ImportTarget() {
    LMorphTarget* target = Target();
    MString error;
    if (!target || !HasGeometry()) return;
    if (!MakeMorphFromMesh(node_, Given(), *target, error)) Error(error.asChar());
}

void NodeCommands::ImportTargetObj() {
    LMorphTarget* target = Target();
    MString error;
    if (!target || !HasGeometry()) return;
    if (!MakeMorphFromObj(node_, Text(), *target, error)) Error(error.asChar());
}

void NodeCommands::ExportTarget() {
    LMorphTarget* target = Target();
    if (target && HasGeometry()) ExportToDag(node_, *target, -1);
}

void NodeCommands::TotalTargets() {
    Answer(node_.GetNumMorphs());
}
void NodeCommands::StandardTargets() {
    Answer(node_.GetNumStdMorphs());
}
void NodeCommands::ExtendedTargets() {
    Answer(node_.GetNumExtMorphs());
}

void NodeCommands::AddTarget() {
    node_.AddMorph();
}

void NodeCommands::DeleteTarget() {
    const int index = Index();
    if (!Target() || !node_.DelMorph(index)) return;
    LControlCollection* tracks = node_.GetAnimControls();
    if (!tracks || !tracks->HasKeys()) return;
    tracks->TargetDeleted(index);
    HideKeys();
    ShowKeys();
    OutputChanged();
}

void NodeCommands::IsTargetZero() {
    const LMorphTarget* target = Target();
    Answer(target && (target->HasXYZ() || target->HasRGBA()) ? 0 : 1);
}

void NodeCommands::ClearTarget() {
    LMorphTarget* target = Target();
    if (!target) return;
    if (target->HasXYZ()) target->ClearGeom();
    if (target->HasRGBA()) target->ClearColor();
    node_.Invalidate();
    OutputChanged();
}

void NodeCommands::AddProxies() {
    if (HasGeometry()) node_.addProxies2targets();
}

}  // namespace VantrelSDK
