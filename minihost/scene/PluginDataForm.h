#pragma once

#include "minihost/graph/Data.h"
#include "minihost/scene/Document.h"

namespace minihost {

/// Plug-in data of a type that no module has registered: what the file held, kept as it was, so
/// that the next file holds it again.
class UnknownPluginData : public Data {
  public:
    UnknownPluginData(std::string name, MTypeId id, SceneWord::What content)
        : name(std::move(name)), id(id), content(std::move(content)) {}

    MFn::Type apiType() const override { return MFn::kPluginData; }
    MFnData::Type dataType() const override { return MFnData::kPlugin; }
    MTypeId typeId() const override { return id; }
    std::shared_ptr<Data> Copy() const override {
        return std::make_shared<UnknownPluginData>(*this);
    }

    std::string name;
    MTypeId id;
    /// A text or a blob.
    SceneWord::What content;
};

}  // namespace minihost
