#pragma once

#include "maya/MObject.h"

/// Tells what has become of the thing that a handle names.
class MObjectHandle {
  public:
    MObjectHandle() = default;
    explicit MObjectHandle(const MObject& object) : object_(object) {}

    MObject object() const { return isAlive() ? object_ : MObject(); }
    const MObject& objectRef() const { return object_; }
    /// There is a thing, be it only for undo.
    bool isAlive() const { return !object_.isNull(); }
    /// It is in the scene, where it is a node; deleted nodes are alive and not valid.
    bool isValid() const;

    bool operator==(const MObjectHandle& other) const { return object_ == other.object_; }
    bool operator!=(const MObjectHandle& other) const { return !(*this == other); }

  private:
    MObject object_;
};
