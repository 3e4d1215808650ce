#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Modifier.h"
#include "tests/minihost/Describe.h"

namespace minihost {
namespace {

std::vector<std::string> g_calls;

/// out = a + sum of items, and tells of every call.
class AdderLogic : public NodeLogic {
  public:
    using NodeLogic::NodeLogic;
    bool WatchesDirt() const override { return true; }
    void SetDependentsDirty(const Plug& plug, std::vector<Plug>&) override {
        g_calls.push_back("dirty " + plug.FullName());
    }
    MStatus Compute(const Plug& plug) override {
        if (plug.attribute->longName != "out") return MS::kUnknownParameter;
        g_calls.push_back("compute " + plug.FullName());
        double sum = NumberOf(Pull(*node_.FindSlot("a")));
        for (const auto& item : node_.FindSlot("items")->parts) sum += NumberOf(Pull(*item));
        SetResult(*plug.Find(), sum);
        return MS::kSuccess;
    }
    void ConnectionMade(const Plug& own, const Plug& other, bool) override {
        g_calls.push_back("made " + own.FullName() + " " + other.FullName());
    }
    void ConnectionBroken(const Plug& own, const Plug& other, bool) override {
        g_calls.push_back("broken " + own.FullName() + " " + other.FullName());
    }
};

class Graph : public testing::Test {
  protected:
    Graph() : host(Host::Get()), edits(host.scene) {
        if (!host.types.Find("adder")) {
            NodeType& type = host.types.Make("adder", 77, MFn::kDependencyNode);
            type.Add(NumericAttribute("a", "aa", MFnNumericData::kDouble));
            type.Add(NumericAttribute("items", "it", MFnNumericData::kDouble));
            type.Find("items")->isArray = true;
            type.Find("items")->disconnect = DisconnectBehavior::Delete;
            type.Add(NumericAttribute("out", "o", MFnNumericData::kDouble));
            type.Affects({"a", "items"}, {"out"});
            type.maker = [](Node& node) { return std::make_unique<AdderLogic>(node); };
        }
        host.NewScene();
        g_calls.clear();
    }
    NodePtr Adder(const char* name) { return edits.Create("adder", name); }
    static double Read(const NodePtr& node, const char* name) {
        return NumberOf(Pull(*node->FindSlot(name)));
    }

    Host& host;
    Modifier edits;
};

using Calls = std::vector<std::string>;

TEST_F(Graph, ComputesOnPullOnlyAndTellsAtOnce) {
    const NodePtr x = Adder("x"), y = Adder("y");
    EXPECT_EQ(Read(y, "out"), 0);
    g_calls.clear();
    ASSERT_TRUE(edits.Connect(x->FindPlug("out"), y->FindPlug("a")));
    EXPECT_EQ(g_calls, (Calls{"dirty y.a", "dirty y.out", "made y.a x.out", "made x.out y.a"}));
    g_calls.clear();
    EXPECT_EQ(Read(y, "out"), 0);
    EXPECT_EQ(g_calls, (Calls{"compute y.out", "compute x.out"}));
    g_calls.clear();
    EXPECT_EQ(Read(y, "out"), 0);
    EXPECT_EQ(g_calls, Calls{});
    ASSERT_TRUE(edits.Set(x->FindPlug("a"), 3.0));
    ASSERT_TRUE(edits.Set(x->FindPlug("a"), 4.0));  // told again, though all behind it is stale
    EXPECT_EQ(g_calls,
              (Calls{"dirty x.a", "dirty x.out", "dirty y.a", "dirty y.out", "dirty x.a"}));
    EXPECT_EQ(Read(y, "out"), 4);
    EXPECT_FALSE(edits.Set(y->FindPlug("a"), 1.0));
    EXPECT_FALSE(edits.Set(x->FindPlug("a"), Datum(std::make_shared<StringData>("no"))));
    g_calls.clear();
    ASSERT_TRUE(edits.Disconnect(y->FindPlug("a")));
    EXPECT_EQ(g_calls, (Calls{"broken y.a x.out", "broken x.out y.a"}));
    EXPECT_EQ(Read(y, "out"), 4);
}

TEST_F(Graph, ACycleOfConnectionsEndsWithAFailure) {
    const NodePtr x = Adder("x"), y = Adder("y");
    edits.Set(x->FindPlug("a"), 1.0);
    edits.Connect(x->FindPlug("out"), y->FindPlug("a"));
    edits.Connect(y->FindPlug("out"), x->FindPlug("items").Element(0));
    EXPECT_TRUE(std::isfinite(Read(y, "out")));
    EXPECT_EQ(host.scene.WhyNot(x->FindPlug("out"), x->FindPlug("items")),
              "an array is connected by its elements: tell an index");
}

TEST_F(Graph, AnElementGoesWithItsConnectionAndComesBackByUndo) {
    const NodePtr x = Adder("x"), y = Adder("y");
    edits.Set(y->FindPlug("items").Element(2), 5.0);
    edits.Set(x->FindPlug("a"), 7.0);
    edits.Connect(x->FindPlug("out"), y->FindPlug("items").Element(9));
    EXPECT_EQ(Read(y, "out"), 12);
    Modifier cut(host.scene);
    ASSERT_TRUE(cut.Disconnect(y->FindPlug("items").Element(9)));
    EXPECT_EQ(y->FindPlug("items").Element(9).Find(), nullptr);
    EXPECT_EQ(Read(y, "out"), 5);
    cut.Undo();
    EXPECT_EQ(Read(y, "out"), 12);
    cut.Redo();
    EXPECT_EQ(Read(y, "out"), 5);
}

/// One random edit of whatever is there.
void RandomEdit(Scene& scene, Modifier& edits) {
    const auto any = [&scene](const char* type) {
        const auto nodes = scene.NodesOfType(type);
        return nodes.empty() ? nullptr : *rc::gen::elementOf(nodes);
    };
    const NodePtr adder = any("adder"), other = any("adder"), transform = any("transform");
    const auto to = [&] {
        return *rc::gen::arbitrary<bool>()
                   ? other->FindPlug("a")
                   : other->FindPlug("items").Element(*rc::gen::inRange(0, 4));
    };
    switch (*rc::gen::inRange(0, 11)) {
        case 0:
            edits.Create("adder", "n");
            break;
        case 1:
            edits.Create("transform", "t", dynamic_cast<DagNode*>(transform.get()));
            break;
        case 2:
            if (adder) edits.Delete(adder);
            break;
        case 3:
            if (transform) edits.Delete(transform);
            break;
        case 4:
        case 5:
            if (adder) edits.Connect(adder->FindPlug("out"), to(), *rc::gen::arbitrary<bool>());
            break;
        case 6:
            if (adder) edits.Disconnect(to());
            break;
        case 7:
            if (adder) edits.Set(to(), double(*rc::gen::inRange(0, 9)));
            break;
        case 8:
            if (adder) edits.Rename(adder, "r");
            break;
        case 9:
            if (transform) edits.SetNumbers(transform->FindPlug("translate"), {1, 2, 3});
            if (transform) edits.Select({{transform}});
            break;
        default:
            if (transform && any("transform"))
                edits.Reparent(std::static_pointer_cast<DagNode>(transform),
                               dynamic_cast<DagNode*>(any("transform").get()));
    }
}

RC_GTEST_FIXTURE_PROP(Graph, UndoAndRedoOfAnyEditsGiveTheSameScene, ()) {
    std::vector<std::string> before;
    std::vector<std::shared_ptr<Modifier>> done;
    for (int i = *rc::gen::inRange(1, 40); i > 0; --i) {
        before.push_back(Describe(host.scene));
        done.push_back(std::make_shared<Modifier>(host.scene));
        RandomEdit(host.scene, *done.back());
    }
    const std::string after = Describe(host.scene);
    for (size_t i = done.size(); i-- > 0;) {
        done[i]->Undo();
        RC_ASSERT(Describe(host.scene) == before[i]);
    }
    for (const auto& edit : done) edit->Redo();
    RC_ASSERT(Describe(host.scene) == after);
}

TEST_F(Graph, NamesFindWhatTheyName) {
    Scene& scene = host.scene;
    const auto dag = [&](const char* name, const NodePtr& parent) {
        return edits.Create("transform", name, dynamic_cast<DagNode*>(parent.get()));
    };
    const NodePtr a = dag("a", nullptr), b = dag("b", nullptr), ah = dag("head", a),
                  bh = dag("head", b);
    EXPECT_EQ(ah->name(), "head");
    EXPECT_EQ(bh->name(), "head");
    EXPECT_EQ(ah->UniqueName(), "a|head");
    EXPECT_EQ(scene.Find("head"), nullptr);
    EXPECT_EQ(scene.Find("b|head"), bh);
    EXPECT_EQ(scene.Find("|a|head"), ah);
    EXPECT_EQ(scene.FindAll("he*").size(), 2u);
    EXPECT_EQ(scene.FindAll("a|*"), std::vector{ah});
    EXPECT_EQ(dag("head", a)->name(), "head1");
    EXPECT_EQ(edits.Create("adder", "1 bad-name")->name(), "_1_bad_name");
    edits.Reparent(std::static_pointer_cast<DagNode>(bh), dynamic_cast<DagNode*>(a.get()));
    EXPECT_EQ(bh->name(), "head2");
    EXPECT_FALSE(
        edits.Reparent(std::static_pointer_cast<DagNode>(a), dynamic_cast<DagNode*>(bh.get())));
}

TEST_F(Graph, AMoveReachesAllBelow) {
    const NodePtr top = edits.Create("transform", "top");
    NodePtr node = top;
    for (int i = 0; i < 5; ++i)
        node = edits.Create("joint", "", dynamic_cast<DagNode*>(node.get()));
    auto& leaf = static_cast<DagNode&>(*node);
    EXPECT_EQ(leaf.WorldMatrix(), MMatrix());
    edits.SetNumbers(top->FindPlug("translate"), {1, 2, 3});
    EXPECT_EQ(MPoint() * leaf.WorldMatrix(), MPoint(1, 2, 3));
    edits.Set(top->FindPlug("rotateZ"), std::acos(-1) / 2);
    edits.SetNumbers(leaf.FindPlug("translate"), {1, 0, 0});
    EXPECT_TRUE((MPoint() * leaf.WorldMatrix()).isEquivalent(MPoint(1, 3, 3)));
    EXPECT_TRUE((leaf.WorldMatrix() * leaf.WorldMatrix().inverse()).isEquivalent(MMatrix()));
}

}  // namespace
}  // namespace minihost
