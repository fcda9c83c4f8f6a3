// How much of a MAT-file is there.
#pragma once

#include <cstddef>

/// Counts the variables of a file of version 4 or 5 that are there to their last byte: of one that was cut off the
/// reader would make up the rest.
/// @param isVersion4  else 5
std::size_t CountWholeVariables(const char *path, bool isVersion4);
