#include <fmt/core.h>

#include <cctype>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "app/cli/Commands.h"
#include "core/sculpt/LHeadlessNode.h"
#include "core/sculpt/LNodeRecord.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace kelmo {

namespace {

using namespace VantrelSDK;
using Json = nlohmann::ordered_json;

Json TargetsOf(const LHeadlessNode& node) {
    Json list = Json::array();
    for (const LMorphTarget* target : node.AllTargets())
        if (target->HasXYZ())
            list.push_back({{"name", target->GetName()}, {"vertices", target->SizeGeom()}});
    return list;
}

Json FactsOf(const std::string& file, int version, LHeadlessNode& node) {
    const LMeshObject& object = *node.lobject();
    const LSubdivMesh& geom = *object.GetOrigGeom();
    Json levels = Json::array();
    for (int level = 0; level < geom.GetNumSubivLevels(); ++level)
        levels.push_back({{"vertices", geom.GetNumLevelVerts(level)},
                          {"triangles", geom.GetNumLevelFaces(level)}});
    int channels = 0;
    while (object.GetUVChannel(channels)) ++channels;
    LPoint3 min, max;
    geom.CalcBBox(min, max);
    Json json;
    json["file"] = file;
    json["version"] = GetKelmoVersionString(version);
    json["levels"] = levels;
    json["active_level"] = geom.GetActiveLevel();
    json["uv_sets"] = channels;
    json["bounds"] = {{"min", {min.x, min.y, min.z}}, {"max", {max.x, max.y, max.z}}};
    json["longest_offset"] = node.GetMaxDelta();
    const LColorDelta& colours = *node.lcolorDelta();
    int painted = 0, stencilled = 0;
    for (int v = 0; v < colours.GetNumVerts(-2); ++v) {
        painted += !(colours.Paints()[v] == LAColor());
        stencilled += colours.Stencils()[v] != 0;
    }
    json["painted"] = painted;
    json["stencilled"] = stencilled;
    json["targets"] = TargetsOf(node);
    return json;
}

std::string AsText(const Json& json) {
    std::string text =
        fmt::format("{}\n  version             {}\n", json["file"].get<std::string>(),
                    json["version"].get<std::string>());
    for (size_t level = 0; level < json["levels"].size(); ++level)
        text += fmt::format("  level {:<13} {} vertices, {} triangles{}\n", level,
                            json["levels"][level]["vertices"].get<int>(),
                            json["levels"][level]["triangles"].get<int>(),
                            level == json["active_level"] ? "  (active)" : "");
    text += fmt::format(
        "  UV sets             {}\n  longest offset      {}\n  painted             {} vertices\n"
        "  stencilled          {} vertices\n  targets             {}",
        json["uv_sets"].get<int>(), json["longest_offset"].get<float>(), json["painted"].get<int>(),
        json["stencilled"].get<int>(), json["targets"].size());
    for (const Json& target : json["targets"])
        text += fmt::format("\n    {:<17} {} vertices", target["name"].get<std::string>(),
                            target["vertices"].get<size_t>());
    return text;
}

}  // namespace

bool IsNodeFile(const std::string& path) {
    char head[12] = {};
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed)) return false;
    std::ifstream(path, std::ios::binary).read(head, sizeof head);
    const auto digit = [&](int i) {
        return std::isdigit(static_cast<unsigned char>(head[i])) != 0;
    };
    return digit(8) && digit(9) && digit(10) && head[11] == '<';
}

int RunInfoNode(const InfoOptions& options) {
    LHeadlessNode node(1);
    std::string error;
    int version = 0;
    if (!node.LoadState(options.file, error, &version)) return Fail(error);
    const Json json = FactsOf(options.file, version, node);
    fmt::print("{}\n", options.json ? json.dump(2, ' ', false, Json::error_handler_t::replace)
                                    : AsText(json));
    return 0;
}

}  // namespace kelmo
