#pragma once

#include <functional>
#include <string>
#include <vector>

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Scene.h"

namespace minihost {

/// Something that was done and can be taken back.
class Undoable {
  public:
    virtual ~Undoable() = default;
    virtual MStatus Undo() = 0;
    virtual MStatus Redo() = 0;
};

/// Edits of a scene, done at once, in order, and taken back in the reverse order. What fails
/// changes nothing and leaves its reason in error().
class Modifier : public Undoable {
  public:
    explicit Modifier(Scene& scene) : scene_(scene) {}
    Scene& scene() const { return scene_; }

    /// A node of a type by name; a DAG node below `parent`, null for the world. Null where there is
    /// no such type, or it is abstract.
    NodePtr Create(const std::string& typeName, const std::string& name = {},
                   DagNode* parent = nullptr);
    NodePtr Create(const std::shared_ptr<const NodeType>& type, const std::string& name = {},
                   DagNode* parent = nullptr);
    /// A shape below a new transform, which gets the name; the shape's is made of it ("head1",
    /// "headShape1"). Null where the type is no shape.
    DagNodePtr CreateShape(const std::shared_ptr<const NodeType>& type,
                           const std::string& name = {}, DagNode* parent = nullptr);
    /// With all below it, its connections, and a transform's place.
    void Delete(const NodePtr& node);
    /// `force`: a connection that feeds the destination is cut first.
    bool Connect(const Plug& source, const Plug& destination, bool force = false);
    /// Cuts the connection into a plug. An element whose array says so goes.
    bool Disconnect(const Plug& destination);
    bool Set(const Plug& leaf, Datum value);
    bool SetNumbers(const Plug& compound, const std::vector<double>& numbers);
    void Rename(const NodePtr& node, const std::string& name);
    bool Reparent(const DagNodePtr& node, DagNode* parent);
    bool RemoveElement(const Plug& element);
    void Select(std::vector<Selected> selection);
    /// Something else that was done and can be taken back.
    void Did(std::function<void()> undo, std::function<void()> redo);

    MStatus Undo() override;
    MStatus Redo() override;
    bool IsEmpty() const { return steps_.empty(); }
    const std::string& error() const { return error_; }

  private:
    struct Step {
        std::function<void()> undo, redo;
    };

    bool Fail(std::string why);
    void CutAll(Slot& slot);
    /// For undo: takes out an element that writing a plug has made. Null plug: none.
    void TakeBack(const Plug& made);
    void Cut(Slot& destination);

    Scene& scene_;
    std::vector<Step> steps_;
    std::string error_;
};

/// Sets the parts of a transform so that its matrix is as told, pivots left out. False where a part
/// is fed by a connection.
bool SetLocalMatrix(Modifier& edits, DagNode& transform, const MMatrix& matrix);

}  // namespace minihost
