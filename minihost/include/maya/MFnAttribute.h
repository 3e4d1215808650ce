#pragma once

#include "maya/MFnBase.h"
#include "maya/MFnData.h"
#include "maya/MString.h"

namespace minihost {
class Attribute;
}

/// How an attribute behaves. To be set before the attribute is added to a node type.
class MFnAttribute : public MFnBase {
  public:
    enum DisconnectBehavior { kDelete, kReset, kNothing };

    MFnAttribute() = default;
    explicit MFnAttribute(const MObject& attribute, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kAttribute; }
    MString name(MStatus* status = nullptr) const;
    MString shortName(MStatus* status = nullptr) const;
    MObject parent(MStatus* status = nullptr) const;

    bool isStorable(MStatus* status = nullptr) const;
    bool isKeyable(MStatus* status = nullptr) const;
    bool isHidden(MStatus* status = nullptr) const;
    bool isArray(MStatus* status = nullptr) const;
    bool isReadable(MStatus* status = nullptr) const;
    bool isWritable(MStatus* status = nullptr) const;
    DisconnectBehavior disconnectBehavior(MStatus* status = nullptr) const;
    MStatus setStorable(bool on);
    MStatus setKeyable(bool on);
    MStatus setHidden(bool on);
    MStatus setArray(bool on);
    MStatus setReadable(bool on);
    MStatus setWritable(bool on);
    MStatus setConnectable(bool on);
    MStatus setCached(bool on);
    MStatus setIndexMatters(bool on);
    MStatus setUsesArrayDataBuilder(bool on);
    MStatus setDisconnectBehavior(DisconnectBehavior behavior);
    bool accepts(MFnData::Type type, MStatus* status = nullptr) const;

  protected:
    minihost::Attribute* get() const;
    MStatus Flag(bool minihost::Attribute::*flag, bool on);
    bool Flag(bool minihost::Attribute::*flag, MStatus* status) const;
    MObject Take(std::shared_ptr<minihost::Object> attribute, MStatus* status);
};
