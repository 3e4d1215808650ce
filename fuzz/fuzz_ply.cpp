// Any bytes must be read or refused; what was read must survive being written and read again.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/io/PlyFile.h"

using namespace VantrelSDK;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

template <class T>
bool SameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

void CheckMesh(const PolyMesh& mesh) {
    Demand(mesh.colours.empty() || mesh.colours.size() == mesh.positions.size());
    Demand(mesh.cornerUVs.empty() || mesh.cornerUVs.size() == mesh.cornerVerts.size());
    Demand(mesh.polygonStart.front() == 0);
    Demand(mesh.polygonStart.back() == static_cast<int>(mesh.cornerVerts.size()));
    for (int p = 0; p < mesh.NumPolygons(); ++p)
        Demand(mesh.polygonStart[p + 1] - mesh.polygonStart[p] >= 3);
    for (const int v : mesh.cornerVerts)
        Demand(v >= 0 && v < static_cast<int>(mesh.positions.size()));
    for (const int uv : mesh.cornerUVs) Demand(uv >= -1 && uv < static_cast<int>(mesh.uvs.size()));
}

void CheckThereAndBack(const PolyMesh& mesh) {
    std::string bytes, message;
    PolyMesh back;
    FileError error;
    Demand(FormatPly(mesh, bytes, message));
    Demand(ParsePly(bytes, back, error));
    Demand(SameBytes(mesh.positions, back.positions) && SameBytes(mesh.colours, back.colours) &&
           mesh.polygonStart == back.polygonStart && mesh.cornerVerts == back.cornerVerts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    PolyMesh mesh;
    FileError error;
    if (ParsePly({reinterpret_cast<const char*>(data), size}, mesh, error)) {
        CheckMesh(mesh);
        CheckThereAndBack(mesh);
    } else {
        Demand(!error.message.empty() && error.line <= size + 1);
    }
    return 0;
}
