#include "maya/MFnAnimCurve.h"

#include <cmath>

#include "maya/MDGModifier.h"
#include "minihost/Host.h"
#include "minihost/anim/AnimTypes.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/api/Status.h"
#include "minihost/base/Ticks.h"

using namespace minihost;

namespace {

Tangent TangentOf(MFnAnimCurve::TangentType type) {
    return type == MFnAnimCurve::kTangentGlobal ? Tangent::Spline : static_cast<Tangent>(type);
}

const Keys& KeysIn(Node* curve) {
    static const Keys none;
    return curve ? KeysOf(*curve) : none;
}

}  // namespace

MFnAnimCurve::MFnAnimCurve(const MObject& curve, MStatus* status) {
    object_ = hasObj(curve) ? curve : MObject();
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MFnAnimCurve::MFnAnimCurve(const MPlug& plug, MStatus* status) {
    if (!plug.isNull()) object_ = MObject(CurveOf(plug.plug()));
    Tell(status, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
}

MObject MFnAnimCurve::create(const MPlug& plug, MDGModifier* modifier, MStatus* status) {
    object_ = MObject();
    MStatus done = plug.isNull() ? MS::kInvalidParameter : MS::kSuccess;
    if (done && modifier) {
        object_ = modifier->createNode(MString(CurveTypeFor(*plug.plug().attribute)), &done);
        const NodePtr time = TimeNode(Host::Get().scene);
        if (done && time) modifier->connect(MPlug(time->FindPlug("outTime")), findPlug("input"));
        if (done) done = modifier->connect(findPlug("output"), plug);
    } else if (done) {
        Modifier edits(Host::Get().scene);
        if (const NodePtr curve = MakeCurve(edits, plug.plug())) object_ = MObject(curve);
        if (object_.isNull()) done = MS::kFailure;
    }
    return Tell(status, done, object_);
}

MFnAnimCurve::AnimCurveType MFnAnimCurve::animCurveType(MStatus* status) const {
    constexpr const char* kNames[] = {"animCurveTA", "animCurveTL", "animCurveTT", "animCurveTU"};
    for (int i = 0; node() && i < kAnimCurveUnknown; ++i)
        if (node()->type().name == kNames[i])
            return Tell(status, MS::kSuccess, static_cast<AnimCurveType>(i));
    return Tell(status, MS::kInvalidParameter, kAnimCurveUnknown);
}

unsigned MFnAnimCurve::numKeys(MStatus* status) const {
    Tell(status, node() ? MS::kSuccess : MS::kInvalidParameter);
    return static_cast<unsigned>(KeysIn(node()).size());
}

MStatus MFnAnimCurve::evaluate(const MTime& at, double& value) const {
    if (!node()) return MS::kInvalidParameter;
    value = ValueOf(*node(), ToTicks(at));
    return MS::kSuccess;
}

unsigned MFnAnimCurve::addKey(const MTime& time, double value, TangentType in, TangentType out,
                              MAnimCurveChange* change, MStatus* status) {
    const double ticks = ToTicks(time);
    if (!Tell(status,
              node() && !change && std::isfinite(ticks) ? MS::kSuccess : MS::kInvalidParameter))
        return 0;
    int index = 0;
    EditKeys(*node(), [&](Keys& keys) {
        index = PutKey(keys, {ticks, value, TangentOf(in), TangentOf(out), false});
    });
    return static_cast<unsigned>(index);
}

bool MFnAnimCurve::HasKey(unsigned index, MStatus* status) const {
    return Tell(status, index < KeysIn(node()).size() ? MS::kSuccess : MS::kInvalidParameter);
}

MStatus MFnAnimCurve::remove(unsigned index, MAnimCurveChange* change) {
    if (change || !HasKey(index, nullptr)) return MS::kInvalidParameter;
    EditKeys(*node(), [index](Keys& keys) { keys.erase(keys.begin() + index); });
    return MS::kSuccess;
}

bool MFnAnimCurve::find(const MTime& time, unsigned& index, MStatus* status) const {
    const int at = KeyAt(KeysIn(node()), ToTicks(time));
    Tell(status, node() ? MS::kSuccess : MS::kInvalidParameter);
    if (at >= 0) index = static_cast<unsigned>(at);
    return at >= 0;
}

unsigned MFnAnimCurve::findClosest(const MTime& time, MStatus* status) const {
    const int at = ClosestKey(KeysIn(node()), ToTicks(time));
    Tell(status, at >= 0 ? MS::kSuccess : MS::kFailure);
    return at >= 0 ? static_cast<unsigned>(at) : 0;
}

MTime MFnAnimCurve::time(unsigned index, MStatus* status) const {
    return HasKey(index, status) ? FromTicks(KeysIn(node())[index].time) : MTime();
}

double MFnAnimCurve::value(unsigned index, MStatus* status) const {
    return HasKey(index, status) ? KeysIn(node())[index].value : 0;
}

MStatus MFnAnimCurve::setValue(unsigned index, double value, MAnimCurveChange* change) {
    if (change || !HasKey(index, nullptr)) return MS::kInvalidParameter;
    EditKeys(*node(), [&](Keys& keys) { keys[index].value = value; });
    return MS::kSuccess;
}

MFnAnimCurve::TangentType MFnAnimCurve::inTangentType(unsigned index, MStatus* status) const {
    if (!HasKey(index, status)) return kTangentGlobal;
    return static_cast<TangentType>(KeysIn(node())[index].in);
}

MFnAnimCurve::TangentType MFnAnimCurve::outTangentType(unsigned index, MStatus* status) const {
    if (!HasKey(index, status)) return kTangentGlobal;
    return static_cast<TangentType>(KeysIn(node())[index].out);
}
