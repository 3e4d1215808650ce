#pragma once

#include <string>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

class LBlindData;

/// A joint of the rig as it stood when a target was stored.
class LJoint {
  public:
    virtual ~LJoint() = default;

    /// The name of the joint's node, by which joints are matched.
    std::string nodename;
    unsigned nodeid = 0;
    /// Euler angles, as the node has them.
    LPoint3 rotation;
    LPoint3 translation, scale;

    /// The joint as a record. Both return one of LBlindData's codes.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);
};

}  // namespace VantrelSDK
