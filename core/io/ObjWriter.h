#pragma once

#include <string>

#include "core/io/PolyMesh.h"

namespace VantrelSDK {

/// Writes a mesh as a Wavefront OBJ file: positions with their colours, UVs, then the polygons with
/// the statements between them. Reading the file gives the same mesh, bit for bit.
///
/// The file is written beside its name and renamed into place. False with `error` set when that
/// fails, when a number is not finite or when a statement is not one line; an old file then stays
/// whole.
bool WriteObj(const std::string& path, const PolyMesh& mesh, std::string& error);

/// The same into a string, which holds an unfinished text after a failure.
bool FormatObj(const PolyMesh& mesh, std::string& text, std::string& error);

}  // namespace VantrelSDK
