#pragma once

#include "maya/MArrayOf.h"
#include "maya/MTime.h"

class MTimeArray : public MArrayOf<MTime> {
  public:
    using MArrayOf<MTime>::MArrayOf;
};
