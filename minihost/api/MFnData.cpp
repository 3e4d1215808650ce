#include "maya/MFnMatrixData.h"
#include "maya/MFnPluginData.h"
#include "maya/MFnStringData.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"

using minihost::MatrixData;
using minihost::PluginData;
using minihost::StringData;
using minihost::Tell;

MFnPluginData::MFnPluginData(const MObject& object, MStatus* status) {
    Tell(status, setObject(object));
}

MObject MFnPluginData::create(const MTypeId& type, MStatus* status) {
    auto data = minihost::Host::Get().dataTypes.Make(type);
    const bool made = Tell(status, data ? MS::kSuccess : MS::kInvalidParameter);
    return object_ = made ? MObject(std::make_shared<PluginData>(std::move(data))) : MObject();
}

const MPxData* MFnPluginData::constData(MStatus* status) const {
    const auto* held = object_.as<PluginData>();
    return Tell(status, held ? MS::kSuccess : MS::kFailure) ? held->get() : nullptr;
}

MPxData* MFnPluginData::data(MStatus* status) {
    return const_cast<MPxData*>(constData(status));
}

MTypeId MFnPluginData::typeId(MStatus* status) const {
    const MPxData* held = constData(status);
    return held ? held->typeId() : MTypeId();
}

MFnStringData::MFnStringData(const MObject& object, MStatus* status) {
    Tell(status, setObject(object));
}

MObject MFnStringData::create(const MString& text, MStatus* status) {
    object_ = MObject(std::make_shared<StringData>(text.str()));
    return Tell(status, MS::kSuccess, object_);
}

MString MFnStringData::string(MStatus* status) const {
    const auto* held = object_.as<StringData>();
    return Tell(status, held ? MS::kSuccess : MS::kFailure) ? MString(held->value) : MString();
}

MStatus MFnStringData::set(const MString& text) {
    auto* held = object_.as<StringData>();
    if (held) held->value = text.str();
    return held ? MS::kSuccess : MS::kFailure;
}

MFnMatrixData::MFnMatrixData(const MObject& object, MStatus* status) {
    Tell(status, setObject(object));
}

MObject MFnMatrixData::create(const MMatrix& matrix, MStatus* status) {
    object_ = MObject(std::make_shared<MatrixData>(matrix));
    return Tell(status, MS::kSuccess, object_);
}

MMatrix MFnMatrixData::matrix(MStatus* status) const {
    const auto* held = object_.as<MatrixData>();
    return Tell(status, held ? MS::kSuccess : MS::kFailure) ? held->value : MMatrix();
}

MStatus MFnMatrixData::set(const MMatrix& matrix) {
    auto* held = object_.as<MatrixData>();
    if (held) held->value = matrix;
    return held ? MS::kSuccess : MS::kFailure;
}
