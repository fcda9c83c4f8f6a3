// Variables of a MAT-file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct MATFile;
struct mxArray;

namespace tesk {

/// Finds a variable by its path: a name, "v", a field of a structure, "s.f", or of an element of an array of
/// structures, "s(2).f" or "s(1,2).f", to any depth. Deliberate: "v(2)" is the whole variable, if it has a second
/// element; and the element (i,j) is number (i - 1) * rows + (j - 1), which is not MATLAB's order.
/// @return owned by the library; null if there is none
const mxArray *FindMatVariable(const char *path, MATFile *file);

/// The sizes of a variable, one for each dimension. @return empty if it has none, or more than any array has
std::vector<std::uint64_t> ReadMatSizes(const mxArray *array);

/// The values of a variable, column by column.
struct SMatMatrix {
    const double *data = nullptr;
    std::size_t elements = 0;
    int rank = 0;             ///< number of dimensions
    std::size_t rows = 0;     ///< with two dimensions
    std::size_t columns = 0;  ///< with two dimensions
};

/// Looks into a variable, and does not trust the library that made it.
/// @return false if it is no dense array of doubles, or has more than two dimensions
bool ReadMatMatrix(const mxArray *array, SMatMatrix &matrix);

/// One row or column of a variable.
struct SMatLane {
    const double *first = nullptr;
    std::size_t count = 0;
    std::size_t step = 1;

    double At(std::size_t index) const { return first[index * step]; }
};

/// How many lanes there are: rows or columns. Only for two dimensions.
std::size_t LaneCount(const SMatMatrix &matrix, bool byRows);

/// A lane, from 0. Of a lane beyond the last as much as there are elements at its places. With other than two
/// dimensions all elements are the one lane.
SMatLane LaneOf(const SMatMatrix &matrix, bool byRows, std::size_t lane);

}  // namespace tesk
