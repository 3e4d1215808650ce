// Any text must be read or refused, as a mesh or as a material library; what was read is valid.

#include <cstdint>
#include <cstdlib>

#include "minihost/mesh/ObjFile.h"

using namespace minihost;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

void CheckPolygons(const std::vector<NamedPolygons>& all, int count) {
    for (const NamedPolygons& named : all) {
        int last = -1;
        for (const int p : named.polygons) {
            Demand(p > last && p < count);
            last = p;
        }
    }
}

void CheckMesh(const ObjMesh& part) {
    const MeshData& mesh = *part.mesh;
    const UVSet& uvs = mesh.uvSets[0];
    Demand(uvs.corners->empty() || uvs.corners->size() == mesh.numCorners());
    for (int c = 0; c < static_cast<int>(mesh.numCorners()); ++c) {
        const int vertex = mesh.polygons().corners[static_cast<size_t>(c)];
        Demand(vertex >= 0 && vertex < mesh.numVertices());
        Demand(uvs.At(c) >= -1 && uvs.At(c) < static_cast<int>(uvs.values->size()));
    }
    CheckPolygons(part.groups, mesh.polygons().count());
    CheckPolygons(part.materials, mesh.polygons().count());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string error;
    ObjFile file;
    if (ParseObj(text, file, error)) {
        for (const ObjMesh& part : file.meshes) CheckMesh(part);
    } else {
        Demand(!error.empty());
    }
    std::vector<ObjMaterial> materials;
    Demand(ParseMtl(text, materials, error) || !error.empty());
    return 0;
}
