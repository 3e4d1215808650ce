#pragma once

#include "maya/MArrayOf.h"
#include "maya/MColor.h"

class MColorArray : public MArrayOf<MColor> {
  public:
    using MArrayOf<MColor>::MArrayOf;
};
