#include <maya/MGlobal.h>

#include "host/ml/InterfaceProcedures.h"
#include "host/ml/MLMorphTarget.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::NeutralRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {181, &C::SetNeutralize},    {182, &C::LoadNeutral},   {183, &C::LoadNeutralWhenEmpty},
        {184, &C::NeutralToDelta},   {188, &C::ClearNeutral},  {191, &C::ImportNeutral},
        {192, &C::ImportNeutralObj}, {193, &C::ExportNeutral}, {194, &C::IsNeutralZero},
    };
    return rows;
}

void NodeCommands::SetNeutralize() {
    if (!HasGeometry()) return;
    const bool on = Index() != 0;
    std::string why;
    node_.RaiseLevels();
    if (!node_.Neutralize(on, why)) {
        RunIfKnown("checkBoxGrp", "-e -v1 false kmNeutralizeCbx");
        if (!why.empty()) MGlobal::displayWarning(why.c_str());
        return;
    }
    node_.plug(&NodeAttributes::m_moNeutralize).setValue(on);
    OutputChanged();
}

void NodeCommands::LoadNeutral() {
    if (!HasGeometry() || !Neutral()) return;
    node_.RaiseLevels();
    if (!node_.createNeutral()) return Error("can not create target.");
    RunIfKnown("KelmoUpdateNeutral");
    OutputChanged();
}

void NodeCommands::LoadNeutralWhenEmpty() {
    if (!node_.HasNeutral()) LoadNeutral();
}

void NodeCommands::NeutralToDelta() {
    LMorphTarget* neutral = Neutral();
    if (!HasGeometry() || !neutral || node_.IsStroking()) return;
    node_.RaiseLevels();
    if (!node_.LoadTarget(neutral)) return Error("can not create delta from neutral.");
    OutputChanged();
}

void NodeCommands::ClearNeutral() {
    LMorphTarget* neutral = Neutral();
    if (!neutral) return;
    if (!neutral->HasXYZ() && !neutral->HasRGBA()) {
        MGlobal::displayInfo("KelmoNode2: NEUTRAL is empty already.");
        return;
    }
    node_.RaiseLevels();
    if (node_.clearNeutral()) OutputChanged();
}

void NodeCommands::ImportNeutral() {
    LMorphTarget* neutral = Neutral();
    MString error;
    if (!neutral || !HasGeometry()) return;
    if (!MakeMorphFromMesh(node_, Given(), *neutral, error)) return Error(error.asChar());
    RunIfKnown("KelmoUpdateNeutral");
    OutputChanged();
}

void NodeCommands::ImportNeutralObj() {
    LMorphTarget* neutral = Neutral();
    MString error;
    if (!neutral || !HasGeometry()) return;
    if (!MakeMorphFromObj(node_, Text(), *neutral, error)) return Error(error.asChar());
    RunIfKnown("KelmoUpdateNeutral");
    OutputChanged();
}

void NodeCommands::ExportNeutral() {
    LMorphTarget* neutral = Neutral();
    if (neutral && HasGeometry()) ExportToDag(node_, *neutral, -1);
}

void NodeCommands::IsNeutralZero() {
    const LMorphTarget* neutral = node_.GetNeutral();
    Answer(neutral && (neutral->HasXYZ() || neutral->HasRGBA()) ? 0 : 1);
}

}  // namespace VantrelSDK
