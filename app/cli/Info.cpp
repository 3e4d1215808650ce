#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "app/cli/Commands.h"
#include "core/io/MeshFile.h"
#include "core/mesh/MeshFacts.h"

namespace kelmo {

namespace {

using VantrelSDK::MeshFacts;

std::string AsJson(const std::string& file, const MeshFacts& facts) {
    nlohmann::ordered_json json;
    json["file"] = file;
    json["vertices"] = facts.vertices;
    json["polygons"] = facts.polygons;
    json["polygons_by_arity"] = nlohmann::ordered_json::object();
    for (const auto& [arity, count] : facts.byArity)
        json["polygons_by_arity"][std::to_string(arity)] = count;
    json["triangles"] = facts.triangles;
    json["uv_sets"] = facts.uvSets;
    json["uvs"] = facts.uvs;
    json["colours"] = facts.colours;
    json["bounds"] = {{"min", {facts.min.x, facts.min.y, facts.min.z}},
                      {"max", {facts.max.x, facts.max.y, facts.max.z}}};
    json["open_edges"] = facts.openEdges;
    json["non_manifold_edges"] = facts.nonManifoldEdges;
    json["levels"] = 1;
    json["targets"] = 0;
    return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string ArityName(int arity, bool several) {
    const std::string name = arity == 3   ? "triangle"
                             : arity == 4 ? "quad"
                                          : std::to_string(arity) + "-gon";
    return several ? name + "s" : name;
}

std::string AsText(const std::string& file, const MeshFacts& facts) {
    std::string arities;
    for (const auto& [arity, count] : facts.byArity)
        arities += fmt::format("{}{} {}", arities.empty() ? "" : ", ", count,
                               ArityName(arity, count != 1));
    return fmt::format(
        "{}\n"
        "  vertices            {}\n"
        "  polygons            {}{}\n"
        "  triangles           {}\n"
        "  UV sets             {}{}\n"
        "  vertex colours      {}\n"
        "  bounds              ({}, {}, {}) to ({}, {}, {})\n"
        "  open edges          {}\n"
        "  non-manifold edges  {}\n"
        "  levels              1\n"
        "  targets             0",
        file, facts.vertices, facts.polygons, arities.empty() ? "" : "  (" + arities + ")",
        facts.triangles, facts.uvSets,
        facts.uvSets ? fmt::format("  ({} UVs)", facts.uvs) : std::string(),
        facts.colours ? "yes" : "no", facts.min.x, facts.min.y, facts.min.z, facts.max.x,
        facts.max.y, facts.max.z, facts.openEdges, facts.nonManifoldEdges);
}

}  // namespace

int RunInfo(const InfoOptions& options) {
    if (IsNodeFile(options.file)) return RunInfoNode(options);
    VantrelSDK::PolyMesh mesh;
    VantrelSDK::FileError error;
    const auto progress = MakeProgress("reading");
    if (!VantrelSDK::ReadMesh(options.file, mesh, error, progress.get())) return Fail(error.Text());
    const MeshFacts facts = VantrelSDK::CountFacts(mesh);
    fmt::print("{}\n", options.json ? AsJson(options.file, facts) : AsText(options.file, facts));
    return 0;
}

}  // namespace kelmo
