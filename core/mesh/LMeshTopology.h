#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LTriCoupling.h"

namespace VantrelSDK {

/// The faces of one level and the tables made from them, shared by every mesh of that level.
///
/// The object's geometry, the delta, the display cache, the octree and all level copies point to
/// one topology, so that it is held once. It never changes once it is shared: an edit of a mesh's
/// faces makes a new one.
class LMeshTopology {
  public:
    /// `faces` name vertices 0 to nverts - 1; the number of a face is its place, its `id` the same.
    LMeshTopology(int nverts, std::vector<LFace> faces);
    /// The faces of split quads, two a quad, which stay each other's partners.
    static std::shared_ptr<const LMeshTopology> OfQuads(int nverts, std::vector<LFace> faces);

    int GetNumVerts() const { return nverts_; }
    int GetNumFaces() const { return static_cast<int>(faces_.size()); }
    const std::vector<LFace>& Faces() const { return faces_; }
    /// The faces for writing; drops the tables. For the one mesh that holds this topology.
    LFace* EditFaces();

    /// The faces around each vertex; made at the first call. Call it on the main thread once before
    /// workers read it.
    const LAdjFaceList& AdjFaces() const;
    /// The neighbours of each vertex; made at the first call, like AdjFaces.
    const LAdjVertList& AdjVerts() const;

    /// How the faces pair up into quads; made at the first call, like AdjFaces. May throw
    /// std::bad_alloc.
    const std::shared_ptr<const LTriCoupling>& Coupling() const;

    /// True when every corner of every face names a vertex.
    bool IsValid() const;

  private:
    int nverts_;
    std::vector<LFace> faces_;
    mutable std::unique_ptr<LAdjFaceList> adjFaces_;
    mutable std::unique_ptr<LAdjVertList> adjVerts_;
    mutable std::shared_ptr<const LTriCoupling> coupling_;
};

}  // namespace VantrelSDK
