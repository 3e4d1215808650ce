#pragma once

#include <string>
#include <string_view>

namespace minihost {

/// All that a file holds. False with the reason, which names the file.
bool ReadWholeFile(const std::string& path, std::string& content, std::string& error);

/// Writes a file whole or not at all: beside its name, and renamed into place when all of it is on
/// the disk. False with the reason, which names the file; it is then as it was. A symbolic link
/// stays a link, its target is written.
bool WriteWholeFile(const std::string& path, std::string_view content, std::string& error);

}  // namespace minihost
