#pragma once

namespace kelmo {

struct Desk;

/// The curve of how a brush acts from its centre to its rim, to be edited by hand: drag a point,
/// double-click to add one, right-click to take one away.
void DrawFalloffEditor(Desk& desk);

}  // namespace kelmo
