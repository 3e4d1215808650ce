#pragma once

#include <string_view>

#include "minihost/graph/Node.h"

namespace minihost {

/// The slot that a plug's name names, as Plug::Name gives it, made with the elements on the way.
/// Null with the reason in `why`. Elements before the last of a long array are not made, so that no
/// order of names takes time in proportion to the square of their number.
Slot* MakeSlot(Node& node, std::string_view name, std::string& why);
/// The element of an array, by the same rule.
Slot* MakeElement(Slot& array, int index, std::string& why);

}  // namespace minihost
