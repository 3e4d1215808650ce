#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>

#include "core/math/Geometry.h"
#include "core/mesh/LOctTree.h"
#include "core/sculpt/LFalloffCache.h"

namespace VantrelSDK {

namespace {

/// Leaves a worker takes at least: about a thousand vertices.
constexpr int kLeafGrain = 32;

struct SphereVolume {
    explicit SphereVolume(const LOctTree::Sphere& s) : c(s.centre), r2(s.radius * s.radius) {}

    /// The squared distance of the box is formed as that of a vertex is: each step rounds
    /// monotonously, so that no vertex in the box is nearer than the box.
    bool Touches(const LPoint3& lo, const LPoint3& hi) const {
        const LPoint3 d(std::max({lo.x - c.x, c.x - hi.x, 0.0f}),
                        std::max({lo.y - c.y, c.y - hi.y, 0.0f}),
                        std::max({lo.z - c.z, c.z - hi.z, 0.0f}));
        return d.LenSq() < r2;
    }
    float Weight(const LPoint3& v) const { return (v - c).LenSq() < r2 ? 1.0f : 0.0f; }

    LPoint3 c;
    float r2;
};

struct LineVolume {
    explicit LineVolume(const LOctTree::Line& line)
        : bounds(line.bounds),
          p0(line.p0),
          axis(line.p1 - line.p0),
          len(axis.Len()),
          radius(line.radius) {}

    float Distance(const LPoint3& v) const { return (axis ^ (p0 - v)).Len() / len; }
    bool Touches(const LPoint3& lo, const LPoint3& hi) const {
        if (!bounds.Touches(lo, hi)) return false;
        // The margin covers the rounding of the distances.
        const float reach = (hi - lo).Len() * 0.5f + radius;
        const LPoint3 centre = (lo + hi) * 0.5f;
        return Distance(centre) <= reach * 1.001f + (centre - p0).Len() * 1e-5f;
    }
    float Weight(const LPoint3& v) const {
        return bounds.Weight(v) > 0 && Distance(v) < radius ? 1.0f : 0.0f;
    }

    SphereVolume bounds;
    LPoint3 p0, axis;
    float len, radius;
};

struct SweepVolume {
    explicit SweepVolume(const LOctTree::Sweep& s)
        : bounds({(s.p0 + s.p1) * 0.5f, (s.radius + (s.p1 - s.p0).Len() * 0.5f) * 1.00001f}),
          p0(s.p0),
          p1(s.p1),
          prev(s.prev),
          axis(s.p1 - s.p0),
          prevAxis(s.p0 - s.prev),
          perLen(1 / axis.Len()),
          perPrevLen(1 / prevAxis.Len()),
          radius(s.radius),
          radius2(s.radius * s.radius),
          accumulate(s.accumulate),
          curve(s.falloff ? std::optional<FalloffSampler>({*s.falloff, s.radius}) : std::nullopt) {}

    bool Touches(const LPoint3& lo, const LPoint3& hi) const { return bounds.Touches(lo, hi); }

    float Weight(const LPoint3& v) const {
        const LPoint3 from0 = v - p0, from1 = v - p1;
        const bool projects = from0 % axis > 0 && from1 % axis < 0;
        const float a2 = from0.LenSq(), b2 = from1.LenSq();
        if (!curve || (curve->Falls() && !accumulate)) {
            const float nearest =
                projects ? (axis ^ from0).Len() * perLen : std::sqrt(std::min(a2, b2));
            if (!(nearest < radius)) return 0;
            return curve ? (*curve)(nearest) : 1;
        }
        const float distance = projects ? (axis ^ from0).Len() * perLen : radius;
        if (!(distance < radius || a2 < radius2 || b2 < radius2)) return 0;
        const float middle = projects ? (*curve)(distance) : 0;
        const float start = (*curve)(std::sqrt(a2));
        const float weight = std::max((*curve)(std::sqrt(b2)), middle);
        if (!accumulate) return std::max(weight, start);
        if (!(weight > 0) || prev == p0) return weight;
        return std::max(weight - std::max(start, FormerWeight(v)), 0.0f);
    }

    /// What the step before gave along its line.
    float FormerWeight(const LPoint3& v) const {
        if (!((v - prev) % prevAxis > 0 && (v - p0) % prevAxis < 0)) return 0;
        const float distance = (prevAxis ^ (prev - v)).Len() * perPrevLen;
        return distance > 0.01f && distance < radius ? (*curve)(distance) : 0;
    }

    /// A ball that holds the capsule around the segment.
    SphereVolume bounds;
    LPoint3 p0, p1, prev, axis, prevAxis;
    float perLen, perPrevLen, radius, radius2;
    bool accumulate;
    std::optional<FalloffSampler> curve;
};

}  // namespace

/// The volumes of one query: a brush, or a brush and its mirror image.
template <class Volume>
struct LOctTree::Volumes {
    template <class Source>
    explicit Volumes(std::span<const Source> sources)
        : first(sources[0]), second(sources[sources.size() > 1]), both(sources.size() > 1) {}

    bool Touches(const LPoint3& lo, const LPoint3& hi) const {
        return first.Touches(lo, hi) || (both && second.Touches(lo, hi));
    }
    float Weight(const LPoint3& p) const {
        const float weight = first.Weight(p);
        return both ? std::max(weight, second.Weight(p)) : weight;
    }

    Volume first, second;
    bool both;
};

/// Calls visit(leaf) for the leaves whose boxes pass `touches`, in the order of leaves_.
template <class Touches, class Visit>
void LOctTree::WalkLeaves(const Touches& touches, Visit visit) const {
    if (IsEmpty()) return;
    if (splits_.empty()) {
        if (touches(leaves_[0].box.lo, leaves_[0].box.hi)) visit(0);
        return;
    }
    // A path down has at most one split a key digit, with seven siblings waiting on each.
    int stack[16 * kWide + 1];
    int top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const int node = stack[--top];
        if (node < 0) {
            visit(~node);
            continue;
        }
        const Split& split = splits_[node];
        for (int k = kWide; k-- > 0;) {
            if (split.child[k] == kNone) continue;
            const Box box = split.boxes.Get(k);
            if (touches(box.lo, box.hi)) stack[top++] = split.child[k];
        }
    }
}

template <class Volume>
void LOctTree::ScanVerts(const Volumes<Volume>& volumes, int first, int last, TreeHits& hits,
                         bool weighted) {
    for (int l = first; l < last; ++l) {
        const Leaf& leaf = leaves_[leafList_[l]];
        for (int s = leaf.firstSlot; s < leaf.firstSlot + leaf.numSlots; ++s) {
            const float weight = volumes.Weight(slotPos_[s]);
            if (!(weight > 0)) continue;
            SlotMark& mark = slotMarks_[s];
            mark.inside = query_;
            if (mark.listed == vertChain_) continue;
            mark.listed = vertChain_;
            hits.verts.push_back(slotVert_[s]);
            if (weighted) hits.weights.push_back(weight);
        }
    }
}

/// Faces with a corner inside, and in `ring` the slots of their corners that are in no list yet
/// (one slot perhaps several times).
void LOctTree::ScanFaces(int first, int last, TreeHits& hits, std::vector<int>& ring) {
    for (int l = first; l < last; ++l) {
        const Leaf& leaf = leaves_[leafList_[l]];
        for (int i = leaf.firstFace; i < leaf.firstFace + leaf.numFaces; ++i) {
            const TreeFace& face = faces_[i];
            const SlotMark &a = slotMarks_[face.slot[0]], &b = slotMarks_[face.slot[1]],
                           &c = slotMarks_[face.slot[2]];
            if (a.inside != query_ && b.inside != query_ && c.inside != query_) continue;
            if (faceMarks_[i] == faceChain_) continue;
            faceMarks_[i] = faceChain_;
            hits.faces.push_back(face.face);
            if (a.listed != vertChain_) ring.push_back(face.slot[0]);
            if (b.listed != vertChain_) ring.push_back(face.slot[1]);
            if (c.listed != vertChain_) ring.push_back(face.slot[2]);
        }
    }
}

bool LOctTree::BeginQuery(const TreeHits& hits, int numVolumes) {
    if (IsEmpty() || numVolumes == 0) return false;
    const auto advance = [](uint32_t& count, auto clear) {
        if (++count == 0) clear(), count = 1;
    };
    const auto clearSlots = [this] { std::fill(slotMarks_.begin(), slotMarks_.end(), SlotMark{}); };
    advance(query_, clearSlots);
    if (hits.verts.empty()) advance(vertChain_, clearSlots);
    if (hits.faces.empty())
        advance(faceChain_, [this] { std::fill(faceMarks_.begin(), faceMarks_.end(), 0); });
    if (scratch_.empty()) scratch_.resize(workers_ ? workers_->GetNumWorkers() : 1);
    return true;
}

/// Runs scan(first, last, scratch) over the leaf list, on the workers when it is long.
template <class Scan>
void LOctTree::ScanLeaves(const Scan& scan) {
    for (Scratch& scratch : scratch_) {
        scratch.hits.Clear();
        scratch.ring.clear();
    }
    const int count = static_cast<int>(leafList_.size());
    if (workers_)
        workers_->ForSlices(count, kLeafGrain, [&](int first, int last, int worker) {
            scan(first, last, scratch_[worker]);
        });
    else
        scan(0, count, scratch_[0]);
}

template <class T>
static void Append(std::vector<T>& to, const std::vector<T>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

/// The stages of a brush query: leaves, vertices in them, faces with such vertices, and the corners
/// of those faces into `ring` (hits.verts or hits.border).
template <class Volume>
bool LOctTree::Collect(const Volumes<Volume>& volumes, TreeHits& hits, bool wantFaces,
                       std::vector<int>& ring, bool weighted) {
    leafList_.clear();
    WalkLeaves([&](const LPoint3& lo, const LPoint3& hi) { return volumes.Touches(lo, hi); },
               [&](int leaf) { leafList_.push_back(leaf); });
    const size_t before = hits.verts.size() + hits.faces.size();
    ScanLeaves([&](int first, int last, Scratch& scratch) {
        ScanVerts(volumes, first, last, scratch.hits, weighted);
    });
    for (const Scratch& scratch : scratch_) {
        Append(hits.verts, scratch.hits.verts);
        Append(hits.weights, scratch.hits.weights);
    }
    hits.numInside = hits.verts.size();
    if (wantFaces) {
        ScanLeaves([&](int first, int last, Scratch& scratch) {
            ScanFaces(first, last, scratch.hits, scratch.ring);
        });
        for (const Scratch& scratch : scratch_) {
            Append(hits.faces, scratch.hits.faces);
            for (const int slot : scratch.ring) {
                if (slotMarks_[slot].listed == vertChain_) continue;
                slotMarks_[slot].listed = vertChain_;
                ring.push_back(slotVert_[slot]);
            }
        }
    }
    return hits.verts.size() + hits.faces.size() > before;
}

bool LOctTree::FindVerts(std::span<const Sphere> spheres, TreeHits& hits) {
    if (!BeginQuery(hits, static_cast<int>(spheres.size()))) return false;
    return Collect(Volumes<SphereVolume>(spheres), hits, false, hits.verts, false);
}

bool LOctTree::FindFaces(std::span<const Sphere> spheres, TreeHits& hits) {
    if (!BeginQuery(hits, static_cast<int>(spheres.size()))) return false;
    return Collect(Volumes<SphereVolume>(spheres), hits, true, hits.verts, false);
}

bool LOctTree::FindFaces(std::span<const Line> lines, TreeHits& hits) {
    if (!BeginQuery(hits, static_cast<int>(lines.size()))) return false;
    return Collect(Volumes<LineVolume>(lines), hits, true, hits.verts, false);
}

bool LOctTree::FindFaces(std::span<const Sweep> sweeps, TreeHits& hits) {
    if (!BeginQuery(hits, static_cast<int>(sweeps.size()))) return false;
    return Collect(Volumes<SweepVolume>(sweeps), hits, true, hits.border, true);
}

float LOctTree::SweepWeight(const Sweep& sweep, const LPoint3& v) {
    return SweepVolume(sweep).Weight(v);
}

bool LOctTree::FindFacesNear(const Sphere& sphere, std::vector<int>& faces) const {
    const SphereVolume volume(sphere);
    const size_t before = faces.size();
    const auto touches = [&](const LPoint3& lo, const LPoint3& hi) {
        // A face's ball around its centroid is no larger than the box's diagonal.
        const float reach = (sphere.radius + (hi - lo).Len()) * 1.001f;
        return SphereVolume({sphere.centre, reach}).Touches(lo, hi);
    };
    WalkLeaves(touches, [&](int leaf) {
        ForEachFace(leaf, [&](int face, const LPoint3& a, const LPoint3& b, const LPoint3& c) {
            const LPoint3 g = (a + b + c) * 0.33333f;
            if (volume.Weight(a) > 0 || volume.Weight(b) > 0 || volume.Weight(c) > 0 ||
                (g - sphere.centre).Len() < (g - a).Len() + sphere.radius)
                faces.push_back(face);
        });
    });
    return faces.size() > before;
}

bool LOctTree::FindFaces(const LPrism& prism, std::vector<int>& faces) const {
    const size_t before = faces.size();
    const auto touches = [&](const LPoint3& lo, const LPoint3& hi) {
        // As in FindFacesNear: the box's ball with room for the balls of its faces.
        return prism.IsInside((lo + hi) * 0.5f, (hi - lo).Len() * 1.501f);
    };
    WalkLeaves(touches, [&](int leaf) {
        ForEachFace(leaf, [&](int face, const LPoint3& a, const LPoint3& b, const LPoint3& c) {
            const LPoint3 g = (a + b + c) * 0.33333f;
            const bool inside = prism.IsInside(a) || prism.IsInside(b) || prism.IsInside(c) ||
                                prism.IsInside(g) || prism.IsInside(g, (g - a).Len());
            if (inside && prism.IsFacing(g, Normalized((c - a) ^ (b - a)))) faces.push_back(face);
        });
    });
    return faces.size() > before;
}

namespace {

/// The point of triangle abc nearest p as the tree tells it: the foot of p when it falls inside,
/// else the nearest corner.
LPoint3 ClosestPointOnFace(const LPoint3& p, const LPoint3& a, const LPoint3& b, const LPoint3& c) {
    const LPoint3 u = b - a, v = c - a, w = p - a;
    const double uu = u.LenSq(), uv = u % v, vv = v.LenSq(), wu = w % u, wv = w % v;
    const double det = uu * vv - uv * uv;
    if (det != 0) {
        const double s = (wu * vv - wv * uv) / det, t = (wv * uu - wu * uv) / det;
        if (s >= 0 && t >= 0 && s + t <= 1) return a + u * s + v * t;
    }
    LPoint3 nearest = a;
    for (const LPoint3& corner : {b, c})
        if ((corner - p).LenSq() < (nearest - p).LenSq()) nearest = corner;
    return nearest;
}

}  // namespace

bool LOctTree::FindClosetPoint(const LPoint3& p, float r, ClosestHit& hit) const {
    if (IsEmpty()) return false;
    float best = r * r;
    int bestFace = -1;
    LPoint3 bestPoint;
    const auto visitLeaf = [&](int leaf) {
        ForEachFace(leaf, [&](int face, const LPoint3& a, const LPoint3& b, const LPoint3& c) {
            const LPoint3 q = ClosestPointOnFace(p, a, b, c);
            const float d = (q - p).LenSq();
            if (!(d < best || (d == best && bestFace >= 0 && face < bestFace))) return;
            best = d;
            bestFace = face;
            bestPoint = q;
        });
    };
    // Nearest boxes first. A foot point is rounded and may lie a hair outside its box.
    const auto distance = [&](const Box& box) {
        const LPoint3 d(std::max({box.lo.x - p.x, p.x - box.hi.x, 0.0f}),
                        std::max({box.lo.y - p.y, p.y - box.hi.y, 0.0f}),
                        std::max({box.lo.z - p.z, p.z - box.hi.z, 0.0f}));
        return d.LenSq() * 0.9999f;
    };
    struct Entry {
        float distance;
        int node;
    };
    Entry stack[16 * kWide + 1];
    int top = 0;
    stack[top++] = {0, splits_.empty() ? ~0 : 0};
    while (top > 0) {
        const Entry entry = stack[--top];
        if (entry.distance > best) continue;
        if (entry.node < 0) {
            visitLeaf(~entry.node);
            continue;
        }
        const Split& split = splits_[entry.node];
        const int base = top;
        for (int k = 0; k < kWide; ++k) {
            if (split.child[k] == kNone) continue;
            const float d = distance(split.boxes.Get(k));
            if (d <= best) stack[top++] = {d, split.child[k]};
        }
        std::sort(stack + base, stack + top,
                  [](const Entry& a, const Entry& b) { return a.distance > b.distance; });
    }
    if (bestFace < 0) return false;
    hit = {bestFace, bestPoint, std::sqrt(best)};
    return true;
}

}  // namespace VantrelSDK
