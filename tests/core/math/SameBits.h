#pragma once

#include <cstring>
#include <ranges>

namespace VantrelSDK {

/// True when two lists of plain numbers are equal bit for bit (0 and -0 differ).
template <std::ranges::contiguous_range A, std::ranges::contiguous_range B = A>
bool SameBits(const A& a, const B& b) {
    const size_t size = std::ranges::size(a) * sizeof(std::ranges::range_value_t<A>);
    return std::ranges::size(a) == std::ranges::size(b) &&
           (size == 0 || std::memcmp(std::ranges::data(a), std::ranges::data(b), size) == 0);
}

}  // namespace VantrelSDK
