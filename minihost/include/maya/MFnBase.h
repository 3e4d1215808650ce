#pragma once

#include "maya/MFn.h"
#include "maya/MObject.h"
#include "maya/MStatus.h"

/// A set of functions attached to an object. Attaching to an object of another kind fails, and
/// leaves the set without an object; its functions then fail with kInvalidParameter.
class MFnBase {
  public:
    virtual ~MFnBase() = default;

    virtual MFn::Type type() const { return MFn::kBase; }
    virtual MStatus setObject(const MObject& object);
    MObject object() const { return object_; }
    bool hasObj(const MObject& object) const { return object.hasFn(type()); }

  protected:
    MFnBase() = default;

    MObject object_;
};
