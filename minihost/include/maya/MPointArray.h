#pragma once

#include "maya/MArrayOf.h"
#include "maya/MPoint.h"

class MPointArray : public MArrayOf<MPoint> {
  public:
    using MArrayOf<MPoint>::MArrayOf;
};
