// MATLAB's libraries, bound at run time.
#pragma once

#include <cstddef>

struct MATFile;
struct mxArray;

namespace tesk {

/// The entry points; all null until `LoadMatLibraries` succeeds. Sizes and indices have 32 bits in the oldest of these
/// libraries, 64 in others: `mxGetDimensions` gives either, and a result of which 32 bits are enough is taken as such.
struct SMatLibraries {
    MATFile *(*matOpen)(const char *path, const char *mode);
    int (*matClose)(MATFile *file);
    mxArray *(*matGetVariable)(MATFile *file, const char *name);
    int (*mxGetClassID)(const mxArray *array);
    int (*mxGetNumberOfDimensions)(const mxArray *array);
    std::size_t (*mxGetNumberOfElements)(const mxArray *array);
    int (*mxGetNumberOfFields)(const mxArray *array);
    const void *(*mxGetDimensions)(const mxArray *array);
    double *(*mxGetPr)(const mxArray *array);
    double (*mxGetNaN)();
    bool (*mxIsNaN)(double value);
    bool (*mxIsStruct)(const mxArray *array);
    int (*mxGetFieldNumber)(const mxArray *array, const char *name);
    const char *(*mxGetFieldNameByNumber)(const mxArray *array, int number);
    mxArray *(*mxGetField)(const mxArray *array, std::size_t index, const char *name);
};

/// To be used after `LoadMatLibraries` only.
const SMatLibraries &MatLibraries();

}  // namespace tesk
