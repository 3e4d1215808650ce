#pragma once

#include <charconv>

namespace VantrelSDK {

/// Reads a decimal number as std::from_chars does, independent of the locale and rounded correctly,
/// but takes a leading '+' and turns what is too small for a float into a zero of its sign.
///
/// What is too large, infinities and NaN give errc::result_out_of_range; `value` is then undefined.
std::from_chars_result ParseFloat(const char* first, const char* last, float& value);

}  // namespace VantrelSDK
