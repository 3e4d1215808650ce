#pragma once

#include "maya/MArrayOf.h"

class MUintArray : public MArrayOf<unsigned> {
  public:
    using MArrayOf<unsigned>::MArrayOf;
};
