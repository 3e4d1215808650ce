#pragma once

#include "maya/MTime.h"
#include "minihost/Host.h"
#include "minihost/scene/Document.h"

namespace minihost {

/// A scene file that was read and is known to be whole: what it says can be put into a scene.
class ScenePlan {
  public:
    /// How deep nodes may be nested; an evaluation goes no deeper.
    static constexpr int kMaxDepth = 1000;

    /// Reads what WriteScene writes. Runs nothing and changes nothing. Throws a DocumentError.
    ScenePlan(Host& host, std::string_view content);

    /// Puts all of it into the scene. `asImport`: the scene keeps its time and the values of the
    /// nodes that every scene has, and `prefix` comes before the names of the others. What cannot
    /// be had, since a type is not what it was or a plug is taken, is left out, and told with its
    /// place in the file; nodes and data of unknown types are kept unseen.
    std::vector<std::string> Apply(bool asImport = false, const std::string& prefix = {});

  private:
    /// A "set" or "elements".
    struct Value {
        std::string plug;
        std::variant<std::vector<double>, std::shared_ptr<Data>> what;
        /// Of "elements".
        std::vector<int> indices;
        bool isElements = false;
        size_t at = 0;
    };
    struct PlannedNode {
        NodeTypePtr type;  ///< null: unknown
        std::string typeName;
        MTypeId typeId;
        std::string path;
        int parent = -1;
        int depth = 0;
        bool isDag = false, isDefault = false;
        std::vector<Value> values;
        std::vector<SceneStatement> unknown;
        NodePtr made;
    };
    struct PlannedConnection {
        int source, destination;
        std::string sourcePlug, destinationPlug;
        size_t at;
    };

    void Read(SceneStatement& statement);
    void ReadPlayback(StatementReader& words);
    void ReadNode(StatementReader& words, bool isDefault);
    void PlaceInHierarchy(StatementReader& words, PlannedNode& node);
    void ReadSet(StatementReader& words, Value& value);
    void ReadElements(StatementReader& words, Value& value);
    void ReadConnection(StatementReader& words, size_t at);
    int TakeNode(StatementReader& words);

    void Make(PlannedNode& node, bool asImport, const std::string& prefix);
    void Set(PlannedNode& node, const Value& value);
    void Connect(const PlannedConnection& connection, bool asImport);
    void Warn(size_t at, const std::string& what);
    void WarnOfUnknownTypes();

    Host& host_;
    std::string_view content_;
    MTime::Unit unit_ = MTime::kFilm;
    double minTime_ = 0, maxTime_ = 0;
    bool hasPlayback_ = false;
    std::vector<PlannedNode> nodes_;
    std::unordered_map<std::string, int> byPath_;
    std::vector<PlannedConnection> connections_;
    std::vector<std::string> warnings_;
};

}  // namespace minihost
