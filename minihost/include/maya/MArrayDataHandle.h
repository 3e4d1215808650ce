#pragma once

#include "maya/MArrayDataBuilder.h"
#include "maya/MDataHandle.h"

/// An array during a compute: it stands at one element, the first at the start. An element's value
/// is brought up to date as it is read through inputValue.
class MArrayDataHandle {
  public:
    MArrayDataHandle() = default;
    explicit MArrayDataHandle(minihost::Slot* array) : array_(array) {}
    MArrayDataHandle(const MDataHandle& array, MStatus* status = nullptr);

    unsigned elementCount() const;
    unsigned elementIndex(MStatus* status = nullptr) const;
    MStatus next();
    MStatus jumpToElement(unsigned logicalIndex);
    MStatus jumpToArrayElement(unsigned place);
    MDataHandle inputValue(MStatus* status = nullptr) const;
    MDataHandle outputValue(MStatus* status = nullptr) const;
    MArrayDataBuilder builder(MStatus* status = nullptr) const;
    /// The builder works in place: there is nothing to take over.
    MStatus set(const MArrayDataBuilder& builder);
    MStatus setAllClean();
    MStatus setClean();

  private:
    minihost::Slot* At() const;

    minihost::Slot* array_ = nullptr;
    unsigned place_ = 0;
};
