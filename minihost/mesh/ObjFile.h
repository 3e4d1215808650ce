#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "minihost/mesh/MeshData.h"

namespace minihost {

/// Polygons of a mesh under a name, in increasing order.
struct NamedPolygons {
    std::string name;
    std::vector<int> polygons;
    bool operator==(const NamedPolygons&) const = default;
};

/// One mesh of a file ("o"), with its groups ("g") and what its polygons are made of ("usemtl"): a
/// polygon may be in up to 64 groups, and has one material at most.
struct ObjMesh {
    std::string name;
    MeshPtr mesh;
    std::vector<NamedPolygons> groups, materials;
};

/// What a material library says of a material.
struct ObjMaterial {
    std::string name;
    /// Kd, and 1 - d.
    MFloatVector color{0.5f, 0.5f, 0.5f};
    float transparency = 0;
    /// map_Kd, beside the library where it is no full path; empty for none.
    std::string texture;
};

struct ObjFile {
    std::vector<ObjMesh> meshes;
    std::vector<ObjMaterial> materials;
    /// Libraries that the file names.
    std::vector<std::string> libraries;
};

/// Reads a text: polygons of any arity, UVs with their own numbers, vertex colours ("v x y z r g
/// b", where every vertex has one), groups, materials. Numbers count from 1, or back from the last
/// (-1); a polygon may name vertices that come later. Vertices keep their order. Objects become
/// meshes of their own where each names only vertices of its own part; else all is one mesh.
/// Normals, curves and unknown lines are passed over. False with "line: reason" in `error`.
bool ParseObj(std::string_view text, ObjFile& file, std::string& error);
bool ParseMtl(std::string_view text, std::vector<ObjMaterial>& materials, std::string& error);

/// The file with the libraries beside it; a library that is missing is left out. "path:line:
/// reason" in `error`.
bool ReadObjFile(const std::string& path, ObjFile& file, std::string& error);
/// Writes the file, and where it has materials their library beside it, under its name with ".mtl".
/// Numbers read back to the same floats; a number that is not finite is an error.
bool WriteObjFile(const std::string& path, const ObjFile& file, std::string& error);

}  // namespace minihost
