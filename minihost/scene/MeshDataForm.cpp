#include <algorithm>
#include <climits>

#include "minihost/mesh/MeshData.h"
#include "minihost/scene/DataForms.h"

namespace minihost {
namespace {

using Floats = std::vector<float>;
using Ints = std::vector<int>;

void Append(Floats& numbers, const MFloatVector& p) {
    numbers.insert(numbers.end(), {p.x, p.y, p.z});
}
void Append(Floats& numbers, const UV& uv) {
    numbers.insert(numbers.end(), {uv.u, uv.v});
}
void Append(Floats& numbers, const MColor& c) {
    numbers.insert(numbers.end(), {c.r, c.g, c.b, c.a});
}
void Assign(MFloatVector& p, const float* n) {
    p = {n[0], n[1], n[2]};
}
void Assign(UV& uv, const float* n) {
    uv = {n[0], n[1]};
}
void Assign(MColor& c, const float* n) {
    c = {n[0], n[1], n[2], n[3]};
}

template <class T>
Floats Flat(const std::vector<T>& items) {
    Floats numbers;
    numbers.reserve(items.size() * sizeof(T) / sizeof(float));
    for (const T& item : items) Append(numbers, item);
    return numbers;
}
template <class T>
std::vector<T> Taken(StatementReader& words) {
    constexpr size_t kSize = sizeof(T) / sizeof(float);
    const auto numbers = words.Take<Floats>("f(...)");
    if (numbers.size() % kSize != 0) words.Fail("the numbers do not come out even");
    std::vector<T> items(numbers.size() / kSize);
    for (size_t i = 0; i < items.size(); ++i) Assign(items[i], &numbers[i * kSize]);
    return items;
}

template <class T>
void WriteSet(const char* kind, const CornerSet<T>& set, SceneStatement& statement) {
    statement.Add(kind);
    statement.Add(set.name);
    statement.Add(Flat(*set.values));
    statement.Add(*set.corners);
}
template <class T>
CornerSet<T> ReadSet(StatementReader& words, const MeshData& mesh) {
    CornerSet<T> set;
    set.name = words.TakeText("the name of a set");
    set.values.Set(Taken<T>(words));
    Ints corners = words.Take<Ints>("i(...)");
    const int count = static_cast<int>(std::min<size_t>(set.values->size(), INT_MAX));
    if (!corners.empty() && corners.size() != mesh.numCorners())
        words.Fail("a set has a number for each corner of the mesh, or none");
    if (std::ranges::any_of(corners, [count](int v) { return v < -1 || v >= count; }))
        words.Fail("a corner names a value that the set does not have");
    set.corners.Set(std::move(corners));
    return set;
}

void ReadPart(StatementReader& words, MeshData& mesh) {
    const std::string kind = words.TakeText("uv, color or group");
    if (kind == "uv") {
        mesh.uvSets.push_back(ReadSet<UV>(words, mesh));
    } else if (kind == "color") {
        mesh.colorSets.push_back(ReadSet<MColor>(words, mesh));
    } else if (kind == "group") {
        ObjectGroup group;
        group.id = words.TakeInt("the number of a group", INT_MIN, INT_MAX);
        group.component = TakeComponent(words);
        mesh.groups.push_back(std::move(group));
    } else {
        words.Fail("expected uv, color or group");
    }
}

}  // namespace

void WriteMeshData(const Data& data, SceneForm, SceneStatement& statement) {
    const auto& mesh = static_cast<const MeshData&>(data);
    Ints counts;
    for (int p = 0; p < mesh.polygons().count(); ++p) counts.push_back(mesh.polygons().CountOf(p));
    statement.Add(Flat(mesh.points()));
    statement.Add(std::move(counts));
    statement.Add(mesh.polygons().corners);
    statement.Add(mesh.currentUVSet);
    statement.Add(mesh.currentColorSet);
    for (const UVSet& set : mesh.uvSets) WriteSet("uv", set, statement);
    for (const ColorSet& set : mesh.colorSets) WriteSet("color", set, statement);
    for (const ObjectGroup& group : mesh.groups) {
        statement.Add("group");
        statement.Add(double(group.id));
        AddComponent(group.component, statement);
    }
}

std::shared_ptr<Data> ReadMeshData(StatementReader& words) {
    auto points = Taken<MFloatVector>(words);
    const Ints counts = words.Take<Ints>("i(...)");
    std::string error;
    const MeshPtr mesh =
        MeshData::Make(std::move(points), counts, words.Take<Ints>("i(...)"), error);
    if (!mesh) words.Fail(error);
    mesh->currentUVSet = words.TakeText("the name of the current UV set");
    mesh->currentColorSet = words.TakeText("the name of the current colour set");
    mesh->uvSets.clear();
    while (!words.AtEnd()) ReadPart(words, *mesh);
    if (!mesh->FindUVSet("")) words.Fail("the current UV set is not there");
    if (!mesh->colorSets.empty() && !mesh->FindColorSet(""))
        words.Fail("the current colour set is not there");
    return mesh;
}

}  // namespace minihost
