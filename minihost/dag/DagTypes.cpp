#include "minihost/dag/DagTypes.h"

#include "maya/MEulerRotation.h"
#include "minihost/dag/DagLogic.h"
#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

MVector VectorAt(Node& node, const char* attribute) {
    const Slot* slot = node.FindSlot(attribute);
    MVector v;
    for (unsigned i = 0; i < 3; ++i) v[i] = NumberOf(Pull(*slot->parts[i]));
    return v;
}

MMatrix Scaling(const MVector& s) {
    MMatrix m;
    for (unsigned i = 0; i < 3; ++i) m[i][i] = s[i];
    return m;
}

MMatrix Rotation(const MVector& radians, int order = 0) {
    return MEulerRotation(radians.x, radians.y, radians.z,
                          static_cast<MEulerRotation::RotationOrder>(order))
        .asMatrix();
}

/// scale, shear, rotate about the pivots' common point, translate.
class TransformLogic : public DagLogic {
  public:
    using DagLogic::DagLogic;

  protected:
    MMatrix Local() override {
        const MVector shear = VectorAt(node_, "shear"), pivot = VectorAt(node_, "rotatePivot");
        MMatrix skew, toPivot, place;
        skew[1][0] = shear.x;
        skew[2][0] = shear.y;
        skew[2][1] = shear.z;
        const MVector move = VectorAt(node_, "translate") + pivot;
        for (unsigned i = 0; i < 3; ++i) {
            toPivot[3][i] = -pivot[i];
            place[3][i] = move[i];
        }
        const int order = static_cast<int>(NumberOf(Pull(*node_.FindSlot("rotateOrder"))));
        return toPivot * Scaling(VectorAt(node_, "scale")) * skew *
               Rotation(VectorAt(node_, "rotate"), order) * Orient() * place;
    }
    virtual MMatrix Orient() { return {}; }
};

class JointLogic : public TransformLogic {
  public:
    using TransformLogic::TransformLogic;

  protected:
    MMatrix Orient() override { return Rotation(VectorAt(node_, "jointOrient")); }
};

Attribute* AddNumeric(NodeType& type, const char* longName, const char* shortName,
                      MFnNumericData::Type kind, double value = 0, const char* endings = "XYZ") {
    return type.Add(NumericAttribute(longName, shortName, kind, value, endings));
}

void AddDagAttributes(NodeType& dag) {
    AddNumeric(dag, "visibility", "v", MFnNumericData::kBoolean, 1)->isKeyable = true;
    AddNumeric(dag, "intermediateObject", "io", MFnNumericData::kBoolean);
    AddNumeric(dag, "template", "tmp", MFnNumericData::kBoolean);
    for (const auto& [longName, shortName] : {std::pair{"matrix", "m"}, {"inverseMatrix", "im"}}) {
        Attribute* matrix = dag.Add(PlainAttribute(longName, shortName, AttributeKind::Matrix));
        matrix->isStorable = matrix->isWritable = false;
    }
    for (const auto& [longName, shortName] : {std::pair{"worldMatrix", "wm"},
                                              {"worldInverseMatrix", "wim"},
                                              {"parentMatrix", "pm"},
                                              {"parentInverseMatrix", "pim"}}) {
        Attribute* matrix = dag.Add(PlainAttribute(longName, shortName, AttributeKind::Matrix));
        matrix->isStorable = matrix->isWritable = false;
        matrix->isArray = true;
    }
    dag.Affects({"matrix"}, {"inverseMatrix", "worldMatrix", "worldInverseMatrix"});
    dag.Affects({"parentMatrix"}, {"parentInverseMatrix"});

    const auto groups = PlainAttribute("instObjGroups", "iog", AttributeKind::Compound);
    groups->isArray = true;
    const auto group = PlainAttribute("objectGroups", "og", AttributeKind::Compound);
    group->isArray = true;
    group->AddChild(TypedAttribute("objectGrpCompList", "gcl", MFnData::kComponentList));
    group->AddChild(NumericAttribute("objectGroupId", "gid", MFnNumericData::kInt));
    group->AddChild(NumericAttribute("objectGrpColor", "gco", MFnNumericData::kInt));
    groups->AddChild(group);
    dag.Add(groups);
}

void AddTransformAttributes(NodeType& transform) {
    for (Attribute* a : {AddNumeric(transform, "translate", "t", MFnNumericData::k3Double),
                         transform.Add(RotationAttribute("rotate", "r")),
                         AddNumeric(transform, "scale", "s", MFnNumericData::k3Double, 1)}) {
        a->isKeyable = true;
        for (const auto& child : a->children) child->isKeyable = true;
    }
    AddNumeric(transform, "shear", "sh", MFnNumericData::k3Double);
    AddNumeric(transform, "rotatePivot", "rp", MFnNumericData::k3Double);
    transform.Add(
        EnumAttribute("rotateOrder", "ro",
                      {{"xyz", 0}, {"yzx", 1}, {"zxy", 2}, {"xzy", 3}, {"yxz", 4}, {"zyx", 5}}));
    for (const char* input : {"translate", "rotate", "scale", "shear", "rotatePivot"}) {
        transform.Affects({input}, {"matrix"});
        for (const auto& child : transform.Find(input)->children)
            transform.Affects(child.get(), transform.Find("matrix"));
    }
    transform.Affects({"rotateOrder"}, {"matrix"});
}

}  // namespace

void RegisterDagTypes(NodeTypes& types) {
    NodeType& depend = types.Make("dependNode", 0, MFn::kDependencyNode, "");
    depend.isAbstract = true;
    depend.Add(PlainAttribute("message", "msg", AttributeKind::Message))->isStorable = false;
    AddNumeric(depend, "caching", "cch", MFnNumericData::kBoolean)->isHidden = true;
    AddNumeric(depend, "isHistoricallyInteresting", "ihi", MFnNumericData::kByte, 2)->isHidden =
        true;
    depend.Add(
        EnumAttribute("nodeState", "nds", {{"Normal", 0}, {"HasNoEffect", 1}, {"Blocking", 2}}));

    NodeType& dag = types.Make("dagNode", 0, MFn::kDagNode);
    dag.isAbstract = true;
    AddDagAttributes(dag);
    dag.maker = [](Node& node) { return std::make_unique<DagLogic>(node); };

    NodeType& transform = types.Make("transform", 0x5846524d, MFn::kTransform, "dagNode");
    AddTransformAttributes(transform);
    transform.maker = [](Node& node) { return std::make_unique<TransformLogic>(node); };

    NodeType& joint = types.Make("joint", 0x4a4f494e, MFn::kJoint, "transform");
    joint.Add(RotationAttribute("jointOrient", "jo"));
    for (const auto& child : joint.Find("jointOrient")->children)
        joint.Affects(child.get(), joint.Find("matrix"));
    AddNumeric(joint, "radius", "radi", MFnNumericData::kFloat, 1);
    joint.Add(PlainAttribute("bindPose", "bps", AttributeKind::Matrix));
    joint.maker = [](Node& node) { return std::make_unique<JointLogic>(node); };

    types.Make("shape", 0, MFn::kShape, "dagNode").isAbstract = true;
    NodeType& locator = types.Make("locator", 0x4c4f4354, MFn::kLocator, "shape");
    AddNumeric(locator, "localPosition", "lp", MFnNumericData::k3Double);
    AddNumeric(locator, "localScale", "los", MFnNumericData::k3Double, 1);

    NodeType& camera = types.Make("camera", 0x4443414d, MFn::kCamera, "shape");
    AddNumeric(camera, "orthographic", "o", MFnNumericData::kBoolean);
    AddNumeric(camera, "orthographicWidth", "ow", MFnNumericData::kDouble, 10);
    AddNumeric(camera, "focalLength", "fl", MFnNumericData::kDouble, 35);
    AddNumeric(camera, "horizontalFilmAperture", "hfa", MFnNumericData::kDouble, 1.41732);
    AddNumeric(camera, "verticalFilmAperture", "vfa", MFnNumericData::kDouble, 0.94488);
    AddNumeric(camera, "nearClipPlane", "ncp", MFnNumericData::kDouble, 0.1);
    AddNumeric(camera, "farClipPlane", "fcp", MFnNumericData::kDouble, 10000);
    AddNumeric(camera, "centerOfInterest", "coi", MFnNumericData::kDouble, 5);
}

}  // namespace minihost
