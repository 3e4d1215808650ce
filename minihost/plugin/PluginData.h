#pragma once

#include <memory>
#include <unordered_map>

#include "maya/MPxData.h"
#include "minihost/graph/Data.h"

namespace minihost {

/// Data of a module's own.
class PluginData : public Data {
  public:
    explicit PluginData(std::unique_ptr<MPxData> data) : data_(std::move(data)) {}

    MFn::Type apiType() const override { return MFn::kPluginData; }
    MFnData::Type dataType() const override { return MFnData::kPlugin; }
    MTypeId typeId() const override { return data_->typeId(); }
    std::shared_ptr<Data> Copy() const override;
    MPxData* get() const { return data_.get(); }

  private:
    std::unique_ptr<MPxData> data_;
};

/// A type of plug-in data that a module registered.
struct PluginDataType {
    std::string name;
    MTypeId id;
    void* (*creator)() = nullptr;
    const void* owner = nullptr;
};

/// The types of plug-in data that there are.
class PluginDataTypes {
  public:
    bool Register(const PluginDataType& type);
    bool Unregister(MTypeId id);
    const PluginDataType* Find(MTypeId id) const;
    const PluginDataType* Find(const std::string& name) const;
    /// Empty data of a type, null for a type that is not registered.
    std::unique_ptr<MPxData> Make(MTypeId id) const;

  private:
    std::unordered_map<unsigned, PluginDataType> types_;
};

}  // namespace minihost
