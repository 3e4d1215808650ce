#pragma once

#include "maya/MFnBase.h"

namespace minihost {
struct Component;
}

/// Components of a geometry.
class MFnComponent : public MFnBase {
  public:
    MFnComponent() = default;
    explicit MFnComponent(const MObject& component, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kComponent; }
    MFn::Type componentType(MStatus* status = nullptr) const;
    int elementCount(MStatus* status = nullptr) const;
    bool isComplete(MStatus* status = nullptr) const;
    bool isEmpty(MStatus* status = nullptr) const { return elementCount(status) == 0; }
    bool isEqual(const MObject& other, MStatus* status = nullptr) const;

  protected:
    minihost::Component* component() const;
};
