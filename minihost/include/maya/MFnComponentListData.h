#pragma once

#include "maya/MFnData.h"

/// A list of components, as plugs hold them.
class MFnComponentListData : public MFnData {
  public:
    MFnComponentListData() = default;
    explicit MFnComponentListData(const MObject& data, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kComponentListData; }
    MObject create(MStatus* status = nullptr);
    unsigned length(MStatus* status = nullptr) const;
    /// A component of its own; null past the end.
    MObject operator[](unsigned i) const;
    bool has(const MObject& component, MStatus* status = nullptr) const;
    MStatus add(const MObject& component);
    MStatus remove(unsigned i);
    MStatus clear();
};
