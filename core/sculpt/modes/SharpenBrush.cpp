#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// Takes colours, or stencils, away from a smoothed copy of them.
void SharpenColours(const StrokeStep& step, const LPoint3* positions) {
    LNode& node = step.node;
    const int rounds = node.getNumBrushSharpenIterations();
    const float strength = std::min(1.0f, step.colorStrength);
    const LAColor* paints = step.colours->Paints();
    const float* stencils = step.colours->Stencils();
    const std::vector<int>&faces = step.hits.faces, &verts = step.hits.verts;
    const LColor* smooth = nullptr;
    const float* smoothStencils = nullptr;
    if (step.affectColor) {
        LColorSmoothCache& cache = node.lsmoothCache3();
        for (const int v : verts) cache._read()[v] = {paints[v].r, paints[v].g, paints[v].b};
        cache.Iterate(rounds, faces, verts, true);
        smooth = cache.read();
    }
    if (step.affectStencil) {
        LFloatSmoothCache& cache = node.lsmoothCacheF();
        for (const int v : verts) cache._read()[v] = stencils[v];
        cache.Iterate(rounds, faces, verts, true);
        smoothStencils = cache.read();
    }
    const LPoint3 centre = step.node.ltrans(1);
    const auto share = [&](int v, float weight) {
        return step.Masked(std::min(weight, 1.0f), positions[v]) * strength;
    };
    if (smooth)
        step.ForColors(centre, positions, false, [&](int v, float weight, theThData& record) {
            const LAColor even(smooth[v].r, smooth[v].g, smooth[v].b, paints[v].a);
            record.SetPaint(v, MovedPaint(paints[v], even, -share(v, weight)));
        });
    if (smoothStencils)
        step.ForStencils(centre, positions, false, [&](int v, float weight, theThData& record) {
            if (stencils[v] > 0)
                record.SetStencil(v,
                                  MovedStencil(stencils[v], smoothStencils[v], -share(v, weight)));
        });
}

/// Moves vertices away from a smoothed copy of what lies under the brush.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.reach = 1.1f, .centre = 1, .canSweep = false});
    const BrushWeights brush = step.Brush(node.ltrans(1));
    const LPoint3* positions = node.ldisplayCache()->verts().data();
    if (step.colours) SharpenColours(step, positions);
    if (!step.affectGeometry) return false;
    LSmoothCache& cache = node.lsmoothCache();
    for (const int v : step.hits.verts) cache._read()[v] = step.Position(v);
    cache.Iterate(node.getNumBrushSharpenIterations(), step.hits.faces, step.hits.verts, true);
    const LPoint3* smooth = cache.read();
    const float strength = node.lradius() * step.pressure;
    return step.ForFound(brush, positions, [&](int v, float w, theThData& record) {
        if (w > 0) record.OffsetVert(v, (positions[v] - smooth[v]) * (0.4f * (strength * w)));
    });
}

}  // namespace

const BrushMode kSharpenBrushMode{"Sharpen Brush", Prepare, Step};

}  // namespace VantrelSDK
