#include <cmath>

#include "core/sculpt/StrokeStep.h"
#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

namespace {

void Prepare(StrokeStep& step, bool atPress, bool) {
    if (atPress) step.node.lobject()->ClearWeights();
}

/// The tables that a smoothing round reads.
struct Surroundings {
    const std::vector<LFace>& faces;
    const LAdjFaceList& adjFaces;
    const LAdjVertList& adjVerts;
    const LPoint3* normals;
};

/// One vertex of a round of the Smooth Brush: the mean over its faces of the mean of itself and its
/// neighbours along the polygon's edges (a diagonal joins no neighbours). Open corners stay.
LPoint3 SmoothVert(const Surroundings& s, const LPoint3* read, int v) {
    const auto around = s.adjFaces.GetAdjFacesForVert(v);
    if (around.size() < 3) return read[v];
    LPoint3 sum;
    for (const int f : around) {
        const LFace& face = s.faces[f];
        const int k = face.CornerOf(v), before = (k + 2) % 3;
        LPoint3 mean = read[v];
        int count = 1;
        if (!face.IsEdgeGluing(k)) mean += read[face.v[(k + 1) % 3]], ++count;
        if (!face.IsEdgeGluing(before)) mean += read[face.v[before]], ++count;
        sum += mean / static_cast<float>(count);
    }
    return sum / static_cast<float>(around.size());
}

/// One vertex of a round of Relax: where the surface is flat a vertex keeps its place, where
/// normals diverge it goes to the mean of its neighbours. An open border stays.
LPoint3 RelaxVert(const Surroundings& s, const LPoint3* read, int v) {
    const auto neighbours = s.adjVerts.GetAdjVertsForVert(v);
    const size_t faces = s.adjFaces.GetAdjFacesForVert(v).size();
    if (neighbours.empty() || faces < 3 || faces < neighbours.size()) return read[v];
    LPoint3 sum;
    float flat = 0;
    for (const int n : neighbours) {
        sum += read[n];
        flat += std::clamp(s.normals[n] % s.normals[v], 0.0f, 1.0f);
    }
    if (!(flat > 0)) return read[v];
    const float count = static_cast<float>(neighbours.size()), t = flat / count;
    return sum / count * (1 - t) + read[v] * t;
}

/// Smooths what the search reached in `rounds`, each reading the former one only, while all around
/// holds still; then moves vertices towards the result.
template <class RoundVert>
bool SmoothStep(StrokeStep& step, float reach, int rounds, float strength,
                const RoundVert& roundVert) {
    LNode& node = step.node;
    SearchStep(step, {.reach = reach});
    if (!step.affectGeometry) return false;
    const LDisplayCache& display = *node.ldisplayCache();
    const LMeshTopology& topology = *display.Topology();
    const Surroundings around{topology.Faces(), topology.AdjFaces(), topology.AdjVerts(),
                              display.vnormals().data()};
    const std::span<const int> found(step.hits.verts);
    const auto inside = found.first(step.hits.numInside), ring = found.subspan(inside.size());
    LPoint3 *read = node.lsmoothCache()._read(), *write = node.lsmoothCache()._write();
    LThreadGroup& workers = *node.lthGrp();
    const auto load = [&](std::span<const int> verts) {
        workers.ForSlices(static_cast<int>(verts.size()), StrokeStep::kGrain,
                          [&](int first, int last, int) {
                              for (int i = first; i < last; ++i)
                                  read[verts[i]] = write[verts[i]] = step.Position(verts[i]);
                          });
    };
    load(inside);
    load(ring);
    load(step.hits.border);
    for (int round = 0; round < rounds; ++round) {
        workers.ForSlices(static_cast<int>(inside.size()), StrokeStep::kGrain,
                          [&](int first, int last, int) {
                              for (int i = first; i < last; ++i)
                                  write[inside[i]] = roundVert(around, read, inside[i]);
                          });
        std::swap(read, write);
    }
    const BrushWeights brush(node, BrushWeights::Set::kPaint, node.ltrans(1), step.pattern);
    return step.ForFound(brush, display.verts().data(), [&](int v, float w, theThData& record) {
        if (w > 0) record.OffsetVert(v, (read[v] - step.Position(v)) * (strength * w));
    });
}

int Level(const StrokeStep& step) {
    return step.node.lobject()->GetOrigGeom()->GetActiveLevel();
}

/// Rounds and strength grow with the level, so that a brush of one size smooths about the same
/// surface on all of them.
bool Smooth(StrokeStep& step) {
    const int level = Level(step);
    const int rounds = std::max(step.node.getNumBrushSmoothIterations() * level * level, 1);
    const float strength = std::min(1.0f, step.node.lradius() * step.pressure * (level + 1));
    return SmoothStep(step, 2, rounds, strength, SmoothVert);
}

bool Relax(StrokeStep& step) {
    const int level = Level(step);
    const int rounds = std::max(step.node.getNumBrushSmoothIterations() * level * level * level, 1);
    const float strength = std::min(1.0f, step.node.lradius() * 20 * step.pressure * (level + 1));
    return SmoothStep(step, 1, rounds, strength, RelaxVert);
}

}  // namespace

const BrushMode kSmoothBrushMode{"Smooth Brush", Prepare, Smooth};
const BrushMode kRelaxMode{"Relax", Prepare, Relax};

}  // namespace VantrelSDK
