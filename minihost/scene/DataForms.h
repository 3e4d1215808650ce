#pragma once

#include <memory>

#include "minihost/graph/Data.h"
#include "minihost/scene/Document.h"

namespace minihost {

/// How data of one type stands in a scene file: its name, then words of its own.
struct DataForm {
    MFnData::Type type;
    const char* name;
    void (*write)(const Data& data, SceneForm form, SceneStatement& statement);
    /// Throws a DocumentError for words that are no such data.
    std::shared_ptr<Data> (*read)(StatementReader& words);
};

/// Null for a type that has no form, and is not kept.
const DataForm* DataFormOf(MFnData::Type type);
/// Null for a name that is none.
const DataForm* DataFormNamed(const std::string& name);

/// A component within the words of data.
void AddComponent(const Component& component, SceneStatement& statement);
Component TakeComponent(StatementReader& words);

// Forms with a file of their own.
void WriteMeshData(const Data& data, SceneForm form, SceneStatement& statement);
std::shared_ptr<Data> ReadMeshData(StatementReader& words);
void WritePluginData(const Data& data, SceneForm form, SceneStatement& statement);
std::shared_ptr<Data> ReadPluginData(StatementReader& words);

}  // namespace minihost
