#pragma once

#include "maya/MArrayOf.h"
#include "maya/MDagPath.h"

class MDagPathArray : public MArrayOf<MDagPath> {
  public:
    using MArrayOf<MDagPath>::MArrayOf;
};
