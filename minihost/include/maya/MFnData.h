#pragma once

#include "maya/MFnBase.h"

/// Data that travels along connections.
class MFnData : public MFnBase {
  public:
    enum Type {
        kInvalid = 0,
        kNumeric,
        kPlugin,
        kString,
        kMatrix,
        kStringArray,
        kDoubleArray,
        kIntArray,
        kPointArray,
        kVectorArray,
        kComponentList,
        kMesh,
        /// The keys of an animation curve; the host's own.
        kKeys,
        kAny,
    };

    MFn::Type type() const override { return MFn::kData; }
};
