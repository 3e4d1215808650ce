#pragma once

#include <string>

#include "core/io/FileError.h"
#include "core/io/LProgressCallback.h"
#include "core/io/PolyMesh.h"

namespace VantrelSDK {

/// Read and write a mesh in the format of its name: PLY for a name that ends in .ply, in whatever
/// case, else OBJ. See PlyFile.h and ObjReader.h for what each keeps.
bool ReadMesh(const std::string& path, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress = nullptr);
bool WriteMesh(const std::string& path, const PolyMesh& mesh, std::string& error);

}  // namespace VantrelSDK
