#include "app/window/MeshExchange.h"

namespace kelmo {

using minihost::MeshData;
using minihost::MeshPtr;
using VantrelSDK::PolyMesh;

namespace {

/// Gives each corner the colour of its vertex.
void PutColors(const PolyMesh& from, MeshData& to) {
    if (from.colours.size() != from.positions.size()) return;
    minihost::ColorSet set;
    set.name = to.currentColorSet = "color";
    std::vector<MColor> colors;
    colors.reserve(from.colours.size());
    for (const VantrelSDK::LPoint3& c : from.colours) colors.push_back(MColor(c.x, c.y, c.z));
    set.values.Set(std::move(colors));
    set.corners.Set(from.cornerVerts);
    to.colorSets.push_back(std::move(set));
}

void TakeColors(const MeshData& from, PolyMesh& to) {
    const minihost::ColorSet* set = from.FindColorSet("");
    if (!set || set->values->empty()) return;
    to.colours.assign(to.positions.size(), {1, 1, 1});
    const std::vector<int>& corners = from.polygons().corners;
    for (size_t i = 0; i < corners.size(); ++i)
        if (const int color = set->At(static_cast<int>(i)); color >= 0) {
            const MColor& c = (*set->values)[static_cast<size_t>(color)];
            to.colours[static_cast<size_t>(corners[i])] = {c.r, c.g, c.b};
        }
}

}  // namespace

MeshPtr ToHost(const PolyMesh& mesh, std::string& error) {
    std::vector<MFloatVector> points;
    points.reserve(mesh.positions.size());
    for (const VantrelSDK::LPoint3& p : mesh.positions) points.push_back({p.x, p.y, p.z});
    std::vector<int> counts;
    for (size_t p = 0; p + 1 < mesh.polygonStart.size(); ++p)
        counts.push_back(mesh.polygonStart[p + 1] - mesh.polygonStart[p]);
    MeshPtr made = MeshData::Make(std::move(points), counts, mesh.cornerVerts, error);
    if (!made) return nullptr;
    PutColors(mesh, *made);
    if (mesh.cornerUVs.empty()) return made;
    minihost::UVSet& set = made->uvSets[0];
    std::vector<minihost::UV> uvs;
    uvs.reserve(mesh.uvs.size());
    for (const VantrelSDK::LPoint2& uv : mesh.uvs) uvs.push_back({uv.x, uv.y});
    set.values.Set(std::move(uvs));
    set.corners.Set(mesh.cornerUVs);
    return made;
}

PolyMesh FromHost(const MeshData& mesh) {
    PolyMesh made;
    made.positions.reserve(mesh.points().size());
    for (const MFloatVector& p : mesh.points()) made.positions.push_back({p.x, p.y, p.z});
    made.polygonStart = mesh.polygons().starts;
    made.cornerVerts = mesh.polygons().corners;
    TakeColors(mesh, made);
    const minihost::UVSet* set = mesh.FindUVSet("");
    if (!set || set->corners->empty()) return made;
    for (const minihost::UV& uv : *set->values) made.uvs.push_back({uv.u, uv.v});
    made.cornerUVs = *set->corners;
    return made;
}

}  // namespace kelmo
