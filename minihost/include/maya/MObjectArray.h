#pragma once

#include "maya/MArrayOf.h"
#include "maya/MObject.h"

class MObjectArray : public MArrayOf<MObject> {
  public:
    using MArrayOf<MObject>::MArrayOf;
};
