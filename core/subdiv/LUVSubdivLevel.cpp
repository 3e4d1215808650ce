#include "core/subdiv/LUVSubdivLevel.h"

#include <new>

#include "core/subdiv/QuadPattern.h"

namespace VantrelSDK {

LUVSubdivLevel::LUVSubdivLevel(std::span<const LPoint2> verts,
                               std::span<const LUVChannel::MFace> faces)
    : verts_(verts), faces_(faces), edges_(faces, static_cast<int>(verts.size())) {
    if (!faces.empty() && edges_.GetNumEdges() == 0) throw std::bad_alloc();
}

bool LUVSubdivLevel::GetVert(int i, LPoint2& uv) const {
    const int count = static_cast<int>(verts_.size());
    uv = LPoint2::Zero;
    if (i < count) {
        uv = verts_[i];
        return true;
    }
    const auto [a, b] = edges_.GetEdge(i - count).v;
    if (a < 0 || b < 0) return false;
    uv = (verts_[a] + verts_[b]) * 0.5f;
    return true;
}

LUVChannel::MFace LUVSubdivLevel::GetExtFace(int i) const {
    const int f = i / 4, k = i % 4;
    if (k == 3) return {{Middle(f, 0), Middle(f, 1), Middle(f, 2)}};
    return {{Corner(f, k), Middle(f, k), Middle(f, (k + 2) % 3)}};
}

bool LQuadTriUVSubdivLevel::GetVert(int i, LPoint2& uv) const {
    const int single = i - static_cast<int>(verts_.size()) - edges_.GetNumEdges();
    if (single < 0) return LUVSubdivLevel::GetVert(i, uv);
    const int32_t* v = faces_[coupling_.Single(single)].v;
    uv = LPoint2::Zero;
    if (v[0] < 0 || v[1] < 0 || v[2] < 0) return false;
    uv = (verts_[v[0]] + verts_[v[1]] + verts_[v[2]]) / 3.0f;
    return true;
}

LQuad LQuadTriUVSubdivLevel::GetQuad(int q) const {
    struct UVAt {
        const LQuadTriUVSubdivLevel& level;
        int Corner(int f, int k) const { return level.Corner(f, k); }
        int Middle(int f, int k) const { return level.Middle(f, k); }
        bool Visible(int, int) const { return false; }
    };
    const int firstCentre = static_cast<int>(verts_.size()) + edges_.GetNumEdges();
    return StepQuad(q, coupling_, firstCentre, UVAt{*this});
}

}  // namespace VantrelSDK
