#pragma once

#include "maya/MArrayOf.h"
#include "maya/MVector.h"

class MVectorArray : public MArrayOf<MVector> {
  public:
    using MArrayOf<MVector>::MArrayOf;
};
