#pragma once

#include <algorithm>
#include <cstdint>

#include "core/sculpt/BrushWeights.h"
#include "core/sculpt/LDynMask.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

/// What one step of a stroke works with, read once: settings, arrays of the active level (all by
/// vertex), and what its search found.
struct StrokeStep {
    /// Vertices that a worker takes at least.
    static constexpr int kGrain = 1024;

    LNode& node;
    /// The mode with the modifiers of the moment.
    int mode;
    bool affectGeometry, affectColor, affectStencil;
    /// What colours and stencils are written to; null where neither is affected.
    LColorDelta* colours;
    /// The strength of both, which modes scale.
    float colorStrength;
    /// The mirrored axis, -1 for none.
    int axis;
    int pushPullMode;
    float pressure;
    /// Null: no stamp, no mask, no stencil, no restriction to the selection.
    StrokePattern pattern;
    const LDynMask* mask;
    const float* stencil;
    const uint8_t* selected;

    const LPoint3* base;
    const LPoint3* delta;
    /// The surface when the stroke began.
    const LPoint3* start;

    TreeHits& hits;
    /// The search gave each vertex its weight.
    bool swept = false;

    bool IsSymmetric() const { return axis >= 0; }
    bool Skips(int v) const { return selected && !selected[v]; }
    /// The surface as it is.
    LPoint3 Position(int v) const { return base[v] + delta[v]; }
    /// The brush of the stroke modes at c, for everything but colours, and for those.
    BrushWeights Brush(const LPoint3& c) const {
        return {node, BrushWeights::Set::kPaint, c, pattern};
    }
    BrushWeights ColorBrush(const LPoint3& c) const {
        return {node, BrushWeights::Set::kPaint, c, pattern, BrushWeights::Of::kAlpha};
    }
    /// The drag vector.
    LPoint3 Drag() const { return node.ltrans(2) - node.ltrans(0); }

    /// A brush weight above 0, held to what mask and stencil let through and to at most 1.
    float Held(float weight, int v, const LPoint3& p) const {
        if (mask) weight *= mask->GetWeight(&node, p);
        if (stencil) weight *= 1 - stencil[v];
        return std::min(weight, 1.0f);
    }

    /// Calls act(vertex, its place in `verts`, record) for each, on the workers. True when a vertex
    /// changed. Each call writes its own vertex alone.
    template <class Act>
    bool ForVerts(std::span<const int> verts, const Act& act) const {
        std::vector<theThData>& records = node.theThDts();
        for (theThData& record : records) record.Begin(*node.GetDelta(), *node.lobject(), colours);
        node.lthGrp()->ForSlices(static_cast<int>(verts.size()), kGrain,
                                 [&](int first, int last, int worker) {
                                     for (int i = first; i < last; ++i)
                                         act(verts[i], i, records[worker]);
                                 });
        bool changed = false;
        for (theThData& record : records) changed |= record.Join();
        return changed;
    }

    /// As ForVerts over what the search found, with the weight of each vertex that the brush
    /// reaches: that of the swept search, else brush(p), with p from `positions`; then held.
    template <class Act>
    bool ForFound(const BrushWeights& brush, const LPoint3* positions, const Act& act) const {
        return ForVerts(hits.verts, [&](int v, int i, theThData& record) {
            if (Skips(v)) return;
            const float weight = swept ? hits.weights[i] : brush(positions[v], v);
            if (weight > 0) act(v, Held(weight, v, positions[v]), record);
        });
    }

    /// As ForVerts over what the search found, for acts on colours, or on stencils, which the
    /// display cache then shows, with a brush at `centre`. act(vertex, weight, record) gets a
    /// weight above 0 that is not held: that of the swept search when `useSwept`, else the brush's,
    /// with positions from `positions`.
    template <class Act>
    void ForColors(const LPoint3& centre, const LPoint3* positions, bool useSwept,
                   const Act& act) const {
        ForPainted(ColorBrush(centre), positions, useSwept, act);
        node.ldisplayCache()->TakeColors(hits.verts);
    }
    template <class Act>
    void ForStencils(const LPoint3& centre, const LPoint3* positions, bool useSwept,
                     const Act& act) const {
        ForPainted(Brush(centre), positions, useSwept, act);
        node.ldisplayCache()->TakeStencils(hits.verts);
    }
    /// A weight times what the mask lets through.
    float Masked(float weight, const LPoint3& p) const {
        return mask ? weight * mask->GetWeight(&node, p) : weight;
    }

    /// The sum of value(vertex) over `verts`, the same with any number of workers.
    template <class Value>
    LPoint3 Sum(const std::vector<int>& verts, const Value& value) const {
        const int count = static_cast<int>(verts.size());
        const int chunks = (count + kGrain - 1) / kGrain;
        std::vector<LPoint3>& sums = node.tempNormals();
        sums.assign(chunks, LPoint3::Zero);
        node.lthGrp()->ForSlices(chunks, 1, [&](int first, int last, int) {
            for (int c = first; c < last; ++c)
                for (int i = c * kGrain; i < std::min(count, (c + 1) * kGrain); ++i)
                    sums[c] += value(verts[i]);
        });
        LPoint3 total;
        for (const LPoint3& sum : sums) total += sum;
        return total;
    }

  private:
    template <class Act>
    void ForPainted(const BrushWeights& brush, const LPoint3* positions, bool useSwept,
                    const Act& act) const {
        ForVerts(hits.verts, [&](int v, int i, theThData& record) {
            if (Skips(v)) return;
            const float weight = swept && useSwept ? hits.weights[i] : brush(positions[v], v);
            if (weight > 0) act(v, weight, record);
        });
    }
};

/// How a brush searches in a step.
struct StrokeSearch {
    /// Search radius in brush radii.
    float reach = 1;
    /// Which position of the stroke an unswept search is centred on: 1 previous, 2 current.
    int centre = 2;
    bool canSweep = true;
    /// A sharp turn ends the sweep.
    bool minTurn = true;
    /// A pattern that stands in the view doesn't; any other does.
    bool sweepsSheet = false;
    /// Take off what the step before gave.
    bool accumulate = false;
};

/// Finds what the step reaches, into step.hits, and marks it in the display cache. Sets step.swept.
void SearchStep(StrokeStep& step, const StrokeSearch& search);

/// Starts the display cache's marks anew with what step.hits holds.
void MarkFound(StrokeStep& step);

/// True when the step has a length that is worth filling in, no pattern forbids it, and, with
/// `minTurn`, the stroke's last two segments go on without a sharp turn.
bool CanSweep(const StrokeStep& step, bool minTurn, bool sweepsSheet = false);

}  // namespace VantrelSDK
