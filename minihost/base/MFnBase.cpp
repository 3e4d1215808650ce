#include "maya/MFnBase.h"

MStatus MFnBase::setObject(const MObject& object) {
    object_ = hasObj(object) ? object : MObject::kNullObj;
    return object_.isNull() ? MS::kInvalidParameter : MS::kSuccess;
}
