#include "minihost/scene/SceneFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <filesystem>

#include "maya/MArgList.h"
#include "minihost/Host.h"
#include "minihost/anim/AnimTypes.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/base/WholeFile.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshData.h"
#include "minihost/scene/SceneReader.h"
#include "minihost/scene/SceneWriter.h"

namespace minihost {
namespace {

constexpr unsigned kZoo = 0x7a6f6f;
constexpr MFnData::Type kKinds[] = {
    MFnData::kNumeric,       MFnData::kString,   MFnData::kMatrix,     MFnData::kStringArray,
    MFnData::kDoubleArray,   MFnData::kIntArray, MFnData::kPointArray, MFnData::kVectorArray,
    MFnData::kComponentList, MFnData::kMesh};

/// A type that has an attribute of every kind.
void RegisterZoo(Host& host) {
    if (host.types.Find("zoo")) return;
    NodeType& type = host.types.Make("zoo", kZoo, MFn::kDependencyNode);
    type.Add(NumericAttribute("number", "nu", MFnNumericData::kDouble, 3));
    type.Add(NumericAttribute("single", "si", MFnNumericData::kFloat));
    type.Add(NumericAttribute("triple", "tr", MFnNumericData::k3Double));
    type.Add(NumericAttribute("numbers", "ns", MFnNumericData::kDouble))->isArray = true;
    type.Add(NumericAttribute("triples", "ts", MFnNumericData::k3Double))->isArray = true;
    type.Add(EnumAttribute("choice", "ch", {{"a", 0}, {"b", 5}}));
    const auto groups = PlainAttribute("groups", "gs", AttributeKind::Compound);
    groups->isArray = true;
    const auto items = NumericAttribute("items", "is", MFnNumericData::k2Float, 0, "UV");
    items->isArray = true;
    groups->AddChild(items);
    groups->AddChild(TypedAttribute("label", "la", MFnData::kString));
    type.Add(groups);
    for (const auto kind : kKinds) {
        const std::string name = "data" + std::to_string(kind);
        type.Add(TypedAttribute(name, "d" + std::to_string(kind), kind));
    }
    type.Add(NumericAttribute("unkept", "uk", MFnNumericData::kDouble))->isStorable = false;
}

double AnyBits() {
    return std::bit_cast<double>(*rc::gen::arbitrary<std::uint64_t>());
}
double AnyNumber() {
    return *rc::gen::inRange(-999, 999) / 7.0;
}

std::shared_ptr<Data> AnyData(MFnData::Type kind) {
    const auto texts = *rc::gen::arbitrary<std::vector<std::string>>();
    const auto ints = *rc::gen::unique<std::vector<int>>(rc::gen::inRange(0, 1000));
    const double a = AnyNumber(), b = AnyNumber();
    switch (kind) {
        case MFnData::kNumeric:
            return std::make_shared<NumericData>(Tuple{MFnNumericData::k3Float, {a, b, 1}});
        case MFnData::kString:
            return std::make_shared<StringData>(texts.empty() ? "" : texts[0]);
        case MFnData::kMatrix: {
            auto matrix = std::make_shared<MatrixData>();
            matrix->value[3][1] = a;
            return matrix;
        }
        case MFnData::kStringArray:
            return std::make_shared<StringArrayData>(texts);
        case MFnData::kDoubleArray:
            return std::make_shared<DoubleArrayData>(std::vector<double>{a, -0.0, b});
        case MFnData::kIntArray:
            return std::make_shared<IntArrayData>(ints);
        case MFnData::kPointArray:
            return std::make_shared<PointArrayData>(std::vector<MPoint>{{a, b, 1, 2}, {}});
        case MFnData::kVectorArray:
            return std::make_shared<VectorArrayData>(std::vector<MVector>{{a, b, 1}});
        case MFnData::kMesh: {
            std::string error;
            const float x = static_cast<float>(AnyBits());
            const auto mesh = MeshData::Make({{x, 1, 0}, {-0.f, 1e-40f, 3}, {}, {7, 8, 9}},
                                             std::vector{4, 3}, {0, 1, 2, 3, 3, 2, 0}, error);
            mesh->uvSets.push_back({"second \"set\"", {}, {}});
            mesh->uvSets[1].values.Set({{static_cast<float>(a), 1}, {0, 0.1f}});
            mesh->uvSets[1].corners.Set({0, 1, -1, 1, 0, -1, -1});
            mesh->currentUVSet = mesh->uvSets[1].name;
            mesh->colorSets.resize(1);
            mesh->colorSets[0].values.Set({{0, 1, static_cast<float>(b), 0.5f}});
            mesh->SetGroup(5, {MFn::kMeshPolygonComponent, false, {1}});
            return mesh;
        }
        default: {
            Component component{MFn::kMeshEdgeComponent, false, ints};
            std::ranges::sort(component.elements);
            return std::make_shared<ComponentListData>(
                std::vector{component, Component{MFn::kMeshVertComponent, true, {}}});
        }
    }
}

void FillZoo(Modifier& edits, const NodePtr& zoo) {
    const auto index = [] { return *rc::gen::inRange(0, 9); };
    edits.Set(zoo->FindPlug("number"), AnyBits());
    edits.Set(zoo->FindPlug("single"), AnyBits());
    edits.Set(zoo->FindPlug("choice"), double(index()));
    edits.SetNumbers(zoo->FindPlug("triple"), {AnyBits(), 0, -0.0});
    for (int i = index(); i > 0; --i) {
        edits.Set(zoo->FindPlug("numbers").Element(index()), AnyBits());
        edits.SetNumbers(zoo->FindPlug("triples").Element(index()), {0, AnyNumber(), 0});
        const Plug group = zoo->FindPlug("groups").Element(index());
        edits.SetNumbers(group.Child(0).Element(index()), {AnyNumber(), 0});
        edits.Set(group.Child(1), AnyData(MFnData::kString));
    }
    for (const auto kind : kKinds)
        if (index() > 4) edits.Set(zoo->FindPlug("data" + std::to_string(kind)), AnyData(kind));
}

void MakeAnyScene(Host& host) {
    RegisterZoo(host);
    host.NewScene();
    Modifier edits(host.scene);
    std::vector<NodePtr> transforms{nullptr}, zoos;
    const auto any = [](const auto& nodes) { return *rc::gen::elementOf(nodes); };
    for (int i = *rc::gen::inRange(0, 10); i > 0; --i) {
        auto* parent = dynamic_cast<DagNode*>(any(transforms).get());
        transforms.push_back(edits.Create("transform", any(std::vector{"a", "b"}), parent));
        edits.SetNumbers(transforms.back()->FindPlug("translate"), {AnyNumber(), AnyBits(), 0});
        zoos.push_back(edits.Create("zoo", "zoo"));
        FillZoo(edits, zoos.back());
        edits.Connect(zoos.back()->FindPlug("number"), any(zoos)->FindPlug("single"));
        edits.Connect(any(zoos)->FindPlug("number"),
                      any(zoos)->FindPlug("numbers").Element(*rc::gen::inRange(0, 99)), true);
        edits.Connect(transforms.back()->FindPlug("translate"),
                      any(zoos)->FindPlug("triples").Element(*rc::gen::inRange(0, 3)), true);
        for (const double time : {0.0, 1e6, AnyNumber()})
            SetKey(edits, transforms.back()->FindPlug("rotateX"),
                   {time, AnyBits(), Tangent::Linear, Tangent::Step, true});
    }
    for (int i = *rc::gen::inRange(0, 4); i > 0 && transforms.size() > 1; --i)
        if (const NodePtr node = any(transforms))
            edits.Reparent(std::static_pointer_cast<DagNode>(node),
                           dynamic_cast<DagNode*>(any(transforms).get()));
    host.playback.SetMaxTime(AnyNumber() + 1e9);
    host.playback.SetTime(AnyNumber());
}

/// What a scene holds, place by place: the bits of numbers, what data says, where connections come
/// from, and the order of children.
std::map<std::string, std::string> Contents(Host& host) {
    std::map<std::string, std::string> contents;
    const auto name = [](const Node& node) {
        const auto* dag = dynamic_cast<const DagNode*>(&node);
        return dag ? dag->Path() : node.name();
    };
    const auto say = [](const Datum& value) -> std::string {
        if (const double* number = std::get_if<double>(&value))
            return std::to_string(std::bit_cast<std::uint64_t>(*number));
        const auto* data = std::get_if<std::shared_ptr<Data>>(&value);
        if (!data || !*data) return "nothing";
        if (const auto text = DataOf<StringData>(value)) return "text " + text->value;
        std::string all = "data " + std::to_string((*data)->dataType());
        if (const auto texts = DataOf<StringArrayData>(value))
            for (const std::string& text : texts->value) all += "," + text;
        if (const auto ints = DataOf<IntArrayData>(value))
            for (const int n : ints->value) all += "," + std::to_string(n);
        if (const auto keys = DataOf<KeysData>(value))
            for (const Key& key : keys->value)
                all += "," + std::to_string(key.time) + " " +
                       std::to_string(std::bit_cast<std::uint64_t>(key.value)) + " " +
                       std::to_string(int(key.in) * 100 + int(key.out) * 10 + key.breakdown);
        if (const auto list = DataOf<ComponentListData>(value))
            for (const Component& c : list->value)
                all += "," + std::to_string(c.kind) + " " + std::to_string(c.complete) + " " +
                       std::to_string(c.elements.size());
        if (const auto matrix = DataOf<MatrixData>(value))
            all += "," + std::to_string(matrix->value[3][1]);
        if (const auto points = DataOf<PointArrayData>(value))
            for (const MPoint& p : points->value) all += "," + std::to_string(p.y * 7 + p.w);
        if (const auto vectors = DataOf<VectorArrayData>(value))
            for (const MVector& v : vectors->value) all += "," + std::to_string(v.x * 7 + v.z);
        if (const auto numbers = DataOf<DoubleArrayData>(value))
            for (const double n : numbers->value) all += "," + std::to_string(n);
        if (const auto mesh = DataOf<MeshData>(value)) {
            const auto add = [&all](float n) {
                all += "," + std::to_string(std::bit_cast<std::uint32_t>(n));
            };
            for (const MFloatVector& p : mesh->points()) add(p.x), add(p.y), add(p.z);
            for (const int v : mesh->polygons().corners) all += " " + std::to_string(v);
            all += mesh->currentUVSet + mesh->currentColorSet;
            for (const UVSet& set : mesh->uvSets) {
                all += set.name;
                for (const UV& uv : *set.values) add(uv.u), add(uv.v);
                for (const int v : *set.corners) all += " " + std::to_string(v);
            }
            for (const ColorSet& set : mesh->colorSets)
                for (const MColor& c : *set.values) add(c.b), add(c.a);
            for (const ObjectGroup& group : mesh->groups)
                all +=
                    std::to_string(group.id) + " " + std::to_string(group.component.elements.at(0));
        }
        if (const auto tuple = DataOf<NumericData>(value))
            all +=
                "," + std::to_string(tuple->value.kind) + std::to_string(tuple->value.numbers[1]);
        return all;
    };
    for (const NodePtr& node : host.scene.Nodes()) {
        const std::string place = name(*node);
        contents[place] = node->type().name;
        if (const auto* dag = dynamic_cast<DagNode*>(node.get()))
            contents[place] += std::to_string(host.scene.PlaceOf(*dag));
        const auto walk = [&](auto&& self, Slot& slot) -> void {
            const std::string where = place + "." + Plug(slot).Name();
            if (slot.source)
                contents[where] =
                    "from " + name(*slot.source->node) + "." + Plug(*slot.source).Name();
            else if (slot.IsLeaf() && slot.attribute->isStorable)
                contents[where] = say(Pull(slot));
            else
                contents[where] = "";
            for (const auto& part : slot.parts) self(self, *part);
        };
        for (Slot& root : node->roots())
            if (!root.attribute->longName.starts_with("world")) walk(walk, root);
    }
    contents["range"] =
        std::to_string(host.playback.minTime()) + " " + std::to_string(host.playback.maxTime());
    return contents;
}

/// The first place where a scene is not what it was, empty for none.
std::string Difference(Host& host, const std::map<std::string, std::string>& before) {
    const auto now = Contents(host);
    for (const auto& [place, what] : before)
        if (!now.contains(place) || now.at(place) != what)
            return place + ": " + what + ", now " + (now.contains(place) ? now.at(place) : "gone");
    for (const auto& [place, what] : now)
        if (!before.contains(place)) return place + ": new, " + what;
    return "";
}

std::vector<std::string> Load(Host& host, const std::string& content) {
    ScenePlan plan(host, content);
    host.NewScene();
    return plan.Apply();
}

/// A small scene with a bit of everything.
std::string SmallScene(Host& host, SceneForm form) {
    RegisterZoo(host);
    host.NewScene();
    Modifier edits(host.scene);
    const NodePtr top = edits.Create("transform", "top"), zoo = edits.Create("zoo", "z");
    edits.Create("locator", "l", static_cast<DagNode*>(top.get()));
    edits.SetNumbers(top->FindPlug("translate"), {0.1, std::nan(""), -0.0});
    edits.Set(zoo->FindPlug("numbers").Element(3), 1e300);
    edits.Set(zoo->FindPlug("groups").Element(1).Child(1),
              std::shared_ptr<Data>(std::make_shared<StringData>("a \"b\"\n\x01")));
    SetKey(edits, top->FindPlug("rotateY"), {24, 0.5});
    edits.Connect(top->FindPlug("translate"), zoo->FindPlug("triple"));
    return WriteScene(host, form);
}

const std::vector<SceneForm> kForms{SceneForm::Text, SceneForm::Binary};

RC_GTEST_PROP(SceneFile, AWrittenSceneReadsBackTheSame, ()) {
    Host& host = Host::Get();
    MakeAnyScene(host);
    const auto before = Contents(host);
    for (const SceneForm form : kForms) {
        const std::string content = WriteScene(host, form);
        RC_ASSERT(Load(host, content) == std::vector<std::string>());
        RC_ASSERT(Difference(host, before) == "");
        RC_ASSERT(WriteScene(host, form) == content);
    }
}

TEST(SceneFile, ATimeOfZeroIsKeptThoughScenesStartAtOne) {
    Host& host = Host::Get();
    for (const SceneForm form : kForms) {
        host.NewScene();
        host.playback.SetTime(0);
        const std::string content = WriteScene(host, form);
        EXPECT_TRUE(Load(host, content).empty());
        EXPECT_EQ(host.playback.time(), 0);
    }
}

RC_GTEST_PROP(SceneFile, NodesOfAMissingModuleAreKept, ()) {
    Host& host = Host::Get();
    MakeAnyScene(host);
    const auto before = Contents(host);
    const std::string content = WriteScene(host, *rc::gen::elementOf(kForms));
    host.NewScene();
    const NodeTypePtr zoo = host.types.Find("zoo");
    host.types.Unregister(zoo->id);
    const auto warnings = Load(host, content);
    const auto nodes = host.scene.NodesOfType("unknown").size();
    const std::string again = WriteScene(host, *rc::gen::elementOf(kForms));
    host.types.Register(zoo);
    RC_ASSERT(warnings.size() == (nodes > 0 ? 1u : 0u));
    RC_ASSERT(Load(host, again) == std::vector<std::string>());
    RC_ASSERT(Difference(host, before) == "");
}

TEST(SceneFile, WhatIsCutOrChangedIsReadOrRefusedAndARefusalChangesNothing) {
    Host& host = Host::Get();
    for (const SceneForm form : kForms) {
        const std::string whole = SmallScene(host, form);
        const auto before = Contents(host);
        const auto loads = [&](const std::string& content) {
            try {
                Load(host, content);
                return true;
            } catch (const DocumentError& error) {
                EXPECT_FALSE(error.message.empty());
                EXPECT_LE(error.at, content.size());
                return false;
            }
        };
        int refused = 0;
        for (size_t n = 0; n < whole.size(); ++n) {
            if (loads(std::string(whole, 0, n)))
                loads(whole);
            else
                ++refused;
            EXPECT_EQ(n % 16 == 0 ? Difference(host, before) : "", "") << n;
        }
        EXPECT_GT(refused, static_cast<int>(whole.size()) * 3 / 4);
        for (size_t n = 0; n < whole.size(); ++n)
            for (const char c : {'\0', '(', '9', '\xff', '"', ';', char(whole[n] ^ 1)}) {
                std::string changed = whole;
                changed[n] = c;
                loads(changed);
            }
    }
}

/// A module's data: a number, which it writes in one or both forms.
struct Number : MPxData {
    static constexpr unsigned kId = 0x4e554d;
    static inline bool hasText = true;
    MStatus readASCII(const MArgList& words, unsigned& next) override {
        MStatus status;
        number = words.asInt(next++, &status);
        return status;
    }
    MStatus writeASCII(std::ostream& out) override {
        out << number;
        return hasText ? MS::kSuccess : MS::kNotImplemented;
    }
    MStatus readBinary(std::istream& in, unsigned length) override {
        in.read(reinterpret_cast<char*>(&number), sizeof number);
        return in && length == sizeof number ? MS::kSuccess : MS::kFailure;
    }
    MStatus writeBinary(std::ostream& out) override {
        out.write(reinterpret_cast<const char*>(&number), sizeof number);
        return MS::kSuccess;
    }
    void copy(const MPxData& other) override { number = static_cast<const Number&>(other).number; }
    MTypeId typeId() const override { return MTypeId(kId); }
    MString name() const override { return "number data"; }

    int number = 0;
};

TEST(SceneFile, DataOfModulesGoesThroughTheirOwnHandsAndIsKeptWithoutThem) {
    Host& host = Host::Get();
    if (!host.types.Find("holder")) {
        const auto held = TypedAttribute("held", "h", MFnData::kPlugin);
        held->dataTypeId = MTypeId(Number::kId);
        host.types.Make("holder", 0x484f4c44, MFn::kDependencyNode).Add(held);
    }
    const PluginDataType type{"number data", MTypeId(Number::kId),
                              [] { return static_cast<void*>(static_cast<MPxData*>(new Number)); }};
    for (const SceneForm form : kForms)
        for (const SceneForm between : kForms)
            for (const bool hasText : {false, true}) {
                Number::hasText = hasText;
                ASSERT_TRUE(host.dataTypes.Register(type));
                host.NewScene();
                Modifier edits(host.scene);
                auto number = std::make_unique<Number>();
                number->number = -1234567;
                const std::shared_ptr<Data> data = std::make_shared<PluginData>(std::move(number));
                ASSERT_TRUE(edits.Set(edits.Create("holder", "h")->FindPlug("held"), data));
                const std::string content = WriteScene(host, form);
                host.dataTypes.Unregister(type.id);
                Load(host, content);
                const std::string again = WriteScene(host, between);
                ASSERT_TRUE(host.dataTypes.Register(type));
                EXPECT_EQ(Load(host, again), std::vector<std::string>());
                const auto back = DataOf<PluginData>(host.scene.Find("h")->FindSlot("held")->value);
                ASSERT_TRUE(back);
                EXPECT_EQ(static_cast<Number*>(back->get())->number, -1234567);
                host.dataTypes.Unregister(type.id);
            }
    host.NewScene();
}

TEST(SceneFile, ErrorsSayWhere) {
    Host& host = Host::Get();
    RegisterZoo(host);
    const std::string head(HeaderOf(SceneForm::Text)), node = head + "node transform 0 |a;\n";
    std::string deep = head, path;
    for (int i = 0; i <= ScenePlan::kMaxDepth; ++i)
        deep += "node transform 0 " + (path += "|a") + ";\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", "1:1: this is no scene: the first line is not \"minihost scene 1 text\""},
        {"minihost scene 2 text\n",
         "1:1: the scene is of another version; this host reads "
         "version 1"},
        {head + "run \"rm\";", "2:1: there is no statement 'run'"},
        {head + "node transform 0 |a", "2:20: expected a blank or ';'"},
        {head + "node transform 0 a;", "2:18: the path of 'a' does not begin with '|'"},
        {head + "node transform 0 |b|a;", "2:18: there is no node above '|b|a'"},
        {node + "node transform 0 |a;", "3:18: there is a node '|a' already"},
        {node + "node transform 0 |a|\"x y\";", "3:21: expected a blank or ';'"},
        {node + "node transform 0 \"|a|x y\";", "3:18: '|a|x y' is no name for a node"},
        {node + "set translateX 1e999;", "3:16: the number is out of range"},
        {node + "set translateX nan;", "3:16: there is no kind of data 'nan'"},
        {node + "set m matrix d(1 2);", "3:14: a matrix has 16 numbers"},
        {node + "set m matrix d(1 2", "3:19: expected a blank or ')'"},
        {node + "elements x i(3 3);", "3:12: expected indices that rise"},
        {node + "connect |a t |b t;", "3:14: there is no node '|b' above"},
        {head + "set t 1;", "2:1: expected 'node' before the first value"},
        {deep, "1002:18: nodes are nested too deep"},
    };
    for (const auto& [content, expected] : cases) {
        try {
            ScenePlan plan(host, content);
            ADD_FAILURE() << content;
        } catch (const DocumentError& error) {
            EXPECT_EQ(PlaceIn(content, error.at) + ": " + error.message, expected);
        }
    }
    EXPECT_THAT(Load(host, node + "set nothing 1;\nset translate 1 2;\nset v string no;\n"
                                  "connect |a t |a nothing;\nset t 1 2 3;"),
                testing::ElementsAre("3:1: a has no attribute 'nothing'",
                                     "4:1: 'translate' takes another number of values",
                                     "5:1: 'v' does not take the value",
                                     "6:1: a has no attribute 'nothing'"));
    EXPECT_EQ(NumberOf(host.scene.Find("a")->FindSlot("tz")->value), 3);
}

TEST(SceneFile, ManyElementsInAnyOrderTakeNoLongTime) {
    Host& host = Host::Get();
    RegisterZoo(host);
    std::string content(HeaderOf(SceneForm::Text));
    content += "node zoo " + std::to_string(kZoo) + " z;\n";
    for (int i = 300000; i > 0; --i) content += "set numbers[" + std::to_string(i) + "] 1;\n";
    EXPECT_EQ(Load(host, content).size(), 21u);
    EXPECT_EQ(host.scene.Find("z")->FindSlot("numbers")->parts.size(), 4096u);
}

TEST(SceneFile, FilesAreOpenedImportedAndSavedWhole) {
    Host& host = Host::Get();
    const auto folder =
        std::filesystem::temp_directory_path() / ("scenes" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    SmallScene(host, SceneForm::Text);
    const auto before = Contents(host);
    std::vector<std::string> told;
    std::vector<Listeners::Id> ids;
    for (int i = 1; i <= 12; ++i)
        ids.push_back(host.listeners.Add({"Scene", std::to_string(i)}, [&told, i](const void*) {
            told.push_back(std::to_string(i));
        }));
    EXPECT_EQ(SaveScene(host).error, "the scene has no name: rename it first");
    const std::string text = (folder / "a.mhs").string(), binary = (folder / "a.mhb").string();
    for (const std::string& path : {text, binary}) {
        RenameScene(host, path);
        ASSERT_TRUE(SaveScene(host).done);
    }
    NewScene(host);
    EXPECT_NE(Contents(host), before);
    ASSERT_TRUE(OpenScene(host, binary).done);
    EXPECT_EQ(host.file.form, SceneForm::Binary);
    EXPECT_EQ(Difference(host, before), "");
    host.playback.SetTime(7);
    EXPECT_TRUE(ImportScene(host, text, "x:").warnings.empty());
    EXPECT_TRUE(ImportScene(host, text).warnings.empty());
    EXPECT_EQ(host.playback.time(), 7);
    EXPECT_EQ(host.scene.NodesOfType("time").size(), 1u);
    for (const char* name : {"top", "x:top", "top1"}) {
        const NodePtr top = host.scene.Find(name);
        ASSERT_TRUE(top && CurveOf(top->FindPlug("rotateY"))) << name;
        EXPECT_TRUE(CurveOf(top->FindPlug("rotateY"))->FindSlot("input")->IsFed());
    }
    const auto after = Contents(host);
    std::string error;
    ASSERT_TRUE(WriteWholeFile(text, "nonsense", error));
    EXPECT_THAT(OpenScene(host, text).error, testing::StartsWith(text + ":1:1: this is no scene"));
    EXPECT_FALSE(OpenScene(host, (folder / "none").string()).done);
    EXPECT_EQ(Difference(host, after), "");
    EXPECT_EQ(told, (std::vector<std::string>{"9", "10", "9", "10", "1", "2", "5", "6", "3", "4",
                                              "3", "4"}));
    host.file.path = (folder / "none" / "a.mhs").string();
    EXPECT_FALSE(SaveScene(host).done);
    for (const auto id : ids) host.listeners.Remove(id);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 2);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace minihost
