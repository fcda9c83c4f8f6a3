// What an `mxArray` of the bundled libraries is: libmat makes them, libmx tells about them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// Marks an entry point; everything else stays hidden.
#define TESK_MATLAB_API extern "C" __attribute__((visibility("default")))

/// Class ids, as MATLAB numbers them. All but structures and dense arrays of doubles have no contents here.
enum EMatClass {
    MatClassUnknown = 0,
    MatClassCell = 1,
    MatClassStruct = 2,
    MatClassLogical = 3,
    MatClassChar = 4,
    MatClassDouble = 6,
    MatClassSingle = 7,
    MatClassObject = 18
};

/// A variable, or a field of a structure.
struct mxArray_tag {
    int classId = MatClassUnknown;
    bool isComplex = false;
    bool isSparse = false;
    std::vector<std::size_t> sizes;
    std::size_t elements = 0;             ///< the product of the sizes
    std::unique_ptr<double[]> real;       ///< the real parts of doubles, column by column
    std::vector<std::string> fieldNames;  ///< of a structure
    /// All fields of element 0, then of element 1, ...; any null.
    std::vector<std::unique_ptr<mxArray_tag>> fieldValues;
};

using mxArray = mxArray_tag;
using mwSize = std::size_t;
using mwIndex = std::size_t;
