#pragma once

#include <cstddef>
#include <span>

namespace VantrelSDK {

/// Which elements (faces or vertices, as the taker says) take part: those with a byte other than 0
/// in `include` and a byte of 0 in `exclude`. An empty mask lets all pass, as a mask that is too
/// short does for the elements past its end. The bytes are borrowed for the call.
struct ElementMasks {
    std::span<const char> include, exclude;

    bool Includes(size_t i) const { return i >= include.size() || include[i] != 0; }
    char ExcludeValue(size_t i) const { return i < exclude.size() ? exclude[i] : char{0}; }
    bool Pass(size_t i) const { return Includes(i) && ExcludeValue(i) == 0; }
};

}  // namespace VantrelSDK
