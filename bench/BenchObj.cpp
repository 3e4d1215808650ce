#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <system_error>

#include "core/io/ObjReader.h"
#include "core/io/ObjWriter.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

/// A wavy sheet of about as many triangles, with UVs and coordinates of full length.
PolyMesh WavySheet(int64_t triangles) {
    const int n = static_cast<int>(std::lround(std::sqrt(static_cast<double>(triangles) / 2)));
    PolyMesh mesh = shapes::Grid(n, n, true, 10);
    for (LPoint3& p : mesh.positions) p.z = std::sin(p.x * 0.9f) * std::cos(p.y * 0.7f);
    return mesh;
}

std::string TemporaryPath() {
    return std::filesystem::temp_directory_path() /
           ("kelmo-bench-" + std::to_string(getpid()) + ".obj");
}

void Count(benchmark::State& state, const PolyMesh& mesh) {
    std::error_code missing;
    const auto bytes = static_cast<int64_t>(std::filesystem::file_size(TemporaryPath(), missing));
    state.SetItemsProcessed(state.iterations() * mesh.NumPolygons());
    state.SetBytesProcessed(state.iterations() * bytes);
    std::filesystem::remove(TemporaryPath(), missing);
}

void ReadObjFile(benchmark::State& state) {
    const PolyMesh mesh = WavySheet(state.range(0));
    std::string message;
    if (!WriteObj(TemporaryPath(), mesh, message)) return state.SkipWithError(message.c_str());
    for (auto _ : state) {
        PolyMesh read;
        FileError error;
        if (!ReadObj(TemporaryPath(), read, error)) {
            state.SkipWithError(error.Text().c_str());
            break;
        }
        benchmark::DoNotOptimize(read);
    }
    Count(state, mesh);
}

/// The writing waits until the file is on the disk.
void WriteObjFile(benchmark::State& state) {
    const PolyMesh mesh = WavySheet(state.range(0));
    std::string message;
    for (auto _ : state) {
        if (!WriteObj(TemporaryPath(), mesh, message)) {
            state.SkipWithError(message.c_str());
            break;
        }
    }
    Count(state, mesh);
}

BENCHMARK(ReadObjFile)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(WriteObjFile)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
