#pragma once

#include <utility>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LQuad.h"

namespace VantrelSDK {

/// A mesh of quads.
class LQuadMesh {
  public:
    LQuadMesh() = default;
    LQuadMesh(std::vector<LPoint3> verts, std::vector<LQuad> quads)
        : verts_(std::move(verts)), quads_(std::move(quads)) {}

    int GetNumVerts() const { return static_cast<int>(verts_.size()); }
    int GetNumQuads() const { return static_cast<int>(quads_.size()); }
    /// q from 0 to GetNumQuads() - 1.
    const LQuad& GetQuad(int q) const { return quads_[q]; }
    /// GetNumVerts() positions; null when there are none.
    const LPoint3* GetVertsPtr() const { return verts_.data(); }

    const std::vector<LPoint3>& verts() const { return verts_; }
    std::vector<LPoint3>& _verts() { return verts_; }
    const std::vector<LQuad>& quads() const { return quads_; }
    std::vector<LQuad>& _quads() { return quads_; }

  private:
    std::vector<LPoint3> verts_;
    std::vector<LQuad> quads_;
};

}  // namespace VantrelSDK
