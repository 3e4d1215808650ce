#include <cmath>

#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

/// Samples that a step is walked in at most. A pen makes a few dozen; only a hostile log makes
/// more.
constexpr int kMaxSamples = 1 << 16;

void Prepare(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// Where a step stamps its brush: places along the segment and their mirror images.
struct Samples {
    const std::vector<LPoint3>&centres, &mirrors;
    LPoint3 start, direction;
    float spacing;

    /// First and end of the samples that may lie within `radius` of p on the direct side.
    std::pair<int, int> Reaching(const LPoint3& p, float radius) const {
        const int count = static_cast<int>(centres.size());
        const float along = (p - start) % direction, room = radius * 1.001f + spacing;
        const float first = (along - room) / spacing, last = (along + room) / spacing;
        if (!(last >= 0) || !(first < count)) return {0, 0};
        return {static_cast<int>(std::max(first, 0.0f)),
                static_cast<int>(std::min(last + 2, static_cast<float>(count)))};
    }
};

/// Finds what the step reaches and where it samples.
Samples Search(StrokeStep& step) {
    LNode& node = step.node;
    const LPoint3 p0 = node.ltrans(1), p1 = node.ltrans(2);
    const float len = (p1 - p0).Len(), radius = node.lradius();
    step.hits.Clear();
    const bool swept = CanSweep(step, false);
    if (swept)
        node.findFaces(LOctTree::Line{{(p0 + p1) * 0.5f, radius + len * 0.5f}, p0, p1, radius},
                       step.hits);
    else
        node.findFaces(LOctTree::Sphere{p0, radius}, step.hits);
    MarkFound(step);

    float spacing = swept ? radius / LNode::prefNumInterpolationSteps * 0.5f : len;
    spacing = std::max(spacing, len / kMaxSamples);
    std::vector<LPoint3>&centres = node.samplePoints(0), &mirrors = node.samplePoints(1);
    centres.clear();
    mirrors.clear();
    const LPoint3 u = (p1 - p0) / len;
    for (int k = 0; k < kMaxSamples && k * spacing < len; ++k) {
        centres.push_back(p0 + u * (k * spacing));
        mirrors.push_back(node.MirrorPosition(centres.back()));
    }
    return {centres, mirrors, p0, u, spacing};
}

/// The brush at each sample in turn: visit(vertex, change of weight, sample, record) for what has
/// had weight before.
template <class Visit>
bool Walk(StrokeStep& step, float fixedChange, const Visit& visit) {
    LNode& node = step.node;
    const Samples samples = Search(step);
    if (!step.affectGeometry) return false;
    const bool soft = node.useSoftFalloff2(),
               snapped = step.IsSymmetric() && node.getSymmetrySnaping();
    const BrushWeights brush = step.Brush(node.ltrans(1));
    return step.ForVerts(step.hits.verts, [&](int v, int, theThData& record) {
        if (step.Skips(v)) return;
        const LPoint3& p = step.start[v];
        auto [first, last] = samples.Reaching(p, node.lradius());
        if (step.IsSymmetric()) {
            const auto mirrored = samples.Reaching(Mirrored(p, step.axis), node.lradius());
            if (first == last) std::tie(first, last) = mirrored;
            if (mirrored.first != mirrored.second)
                first = std::min(first, mirrored.first), last = std::max(last, mirrored.second);
        }
        // A snapped mirror image can lie anywhere.
        if (snapped) first = 0, last = static_cast<int>(samples.centres.size());
        for (int k = first; k < last; ++k) {
            const float reach = brush.At(p, v, samples.centres[k], samples.mirrors[k]);
            if (!(reach > 0)) continue;
            const float w = step.Held(reach, v, p);
            if (!(w > 0)) continue;
            const float before = record.GetWeight(v);
            const float change = soft ? w - before : fixedChange;
            if (!(change > 0)) continue;
            record.SetWeight(v, w);
            // The first touch only takes the weight.
            if (before != 0) visit(v, change, samples.centres[k], samples.mirrors[k], record);
        }
    });
}

bool Attract(StrokeStep& step) {
    const float q = 10 * step.pressure, radius2 = step.node.lradius() * step.node.lradius();
    return Walk(
        step, q,
        [&](int v, float change, const LPoint3& c, const LPoint3& mirror, theThData& record) {
            const LPoint3& p = step.start[v];
            LPoint3 way = c - p;
            if (step.IsSymmetric() && way.LenSq() >= radius2) way = mirror - p;
            if (way.Len() < 1e-5f) return;
            if (!step.IsSymmetric()) way.Normalize();
            record.OffsetVert(v, way * (q * change));
        });
}

bool Repel(StrokeStep& step) {
    const float q = step.pressure, radius = step.node.lradius();
    const float strength = step.IsSymmetric() ? q : 3 * q * radius;
    return Walk(
        step, q,
        [&](int v, float change, const LPoint3& c, const LPoint3& mirror, theThData& record) {
            const LPoint3& p = step.start[v];
            LPoint3 way = p - c;
            if (step.IsSymmetric() && way.LenSq() >= radius * radius) way = p - mirror;
            record.OffsetVert(v, Normalized(way) * (change * strength));
        });
}

}  // namespace

const BrushMode kAttractMode{"Attract", Prepare, Attract};
const BrushMode kRepelMode{"Repel", Prepare, Repel};

}  // namespace VantrelSDK
