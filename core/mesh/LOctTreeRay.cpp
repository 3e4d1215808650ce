#include <immintrin.h>

#include <cfloat>
#include <cmath>

#include "core/math/LRay.h"
#include "core/mesh/LOctTree.h"

namespace VantrelSDK {

/// A ray in the form that box tests want: eight boxes at once, four lanes a time.
struct TreeRay {
    TreeRay(const LPoint3& origin, const LPoint3& dir) : exact(origin, dir) {
        const float o[3] = {origin.x, origin.y, origin.z}, d[3] = {dir.x, dir.y, dir.z};
        for (int axis = 0; axis < 3; ++axis) {
            // A ray along a face of a box must not form 0 * infinity.
            const float safe =
                std::fabs(d[axis]) < 1e-20f ? std::copysign(1e-20f, d[axis]) : d[axis];
            negative[axis] = safe < 0;
            p[axis] = _mm_set1_ps(o[axis]);
            inverse[axis] = _mm_set1_ps(1.0f / safe);
        }
    }

    LRay exact;
    bool negative[3];
    __m128 p[3], inverse[3];
};

namespace {

/// Which of four boxes the ray meets before `limit`, as a bit mask; `near` takes where.
/// `lo` and `hi` point to lane 0 of three rows that lie eight floats apart.
inline int MeetBoxes(const TreeRay& ray, const float* lo, const float* hi, float limit,
                     float* near) {
    __m128 enter = _mm_setzero_ps(), leave = _mm_set1_ps(limit);
    for (int axis = 0; axis < 3; ++axis) {
        const float* first = ray.negative[axis] ? hi : lo;
        const float* second = ray.negative[axis] ? lo : hi;
        const __m128 in =
            _mm_mul_ps(_mm_sub_ps(_mm_load_ps(first + 8 * axis), ray.p[axis]), ray.inverse[axis]);
        const __m128 out =
            _mm_mul_ps(_mm_sub_ps(_mm_load_ps(second + 8 * axis), ray.p[axis]), ray.inverse[axis]);
        enter = _mm_max_ps(enter, in);
        leave = _mm_min_ps(leave, out);
    }
    _mm_store_ps(near, enter);
    // Room for the rounding of the slab distances.
    const __m128 room = _mm_mul_ps(leave, _mm_set1_ps(1.00001f));
    return _mm_movemask_ps(_mm_cmple_ps(enter, room));
}

/// Asks for the cache lines of something that will be read soon: what a ray waits for is memory.
template <class T>
inline void Prefetch(const T* first, size_t count = 1) {
    const char* from = reinterpret_cast<const char*>(first);
    for (size_t at = 0; at < count * sizeof(T); at += 64) __builtin_prefetch(from + at);
}

}  // namespace

/// A leaf's packet boxes have mostly the leaf's own number.
void LOctTree::PrefetchNode(int node) const {
    if (node >= 0) return Prefetch(splits_.data() + node);
    Prefetch(leaves_.data() + ~node);
    Prefetch(packetBoxes_.data() + ~node);
}

void LOctTree::IntersectLeaf(const Leaf& leaf, const TreeRay& ray, RayHit& best) const {
    alignas(16) float near[4];
    for (int group = 0; group < leaf.numPackets; group += 4) {
        const int packet = leaf.firstPacket + group;
        const WideBox& boxes = packetBoxes_[packet / kWide];
        const int lane = packet % kWide;
        int mask = MeetBoxes(ray, &boxes.lo[0][lane], &boxes.hi[0][lane], best.t, near);
        if (mask) Prefetch(slotPos_.data() + leaf.firstSlot, leaf.numSlots);
        for (int ahead = mask; ahead; ahead &= ahead - 1) {
            const int k = __builtin_ctz(ahead);
            const int first = leaf.firstFace + (group + k) * leaf.packetFaces;
            Prefetch(faces_.data() + first, leaf.packetFaces);
        }
        for (; mask; mask &= mask - 1) {
            const int k = __builtin_ctz(mask);
            if (near[k] > best.t || group + k >= leaf.numPackets) continue;
            const auto [first, last] = PacketFaces(packet + k);
            for (int i = first; i < last; ++i) {
                const LPoint3 &a = slotPos_[faces_[i].slot[0]], &b = slotPos_[faces_[i].slot[1]],
                              &c = slotPos_[faces_[i].slot[2]];
                float t;
                LPoint3 point, bary;
                if (ray.exact.Intersect(a, b, c, t, point, bary, prefIgnoreBackFace) && t < best.t)
                    best = {faces_[i].face, t, point, bary};
            }
        }
    }
}

bool LOctTree::TraceRay(const LPoint3& origin, const LPoint3& dir, RayHit& hit,
                        bool firstHit) const {
    if (IsEmpty()) return false;
    alignas(32) WideBox root;
    Box nothing;
    nothing.Clear();
    for (int k = 0; k < kWide; ++k) root.Set(k, k == 0 ? Box{rootMin_, rootMax_} : nothing);
    alignas(16) float near[4];
    if (!(MeetBoxes(TreeRay(origin, dir), root.lo[0], root.hi[0], FLT_MAX, near) & 1)) return false;
    // From the box's entry on, so that a far eye costs no precision.
    const float start = near[0];
    const TreeRay ray(origin + dir * start, dir);
    RayHit best{-1, FLT_MAX, {}, {}};

    struct Entry {
        float t;
        int node;
    };
    Entry stack[16 * kWide + 1];
    int top = 0;
    stack[top++] = {0, splits_.empty() ? ~0 : 0};
    while (top > 0) {
        const Entry entry = stack[--top];
        if (entry.t > best.t) continue;
        if (entry.node < 0) {
            IntersectLeaf(leaves_[~entry.node], ray, best);
            if (firstHit && best.face >= 0) break;
            continue;
        }
        const Split& split = splits_[entry.node];
        const int base = top;
        for (int half = 0; half < kWide; half += 4) {
            int mask =
                MeetBoxes(ray, &split.boxes.lo[0][half], &split.boxes.hi[0][half], best.t, near);
            for (; mask; mask &= mask - 1) {
                const int k = __builtin_ctz(mask);
                if (split.child[half + k] == kNone) continue;
                PrefetchNode(split.child[half + k]);
                // Kept in order, the nearest on top.
                int place = top++;
                for (; place > base && stack[place - 1].t < near[k]; --place)
                    stack[place] = stack[place - 1];
                stack[place] = {near[k], split.child[half + k]};
            }
        }
    }
    if (best.face < 0) return false;
    hit = best;
    hit.t += start;
    return true;
}

}  // namespace VantrelSDK
