#pragma once

#include "minihost/scene/Document.h"

namespace minihost {

inline constexpr std::string_view kTextHeader = "minihost scene 1 text\n";
inline constexpr std::string_view kBinaryHeader = "minihost scene 1 binary\n";

void AppendText(std::string& out, const SceneStatement& statement);
void AppendBinary(std::string& out, const SceneStatement& statement);
/// Both for content that begins with their header.
void ReadText(std::string_view content, const std::function<void(SceneStatement&)>& take);
void ReadBinary(std::string_view content, const std::function<void(SceneStatement&)>& take);

}  // namespace minihost
