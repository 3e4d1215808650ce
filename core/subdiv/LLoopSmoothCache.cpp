#include "core/subdiv/LLoopSmoothCache.h"

#include <algorithm>
#include <cmath>

namespace VantrelSDK {

LLoopSmoothCache::LLoopSmoothCache(const LPoint3* verts, int nverts, const LAdjVertList& adj,
                                   const LVertOpenList* open)
    : verts_(verts),
      nverts_(verts ? std::max(nverts, 0) : 0),
      adj_(adj.nverts() == nverts ? &adj : nullptr),
      open_(open) {
    weights_[0] = 0;
    for (int n = 1; n < static_cast<int>(weights_.size()); ++n) weights_[n] = VertexWeight(n);
}

// In double precision, rounded once: the cosine of a float differs between mathematics libraries.
float LLoopSmoothCache::VertexWeight(int n) {
    const double c = 3 + 2 * std::cos(6.2831855f / n);
    const double alpha = 1.25 - 0.03125 * c * c;
    return static_cast<float>((1 - alpha) * n / alpha);
}

LPoint3 LLoopSmoothCache::GetVert(int i) const {
    if (i < 0 || i >= nverts_) return LPoint3::Zero;
    const LPoint3& v = verts_[i];
    if (!adj_ || (open_ && open_->IsVertOpen(i))) return v;
    const std::span<const int> neighbours = adj_->GetAdjVertsForVert(i);
    if (neighbours.empty()) return v;

    const int n = static_cast<int>(neighbours.size());
    const float w = n < static_cast<int>(weights_.size()) ? weights_[n] : VertexWeight(n);
    LPoint3 sum = v * w;
    for (const int other : neighbours) sum += verts_[other];
    return sum / (static_cast<float>(n) + w);
}

void LLoopSmoothCache::Fill(LPoint3* out) const {
    for (int i = 0; i < nverts_; ++i) out[i] = GetVert(i);
}

}  // namespace VantrelSDK
