#include <benchmark/benchmark.h>

#include <memory>

#include "bench/BenchScene.h"
#include "bench/MemoryWatch.h"
#include "core/mesh/Triangulation.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "tests/shapes/Generators.h"

#ifdef KELMO_HAS_OPENSUBDIV
#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>
#include <opensubdiv/far/topologyRefinerFactory.h>
#endif

// Quad levels against OpenSubdiv: the same 5,776 quads with UVs and their seams to 1.5 million. The
// rules differ, the work is alike. Both on one thread.

namespace VantrelSDK::bench {
namespace {

constexpr int kLevels = 4;

const PolyMesh& Base() {
    static const PolyMesh mesh = shapes::Torus(76, 76);
    return mesh;
}

LUVSubdivChannel Channel(const PolyMesh& mesh, size_t faces) {
    LUVSubdivChannel channel;
    std::string error;
    channel.Init(mesh.uvs, TriangulateUVs(mesh), faces, error);
    return channel;
}

/// The whole way up: topology, caches, positions, barycentrics, UVs.
void BM_WayUp(benchmark::State& state) {
    const LMesh base = Triangulate(Base());
    for (auto _ : state) {
        LSubdivMesh mesh(base);
        mesh.SetNeedBarys(true);
        LUVSubdivChannel channel = Channel(Base(), base.GetNumFaces());
        LTopoCaches caches;
        for (int level = 1; level <= kLevels; ++level) {
            auto cache = std::make_unique<LQuadLevelTopoCache>(level, true, true);
            mesh.SubdivideAll_Quad2(true, true, cache.get());
            channel.RedivideAll_Quad(cache.get(), true);
            caches.AddTop(std::move(cache));
        }
        benchmark::DoNotOptimize(mesh.GetAllVertsPtr());
        state.counters["quads"] = mesh.GetNumFaces() / 2;
    }
}
BENCHMARK(BM_WayUp)->Unit(benchmark::kMillisecond)->MinTime(2);

/// A new base shape carried to all levels; the argument is the number of workers.
void BM_NewBase(benchmark::State& state) {
    LSubdivMesh mesh(Triangulate(Base()));
    for (int level = 1; level <= kLevels; ++level) mesh.SubdivideAll_Quad(true, true);
    LThreadGroup workers(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::copy(Base().positions.begin(), Base().positions.end(), mesh.GetAllVertsPtr());
        mesh.RebuildLevels(&workers);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_NewBase)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1);

#ifdef KELMO_HAS_OPENSUBDIV
using namespace OpenSubdiv;

template <class Point>
struct Value : Point {
    void Clear() { static_cast<Point&>(*this) = {}; }
    void AddWithWeight(const Value& o, float w) { *this += Point(o) * w; }
    Value& operator+=(const Point& o) { return static_cast<Point&>(*this) += o, *this; }
};

/// A uniform refinement with the values of its levels, as the benchmark above makes them.
class Refinement {
  public:
    explicit Refinement(const PolyMesh& mesh) : mesh_(mesh) {
        std::vector<int> corners(mesh.NumPolygons(), 4);
        Far::TopologyDescriptor::FVarChannel uvs;
        uvs.numValues = static_cast<int>(mesh.uvs.size());
        uvs.valueIndices = mesh.cornerUVs.data();
        Far::TopologyDescriptor topology;
        topology.numVertices = static_cast<int>(mesh.positions.size());
        topology.numFaces = mesh.NumPolygons();
        topology.numVertsPerFace = corners.data();
        topology.vertIndicesPerFace = mesh.cornerVerts.data();
        topology.numFVarChannels = 1;
        topology.fvarChannels = &uvs;
        using Factory = Far::TopologyRefinerFactory<Far::TopologyDescriptor>;
        Sdc::Options options;
        options.SetVtxBoundaryInterpolation(Sdc::Options::VTX_BOUNDARY_EDGE_ONLY);
        options.SetFVarLinearInterpolation(Sdc::Options::FVAR_LINEAR_ALL);
        refiner_.reset(Factory::Create(topology, Factory::Options(Sdc::SCHEME_CATMARK, options)));
        Far::TopologyRefiner::UniformOptions uniform(kLevels);
        uniform.fullTopologyInLastLevel = true;
        refiner_->RefineUniform(uniform);
        positions_.resize(refiner_->GetNumVerticesTotal());
        uvs_.resize(refiner_->GetNumFVarValuesTotal());
        for (size_t i = 0; i < mesh.uvs.size(); ++i) static_cast<LPoint2&>(uvs_[i]) = mesh.uvs[i];
    }

    void InterpolatePositions() {
        for (size_t i = 0; i < mesh_.positions.size(); ++i)
            static_cast<LPoint3&>(positions_[i]) = mesh_.positions[i];
        const Far::PrimvarRefiner primvar(*refiner_);
        auto* from = positions_.data();
        for (int level = 1; level <= kLevels; ++level) {
            auto* to = from + refiner_->GetLevel(level - 1).GetNumVertices();
            primvar.Interpolate(level, from, to);
            from = to;
        }
    }

    void InterpolateUVs() {
        const Far::PrimvarRefiner primvar(*refiner_);
        auto* from = uvs_.data();
        for (int level = 1; level <= kLevels; ++level) {
            auto* to = from + refiner_->GetLevel(level - 1).GetNumFVarValues();
            primvar.InterpolateFaceVarying(level, from, to);
            from = to;
        }
    }

  private:
    const PolyMesh& mesh_;
    std::unique_ptr<Far::TopologyRefiner> refiner_;
    std::vector<Value<LPoint3>> positions_;
    std::vector<Value<LPoint2>> uvs_;
};

void BM_OpenSubdivWayUp(benchmark::State& state) {
    for (auto _ : state) {
        Refinement refinement(Base());
        refinement.InterpolatePositions();
        refinement.InterpolateUVs();
    }
}
BENCHMARK(BM_OpenSubdivWayUp)->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_OpenSubdivNewBase(benchmark::State& state) {
    Refinement refinement(Base());
    for (auto _ : state) refinement.InterpolatePositions();
}
BENCHMARK(BM_OpenSubdivNewBase)->Unit(benchmark::kMillisecond)->MinTime(1);
#endif

/// Down to level 1, a stroke there, and up to the top again, where details follow. The argument is
/// the number of levels; the counters tell nanoseconds a vertex of the top.
void BM_LevelChange(benchmark::State& state) {
    LHeadlessNode node(1);
    std::string error;
    node.Load(shapes::Torus(38, 38), error);
    const int levels = static_cast<int>(state.range(0));
    for (int level = 0; level < levels; ++level) node.SubdivideAll_Quad();
    LSubdivMesh& delta = *node.GetDelta()->GetOrigMesh();
    const int verts = delta.GetNumVerts();
    for (int v = 0; v < verts; ++v) delta.SetVert(v, {0, 0.001f * (v % 7), 0});
    float lift = 0.1f;
    for (auto _ : state) {
        node.SetActiveSubdivLevel(1);
        lift = -lift;
        for (int v = 0; v < delta.GetNumVerts(); ++v) delta.OffsetVert(v, {lift, 0, 0});
        node.GetDelta()->SetDetailsDirty(true);
        node.SetActiveSubdivLevel(levels);
    }
    state.counters["verts"] = verts;
    state.counters["ns_vert"] = benchmark::Counter(
        static_cast<double>(verts) * 1e-9,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_LevelChange)->Arg(3)->Arg(4)->Arg(5)->Unit(benchmark::kMillisecond);

/// A head's worth of quads with UVs taken up by quad levels, without a session and with one. The
/// counters are bytes a triangle of the top level, all levels, caches and channels included.
void BM_LevelMemory(benchmark::State& state) {
    const PolyMesh mesh = shapes::Torus(76, 76);
    for (auto _ : state) {
        MemoryWatch memory;
        LHeadlessNode node(1);
        std::string error;
        node.Load(mesh, error);
        for (int level = 0; level < state.range(0); ++level) node.SubdivideAll_Quad();
        const double triangles = node.lobject()->GetNumFaces();
        state.counters["triangles"] = triangles;
        state.counters["bytes_triangle"] = memory.Held() / triangles;
        node.InitSculpt();
        state.counters["bytes_triangle_session"] = memory.Held() / triangles;
        state.counters["peak_bytes_triangle"] = memory.Peak() / triangles;
    }
}
BENCHMARK(BM_LevelMemory)->Arg(3)->Arg(4)->Arg(5)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace VantrelSDK::bench
