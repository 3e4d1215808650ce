#include <maya/MDGModifier.h>
#include <maya/MFnPluginData.h>
#include <maya/MFnPointArrayData.h>
#include <maya/MGlobal.h>
#include <maya/MPointArray.h>

#include <cstdio>

#include "core/sculpt/LNodeRecord.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/nodes/KelmoBlindData.h"
#include "host/nodes/NodeCallbacks.h"
#include "host/nodes/NodeCommands.h"
#include "host/nodes/SurfaceDisplay.h"
#include "host/nodes/ToolArrays.h"
#include "host/nodes/TrackCurves.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

/// Versions of nodes whose state has to be brought up.
constexpr int kObjectSpaceFrom = 5072, kObjectSpaceTo = 5081, kNoLimitTo = 6043,
              kNoProxiesTo = 6041;
/// Blocks up to this version come from scenes whose curves show no keys.
constexpr int kShowsKeysTo = 3;

void Tell(const MString& text) {
    MGlobal::displayError(text);
}

/// Puts new, empty data that knows the node into a plug.
template <class Data>
Data* PutData(MLNode& node, N::Member attribute, unsigned id, MLNode* Data::*owner) {
    MFnPluginData fn;
    MStatus status;
    const MObject made = fn.create(MTypeId(id), &status);
    auto* data = status ? dynamic_cast<Data*>(fn.data()) : nullptr;
    if (!data) return nullptr;
    data->*owner = &node;
    return node.plug(attribute).setValue(made) ? data : nullptr;
}

KelmoBlindData* PutBlindData(MLNode& node) {
    return PutData(node, &N::m_moBlindData, kBlindDataId, &KelmoBlindData::kelmo2);
}

/// What nodes of older versions lack.
void BringUp(MLNode& node, int version, bool limits) {
    if (!node.lobject() || !node.GetDelta()) return;
    if (version >= kObjectSpaceFrom && version <= kObjectSpaceTo) {
        node.lobject()->UpdateBases();
        node.ConvertObj2Tang(0, 0, 0);
        node.ForceEvaluation(1);
    }
    if (limits && version <= kNoLimitTo) node.updateNeutralLimit(nullptr);
    if (version <= kNoProxiesTo) node.addProxies2targets();
}

MString VersionText(int version) {
    char text[64];
    const int last = version % 100;
    std::snprintf(text, sizeof text, last < 10 ? "v %i.%i.0%i" : "v %i.%i.%i", version / 1000,
                  version % 1000 / 100, last);
    return text;
}

}  // namespace

std::span<const NodeCommands::Row> NodeCommands::StateRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {28, &C::PreSave},      {29, &C::Restore},       {30, &C::PostSave},
        {31, &C::ImportRecord}, {32, &C::ExportRecord},  {105, &C::WorkVectors},
        {115, &C::PassStencil}, {174, &C::PassRefImage},
    };
    return rows;
}

void NodeCommands::PreSave() try {
    HideSurface(node_);
    if (!node_.IsSculpting()) {
        node_.deleteAllLevelTrees();
        node_.SetBlendCache(nullptr);
    }
    node_.plug(&N::m_moVersionInt).setValue(GetKelmoVersionInt());
    node_.plug(&N::m_moVersionStr).setValue(GetKelmoVersionString().c_str());
    KelmoBlindData* data = PutBlindData(node_);
    if (!data || data->BeginWrite() != 0 || node_.WriteTo(data) != 0 || data->EndWrite() != 0)
        Tell("Kelmo: Save failed");
} catch (...) {
    Error("exception occured.");
}

void NodeCommands::PostSave() {
    if (node_.IsSculpting()) ShowSurface(node_);
    PutBlindData(node_);
}

void NodeCommands::Restore() {
    const int version = node_.plug(&N::m_moVersionInt).asInt();
    MObject held = node_.plug(&N::m_moBlindData).asMObject();
    if (held.isNull()) {
        PutBlindData(node_);
        return;
    }
    MFnPluginData fn(held);
    auto* data = dynamic_cast<KelmoBlindData*>(fn.data());
    if (!data) return Error("can not set MFnPluginData object\n");
    if (data->GetSize() == 0) return;
    char digits[4];
    if (data->BeginRead(digits) != 0) Tell("Kelmo: failed to start reading of blinddata");
    if (node_.ReadFrom(data) != 0) Tell("Kelmo: failed to read blinddata");
    if (data->EndRead() != 0) Tell("Kelmo: failed to finish reading of blinddata");
    data->Clear();
    node_.postload = true;
    if (data->GetReadVersion() <= kShowsKeysTo) ShowKeys();
    RegisterTracks(node_);
    BringUp(node_, version, true);
    MPlug lead = node_.plug(&N::m_moLead);
    if (lead.isDestination()) {
        MDGModifier edits;
        edits.disconnect(lead.source(), lead);
        edits.doIt();
    }
    OutputChanged();
    PutBlindData(node_);
    if (node_.getNumRenderSubdivisionLevels() != 0)
        node_.plug(&N::m_moNumRenderSubdivLvls).setValue(0);
    FillToolArrays(node_, true);
}

void NodeCommands::ImportRecord() {
    const MString path = Text();
    if (path.length() == 0) return Tell("Vantrel: cant not get file name to read from.");
    KelmoBlindData data;
    int version = 0;
    std::string message;
    if (!data.ReadFromFile(path.asChar(), version, &message))
        return Tell("Vantrel: failed to read from file " + path);
    if (version != GetKelmoVersionInt())
        MGlobal::displayInfo(
            "Kelmo: importing node that was exported by different version of Vantrel:\ncurrent " +
            MString(GetKelmoVersionString().c_str()) + " exported " + VersionText(version));
    if (data.GetSize() == 0) return Tell("Vantrel: no data from file " + path);
    node_.deleteAllLevelTrees();
    char digits[4];
    if (data.BeginRead(digits) != 0 || node_.ReadFrom(&data) != 0 || data.EndRead() != 0)
        Tell("Vantrel: failed to read from file " + path);
    node_.postload = true;
    HideKeys();
    ShowKeys();
    RegisterTracks(node_);
    BringUp(node_, version, false);
    OutputChanged();
}

void NodeCommands::ExportRecord() {
    const MString path = Text();
    if (path.length() == 0) return Tell("Vantrel: cant not get file name to save to.");
    KelmoBlindData data(&node_);
    std::string message;
    if (data.BeginWrite() != 0 || node_.WriteTo(&data) != 0 || data.EndWrite() != 0 ||
        !data.WriteToFile(path.asChar(), GetKelmoVersionInt(), &message))
        Tell("Vantrel: failed to write to file " + path);
}

/// The offsets of level 0 in object space.
void NodeCommands::WorkVectors() {
    if (!HasGeometry()) return;
    node_.RaiseLevels();
    const auto offsets = node_.GetObjectDelta();
    MPointArray points(static_cast<unsigned>(offsets->GetNumLevelVerts(0)));
    for (unsigned v = 0; v < points.length(); ++v) {
        const LPoint3 offset = offsets->GetLevelVert(v, 0);
        points[v] = MPoint(offset.x, offset.y, offset.z);
    }
    MStatus status;
    const MObject data = MFnPointArrayData().create(points, &status);
    if (!status || !node_.plug(&N::m_moParam2).setValue(data))
        Tell("Kelmo: can not create point array object.");
}

void NodeCommands::PassStencil() {
    PutData(node_, &N::m_moStencilCbk, kStencilCallbackId, &KelmoStencilCallback::kelmo);
}

void NodeCommands::PassRefImage() {
    PutData(node_, &N::m_moRefimageCbk, kRefImageCallbackId, &KelmoRefImageCallback::kelmo);
}

}  // namespace VantrelSDK
