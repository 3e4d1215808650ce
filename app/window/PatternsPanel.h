#pragma once

namespace kelmo {

struct Desk;

/// The list of patterns with their pictures, and how the active one is laid. Within a dock.
void DrawPatterns(Desk& desk);

}  // namespace kelmo
