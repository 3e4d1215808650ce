#include "host/nodes/NodeAttributes.h"

#include <maya/MFnGenericAttribute.h>
#include <maya/MFnMatrixAttribute.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MFnUnitAttribute.h>
#include <maya/MGlobal.h>
#include <maya/MPxDeformerNode.h>
#include <maya/MRampAttribute.h>

#include <initializer_list>

#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

using Kind = NodeAttributes::Kind;
using Row = NodeAttributes::Row;

MFnNumericData::Type NumericType(Kind kind) {
    switch (kind) {
        case Kind::kBool:
            return MFnNumericData::kBoolean;
        case Kind::kInt:
            return MFnNumericData::kInt;
        case Kind::kFloat:
            return MFnNumericData::kFloat;
        case Kind::kDouble:
            return MFnNumericData::kDouble;
        case Kind::kFloat2:
            return MFnNumericData::k2Float;
        case Kind::kFloat3:
            return MFnNumericData::k3Float;
        default:
            return MFnNumericData::k2Int;
    }
}

MObject MakeGeneric(const Row& row, MString& problem, MStatus& status) {
    MFnGenericAttribute generic;
    const MObject made = generic.create(row.longName, row.shortName, &status);
    if (!status) {
        problem = "can not create generic attribute\n";
        return made;
    }
    const auto accept = [&](auto type, const char* text) {
        if (!status || (status = generic.addAccept(type))) return;
        problem = text;
    };
    accept(MFnData::kMesh, "can not add kMesh accept to param2\n");
    accept(MFnData::kString, "can not add kString accept to param2\n");
    accept(MFnData::kPointArray, "can not add kPointArray accept to param2\n");
    accept(MFnNumericData::k2Float, "can not add k2Float accept to param2\n");
    return made;
}

MObject Make(const Row& row, MString& problem, MStatus& status) {
    const MString name = row.longName, brief = row.shortName;
    MFnTypedAttribute typed;
    switch (row.kind) {
        case Kind::kTime: {
            MFnUnitAttribute unit;
            return unit.create(name, brief, MFnUnitAttribute::kTime, row.value, &status);
        }
        case Kind::kMatrix: {
            MFnMatrixAttribute matrix;
            return matrix.create(name, brief, MFnMatrixAttribute::kDouble, &status);
        }
        case Kind::kMesh:
            return typed.create(name, brief, MFnData::kMesh, MObject::kNullObj, &status);
        case Kind::kString:
            return typed.create(name, brief, MFnData::kString, MObject::kNullObj, &status);
        case Kind::kRamp:
            return MRampAttribute::createCurveRamp(name, brief, &status);
        case Kind::kGeneric:
            return MakeGeneric(row, problem, status);
        case Kind::kBlindData:
            return typed.create(name, brief, MTypeId(kBlindDataId), &status);
        case Kind::kSurfaceCallback:
            return typed.create(name, brief, MTypeId(kSurfaceCallbackId), &status);
        case Kind::kStencilCallback:
            return typed.create(name, brief, MTypeId(kStencilCallbackId), &status);
        case Kind::kRefImageCallback:
            return typed.create(name, brief, MTypeId(kRefImageCallbackId), &status);
        default: {
            MFnNumericAttribute number;
            return number.create(name, brief, NumericType(row.kind), row.value, &status);
        }
    }
}

/// What can't be made has a name of its own in some messages.
MString CanNotCreate(const Row& row) {
    const MString name = row.longName;
    const char* what = nullptr;
    if (name == "toolSize") what = "float array attribute\n";
    if (name == "falloff") what = "ramp attribute\n";
    if (name == "falloff2") what = "ramp2 attribute\n";
    if (name == "blindData") what = "blind data attribute\n";
    if (name == "subTracks") what = "int array attribute\n";
    if (name == "groupTracks") what = "array group tracks attribute\n";
    if (name == "mixTracks") what = "array mix tracks attribute.";
    if (name == "versionStr") what = "version string attribute\n";
    return MString("can not create ") + (what ? MString(what) : name + " attribute\n");
}

MStatus Tell(NodeClass which, const MString& problem, MStatus status) {
    MGlobal::displayError(MString(NameOf(which)) + ": " + problem);
    return status;
}

}  // namespace

const char* NameOf(NodeClass which) {
    return which == NodeClass::kNode ? "KelmoNode" : "KelmoNode2";
}

const std::array<Row, 183>& NodeAttributes::Rows() {
    using enum Kind;
    static constexpr std::array<Row, 183> rows{{
#define ATTRIBUTE(member, longName, shortName, kind, value, flags) \
    {&NodeAttributes::m_mo##member, longName, shortName, kind, value, flags},
#include "host/nodes/NodeAttributes.def"
#undef ATTRIBUTE
    }};
    return rows;
}

MStatus NodeAttributes::Add(NodeClass which) {
    for (const Row& row : Rows()) {
        if (!row.Has(which)) continue;
        MStatus status;
        MString problem = CanNotCreate(row);
        MObject& made = this->*row.object = Make(row, problem, status);
        if (!status) return Tell(which, problem, status);
        MFnAttribute attribute(made);
        attribute.setStorable(!(row.flags & kVolatile));
        attribute.setKeyable(row.flags & kKeyable);
        // A ramp is an array of itself.
        if (row.flags & kArray) attribute.setArray(true);
        attribute.setHidden(true);
        if (row.flags & kDropsCut) attribute.setDisconnectBehavior(MFnAttribute::kDelete);
        status = MPxNode::addAttribute(made);
        if (!status)
            return Tell(which, MString("can not add ") + row.longName + " attribute.", status);
    }
    return AddDependencies(which);
}

MStatus NodeAttributes::AddDependencies(NodeClass which) {
    MStatus status;
    const auto depends = [&](const MObject& output, std::initializer_list<Member> inputs) {
        for (const Member input : inputs)
            if (status && !(this->*input).isNull())
                status = MPxNode::attributeAffects(this->*input, output);
    };
    using N = NodeAttributes;
    const bool deformer = which == NodeClass::kNode;
    // An attribute that the class lacks is passed over.
    depends(deformer ? MPxDeformerNode::outputGeom : m_moOutputGeom,
            {&N::m_moInputGeom, &N::m_moBrush, &N::m_moExecute, &N::m_moInTime, &N::m_moParam3,
             &N::m_moNumRenderSubdivLvls, &N::m_moForceRenderTopLevel, &N::m_moPoseUseCache,
             &N::m_moPoseAnimOn, &N::m_moGroupAnimOn, &N::m_moLiveRbfUpdate, &N::m_moNeutralize,
             &N::m_moWrapUVs, &N::m_moHiActiveParts, &N::m_moRbfExponent, &N::m_moRbfScale,
             &N::m_moCsSpace, &N::m_moPsdSpace, &N::m_moMixTracks});
    if (deformer) {
        depends(m_moDisplayCbk, {&N::m_moBrush, &N::m_moExecute, &N::m_moDisplayMode,
                                 &N::m_moPorjEditMush, &N::m_moWrapUVs, &N::m_moMixTracks});
        depends(m_moShowTextures, {&N::m_moBrush});
        depends(m_moTextureOpac, {&N::m_moBrush});
        return status;
    }
    // The deformer is stale by what feeds the host's own input.
    depends(m_moOutputGeom, {&N::m_moMixTracksOn});
    depends(m_moOutputProxy,
            {&N::m_moInputGeom, &N::m_moBrush, &N::m_moExecute, &N::m_moInTime, &N::m_moParam3,
             &N::m_moPoseAnimOn, &N::m_moGroupAnimOn, &N::m_moLiveRbfUpdate, &N::m_moNeutralize,
             &N::m_moWrapUVs, &N::m_moRbfExponent, &N::m_moRbfScale, &N::m_moCsSpace,
             &N::m_moPsdSpace, &N::m_moMixTracks, &N::m_moMixTracksOn});
    depends(m_moDisplayCbk,
            {&N::m_moBrush, &N::m_moExecute, &N::m_moPoseUseCache, &N::m_moDisplayMode,
             &N::m_moPorjEditMush, &N::m_moWrapUVs, &N::m_moMixTracks, &N::m_moMixTracksOn,
             &N::m_moUnderNorm, &N::m_moUnderTangs, &N::m_moUnderSkin, &N::m_moUnderSkinSolid,
             &N::m_moUnderVect});
    return status;
}

}  // namespace VantrelSDK
