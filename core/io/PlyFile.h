#pragma once

#include <string>
#include <string_view>

#include "core/io/FileError.h"
#include "core/io/LProgressCallback.h"
#include "core/io/PolyMesh.h"

namespace VantrelSDK {

/// Reads a PLY file (G. Turk, The PLY Polygon File Format, 1994), version 1.0, ascii or
/// binary_little_endian.
///
/// Read are, of element `vertex`: x y z; red green blue (uchar and ushort as shares of their
/// largest value, float and double as they are); s t, u v or texture_u texture_v. Of `face`: the
/// list vertex_indices or vertex_index, with 3 entries or more, and the list texcoord, with two
/// numbers a corner or none. All other elements and properties are passed over. In an ascii file a
/// row stands on a line of its own.
///
/// False with `error` set when the file can't be read, when it is broken (the line is named, in
/// the binary part the row) or when `progress` stops it ("stopped"); `mesh` is then unchanged. The
/// memory taken is a small multiple of the file's size.
bool ReadPly(const std::string& path, PolyMesh& mesh, FileError& error,
             LProgressCallback* progress = nullptr);

/// The same for bytes in memory; `error.file` is left as it is.
bool ParsePly(std::string_view bytes, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress = nullptr);

/// Writes a mesh as a binary_little_endian PLY file: positions and colours as floats, polygons, UVs
/// corner by corner in those polygons that have them everywhere. Numbers read back equal, bit for
/// bit; which corners share a UV is told by its numbers, and statements are not kept.
///
/// The file is written beside its name and renamed into place. False with `error` set when that
/// fails or when a number is not finite; an old file then stays whole.
bool WritePly(const std::string& path, const PolyMesh& mesh, std::string& error);

/// The same into a string, which holds an unfinished file after a failure.
bool FormatPly(const PolyMesh& mesh, std::string& bytes, std::string& error);

}  // namespace VantrelSDK
