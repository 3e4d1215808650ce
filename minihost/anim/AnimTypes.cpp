#include "minihost/anim/AnimTypes.h"

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"

namespace minihost {
namespace {

/// Finds its slots once: a curve is evaluated at every frame.
class CurveLogic : public NodeLogic {
  public:
    explicit CurveLogic(Node& node)
        : NodeLogic(node),
          input_(Find("input")),
          output_(Find("output")),
          keys_(Find("keys")),
          before_(Find("preInfinity")),
          after_(Find("postInfinity")) {}

    MStatus Compute(const Plug& plug) override {
        if (plug.attribute != output_->attribute) return MS::kUnknownParameter;
        SetResult(*output_, ValueAt(NumberOf(Pull(*input_))));
        return MS::kSuccess;
    }
    bool YieldsToWrites() const override { return true; }
    double ValueAt(double time) const {
        return minihost::ValueAt(keys(), time, InfinityOf(*before_), InfinityOf(*after_));
    }
    const Keys& keys() const {
        static const Keys none;
        const auto* data = std::get_if<std::shared_ptr<Data>>(&keys_->value);
        return data && *data ? static_cast<const KeysData&>(**data).value : none;
    }
    Slot& keysSlot() { return *keys_; }

  private:
    Slot* Find(const char* name) { return node_.Root(*node_.type().Find(name)); }
    static Infinity InfinityOf(Slot& slot) {
        return NumberOf(Pull(slot)) == static_cast<double>(Infinity::Cycle) ? Infinity::Cycle
                                                                            : Infinity::Constant;
    }

    Slot *input_, *output_, *keys_, *before_, *after_;
};

void AddCurveType(NodeTypes& types, const char* name, unsigned id, AttributePtr output) {
    NodeType& type = types.Make(name, id, MFn::kAnimCurve, "animCurve");
    output->isWritable = output->isStorable = false;
    type.Add(std::move(output));
    type.Affects({"input", "keys", "preInfinity", "postInfinity"}, {"output"});
}

}  // namespace

void RegisterAnimTypes(NodeTypes& types) {
    NodeType& time = types.Make("time", 0x54494d45, MFn::kTime);
    time.Add(PlainAttribute("outTime", "o", AttributeKind::Time));

    NodeType& curve = types.Make("animCurve", 0, MFn::kAnimCurve);
    curve.isAbstract = true;
    curve.maker = [](Node& node) { return std::make_unique<CurveLogic>(node); };
    curve.Add(PlainAttribute("input", "i", AttributeKind::Time));
    Attribute* keys = curve.Add(TypedAttribute("keys", "ks", MFnData::kKeys));
    keys->isHidden = true;
    keys->isConnectable = false;
    for (const auto& [longName, shortName] :
         {std::pair{"preInfinity", "pri"}, {"postInfinity", "poi"}})
        curve.Add(EnumAttribute(longName, shortName, {{"Constant", 0}, {"Cycle", 3}}));
    curve.Add(NumericAttribute("useCurveColor", "ucc", MFnNumericData::kBoolean));
    curve.Add(NumericAttribute("curveColor", "ccl", MFnNumericData::k3Float, 0, "RGB"));

    AddCurveType(types, "animCurveTU", 0x50435455,
                 NumericAttribute("output", "o", MFnNumericData::kDouble));
    AddCurveType(types, "animCurveTL", 0x5043544c,
                 PlainAttribute("output", "o", AttributeKind::Distance));
    AddCurveType(types, "animCurveTA", 0x50435441,
                 PlainAttribute("output", "o", AttributeKind::Angle));
    AddCurveType(types, "animCurveTT", 0x50435454,
                 PlainAttribute("output", "o", AttributeKind::Time));
}

bool IsCurve(const Node& node) {
    return node.LogicAs<CurveLogic>() != nullptr;
}

const Keys& KeysOf(Node& curve) {
    return curve.LogicAs<CurveLogic>()->keys();
}

void EditKeys(Node& curve, const std::function<void(Keys&)>& edit) {
    Slot& slot = curve.LogicAs<CurveLogic>()->keysSlot();
    auto* data = std::get_if<std::shared_ptr<Data>>(&slot.value);
    if (data && *data && data->use_count() == 1) {
        edit(static_cast<KeysData&>(**data).value);
    } else {
        auto copy = std::make_shared<KeysData>(KeysOf(curve));
        edit(copy->value);
        slot.value = std::shared_ptr<Data>(std::move(copy));
    }
    Changed(slot);
}

double ValueOf(Node& curve, double ticks) {
    return curve.LogicAs<CurveLogic>()->ValueAt(ticks);
}

}  // namespace minihost
