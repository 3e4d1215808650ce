#pragma once

#include <memory>

#include "maya/MFn.h"

namespace minihost {
class Object;
}

/// A handle to a thing of the host: a node, an attribute, data, a component. Copies are handles to
/// the same thing, which lives as long as a handle or the host holds it; a node that was deleted
/// stays valid for undo, but is no longer in the scene.
class MObject {
  public:
    MObject() = default;
    explicit MObject(std::shared_ptr<minihost::Object> object) : object_(std::move(object)) {}

    bool isNull() const { return object_ == nullptr; }
    MFn::Type apiType() const;
    /// Whether the function set of a kind can be attached.
    bool hasFn(MFn::Type kind) const;

    bool operator==(const MObject& other) const { return object_ == other.object_; }
    bool operator!=(const MObject& other) const { return object_ != other.object_; }

    static const MObject kNullObj;

    const std::shared_ptr<minihost::Object>& object() const { return object_; }
    /// The thing as one of the host's classes, null where it is another.
    template <class T>
    T* as() const {
        return dynamic_cast<T*>(object_.get());
    }

  private:
    std::shared_ptr<minihost::Object> object_;
};
