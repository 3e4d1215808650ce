// Any bytes must be read or refused; what was read must survive being written and read again.

#include <cstdint>
#include <string>

#include "core/io/PlyFile.h"
#include "fuzz/MeshChecks.h"

using namespace VantrelSDK;

namespace {

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
