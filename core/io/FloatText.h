#pragma once

#include <charconv>

namespace VantrelSDK {

/// Reads a decimal number as std::from_chars does, independent of the locale and rounded correctly,
/// but takes a leading '+', turns what is too small for a float into a zero of its sign, and takes
/// an exponent with its sign before the e (3.1-e2), as files in the wild have it.
///
/// What is too large, infinities and NaN give errc::result_out_of_range; `value` is then undefined.
std::from_chars_result ParseFloat(const char* first, const char* last, float& value);

}  // namespace VantrelSDK
