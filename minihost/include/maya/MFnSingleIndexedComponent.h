#pragma once

#include "maya/MFnComponent.h"
#include "maya/MIntArray.h"

/// Vertices, edges or polygons, by number. Elements stand in increasing order, each once. A
/// complete component counts its elements where their number is known from setCompleteData.
class MFnSingleIndexedComponent : public MFnComponent {
  public:
    MFnSingleIndexedComponent() = default;
    explicit MFnSingleIndexedComponent(const MObject& component, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kSingleIndexedComponent; }
    /// Makes a component without elements and attaches to it. Null for a kind that is not of
    /// vertices, edges or polygons.
    MObject create(MFn::Type kind, MStatus* status = nullptr);
    MStatus addElement(int element);
    MStatus addElements(const MIntArray& elements);
    /// The element at a place, -1 where there is none.
    int element(int place, MStatus* status = nullptr) const;
    MStatus getElements(MIntArray& elements) const;
    /// All elements from 0 up to `count`.
    MStatus setCompleteData(int count);
    MStatus getCompleteData(int& count) const;
};
