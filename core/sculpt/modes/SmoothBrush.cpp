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

/// One vertex of a round of the Smooth Brush.
struct SmoothRound {
    static constexpr float kReach = 2;

    /// The mean over its faces of the mean of itself and its neighbours along the polygon's edges
    /// (a diagonal joins no neighbours). Open corners stay.
    static LPoint3 Vert(const Surroundings& s, const LPoint3* read, int v) {
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
    /// Paint and stencils: the mean over its faces of the mean of their corners.
    template <class T>
    static T Vert(const Surroundings& s, const T* read, int v) {
        const auto around = s.adjFaces.GetAdjFacesForVert(v);
        if (around.size() < 3) return read[v];
        T sum{};
        for (const int f : around) {
            const LFace& face = s.faces[f];
            sum += (read[face.v[0]] + read[face.v[1]] + read[face.v[2]]) * 0.33333334f;
        }
        return sum / static_cast<float>(around.size());
    }
};

/// One vertex of a round of Relax. An open border stays.
struct RelaxRound {
    static constexpr float kReach = 1;

    /// Where the surface is flat a vertex keeps its place, where normals diverge it goes to the
    /// mean of its neighbours.
    static LPoint3 Vert(const Surroundings& s, const LPoint3* read, int v) {
        return Mean(s, read, v, [](const LPoint3& mean, const LPoint3& own, float t) {
            return mean * (1 - t) + own * t;
        });
    }
    template <class T>
    static T Vert(const Surroundings& s, const T* read, int v) {
        return Mean(s, read, v, [](const T& mean, const T&, float) { return mean; });
    }

  private:
    template <class T, class Place>
    static T Mean(const Surroundings& s, const T* read, int v, const Place& place) {
        const auto neighbours = s.adjVerts.GetAdjVertsForVert(v);
        const size_t faces = s.adjFaces.GetAdjFacesForVert(v).size();
        if (neighbours.empty() || faces < 3 || faces < neighbours.size()) return read[v];
        T sum{};
        float flat = 0;
        for (const int n : neighbours) {
            sum += read[n];
            flat += std::clamp(s.normals[n] % s.normals[v], 0.0f, 1.0f);
        }
        if (!(flat > 0)) return read[v];
        const float count = static_cast<float>(neighbours.size());
        return place(sum / count, read[v], flat / count);
    }
};

/// Smooths values of what the search reached in `rounds`, each reading the former one only, while
/// all around holds still. `value` gives those of the moment. Returns the result, by vertex.
template <class Round, class T, class Value>
const T* Smoothed(const StrokeStep& step, LSmoothBuffers<T>& buffers, int rounds,
                  const Value& value) {
    const LDisplayCache& display = *step.node.ldisplayCache();
    const LMeshTopology& topology = *display.Topology();
    const Surroundings around{topology.Faces(), topology.AdjFaces(), topology.AdjVerts(),
                              display.vnormals().data()};
    const std::span<const int> found(step.hits.verts);
    const auto inside = found.first(step.hits.numInside), ring = found.subspan(inside.size());
    T *read = buffers._read(), *write = buffers._write();
    const auto forVerts = [&](std::span<const int> verts, const auto& act) {
        step.node.lthGrp()->ForSlices(static_cast<int>(verts.size()), StrokeStep::kGrain,
                                      [&](int first, int last, int) {
                                          for (int i = first; i < last; ++i) act(verts[i]);
                                      });
    };
    const auto load = [&](int v) { read[v] = write[v] = value(v); };
    forVerts(inside, load);
    forVerts(ring, load);
    forVerts(step.hits.border, load);
    for (int round = 0; round < rounds; ++round) {
        forVerts(inside, [&](int v) { write[v] = Round::Vert(around, read, v); });
        std::swap(read, write);
    }
    return read;
}

/// Takes colours, or stencils, part of the way to their smoothed selves. Colours are held by the
/// stencil too.
template <class Round>
void SmoothColours(const StrokeStep& step, const LPoint3* positions, int rounds) {
    const float strength = std::min(1.0f, 10 * step.colorStrength);
    const LAColor* paints = step.colours->Paints();
    const float* stencils = step.colours->Stencils();
    const LPoint3 centre = step.node.ltrans(1);
    const auto weightOf = [&](int v, float weight) {
        return step.Masked(std::min(weight, 1.0f), positions[v]) * strength;
    };
    if (step.affectColor) {
        const LAColor* smooth = Smoothed<Round>(step, step.node.lsmoothCache2(), rounds,
                                                [&](int v) { return paints[v]; });
        step.ForColors(centre, positions, false, [&](int v, float weight, theThData& record) {
            float t = weightOf(v, weight);
            if (step.stencil) t *= 1 - step.stencil[v];
            if (t > 0) record.SetPaint(v, MovedPaint(paints[v], smooth[v], t));
        });
        return;
    }
    const float* smooth = Smoothed<Round>(step, step.node.lsmoothCacheF(), rounds,
                                          [&](int v) { return stencils[v]; });
    step.ForStencils(centre, positions, false, [&](int v, float weight, theThData& record) {
        const float t = weightOf(v, weight);
        if (t > 0) record.SetStencil(v, MovedStencil(stencils[v], smooth[v], t));
    });
}

/// Smooths the surface, or else colours, or else stencils: the first that is affected.
template <class Round>
bool SmoothStep(StrokeStep& step, int rounds, float strength) {
    LNode& node = step.node;
    SearchStep(step, {.reach = Round::kReach, .sweepsSheet = true});
    const BrushWeights brush = step.Brush(node.ltrans(1));
    const LPoint3* positions = node.ldisplayCache()->verts().data();
    if (!step.affectGeometry) {
        if (step.colours) SmoothColours<Round>(step, positions, rounds);
        return false;
    }
    const LPoint3* smooth =
        Smoothed<Round>(step, node.lsmoothCache(), rounds, [&](int v) { return step.Position(v); });
    return step.ForFound(brush, positions, [&](int v, float w, theThData& record) {
        if (w > 0) record.OffsetVert(v, (smooth[v] - step.Position(v)) * (strength * w));
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
    return SmoothStep<SmoothRound>(step, rounds, strength);
}

bool Relax(StrokeStep& step) {
    const int level = Level(step);
    const int rounds = std::max(step.node.getNumBrushSmoothIterations() * level * level * level, 1);
    const float strength = std::min(1.0f, step.node.lradius() * 20 * step.pressure * (level + 1));
    return SmoothStep<RelaxRound>(step, rounds, strength);
}

}  // namespace

const BrushMode kSmoothBrushMode{"Smooth Brush", Prepare, Smooth};
const BrushMode kRelaxMode{"Relax", Prepare, Relax};

}  // namespace VantrelSDK
