#pragma once

#include <memory>
#include <vector>

#include "maya/MObject.h"
#include "maya/MStatus.h"

namespace minihost {

class MeshData;

/// A walk over the elements of a mesh (data or node), or those of a component, as they were when it
/// began.
class MeshWalk {
  public:
    MStatus reset();
    bool isDone() const { return place_ >= count(); }
    MStatus next();
    /// How many elements the walk has.
    int count() const;
    /// The element that it is at, -1 at the end.
    int index() const;
    /// Moves to an element of the walk.
    MStatus setIndex(int element, int& previous);

  protected:
    /// A null component: all. One of another kind than `kind` is an error, and gives an empty walk.
    MeshWalk(const MObject& mesh, const MObject& component, MFn::Type kind, MStatus* status);

    std::shared_ptr<const MeshData> mesh_;

  private:
    bool some_ = false;
    int all_ = 0, place_ = 0;
    std::vector<int> elements_;
};

}  // namespace minihost
