#pragma once

#include "maya/MArrayOf.h"
#include "maya/MString.h"

class MStringArray : public MArrayOf<MString> {
  public:
    using MArrayOf<MString>::MArrayOf;
};
