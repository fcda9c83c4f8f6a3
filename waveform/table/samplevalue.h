// The values of a text table in the form in which a column holds them.
#pragma once

#include <string_view>

#include "waveform/samplecolumn.h"

namespace tesk {

/// Works as the `ConvertSample` of a zero-terminated token; a token ends at a zero byte in it, too.
void ConvertSample(SampleEvent &event, std::string_view token, const CSampleColumn &column, int width, int radix);

}  // namespace tesk
