#pragma once

#include "maya/MObject.h"
#include "minihost/graph/Data.h"

namespace minihost {

/// Components of one geometry, as an MObject stands for them.
class ComponentObject : public Object {
  public:
    explicit ComponentObject(Component c) : component(std::move(c)) {}
    MFn::Type apiType() const override { return component.kind; }

    Component component;
};

inline MObject MakeComponent(Component component) {
    return MObject(std::make_shared<ComponentObject>(std::move(component)));
}

}  // namespace minihost
