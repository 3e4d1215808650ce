#pragma once

#include "maya/MFnBase.h"
#include "maya/MTime.h"

namespace minihost {
class KeyframeDelta;
}

/// What one edit did to the keys of a curve, as a keyframe callback gets it.
class MFnKeyframeDelta : public MFnBase {
  public:
    MFn::Type type() const override { return MFn::kKeyframeDelta; }

    MObject paramCurve(MStatus* status = nullptr) const;
    /// The index of the key after the edit; of a removed one, before it.
    unsigned keyIndex(MStatus* status = nullptr) const;

  protected:
    /// Null, with a failure, where none is attached.
    const minihost::KeyframeDelta* Get(MStatus* status) const;
    void Attach(const MObject& delta, MStatus* status);
};
