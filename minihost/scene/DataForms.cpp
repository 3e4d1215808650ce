#include "minihost/scene/DataForms.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <utility>

#include "minihost/anim/Keys.h"

namespace minihost {
namespace {

using Words = StatementReader;
using DataPtr = std::shared_ptr<Data>;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;

constexpr char kDoubles[] = "d(...)", kInts[] = "i(...)";

/// Names in files, which stay when the numbers of the enumerations change.
constexpr std::pair<MFnNumericData::Type, const char*> kTuples[] = {
    {MFnNumericData::k2Short, "short2"},   {MFnNumericData::k3Short, "short3"},
    {MFnNumericData::k2Int, "int2"},       {MFnNumericData::k3Int, "int3"},
    {MFnNumericData::k2Float, "float2"},   {MFnNumericData::k3Float, "float3"},
    {MFnNumericData::k2Double, "double2"}, {MFnNumericData::k3Double, "double3"},
    {MFnNumericData::k4Double, "double4"}};
constexpr std::pair<MFn::Type, const char*> kComponents[] = {{MFn::kMeshVertComponent, "vertices"},
                                                             {MFn::kMeshEdgeComponent, "edges"},
                                                             {MFn::kMeshPolygonComponent, "faces"}};

template <class T, size_t N>
const char* NameOf(const std::pair<T, const char*> (&names)[N], T what) {
    for (const auto& [value, name] : names)
        if (value == what) return name;
    return "none";
}
template <class T, size_t N>
T Named(const std::pair<T, const char*> (&names)[N], Words& words, T none) {
    const std::string wanted = words.TakeText("the name of a kind");
    for (const auto& [value, name] : names)
        if (name == wanted) return value;
    if (wanted != "none") words.Fail("there is no kind '" + wanted + "'");
    return none;
}

/// Data that is one word.
template <class D>
void WriteWord(const Data& data, SceneForm, SceneStatement& statement) {
    statement.Add(static_cast<const D&>(data).value);
}
template <class D>
DataPtr ReadWord(Words& words) {
    using T = decltype(D::value);
    return std::make_shared<D>(words.Take<T>(std::is_same_v<T, std::string> ? "a text"
                                             : std::is_same_v<T, Ints>      ? kInts
                                                                            : kDoubles));
}

void WriteStrings(const Data& data, SceneForm, SceneStatement& statement) {
    for (const std::string& text : static_cast<const StringArrayData&>(data).value)
        statement.Add(text);
}
DataPtr ReadStrings(Words& words) {
    auto data = std::make_shared<StringArrayData>();
    while (!words.AtEnd()) data->value.push_back(words.TakeText("a text"));
    return data;
}

void WriteMatrix(const Data& data, SceneForm, SceneStatement& statement) {
    Doubles numbers;
    for (const auto& row : static_cast<const MatrixData&>(data).value.matrix)
        numbers.insert(numbers.end(), row, row + 4);
    statement.Add(std::move(numbers));
}
DataPtr ReadMatrix(Words& words) {
    const auto numbers = words.Take<Doubles>(kDoubles);
    if (numbers.size() != 16) words.Fail("a matrix has 16 numbers");
    auto data = std::make_shared<MatrixData>();
    for (unsigned i = 0; i < 16; ++i) data->value[i / 4][i % 4] = numbers[i];
    return data;
}

/// An array of points or vectors, `kSize` numbers each.
template <class D, unsigned kSize>
void WriteTuples(const Data& data, SceneForm, SceneStatement& statement) {
    Doubles numbers;
    for (const auto& item : static_cast<const D&>(data).value)
        for (unsigned i = 0; i < kSize; ++i) numbers.push_back(item[i]);
    statement.Add(std::move(numbers));
}
template <class D, unsigned kSize>
DataPtr ReadTuples(Words& words) {
    const auto numbers = words.Take<Doubles>(kDoubles);
    if (numbers.size() % kSize != 0) words.Fail("the numbers do not come out even");
    auto data = std::make_shared<D>();
    data->value.resize(numbers.size() / kSize);
    for (size_t i = 0; i < numbers.size(); ++i)
        data->value[i / kSize][static_cast<unsigned>(i % kSize)] = numbers[i];
    return data;
}

void WriteNumeric(const Data& data, SceneForm, SceneStatement& statement) {
    const Tuple& tuple = static_cast<const NumericData&>(data).value;
    statement.Add(NameOf(kTuples, tuple.kind));
    for (const double number : tuple.numbers) statement.Add(number);
}
DataPtr ReadNumeric(Words& words) {
    auto data = std::make_shared<NumericData>();
    data->value.kind = Named(kTuples, words, MFnNumericData::kInvalid);
    for (double& number : data->value.numbers) number = words.Take<double>("a number");
    return data;
}

void WriteComponents(const Data& data, SceneForm, SceneStatement& statement) {
    for (const Component& component : static_cast<const ComponentListData&>(data).value)
        AddComponent(component, statement);
}
DataPtr ReadComponents(Words& words) {
    auto data = std::make_shared<ComponentListData>();
    while (!words.AtEnd()) data->value.push_back(TakeComponent(words));
    return data;
}

void WriteKeys(const Data& data, SceneForm, SceneStatement& statement) {
    Doubles times, values;
    Ints flags;
    for (const Key& key : static_cast<const KeysData&>(data).value) {
        times.push_back(key.time);
        values.push_back(key.value);
        for (const int flag : {int(key.in), int(key.out), int(key.breakdown)})
            flags.push_back(flag);
    }
    statement.Add(std::move(times));
    statement.Add(std::move(values));
    statement.Add(std::move(flags));
}
DataPtr ReadKeys(Words& words) {
    const auto times = words.Take<Doubles>(kDoubles), values = words.Take<Doubles>(kDoubles);
    const auto flags = words.Take<Ints>(kInts);
    if (values.size() != times.size() || flags.size() != 3 * times.size())
        words.Fail("keys have a time, a value and three flags each");
    const auto tangent = [&words](int number) {
        if (number < int(Tangent::Linear) || number > int(Tangent::Step))
            words.Fail("there is no tangent " + std::to_string(number));
        return static_cast<Tangent>(number);
    };
    auto data = std::make_shared<KeysData>();
    for (size_t i = 0; i < times.size(); ++i) {
        if (!std::isfinite(times[i]) || (i > 0 && times[i] <= times[i - 1]))
            words.Fail("the times of keys do not rise");
        data->value.push_back({times[i], values[i], tangent(flags[3 * i]),
                               tangent(flags[3 * i + 1]), flags[3 * i + 2] != 0});
    }
    return data;
}

constexpr DataForm kForms[] = {
    {MFnData::kNumeric, "numeric", WriteNumeric, ReadNumeric},
    {MFnData::kPlugin, "plugin", WritePluginData, ReadPluginData},
    {MFnData::kString, "string", WriteWord<StringData>, ReadWord<StringData>},
    {MFnData::kMatrix, "matrix", WriteMatrix, ReadMatrix},
    {MFnData::kStringArray, "strings", WriteStrings, ReadStrings},
    {MFnData::kDoubleArray, "doubles", WriteWord<DoubleArrayData>, ReadWord<DoubleArrayData>},
    {MFnData::kIntArray, "ints", WriteWord<IntArrayData>, ReadWord<IntArrayData>},
    {MFnData::kPointArray, "points", WriteTuples<PointArrayData, 4>, ReadTuples<PointArrayData, 4>},
    {MFnData::kVectorArray, "vectors", WriteTuples<VectorArrayData, 3>,
     ReadTuples<VectorArrayData, 3>},
    {MFnData::kComponentList, "components", WriteComponents, ReadComponents},
    {MFnData::kMesh, "mesh", WriteMeshData, ReadMeshData},
    {MFnData::kKeys, "keys", WriteKeys, ReadKeys},
};

}  // namespace

void AddComponent(const Component& component, SceneStatement& statement) {
    statement.Add(NameOf(kComponents, component.kind));
    statement.Add(double(component.complete));
    statement.Add(component.elements);
}

Component TakeComponent(StatementReader& words) {
    Component component;
    component.kind = Named(kComponents, words, MFn::kInvalid);
    component.complete = words.TakeInt("0 or 1", 0, 1);
    component.elements = words.Take<Ints>(kInts);
    const Ints& elements = component.elements;
    if (std::ranges::adjacent_find(elements, std::greater_equal()) != elements.end())
        words.Fail("the elements of a component do not rise");
    if (!elements.empty() && elements[0] < 0) words.Fail("an element is negative");
    return component;
}

const DataForm* DataFormOf(MFnData::Type type) {
    const auto* form = std::ranges::find(kForms, type, &DataForm::type);
    return form == std::end(kForms) ? nullptr : form;
}

const DataForm* DataFormNamed(const std::string& name) {
    const auto* form =
        std::ranges::find_if(kForms, [&name](const DataForm& f) { return f.name == name; });
    return form == std::end(kForms) ? nullptr : form;
}

}  // namespace minihost
