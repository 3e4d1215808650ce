#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "tests/Paths.h"

/// Real meshes from outside the project, for tests that run where they are there.
namespace VantrelSDK::shapes {

/// The folder of the shared models: $KELMO_MODELS, or beside the checkout. May not exist.
inline std::filesystem::path ModelsFolder() {
    if (const char* folder = std::getenv("KELMO_MODELS")) return folder;
    return std::filesystem::path(paths::kSource) / "../shared/models";
}

/// All bytes of a file; `.xz` is unpacked. Empty when it can't be read.
inline std::string TextOf(const std::filesystem::path& path) {
    if (path.extension() != ".xz") {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    const auto closer = [](FILE* pipe) { pclose(pipe); };
    const std::string command = "xz -dc '" + path.string() + "'";
    const std::unique_ptr<FILE, decltype(closer)> pipe(popen(command.c_str(), "r"), closer);
    std::string text;
    char piece[1 << 16];
    while (const size_t n = pipe ? fread(piece, 1, sizeof piece, pipe.get()) : 0) {
        text.append(piece, n);
    }
    return text;
}

/// The OBJ files under a folder, packed ones too, in order of their names; none without the folder.
inline std::vector<std::filesystem::path> ObjFilesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code missing;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, missing)) {
        const std::string name = entry.path().filename();
        if (name.ends_with(".obj") || name.ends_with(".obj.xz")) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The OBJ files of the shared models and of Debian's assimp-testmodels.
inline std::vector<std::filesystem::path> RealObjFiles() {
    auto files = ObjFilesIn(ModelsFolder());
    const auto more = ObjFilesIn("/usr/share/assimp/models/OBJ");
    files.insert(files.end(), more.begin(), more.end());
    return files;
}

}  // namespace VantrelSDK::shapes
