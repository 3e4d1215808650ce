#pragma once

#include "maya/MArrayOf.h"
#include "maya/MPlug.h"

class MPlugArray : public MArrayOf<MPlug> {
  public:
    using MArrayOf<MPlug>::MArrayOf;
};
