#pragma once

#include "maya/MArrayOf.h"
#include "maya/MFloatVector.h"

class MFloatVectorArray : public MArrayOf<MFloatVector> {
  public:
    using MArrayOf<MFloatVector>::MArrayOf;
};
