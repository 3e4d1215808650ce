#pragma once

#include "maya/MFnData.h"
#include "maya/MTypeId.h"

class MPxData;

/// Data of a module's own.
class MFnPluginData : public MFnData {
  public:
    MFnPluginData() = default;
    explicit MFnPluginData(const MObject& object, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kPluginData; }
    /// New, empty data of a registered type.
    MObject create(const MTypeId& type, MStatus* status = nullptr);
    MTypeId typeId(MStatus* status = nullptr) const;
    const MPxData* constData(MStatus* status = nullptr) const;
    /// To be changed only before it is put into a plug.
    MPxData* data(MStatus* status = nullptr);
};
