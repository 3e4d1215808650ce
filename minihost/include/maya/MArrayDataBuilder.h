#pragma once

#include "maya/MDataHandle.h"

class MDataBlock;

/// Makes and takes out elements of an array during a compute, in place.
class MArrayDataBuilder {
  public:
    MArrayDataBuilder() = default;
    MArrayDataBuilder(MDataBlock* block, const MObject& attribute, unsigned guess,
                      MStatus* status = nullptr);
    explicit MArrayDataBuilder(minihost::Slot* array) : array_(array) {}

    /// The element with a logical index, made where it is missing.
    MDataHandle addElement(unsigned index, MStatus* status = nullptr);
    /// One behind the last.
    MDataHandle addLast(MStatus* status = nullptr);
    /// Fails for an element that is connected.
    MStatus removeElement(unsigned index);
    unsigned elementCount() const;

    minihost::Slot* array() const { return array_; }

  private:
    minihost::Slot* array_ = nullptr;
};
