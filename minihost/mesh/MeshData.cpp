#include "minihost/mesh/MeshData.h"

#include <fmt/format.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <numeric>

namespace minihost {
namespace {

/// By name, the set called `current` for no name. Null where there is none.
template <class Sets>
auto FindIn(Sets& sets, const std::string& name, const std::string& current)
    -> decltype(sets.data()) {
    const std::string& wanted = name.empty() ? current : name;
    const auto found = std::ranges::find(sets, wanted, [](const auto& set) { return set.name; });
    return found == sets.end() ? nullptr : &*found;
}

}  // namespace

MeshPtr MeshData::Make(std::vector<MFloatVector> points, std::span<const int> counts,
                       std::vector<int> corners, std::string& error) {
    Polygons polygons;
    polygons.starts.reserve(counts.size() + 1);
    size_t end = 0;
    for (size_t p = 0; p < counts.size(); ++p) {
        if (counts[p] < 3) {
            error = fmt::format("polygon {} has {} corners: it takes 3", p, counts[p]);
            return nullptr;
        }
        end += static_cast<size_t>(counts[p]);
        if (end > corners.size() || end > INT_MAX) break;
        polygons.starts.push_back(static_cast<int>(end));
    }
    if (end != corners.size() || end > INT_MAX) {
        error = fmt::format("the polygons have {} corners by their counts, and {} are given", end,
                            corners.size());
        return nullptr;
    }
    for (const int v : corners)
        if (v < 0 || static_cast<size_t>(v) >= points.size()) {
            error = fmt::format("a corner names vertex {}, of {} that there are", v, points.size());
            return nullptr;
        }
    polygons.corners = std::move(corners);
    const auto mesh = std::make_shared<MeshData>();
    mesh->points_.Set(std::move(points));
    mesh->polygons_.Set(std::move(polygons));
    return mesh;
}

bool MeshData::Equals(const Data& other) const {
    const auto* mesh = dynamic_cast<const MeshData*>(&other);
    return mesh && points_ == mesh->points_ && polygons_ == mesh->polygons_ &&
           uvSets == mesh->uvSets && colorSets == mesh->colorSets && groups == mesh->groups &&
           currentUVSet == mesh->currentUVSet && currentColorSet == mesh->currentColorSet;
}

int MeshData::CountEdges() const {
    std::vector<std::uint64_t> edges;
    edges.reserve(numCorners());
    for (int p = 0; p < polygons_->count(); ++p) {
        const auto ring = polygons_->Of(p);
        for (size_t i = 0; i < ring.size(); ++i) {
            const auto a = static_cast<std::uint32_t>(ring[i]);
            const auto b = static_cast<std::uint32_t>(ring[(i + 1) % ring.size()]);
            edges.push_back(std::uint64_t{std::min(a, b)} << 32 | std::max(a, b));
        }
    }
    std::ranges::sort(edges);
    return static_cast<int>(std::unique(edges.begin(), edges.end()) - edges.begin());
}

MBoundingBox MeshData::Bounds() const {
    if (points_->empty()) return {};
    MFloatVector low = points_->front(), high = low;
    for (const MFloatVector& p : *points_) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return {MPoint(MFloatPoint(low)), MPoint(MFloatPoint(high))};
}

bool MeshData::AssignUVs(UVSet& set, std::span<const int> counts, std::span<const int> ids) const {
    if (counts.size() != static_cast<size_t>(polygons_->count())) return false;
    size_t used = 0;
    for (int p = 0; p < polygons_->count(); ++p) {
        const int n = counts[static_cast<size_t>(p)];
        if (n != 0 && n != polygons_->CountOf(p)) return false;
        used += static_cast<size_t>(n);
    }
    const int size = static_cast<int>(set.values->size());
    if (used != ids.size() ||
        std::ranges::any_of(ids, [size](int id) { return id < 0 || id >= size; }))
        return false;
    std::vector<int> corners(numCorners(), -1);
    auto id = ids.begin();
    for (int p = 0; p < polygons_->count(); ++p) {
        std::copy_n(id, counts[static_cast<size_t>(p)], corners.begin() + polygons_->StartOf(p));
        id += counts[static_cast<size_t>(p)];
    }
    set.corners.Set(std::move(corners));
    return true;
}

UVSet* MeshData::FindUVSet(const std::string& name) {
    return FindIn(uvSets, name, currentUVSet);
}
const UVSet* MeshData::FindUVSet(const std::string& name) const {
    return FindIn(uvSets, name, currentUVSet);
}
ColorSet* MeshData::FindColorSet(const std::string& name) {
    return FindIn(colorSets, name, currentColorSet);
}
const ColorSet* MeshData::FindColorSet(const std::string& name) const {
    return FindIn(colorSets, name, currentColorSet);
}

const ObjectGroup* MeshData::FindGroup(int id) const {
    const auto found = std::ranges::find(groups, id, &ObjectGroup::id);
    return found == groups.end() ? nullptr : &*found;
}

void MeshData::SetGroup(int id, Component component) {
    const auto found = std::ranges::find(groups, id, &ObjectGroup::id);
    if (found == groups.end())
        groups.push_back({id, std::move(component)});
    else
        found->component = std::move(component);
}

Component MeshData::Expand(const Component& component) const {
    const int count = component.kind == MFn::kMeshVertComponent      ? numVertices()
                      : component.kind == MFn::kMeshPolygonComponent ? polygons().count()
                                                                     : CountEdges();
    return {component.kind, component.complete, ElementsOf(component, count)};
}

std::vector<int> ElementsOf(const Component& component, int count) {
    std::vector<int> elements;
    if (component.complete) {
        elements.resize(static_cast<size_t>(std::max(count, 0)));
        std::iota(elements.begin(), elements.end(), 0);
        return elements;
    }
    elements = component.elements;
    std::erase_if(elements, [count](int e) { return e < 0 || e >= count; });
    std::ranges::sort(elements);
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
    return elements;
}

}  // namespace minihost
