#include "maya/MObject.h"

#include "minihost/base/Object.h"

const MObject MObject::kNullObj;

MFn::Type MObject::apiType() const {
    return object_ ? object_->apiType() : MFn::kInvalid;
}

bool MObject::hasFn(MFn::Type kind) const {
    return object_ && object_->Is(kind);
}
