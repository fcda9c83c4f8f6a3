// How much of a MAT-file is there.
#pragma once

#include <cstddef>

/// The variables of a file that are there to their last byte.
struct SWholeVariables {
    std::size_t count;
    bool isAll;  ///< nothing stands behind them
};

/// Counts the variables of a file of version 4 or 5 that are there to their last byte: of one that was cut off the
/// reader would make up the rest.
/// @param isVersion4  else 5
SWholeVariables CountWholeVariables(const char *path, bool isVersion4);
