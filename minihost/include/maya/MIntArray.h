#pragma once

#include "maya/MArrayOf.h"

class MIntArray : public MArrayOf<int> {
  public:
    using MArrayOf<int>::MArrayOf;
};
