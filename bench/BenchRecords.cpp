#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/io/AtomicFile.h"
#include "core/io/InputFile.h"
#include "core/io/LBlindData.h"
#include "core/sculpt/LHeadlessNode.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

/// A grid with UVs, four quad levels above it, a delta and a target of a tenth of its vertices:
/// 20 and, ten times as large, 200 MB as a block.
LHeadlessNode& SculptedNode(int64_t megabytes) {
    static std::map<int64_t, std::unique_ptr<LHeadlessNode>> nodes;
    auto& node = nodes[megabytes];
    if (node) return *node;
    node = std::make_unique<LHeadlessNode>(1);
    const int side = megabytes == 20 ? 15 : 47;
    std::string error;
    node->Load(shapes::Grid(side, side, false, 10), error);
    for (int i = 0; i < 4; ++i) node->SubdivideAll_Quad();
    LSubdivMesh& delta = *node->GetDelta()->GetOrigMesh();
    const int nverts = delta.GetNumVerts();
    for (int v = 0; v < nverts / 10; ++v) delta.SetVertByAbsIdx(v, LPoint3(0, 0, v % 7 + 1.0f));
    node->AddMorph()->CopyFromMesh(&delta);
    return *node;
}

std::string PathOf(const char* name) {
    return std::filesystem::temp_directory_path() /
           ("kelmo-bench-" + std::to_string(getpid()) + name);
}

/// A file with the state, its size counted.
struct StateFile {
    std::string path = PathOf(".node");
    explicit StateFile(benchmark::State& state) {
        std::string error;
        if (!SculptedNode(state.range(0)).SaveState(path, error))
            state.SkipWithError(error.c_str());
        std::error_code missing;
        bytes = static_cast<int64_t>(std::filesystem::file_size(path, missing));
    }
    ~StateFile() { std::filesystem::remove(path); }
    int64_t bytes = 0;
};

void Count(benchmark::State& state, int64_t bytes) {
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["megabytes"] = static_cast<double>(bytes) / 1e6;
}

// What is timed is done before, since a shared machine may take long to hand out memory that has
// not been used for seconds.

void BM_SaveNode(benchmark::State& state) {
    LHeadlessNode& node = SculptedNode(state.range(0));
    StateFile file(state);
    std::string error;
    const auto save = [&] {
        if (!node.SaveState(file.path, error)) state.SkipWithError(error.c_str());
    };
    save();
    for (auto _ : state) save();
    Count(state, file.bytes);
}

void BM_LoadNode(benchmark::State& state) {
    StateFile file(state);
    std::string error;
    const auto load = [&] {
        auto node = std::make_unique<LHeadlessNode>(1);
        if (!node->LoadState(file.path, error)) state.SkipWithError(error.c_str());
        return node;
    };
    load();
    for (auto _ : state) {
        auto node = load();
        state.PauseTiming();
        node.reset();
        state.ResumeTiming();
    }
    Count(state, file.bytes);
}

/// What a plain copy of the same file takes. When it waits for the disk it is what saving is
/// measured by, which does too.
void CopyFile(benchmark::State& state, bool wait) {
    StateFile file(state);
    const std::string copy = PathOf(".copy");
    for (auto _ : state) {
        std::filesystem::copy_file(file.path, copy,
                                   std::filesystem::copy_options::overwrite_existing);
        if (!wait) continue;
        const int fd = open(copy.c_str(), O_RDONLY | O_CLOEXEC);
        if (fsync(fd) != 0) state.SkipWithError("the copy can't be synced");
        close(fd);
    }
    std::filesystem::remove(copy);
    Count(state, file.bytes);
}
void BM_CopyToDisk(benchmark::State& state) {
    CopyFile(state, true);
}
void BM_CopyToCache(benchmark::State& state) {
    CopyFile(state, false);
}

BENCHMARK(BM_SaveNode)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CopyToDisk)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadNode)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CopyToCache)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
