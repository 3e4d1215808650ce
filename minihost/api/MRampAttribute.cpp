#include "maya/MRampAttribute.h"

#include <algorithm>
#include <vector>

#include "maya/MArrayDataBuilder.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"

using minihost::Attribute;
using minihost::AttributeKind;
using minihost::Slot;
using minihost::Tell;

namespace {

enum Child : unsigned { kPosition, kValue, kInterpolation };

double Number(const Slot& entry, Child child) {
    return minihost::NumberOf(minihost::Pull(*entry.parts[child]));
}

struct Entry {
    double position, value;
    int interpolation;
};

double Blend(const std::vector<Entry>& entries, size_t i, double position) {
    const Entry &a = entries[i], &b = entries[i + 1];
    const double width = b.position - a.position,
                 t = width > 0 ? (position - a.position) / width : 1;
    switch (a.interpolation) {
        case MRampAttribute::kNone:
            return a.value;
        case MRampAttribute::kSmooth:
            return a.value + (b.value - a.value) * t * t * (3 - 2 * t);
        case MRampAttribute::kSpline: {
            // Catmull and Rom, "A Class of Local Interpolating Splines"; ends are repeated.
            const double before = entries[i > 0 ? i - 1 : i].value;
            const double after = entries[std::min(i + 2, entries.size() - 1)].value;
            return 0.5 * (2 * a.value + (b.value - before) * t +
                          (2 * before - 5 * a.value + 4 * b.value - after) * t * t +
                          (3 * a.value - before - 3 * b.value + after) * t * t * t);
        }
        default:
            return a.value + (b.value - a.value) * t;
    }
}

}  // namespace

MRampAttribute::MRampAttribute(const MPlug& plug, MStatus* status) {
    const bool is = plug.isArray() && plug.plug().attribute->isRamp;
    if (Tell(status, is ? MS::kSuccess : MS::kInvalidParameter)) plug_ = plug;
}

MRampAttribute::MRampAttribute(const MObject& node, const MObject& attribute, MStatus* status)
    : MRampAttribute(MPlug(node, attribute), status) {}

MObject MRampAttribute::createCurveRamp(const MString& longName, const MString& shortName,
                                        MStatus* status) {
    const std::string name = longName.str(), brief = shortName.str();
    const auto ramp = minihost::PlainAttribute(name, brief, AttributeKind::Compound);
    ramp->AddChild(
        minihost::NumericAttribute(name + "_Position", brief + "p", MFnNumericData::kFloat));
    ramp->AddChild(
        minihost::NumericAttribute(name + "_FloatValue", brief + "fv", MFnNumericData::kFloat));
    ramp->AddChild(minihost::EnumAttribute(
        name + "_Interp", brief + "i",
        {{"None", kNone}, {"Linear", kLinear}, {"Smooth", kSmooth}, {"Spline", kSpline}}, kLinear));
    ramp->isArray = ramp->isRamp = true;
    return Tell(status, MS::kSuccess, MObject(ramp));
}

unsigned MRampAttribute::getNumEntries(MStatus* status) const {
    return plug_.numElements(status);
}

void MRampAttribute::getEntries(MIntArray& indices, MFloatArray& positions, MFloatArray& values,
                                MIntArray& interpolations, MStatus* status) const {
    indices.clear();
    positions.clear();
    values.clear();
    interpolations.clear();
    const Slot* array = plug_.plug().Find();
    if (!Tell(status, array ? MS::kSuccess : MS::kFailure)) return;
    for (const auto& entry : array->parts) {
        indices.append(entry->index);
        positions.append(static_cast<float>(Number(*entry, kPosition)));
        values.append(static_cast<float>(Number(*entry, kValue)));
        interpolations.append(static_cast<int>(Number(*entry, kInterpolation)));
    }
}

void MRampAttribute::addEntries(const MFloatArray& positions, const MFloatArray& values,
                                const MIntArray& interpolations, MStatus* status) {
    Slot* array = plug_.plug().Make();
    const bool fits =
        positions.length() == values.length() && positions.length() == interpolations.length();
    if (!Tell(status, array && fits ? MS::kSuccess : MS::kInvalidParameter)) return;
    for (unsigned i = 0; i < positions.length(); ++i) {
        const int index = array->parts.empty() ? 0 : array->parts.back()->index + 1;
        const MPlug entry = plug_.elementByLogicalIndex(static_cast<unsigned>(index));
        entry.child(kInterpolation).setValue(interpolations[i]);
        entry.child(kValue).setValue(values[i]);
        entry.child(kPosition).setValue(positions[i]);
    }
}

void MRampAttribute::deleteEntries(const MIntArray& indices, MStatus* status) {
    Slot* array = plug_.plug().Find();
    if (!Tell(status, array ? MS::kSuccess : MS::kFailure)) return;
    MArrayDataBuilder builder(array);
    for (const int index : indices)
        if (!builder.removeElement(static_cast<unsigned>(index))) Tell(status, MS::kFailure);
    minihost::Changed(*array);
}

namespace {

void SetChild(const MPlug& ramp, unsigned index, Child child, double value, MStatus* status) {
    const MPlug entry = ramp.elementByLogicalIndex(index);
    Tell(status,
         entry.isNetworked() ? entry.child(child).setValue(value) : MStatus(MS::kInvalidParameter));
}

}  // namespace

void MRampAttribute::setPositionAtIndex(float position, unsigned index, MStatus* status) {
    SetChild(plug_, index, kPosition, double{position}, status);
}
void MRampAttribute::setValueAtIndex(float value, unsigned index, MStatus* status) {
    SetChild(plug_, index, kValue, double{value}, status);
}
void MRampAttribute::setInterpolationAtIndex(MInterpolation interpolation, unsigned index,
                                             MStatus* status) {
    SetChild(plug_, index, kInterpolation, interpolation, status);
}

void MRampAttribute::getValueAtPosition(float position, float& value, MStatus* status) const {
    value = 0;
    const Slot* array = plug_.plug().Find();
    if (!Tell(status, array ? MS::kSuccess : MS::kFailure)) return;
    std::vector<Entry> entries;
    for (const auto& entry : array->parts)
        entries.push_back({Number(*entry, kPosition), Number(*entry, kValue),
                           static_cast<int>(Number(*entry, kInterpolation))});
    if (entries.empty()) return;
    std::ranges::stable_sort(entries, {}, &Entry::position);
    if (position <= entries.front().position || entries.size() == 1) {
        value = static_cast<float>(entries.front().value);
        return;
    }
    size_t i = 0;
    while (i + 1 < entries.size() && entries[i + 1].position <= position) ++i;
    value = static_cast<float>(i + 1 < entries.size() ? Blend(entries, i, position)
                                                      : entries.back().value);
}
