// The variables of the made-up MATLAB.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <random>
#include <vector>

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

/// The matrix in the variable called "random" and a number.
struct SRandomMatrix {
    explicit SRandomMatrix(unsigned seed)
    {
        std::mt19937 random(seed);
        rows = random() % 6;
        columns = random() % 6;
        int time = 0;
        for (std::size_t i = 0; i < rows * columns; ++i) {
            time += static_cast<int>(random() % 4) - (random() % 40 == 0 ? 9 : 0);
            values.push_back(random() % 5 == 0 ? static_cast<double>(random()) / 1e7 - 100 : time / 2.0);
        }
    }

    double At(std::size_t row, std::size_t column) const { return values[column * rows + row]; }

    std::size_t rows;
    std::size_t columns;
    std::vector<double> values;
};
