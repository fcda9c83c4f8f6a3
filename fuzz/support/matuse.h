// A MAT-file asked for all that it has.
#pragma once

#include <string>

namespace fuzz {

/// @param reader  the program that reads the file for the library
void UseMatFile(const std::string &reader, const std::string &path);

}  // namespace fuzz
