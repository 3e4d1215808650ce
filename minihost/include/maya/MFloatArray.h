#pragma once

#include "maya/MArrayOf.h"

class MFloatArray : public MArrayOf<float> {
  public:
    using MArrayOf<float>::MArrayOf;
};
