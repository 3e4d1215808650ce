#pragma once

#include <span>
#include <string>
#include <vector>

#include "maya/MBoundingBox.h"
#include "maya/MColor.h"
#include "maya/MFloatVector.h"
#include "minihost/base/Shared.h"
#include "minihost/graph/Data.h"

namespace minihost {

/// Polygons as runs of corners; a corner names a vertex.
struct Polygons {
    /// Number of polygons + 1 offsets into `corners`; polygon p has the corners from starts[p] up
    /// to starts[p + 1], at least 3.
    std::vector<int> starts{0};
    std::vector<int> corners;

    int count() const { return static_cast<int>(starts.size()) - 1; }
    int CountOf(int polygon) const { return StartOf(polygon + 1) - StartOf(polygon); }
    int StartOf(int polygon) const { return starts[static_cast<size_t>(polygon)]; }
    std::span<const int> Of(int polygon) const {
        return std::span(corners).subspan(static_cast<size_t>(StartOf(polygon)),
                                          static_cast<size_t>(CountOf(polygon)));
    }
    bool operator==(const Polygons&) const = default;
};

struct UV {
    float u = 0, v = 0;
    bool operator==(const UV&) const = default;
};

/// Values that corners name: a UV set, a colour set.
template <class T>
struct CornerSet {
    std::string name;
    Shared<std::vector<T>> values;
    /// One for each corner of the mesh, in order: a number into `values`, or -1 for none. Empty
    /// where no corner has any.
    Shared<std::vector<int>> corners;

    /// The number that a corner has, -1 for none.
    int At(int corner) const { return corners->empty() ? -1 : (*corners)[size_t(corner)]; }
    /// `corners`, made where it is empty. `count`: the corners of the mesh.
    std::vector<int>& EditCorners(size_t count) {
        if (corners->size() != count) corners.Set(std::vector<int>(count, -1));
        return corners.Edit();
    }
    bool operator==(const CornerSet&) const = default;
};
using UVSet = CornerSet<UV>;
using ColorSet = CornerSet<MColor>;

/// A part of a geometry under a number, by which sets and deformers find it.
struct ObjectGroup {
    int id = 0;
    Component component;
    bool operator==(const ObjectGroup&) const = default;
};

/// A mesh of polygons. Copies share their arrays until one is changed, so that a copy costs next to
/// nothing. What it holds is valid at all times: corners name vertices that exist, or values of
/// their set.
class MeshData : public Data {
  public:
    /// Without a vertex or polygon, with an empty UV set "map1".
    MeshData() { uvSets.resize(1), uvSets[0].name = "map1"; }

    /// Null with the reason in `error` where a polygon has fewer than 3 corners or a corner names
    /// no vertex. `counts`: the corners of each polygon; `corners`: their vertices, one after
    /// another.
    static std::shared_ptr<MeshData> Make(std::vector<MFloatVector> points,
                                          std::span<const int> counts, std::vector<int> corners,
                                          std::string& error);

    MFn::Type apiType() const override { return MFn::kMeshData; }
    MFnData::Type dataType() const override { return MFnData::kMesh; }
    std::shared_ptr<Data> Copy() const override { return std::make_shared<MeshData>(*this); }
    bool Equals(const Data& other) const override;

    const std::vector<MFloatVector>& points() const { return *points_; }
    int numVertices() const { return static_cast<int>(points_->size()); }
    /// To be changed in value, not in number.
    std::vector<MFloatVector>& EditPoints() { return points_.Edit(); }
    /// As many as there are.
    void SetPoints(std::vector<MFloatVector> points) { points_.Set(std::move(points)); }
    const Polygons& polygons() const { return *polygons_; }
    bool SharesPointsWith(const MeshData& other) const { return points_.IsSame(other.points_); }
    bool SharesPolygonsWith(const MeshData& other) const {
        return polygons_.IsSame(other.polygons_);
    }
    size_t numCorners() const { return polygons_->corners.size(); }
    /// The distinct pairs of neighbours along polygons. Counted anew at each call.
    int CountEdges() const;
    MBoundingBox Bounds() const;

    /// Gives the corners of a UV set their UVs. `counts`: for each polygon its number of corners,
    /// or 0 for one without; `ids`: one after another. False where they do not fit; nothing
    /// changes.
    bool AssignUVs(UVSet& set, std::span<const int> counts, std::span<const int> ids) const;
    /// By name, the current one for none; null for a name that is none.
    UVSet* FindUVSet(const std::string& name);
    const UVSet* FindUVSet(const std::string& name) const;
    /// The same; null also where there is no colour set at all.
    ColorSet* FindColorSet(const std::string& name);
    const ColorSet* FindColorSet(const std::string& name) const;
    const ObjectGroup* FindGroup(int id) const;
    /// Puts components under a number, in the place of those that it had.
    void SetGroup(int id, Component component);
    /// The component with its elements in range and named, also where it has all of them.
    Component Expand(const Component& component) const;

    std::vector<UVSet> uvSets;
    std::vector<ColorSet> colorSets;
    std::string currentUVSet = "map1", currentColorSet;
    std::vector<ObjectGroup> groups;

  private:
    Shared<std::vector<MFloatVector>> points_;
    Shared<Polygons> polygons_;
};

using MeshPtr = std::shared_ptr<MeshData>;

/// Takes the `n`-th colour, from 1, into the mean of those before it.
inline void AddToMean(MColor& mean, const MColor& color, int n) {
    for (unsigned i = 0; i < 4; ++i) mean[i] += (color[i] - mean[i]) / static_cast<float>(n);
}

/// The elements of a component on a geometry that has `count` of its kind, in range and each once.
std::vector<int> ElementsOf(const Component& component, int count);

}  // namespace minihost
