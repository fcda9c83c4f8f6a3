// The variables of the made-up MATLAB.
#pragma once

#include <cstddef>

#define FAKE_MATLAB_API extern "C" __attribute__((visibility("default")))

struct mxArray {
    const char *name;
    int classId = 6;
    std::size_t rank = 2;
    const void *sizes = nullptr;
    std::size_t elements = 0;
    double *values = nullptr;
    int fields = 0;  // each is called "f" and holds `field`
    mxArray *field = nullptr;
};
