#include "core/io/MeshFile.h"

#include <algorithm>

#include "core/io/ObjReader.h"
#include "core/io/ObjWriter.h"
#include "core/io/PlyFile.h"

namespace VantrelSDK {

namespace {

bool IsPly(const std::string& path) {
    constexpr std::string_view kEnd = ".ply";
    const auto same = [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); };
    return path.size() >= kEnd.size() &&
           std::equal(kEnd.begin(), kEnd.end(), path.end() - kEnd.size(), same);
}

}  // namespace

bool ReadMesh(const std::string& path, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress) {
    return IsPly(path) ? ReadPly(path, mesh, error, progress)
                       : ReadObj(path, mesh, error, progress);
}

bool WriteMesh(const std::string& path, const PolyMesh& mesh, std::string& error) {
    return IsPly(path) ? WritePly(path, mesh, error) : WriteObj(path, mesh, error);
}

}  // namespace VantrelSDK
