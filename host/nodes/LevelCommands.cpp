#include <maya/MGlobal.h>

#include "core/subdiv/LUVSubdivChannel.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

using N = NodeAttributes;

std::span<const NodeCommands::Row> NodeCommands::LevelRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {2, &C::BeginSelect},       {90, &C::LevelCount},      {91, &C::ActiveLevel},
        {92, &C::SetActiveLevel},   {93, &C::LevelType},       {94, &C::LevelVerts},
        {95, &C::LevelFaces},       {96, &C::LevelName},       {97, &C::Subdivide},
        {98, &C::DeleteLevel},      {116, &C::ClearSelection}, {117, &C::ExpandSelection},
        {118, &C::ReduceSelection}, {119, &C::HideSelected},   {120, &C::ShowAll},
        {121, &C::InvertHidden},    {122, &C::UVSetCount},     {123, &C::UVSetName},
        {124, &C::SetUVSet},        {125, &C::SetSmoothing},   {131, &C::UpdateUVSets},
    };
    return rows;
}

/// What is selected is what the mesh shows, not the session.
void NodeCommands::BeginSelect() {
    if (!HasGeometry() || !node_.IsSculpting()) return;
    node_.FinishSculpt(false);
    OutputChanged();
}

void NodeCommands::LevelCount() {
    Answer(node_.GetDeltaMesh() ? node_.GetDeltaMesh()->GetNumSubivLevels() : 0);
}

void NodeCommands::ActiveLevel() {
    Answer(node_.GetDeltaMesh() ? node_.GetDeltaMesh()->GetActiveLevel() : 0);
}

void NodeCommands::SetActiveLevel() {
    if (!HasGeometry()) return;
    node_.RaiseLevels();
    if (Index() < 0 || !node_.SetActiveSubdivLevel(static_cast<unsigned>(Index())))
        return Error("there is no level with such index.");
    node_.keepLevel = true;
    OutputChanged();
}

void NodeCommands::LevelType() {
    const LSubdivMesh* mesh = node_.GetDeltaMesh();
    const int level = Index();
    const bool known = mesh && level >= 1 && level < mesh->GetNumSubivLevels();
    Answer(known ? mesh->GetSubdivs().GetLayer(level)->GetType() : -1);
}

void NodeCommands::LevelVerts() {
    const LSubdivMesh* mesh = node_.GetDeltaMesh();
    const int level = Index();
    const bool known = mesh && level >= 0 && level < mesh->GetNumSubivLevels();
    Answer(known ? mesh->GetNumLevelVerts(static_cast<unsigned>(level)) : 0);
}

void NodeCommands::LevelFaces() {
    const LSubdivMesh* mesh = node_.GetDeltaMesh();
    const int level = Index();
    const bool known = mesh && level >= 0 && level < mesh->GetNumSubivLevels();
    Answer(known ? mesh->GetNumLevelFaces(static_cast<unsigned>(level)) : 0);
}

void NodeCommands::LevelName() {
    const LSubdivMesh* mesh = node_.GetDeltaMesh();
    const int level = Index();
    if (!mesh || level < 0 || level >= mesh->GetNumSubivLevels()) return Answer(MString("error"));
    Answer("Level " + MString(std::to_string(level)));
}

void NodeCommands::Subdivide() {
    Answer(0);
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.RaiseLevels();
    const bool quads = LNode::prefSubdivisionMethod == 1;
    std::string error;
    if (!node_.CanSubdivide(quads, error)) return Error(error.c_str());
    if (!(quads ? node_.SubdivideAll_Quad() : node_.SubdivideAll_Loop())) return;
    node_.keepLevel = true;
    Answer(1);
    OutputChanged();
}

void NodeCommands::DeleteLevel() {
    Answer(0);
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.RaiseLevels();
    if (!node_.DeleteTopLevelSudiv()) return;
    node_.keepLevel = true;
    Answer(1);
    OutputChanged();
}

void NodeCommands::ClearSelection() {
    if (HasGeometry()) node_.lobject()->ClearSelection();
    OutputChanged();
}

void NodeCommands::ExpandSelection() {
    if (HasGeometry()) node_.lobject()->ExpandSelection();
    OutputChanged();
}

void NodeCommands::ReduceSelection() {
    if (HasGeometry()) node_.lobject()->ReduceSelection();
    OutputChanged();
}

void NodeCommands::HideSelected() {
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.lobject()->HideSelected();
    node_.UpdateHidden();
    OutputChanged();
}

void NodeCommands::ShowAll() {
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.lobject()->ShowAll();
    node_.UpdateHidden();
    OutputChanged();
}

void NodeCommands::InvertHidden() {
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.lobject()->InvertHidden();
    node_.UpdateHidden();
    OutputChanged();
}

void NodeCommands::UVSetCount() {
    Answer(node_.lobject() ? node_.lobject()->GetNumUVChannels() : 0);
}

void NodeCommands::UVSetName() {
    const LUVSubdivChannel* channel =
        node_.lobject() ? node_.lobject()->GetUVChannel(Index()) : nullptr;
    Answer(channel ? MString(channel->name().c_str()) : MString("error"));
}

void NodeCommands::SetUVSet() {
    const int former = node_.getUVchannel();
    if (!HasGeometry() || node_.IsStroking() || Index() == former) return;
    if (!node_.lobject()->GetUVChannel(Index()))
        return Error("there is no UV set with such index.");
    node_.RaiseLevels();
    node_.plug(&N::m_moUVchannel).setValue(Index());
    node_.MoveToChannel(former);
    OutputChanged();
}

void NodeCommands::SetSmoothing() {
    const int former = node_.getObjSmoothIt(), wanted = Index();
    if (!HasGeometry() || node_.IsStroking() || wanted < 0 || wanted == former) return;
    node_.RaiseLevels();
    node_.plug(&N::m_moObjSmIt).setValue(wanted);
    node_.ConvertSmoothing3(former, node_.getObjSmoothIt());
    node_.UpdateBase();
    OutputChanged();
}

void NodeCommands::UpdateUVSets() {
    if (!HasGeometry() || node_.IsStroking()) return;
    node_.RaiseLevels();
    node_.meshObject()->SetUVSets(node_.inputPlug().asMObject());
    OutputChanged();
}

}  // namespace VantrelSDK
