#pragma once

#include "maya/MArrayOf.h"
#include "maya/MFloatPoint.h"

class MFloatPointArray : public MArrayOf<MFloatPoint> {
  public:
    using MArrayOf<MFloatPoint>::MArrayOf;
};
