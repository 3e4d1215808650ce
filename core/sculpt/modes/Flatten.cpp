#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

/// A plane and its mirror image.
struct Planes {
    LPoint3 centre[2], normal[2];

    /// Which of the two serves a position: the nearer one.
    int Side(const StrokeStep& step, const LPoint3& p) const {
        return step.IsSymmetric() && (p - centre[1]).LenSq() <= (p - centre[0]).LenSq();
    }
};

/// Planes through `centre` with the mean normals of the listed vertices on each side; a side
/// without vertices keeps its normal.
void TakeMeanNormals(const StrokeStep& step, Planes& planes) {
    const LDisplayCache& display = *step.node.ldisplayCache();
    for (int side = 0; side < 2; ++side) {
        const LPoint3 sum = step.Sum(step.hits.verts, [&](int v) {
            return planes.Side(step, display.GetVertex(v)) == side ? display.GetVNormal(v)
                                                                   : LPoint3::Zero;
        });
        if (!(sum == LPoint3::Zero)) planes.normal[side] = Normalized(sum);
    }
}

Planes PlanesAt(StrokeStep& step, const LPoint3& centre, const LPoint3& normal) {
    return {{centre, step.node.MirrorPosition(centre)}, {normal, Mirrored(normal, step.axis)}};
}

/// Without accumulation one plane serves the whole stroke.
void Prepare(StrokeStep& step, bool atPress, bool) {
    LNode& node = step.node;
    if (atPress) node.lobject()->ClearWeights();
    const bool accumulate = node.getDoAccumulate();
    const bool useNormal = !accumulate && step.pushPullMode == 1;
    Planes planes = PlanesAt(step, node.ltrans(0), useNormal ? node.lnormal() : node.ldir());
    if (!accumulate && step.pushPullMode == 2) {
        step.hits.Clear();
        node.findVerts(LOctTree::Sphere{node.ltrans(0), node.lradius()}, step.hits);
        TakeMeanNormals(step, planes);
    }
    for (int side = 0; side < 2; ++side) {
        node._lflattenc(side) = planes.centre[side];
        node._lflattend(side) = planes.normal[side];
    }
}

/// Takes colours, or stencils, part of the way to their mean.
void EvenOut(const StrokeStep& step, const LPoint3* positions) {
    if (step.hits.verts.empty()) return;
    const float count = static_cast<float>(step.hits.verts.size());
    const float strength = std::min(1.0f, 10 * step.colorStrength);
    const LAColor* paints = step.colours->Paints();
    const float* stencils = step.colours->Stencils();
    LColor mean(step.Sum(step.hits.verts, [&](int v) {
        return LPoint3(paints[v].r, paints[v].g, paints[v].b);
    }) / count);
    mean.ClampMinMax();
    const float meanStencil =
        step.Sum(step.hits.verts, [&](int v) { return LPoint3(stencils[v], 0, 0); }).x / count;
    const LPoint3 centre = step.node.ltrans(1);
    const auto share = [&](int v, float weight) {
        return std::min(step.Masked(weight, positions[v]), 1.0f) * strength;
    };
    if (step.affectColor)
        step.ForColors(centre, positions, true, [&](int v, float weight, theThData& record) {
            const float t = share(v, weight);
            if (t > 0)
                record.SetPaint(v, MovedPaint(paints[v], {mean.r, mean.g, mean.b, paints[v].a}, t));
        });
    if (step.affectStencil)
        step.ForStencils(centre, positions, true, [&](int v, float weight, theThData& record) {
            const float t = share(v, weight);
            if (t > 0) record.SetStencil(v, MovedStencil(stencils[v], meanStencil, t));
        });
}

/// Moves each vertex a part of its way to the plane, never across it. With accumulation the plane
/// follows the stroke.
bool Step(StrokeStep& step) {
    LNode& node = step.node;
    SearchStep(step, {.centre = 1, .accumulate = !node.firststep()});
    const BrushWeights brush = step.Brush(node.ltrans(1));
    const LPoint3* positions = node.ldisplayCache()->verts().data();
    if (step.colours) EvenOut(step, positions);
    if (!step.affectGeometry) return false;
    Planes planes{{node.lflattenc(0), node.lflattenc(1)}, {node.lflattend(0), node.lflattend(1)}};
    if (node.getDoAccumulate()) {
        planes =
            PlanesAt(step, node.ltrans(1), step.pushPullMode == 1 ? node.lnormal() : node.ldir());
        if (step.pushPullMode == 2) TakeMeanNormals(step, planes);
    }
    return step.ForFound(brush, positions, [&](int v, float w, theThData& record) {
        if (!(w > 0)) return;
        const LPoint3& p = positions[v];
        const int side = planes.Side(step, p);
        const float distance = -((p - planes.centre[side]) % planes.normal[side]);
        record.OffsetVert(v, planes.normal[side] * (distance * std::min(1.0f, w * step.pressure)));
    });
}

}  // namespace

const BrushMode kFlattenMode{"Flatten", Prepare, Step};

}  // namespace VantrelSDK
