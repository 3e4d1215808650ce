#include "maya/MFnGeometryData.h"
#include "minihost/deform/BlendShape.h"
#include "minihost/deform/DeformerChain.h"
#include "minihost/deform/SkinCluster.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/mesh/Sets.h"
#include "tests/minihost/SceneTest.h"

namespace minihost {
namespace {

class Deform : public SceneTest {
  protected:
    NodePtr Sheet(const char* name) { return CreateMesh(edits, MakePlane(4, 4, 6, 6), name).shape; }
    DagNodePtr Joint(DagNode* parent, double x) {
        const auto joint =
            std::static_pointer_cast<DagNode>(edits.Create("joint", "joint", parent));
        edits.SetNumbers(joint->FindPlug("translate"), {x, 0, 0});
        return joint;
    }
    std::vector<std::string> History(const NodePtr& mesh) {
        std::vector<std::string> names;
        for (const NodePtr& node : HistoryOf(mesh)) names.push_back(node->type().name);
        return names;
    }

    std::string error;
};

using Names = std::vector<std::string>;

double Near(const MFloatVector& a, const MPoint& b) {
    return MPoint(MFloatPoint(a)).distanceTo(b);
}

RC_GTEST_FIXTURE_PROP(Deform, ASkinFollowsThePlainFormula, ()) {
    host.NewScene();
    const NodePtr mesh = Sheet("sheet");
    const auto number = [](int limit) { return *rc::gen::inRange(-limit, limit) / 10.0; };
    auto& transform = *static_cast<DagNode&>(*mesh).parent();
    edits.SetNumbers(transform.FindPlug("translate"), {number(30), number(30), number(30)});
    edits.Set(transform.FindPlug("rotateY"), number(30));
    std::vector<DagNodePtr> joints{Joint(nullptr, -2)};
    for (int i = 0; i < 3; ++i) joints.push_back(Joint(joints.back().get(), 1.5));
    const std::vector<MFloatVector> rest = MeshOf(*mesh)->points();
    const NodePtr skin = BindSkin(edits, joints, mesh, error, {3, 4, ""});
    RC_ASSERT(skin && error.empty());
    for (size_t v = 0; v < rest.size(); ++v)  // bound as it stands
        RC_ASSERT(Near(MeshOf(*mesh)->points()[v], MPoint(MFloatPoint(rest[v]))) < 1e-5);

    const MMatrix world = static_cast<DagNode&>(*mesh).WorldMatrix();
    std::vector<MMatrix> binds;
    for (const DagNodePtr& joint : joints) binds.push_back(joint->WorldMatrix().inverse());
    for (const DagNodePtr& joint : joints) {
        edits.Set(joint->FindPlug("rotateZ"), number(15));
        edits.Set(joint->FindPlug("rotateX"), number(15));
    }
    const double envelope = *rc::gen::element(0.0, 0.25, 1.0);
    edits.Set(skin->FindPlug("envelope"), envelope);
    const int free = *rc::gen::inRange(0, 49);  // a vertex that half of it holds back
    const Plug weights = skin->FindPlug("weightList").Element(free).Child(0);
    for (const auto& weight : weights.Find()->parts)
        edits.Set(Plug(*weight), NumberOf(weight->value) / 2);

    for (size_t v = 0; v < rest.size(); ++v) {
        const MPoint p = MPoint(MFloatPoint(rest[v])) * world;
        MVector sum;
        double total = 0;
        int used = 0;
        for (const auto& weight :
             skin->FindPlug("weightList").Element(int(v)).Child(0).Find()->parts) {
            const double w = NumberOf(weight->value);
            const auto j = static_cast<size_t>(weight->index);
            sum += MVector(p * (binds[j] * joints[j]->WorldMatrix()) - MPoint()) * w;
            total += w, used += w > 0;
        }
        RC_ASSERT(used <= 3);
        RC_ASSERT(std::abs(total - (int(v) == free ? 0.5 : 1)) < 1e-9);
        sum += MVector(p - MPoint()) * (1 - total);
        const MPoint deformed = (MPoint() + sum) * world.inverse(), start(MFloatPoint(rest[v]));
        const MPoint expected = start + (deformed - start) * envelope;
        RC_ASSERT(Near(MeshOf(*mesh)->points()[v], expected) < 1e-5);
    }
}

RC_GTEST_FIXTURE_PROP(Deform, ABlendShapeAddsWeightedDifferences, ()) {
    host.NewScene();
    const NodePtr base = Sheet("base");
    std::vector<NodePtr> targets;
    std::vector<std::vector<MFloatVector>> shapes;
    for (const char* name : {"smile", "frown"}) {
        targets.push_back(Sheet(name));
        for (int i = 0; i < 5; ++i)
            edits.SetNumbers(targets.back()->FindPlug("pnts").Element(*rc::gen::inRange(0, 49)),
                             {*rc::gen::inRange(-9, 9) / 8.0, *rc::gen::inRange(-9, 9) / 8.0, 1});
        shapes.push_back(MeshOf(*targets.back())->points());
    }
    const std::vector<MFloatVector> rest = MeshOf(*base)->points();
    const NodePtr blend = CreateBlendShape(edits, targets, base, error);
    RC_ASSERT(blend && TargetsOf(blend) == targets);
    RC_ASSERT(MeshOf(*base)->points() == rest);
    double weights[2];
    for (int t = 0; t < 2; ++t) {
        weights[t] = *rc::gen::inRange(-4, 8) / 4.0;
        edits.Set(blend->FindPlug("weight").Element(t), weights[t]);
    }
    if (*rc::gen::arbitrary<bool>()) edits.Delete(targets[1]);  // its points stay
    for (size_t v = 0; v < rest.size(); ++v) {
        MPoint expected(MFloatPoint(rest[v]));
        for (int t = 0; t < 2; ++t)
            expected += (MPoint(MFloatPoint(shapes[size_t(t)][v])) - MPoint(MFloatPoint(rest[v]))) *
                        weights[t];
        RC_ASSERT(Near(MeshOf(*base)->points()[v], expected) < 1e-5);
    }
}

TEST_F(Deform, BlendShapesTakeOffsetsOfSomeVertices) {
    const NodePtr base = Sheet("base");
    const NodePtr blend = InsertDeformer(edits, "blendShape", {base}, error);
    const Plug item =
        blend->FindPlug("inputTarget").Element(0).Child(0).Element(4).Child(0).Element(kFullTarget);
    const auto points = std::make_shared<PointArrayData>();
    points->value = {MPoint(1, 0, 0), MPoint(0, 2, 0), MPoint(0, 0, 9)};
    const auto vertices = std::make_shared<ComponentListData>();
    vertices->value = {{MFn::kMeshVertComponent, false, {3, 7, 1000}}};
    edits.Set(item.Child(1), std::shared_ptr<Data>(points));
    edits.Set(item.Child(2), std::shared_ptr<Data>(vertices));
    edits.Set(blend->FindPlug("weight").Element(4), 0.5);
    const auto rest = MakePlane(4, 4, 6, 6)->points();
    EXPECT_EQ(MeshOf(*base)->points()[3], rest[3] + MFloatVector(0.5f, 0, 0));
    EXPECT_EQ(MeshOf(*base)->points()[7], rest[7] + MFloatVector(0, 1, 0));
    EXPECT_EQ(CreateBlendShape(edits, {CreatePrimitive(edits, "polyCube").shape}, base, error),
              nullptr);
    EXPECT_NE(error.find("has not the vertices"), std::string::npos);
}

TEST_F(Deform, ADeformerStandsInTheHistoryAndGoesWithoutATrace) {
    const NodePtr mesh = Sheet("sheet");
    edits.SetNumbers(mesh->FindPlug("pnts").Element(2), {0, 1, 0});
    const auto before = MeshOf(*mesh)->points();
    const NodePtr blend = InsertDeformer(edits, "blendShape", {mesh}, error, "blend");
    EXPECT_EQ(History(mesh), (Names{"blendShape", "groupParts", "tweak", "groupParts", "mesh"}));
    EXPECT_EQ(MeshOf(*mesh)->points(), before);
    EXPECT_TRUE(mesh->FindSlot("pnts")->parts.empty());  // the tweak has them
    const NodePtr tweak = SourceNode(mesh->FindPlug("tweakLocation"));
    ASSERT_TRUE(tweak);
    EXPECT_EQ(
        NumberOf(tweak->FindPlug("vlist").Element(0).Child(0).Element(2).Child(1).Find()->value),
        1);
    const NodePtr set = DeformerSet(blend);
    ASSERT_TRUE(set);
    EXPECT_EQ(MFnGeometryData(MObject(MeshOf(*mesh))).objectGroupCount(), 2u);

    const NodePtr other = InsertDeformer(edits, "blendShape", {mesh}, error, "other");
    EXPECT_EQ(History(mesh).size(), 7u);
    Modifier removal(host.scene);
    removal.Delete(tweak);
    EXPECT_EQ(History(mesh),
              (Names{"blendShape", "groupParts", "blendShape", "groupParts", "mesh"}));
    EXPECT_EQ(MeshOf(*mesh)->points(), MakePlane(4, 4, 6, 6)->points());
    removal.Delete(blend);
    EXPECT_EQ(History(mesh), (Names{"blendShape", "groupParts", "mesh"}));
    EXPECT_FALSE(set->isInScene());
    EXPECT_EQ(host.scene.NodesOfType("groupId").size(), 1u);
    removal.Undo();
    EXPECT_EQ(History(mesh).size(), 7u);
    EXPECT_EQ(MeshOf(*mesh)->points(), before);
    removal.Redo();
    EXPECT_EQ(History(mesh), (Names{"blendShape", "groupParts", "mesh"}));
    MoveVertices(edits, mesh, {4}, {MVector(0, 3, 0)});
    EXPECT_EQ(MeshOf(*mesh)->points()[4].y, 3);

    EXPECT_EQ(InsertDeformer(edits, "lambert", {mesh}, error), nullptr);
    EXPECT_EQ(error, "'lambert' is no type of deformer");
    EXPECT_EQ(InsertDeformer(edits, "tweak", {tweak}, error), nullptr);
}

TEST_F(Deform, HistoryIsKeptInFrontOfADeformer) {
    const MeshNodes cube = CreatePrimitive(edits, "polyCube");
    InsertDeformer(edits, "blendShape", {cube.shape}, error, "blend");
    EXPECT_EQ(History(cube.shape),
              (Names{"blendShape", "groupParts", "tweak", "groupParts", "polyCube"}));
    edits.Set(cube.maker->FindPlug("width"), 6.0);
    EXPECT_EQ(cube.shape->Bounds().width(), 6);
}

}  // namespace
}  // namespace minihost
