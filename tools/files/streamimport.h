// An event stream straight out of a VCD file.
#pragma once

#include <string>

/// Writes the event stream that `WriteEventStream` would write of a VCD as a whole, while that is read: nothing of it is
/// kept in memory.
/// @param input  a VCD; "-" is standard input
/// @throw CRefusal if it cannot be read, or the stream not be written
void ImportEventStream(const std::string &input, const std::string &output);
