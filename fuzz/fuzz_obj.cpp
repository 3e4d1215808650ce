// Any text must be read or refused; what was read must survive being written and read again.

#include <cstdint>
#include <string>
#include <string_view>

#include "core/io/ObjReader.h"
#include "core/io/ObjWriter.h"
#include "fuzz/MeshChecks.h"

using namespace VantrelSDK;

namespace {

void CheckThereAndBack(const PolyMesh& mesh) {
    std::string text, message;
    PolyMesh back;
    FileError error;
    Demand(FormatObj(mesh, text, message));
    Demand(ParseObj(text, back, error));
    Demand(SameBytes(mesh.positions, back.positions) && SameBytes(mesh.colours, back.colours) &&
           SameBytes(mesh.uvs, back.uvs) && mesh.polygonStart == back.polygonStart &&
           mesh.cornerVerts == back.cornerVerts && mesh.cornerUVs == back.cornerUVs);
    Demand(mesh.statements == back.statements);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    PolyMesh mesh;
    FileError error;
    if (ParseObj({reinterpret_cast<const char*>(data), size}, mesh, error)) {
        CheckMesh(mesh);
        CheckThereAndBack(mesh);
    } else {
        Demand(!error.message.empty() && error.line <= size + 1);
    }
    return 0;
}
