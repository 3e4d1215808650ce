#pragma once

#include <string>
#include <string_view>

#include "core/io/FileError.h"
#include "core/io/LProgressCallback.h"
#include "core/io/PolyMesh.h"

namespace VantrelSDK {

/// Reads a Wavefront OBJ file.
///
/// Read are `v` (x y z, then a weight that is dropped, then a colour r g b that is kept when every
/// vertex has one), `vt` (u v), `f` with polygons of any arity from 3 and numbers absolute or
/// relative, and the lines `g`, `o`, `s`, `usemtl`, `mtllib` as statements. Normals are checked for
/// syntax and dropped, all other lines are passed over. A backslash continues a line, except in a
/// comment. The text is UTF-8, or UTF-16 with a byte order mark. A face may name a vertex that
/// stands further down; faces that name a vertex twice and duplicate faces are kept.
///
/// A file without a vertex gives an empty mesh. False with `error` set when the file can't be read,
/// when it is broken (the line is named) or when `progress` stops it ("stopped"); `mesh` is then
/// unchanged. The memory taken is a small multiple of the file's size.
bool ReadObj(const std::string& path, PolyMesh& mesh, FileError& error,
             LProgressCallback* progress = nullptr);

/// The same for a text in memory; `error.file` is left as it is.
bool ParseObj(std::string_view text, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress = nullptr);

}  // namespace VantrelSDK
