#include "host/nodes/NodeTarget.h"

#include <maya/MFloatArray.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MIntArray.h>
#include <maya/MRampAttribute.h>

#include <algorithm>

#include "host/ml/MLFalloffCache.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

/// The commands that bring a setting about with what follows from it; 0 for a mere attribute.
int CommandFor(std::string_view name) {
    if (name == "UVchannel") return 124;
    if (name == "objSmIt") return 125;
    return name == "neutralize" ? 181 : 0;
}

MPlug PlugOf(const MLNode& node, std::string_view name, std::optional<int> index) {
    const MPlug plug =
        MFnDependencyNode(node.getThisMObject()).findPlug(MString(std::string(name)));
    if (plug.isNull() || plug.isArray() != index.has_value()) return {};
    return index ? plug.elementByLogicalIndex(static_cast<unsigned>(*index)) : plug;
}

NodeAttributes::Member RampOf(int curve) {
    return curve == 1 ? &NodeAttributes::m_moFalloff : &NodeAttributes::m_moFalloff2;
}

}  // namespace

LNode& NodeTarget::node() {
    return node_;
}

std::optional<SettingValue> NodeTarget::GetSetting(std::string_view name,
                                                   std::optional<int> index) {
    static const LNodeSettings kinds;
    const std::optional<SettingValue> kind = kinds.Get(name, index);
    const MPlug plug = kind ? PlugOf(node_, name, index) : MPlug();
    if (plug.isNull()) return {};
    if (std::holds_alternative<bool>(*kind)) return plug.asBool();
    if (std::holds_alternative<double>(*kind)) return plug.asDouble();
    std::vector<double> parts(std::get<std::vector<double>>(*kind).size());
    for (unsigned c = 0; c < parts.size(); ++c) parts[c] = plug.child(c).asDouble();
    return parts;
}

bool NodeTarget::SetSetting(std::string_view name, const SettingValue& value,
                            std::optional<int> index, std::string& error) {
    LNodeSettings checked;
    if (const SettingResult result = checked.Set(name, value, index); !result) {
        error = result.message;
        return false;
    }
    MPlug plug = PlugOf(node_, name, index);
    if (plug.isNull()) return true;
    if (const auto* parts = std::get_if<std::vector<double>>(&value)) {
        for (unsigned c = 0; c < parts->size(); ++c) plug.child(c).setValue((*parts)[c]);
        return true;
    }
    const bool* flag = std::get_if<bool>(&value);
    const double number = flag ? *flag : std::get<double>(value);
    if (plug.asDouble() == number) return true;
    if (const int command = CommandFor(name)) {
        node_.plug(&NodeAttributes::m_moParam0).setValue(static_cast<int>(number));
        node_.plug(&NodeAttributes::m_moCommnad).setValue(command);
        node_.plug(&NodeAttributes::m_moExecute).setValue(1);
    } else {
        plug.setValue(number);
    }
    return true;
}

Ramp NodeTarget::GetFalloff(int curve) {
    const MRampAttribute ramp(node_.plug(RampOf(curve)));
    if (auto points = LinearRamp(ramp)) {
        for (RampPoint& p : *points) {
            p.position = std::clamp(p.position, 0.0f, 1.0f);
            p.value = std::clamp(p.value, 0.0f, 1.0f);
        }
        return *points;
    }
    Ramp samples;
    const LFalloffCache* cache = curve == 1 ? node_.lfalloff1() : node_.lfalloff2();
    for (size_t i = 0; cache && i < cache->Values().size(); ++i)
        samples.push_back({cache->Locations()[i], std::clamp(cache->Values()[i], 0.0f, 1.0f)});
    return samples.empty() ? Ramp{{0, 1}, {1, 0}} : samples;
}

void NodeTarget::SetFalloff(int curve, const Ramp& ramp) {
    if (GetFalloff(curve) == ramp) return;
    MRampAttribute plug(node_.plug(RampOf(curve)));
    MIntArray indices, kinds;
    MFloatArray positions, values;
    plug.getEntries(indices, positions, values, kinds);
    plug.deleteEntries(indices);
    positions.clear();
    values.clear();
    kinds.clear();
    for (const RampPoint& p : ramp) {
        positions.append(p.position);
        values.append(p.value);
        kinds.append(MRampAttribute::kLinear);
    }
    plug.addEntries(positions, values, kinds);
    node_.UpdateFalloffs();
}

float NodeTarget::GetPressure() {
    return node_.penPressure();
}

void NodeTarget::SetPressure(float pressure) {
    node_.playedPressure = pressure;
}

int NodeTarget::NumPolygons() {
    const MLMeshObject* object = node_.meshObject();
    return object && object->HasPoly2Faces() ? object->GetNumPolys() : 0;
}

int NodeTarget::FirstFaceOf(int polygon) {
    return node_.meshObject()->GetFirstFace(polygon);
}

bool NodeTarget::Apply(const std::string&, float, std::string& error) {
    error =
        "\"apply\" can't be played on a node of a scene: its targets get their weights from "
        "tracks; play the log with kelmo replay";
    return false;
}

}  // namespace VantrelSDK
