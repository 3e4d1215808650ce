#include "minihost/plugin/PluginData.h"

#include "minihost/Host.h"

namespace minihost {

std::shared_ptr<Data> PluginData::Copy() const {
    std::unique_ptr<MPxData> copy = Host::Get().dataTypes.Make(data_->typeId());
    if (!copy) return nullptr;
    copy->copy(*data_);
    return std::make_shared<PluginData>(std::move(copy));
}

bool PluginDataTypes::Register(const PluginDataType& type) {
    if (!type.creator || Find(type.name)) return false;
    return types_.try_emplace(type.id.id(), type).second;
}

bool PluginDataTypes::Unregister(MTypeId id) {
    return types_.erase(id.id()) > 0;
}

const PluginDataType* PluginDataTypes::Find(MTypeId id) const {
    const auto found = types_.find(id.id());
    return found == types_.end() ? nullptr : &found->second;
}

const PluginDataType* PluginDataTypes::Find(const std::string& name) const {
    for (const auto& [id, type] : types_)
        if (type.name == name) return &type;
    return nullptr;
}

std::unique_ptr<MPxData> PluginDataTypes::Make(MTypeId id) const {
    const PluginDataType* type = Find(id);
    return std::unique_ptr<MPxData>(type ? static_cast<MPxData*>(type->creator()) : nullptr);
}

}  // namespace minihost

MStatus MPxData::readASCII(const MArgList&, unsigned&) {
    return MS::kNotImplemented;
}
MStatus MPxData::readBinary(std::istream&, unsigned) {
    return MS::kNotImplemented;
}
MStatus MPxData::writeASCII(std::ostream&) {
    return MS::kNotImplemented;
}
MStatus MPxData::writeBinary(std::ostream&) {
    return MS::kNotImplemented;
}
