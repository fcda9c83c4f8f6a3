// Reads a real number from text, whatever the locale.
#pragma once

#include <string_view>

namespace tesk {

/// Reads the number at the front of `text` as `scanf` does with "%lf" in the "C" locale: white space, a sign, then a
/// decimal or hexadecimal number, "inf" or "nan". One out of range becomes infinite or 0.
/// @return false, with `number` left alone, if there is none
bool ReadReal(std::string_view text, double &number);

}  // namespace tesk
