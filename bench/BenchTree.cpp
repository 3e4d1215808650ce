#include <benchmark/benchmark.h>

#include <map>
#include <random>

#include "bench/BenchScene.h"
#include "core/mesh/LOctTree.h"
#include "core/mesh/Triangulation.h"
#include "tests/shapes/Generators.h"

#ifdef KELMO_HAS_EMBREE
#include <embree3/rtcore.h>
#endif
#ifdef KELMO_HAS_NANOFLANN
#include <nanoflann.hpp>
#endif

// The search tree against well-known libraries, on one core, in one run.

namespace VantrelSDK::bench {
namespace {

/// A bumpy torus of 2 * rings * sides triangles. Each is made once and kept.
const LMesh& BumpyTorus(int rings, int sides) {
    static std::map<std::pair<int, int>, LMesh> meshes;
    const auto held = meshes.find({rings, sides});
    if (held != meshes.end()) return held->second;
    PolyMesh torus = shapes::Torus(rings, sides);
    for (LPoint3& p : torus.positions)
        p *= 1 + 0.03f * std::sin(9 * p.x) * std::cos(8 * p.y) + 0.02f * std::sin(31 * p.z);
    return meshes[{rings, sides}] = Triangulate(torus);
}

const LMesh& SearchMesh() {
    return BumpyTorus(1732, 866);
}  // 1.5 million vertices
const LMesh& RayMesh() {
    return BumpyTorus(1225, 612);
}  // 1.5 million triangles

/// Places on the surface.
std::vector<LPoint3> Places(const LMesh& mesh, int count) {
    std::mt19937 random(3);
    std::vector<LPoint3> places;
    for (int i = 0; i < count; ++i)
        places.push_back(mesh.GetVert(static_cast<int>(random() % mesh.GetNumVerts())));
    return places;
}

/// The radius within which about 5 thousand vertices lie.
float SearchRadius() {
    static const float radius = [] {
        LOctTree tree(SearchMesh());
        float r = 0.05f;
        for (int i = 0; i < 20; ++i) {
            double found = 0;
            for (const LPoint3& p : Places(SearchMesh(), 50)) {
                const LOctTree::Sphere sphere{p, r};
                TreeHits hits;
                tree.FindVerts(std::span(&sphere, 1), hits);
                found += hits.verts.size() / 50.0;
            }
            r *= std::sqrt(static_cast<float>(5000 / found));
        }
        return r;
    }();
    return radius;
}

void BM_RadiusQuery_Kelmo(benchmark::State& state) {
    const float radius = SearchRadius();
    LOctTree tree(SearchMesh());
    const std::vector<LPoint3> places = Places(SearchMesh(), 1000);
    TreeHits hits;
    size_t i = 0, found = 0;
    for (auto _ : state) {
        hits.Clear();
        const LOctTree::Sphere sphere{places[i++ % places.size()], radius};
        tree.FindVerts(std::span(&sphere, 1), hits);
        found += hits.verts.size();
    }
    state.counters["found"] = static_cast<double>(found) / state.iterations();
    state.counters["bytes_per_triangle"] =
        static_cast<double>(tree.MemoryUse()) / SearchMesh().GetNumFaces();
}
BENCHMARK(BM_RadiusQuery_Kelmo)->Unit(benchmark::kMicrosecond);

#ifdef KELMO_HAS_NANOFLANN
struct Cloud {
    const LPoint3* points;
    size_t count;
    size_t kdtree_get_point_count() const { return count; }
    float kdtree_get_pt(size_t i, size_t axis) const {
        return axis == 0 ? points[i].x : axis == 1 ? points[i].y : points[i].z;
    }
    template <class Box>
    bool kdtree_get_bbox(Box&) const {
        return false;
    }
};

void BM_RadiusQuery_Nanoflann(benchmark::State& state) {
    const float radius = SearchRadius();
    const Cloud cloud{SearchMesh().GetVertsPtr(), static_cast<size_t>(SearchMesh().GetNumVerts())};
    using Tree =
        nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<float, Cloud>, Cloud, 3>;
    Tree tree(3, cloud, nanoflann::KDTreeSingleIndexAdaptorParams(10));
    tree.buildIndex();
    const std::vector<LPoint3> places = Places(SearchMesh(), 1000);
    std::vector<std::pair<uint32_t, float>> hits;
    nanoflann::SearchParams params;
    params.sorted = false;
    size_t i = 0, found = 0;
    for (auto _ : state)
        found += tree.radiusSearch(&places[i++ % places.size()].x, radius * radius, hits, params);
    state.counters["found"] = static_cast<double>(found) / state.iterations();
}
BENCHMARK(BM_RadiusQuery_Nanoflann)->Unit(benchmark::kMicrosecond);
#endif

struct Ray {
    LPoint3 origin, dir;
};

/// Rays between random points on a sphere around the mesh: they share nothing.
std::vector<Ray> RandomRays() {
    std::mt19937 random(5);
    std::normal_distribution<float> normal;
    const auto onSphere = [&] {
        return Normalized(LPoint3{normal(random), normal(random), normal(random)}) * 1.6f;
    };
    std::vector<Ray> rays(100'000);
    for (Ray& ray : rays) {
        ray.origin = onSphere();
        ray.dir = Normalized(onSphere() - ray.origin);
    }
    return rays;
}

void BM_Rays_Kelmo(benchmark::State& state) {
    const LOctTree tree(RayMesh());
    const std::vector<Ray> rays = RandomRays();
    size_t i = 0, hits = 0;
    LOctTree::RayHit hit;
    for (auto _ : state) {
        const Ray& ray = rays[i++ % rays.size()];
        hits += tree.TraceRay(ray.origin, ray.dir, hit);
    }
    state.counters["hits"] = static_cast<double>(hits) / state.iterations();
    state.counters["rays"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_Rays_Kelmo);

void BM_Build_Kelmo(benchmark::State& state) {
    const LMesh& mesh = RayMesh();
    for (auto _ : state) benchmark::DoNotOptimize(LOctTree(mesh));
}
BENCHMARK(BM_Build_Kelmo)->Unit(benchmark::kMillisecond);

#ifdef KELMO_HAS_EMBREE
/// A scene of RayMesh with the usual settings, on one thread.
class EmbreeScene {
  public:
    explicit EmbreeScene(const LMesh& mesh)
        : device_(rtcNewDevice("threads=1")), scene_(rtcNewScene(device_)) {
        RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto* verts = static_cast<LPoint3*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    sizeof(LPoint3), mesh.GetNumVerts()));
        std::copy_n(mesh.GetVertsPtr(), mesh.GetNumVerts(), verts);
        auto* corners = static_cast<unsigned*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh.GetNumFaces()));
        for (const LFace& face : mesh.Faces()) corners = std::copy_n(face.v, 3, corners);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene_, geometry);
        rtcReleaseGeometry(geometry);
        rtcSetSceneBuildQuality(scene_, RTC_BUILD_QUALITY_MEDIUM);
    }
    ~EmbreeScene() {
        rtcReleaseScene(scene_);
        rtcReleaseDevice(device_);
    }
    void Build() { rtcCommitScene(scene_); }
    bool Trace(const Ray& ray) const {
        RTCRayHit query{};
        query.ray = {ray.origin.x,
                     ray.origin.y,
                     ray.origin.z,
                     0,
                     ray.dir.x,
                     ray.dir.y,
                     ray.dir.z,
                     0,
                     1e30f,
                     ~0u,
                     0,
                     0};
        query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        rtcIntersect1(scene_, &context, &query);
        return query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    }

  private:
    RTCDevice device_;
    RTCScene scene_;
};

void BM_Rays_Embree(benchmark::State& state) {
    EmbreeScene scene(RayMesh());
    scene.Build();
    const std::vector<Ray> rays = RandomRays();
    size_t i = 0, hits = 0;
    for (auto _ : state) hits += scene.Trace(rays[i++ % rays.size()]);
    state.counters["hits"] = static_cast<double>(hits) / state.iterations();
    state.counters["rays"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_Rays_Embree);

void BM_Build_Embree(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<EmbreeScene>(RayMesh());
        state.ResumeTiming();
        scene->Build();
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Build_Embree)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace VantrelSDK::bench
