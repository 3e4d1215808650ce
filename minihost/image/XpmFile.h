#pragma once

#include <string>

#include "minihost/image/ImageFile.h"

namespace minihost {

/// Writes a picture of three or four channels as an X pixmap, which interfaces show as an icon: the
/// colours alone. Whole or not at all; empty, or why not.
std::string WriteXpm(const std::string& path, const Picture& picture);

}  // namespace minihost
