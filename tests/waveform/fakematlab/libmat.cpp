// A libmat whose file "there.mat" holds variables as no reader makes them.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "waveform/fakematlab/variable.h"

namespace {

constexpr std::size_t Huge = std::size_t(1) << 62;

double g_values[] = {1, 2, 3, 4, 5, 6};
const std::size_t TwoByThree[] = {2, 3};
const std::size_t NegativeSizes[] = {std::size_t(-1), std::size_t(-6)};
const std::size_t HugeSizes[] = {Huge, 8};
const std::int32_t NarrowTwoByThree[] = {2, 3};
const std::int32_t NarrowThreeByNone[] = {3, 0};
const std::size_t Six[] = {6};
const std::size_t None[] = {0, 0};

mxArray g_variables[] = {
    {"good", 6, 2, TwoByThree, 6, g_values},
    {"narrow", 6, 2, NarrowTwoByThree, 6, g_values},
    {"narrowempty", 6, 2, NarrowThreeByNone, 0, nullptr},
    {"line", 6, 1, Six, 6, g_values},
    {"point", 6, 0, nullptr, 1, g_values},
    {"negativerank", 6, std::size_t(-1), TwoByThree, 6, g_values},
    {"nosizes", 6, 2, nullptr, 6, g_values},
    {"nodata", 6, 2, TwoByThree, 6, nullptr},
    {"nothing", 6, 2, None, 0, nullptr},
    {"negative", 6, 2, NegativeSizes, 6, g_values},
    {"hugesizes", 6, 2, HugeSizes, 0, g_values},
    {"fewer", 6, 2, TwoByThree, 4, g_values},
    {"more", 6, 2, TwoByThree, 7, g_values},
    {"integers", 12, 2, TwoByThree, 6, g_values},
    {"deep", 6, 3, TwoByThree, 6, g_values},
    {"nofields", 2, 2, TwoByThree, 6, nullptr, -5},
    {"nullfields", 2, 2, TwoByThree, 6, nullptr, 3},
    {"structure", 2, 2, TwoByThree, 6, nullptr, 1, &g_variables[0]},
    {"row", 2, 1, Six, 6, nullptr, 1, &g_variables[0]},
};

// The last random matrices, while they are asked for: the values, and the times.
struct SRandomVariable {
    std::vector<double> values;
    std::size_t sizes[2];
    mxArray array;
};

mxArray *MakeRandom(unsigned seed)
{
    static SRandomVariable s_variables[2];
    static int s_next = 0;
    SRandomVariable &variable = s_variables[s_next++ % 2];
    SRandomMatrix matrix(seed);
    variable.values = std::move(matrix.values);
    variable.sizes[0] = matrix.rows;
    variable.sizes[1] = matrix.columns;
    variable.array = {"", 6, 2, variable.sizes, variable.values.size(), variable.values.data()};
    return &variable.array;
}

}  // namespace

struct MATFile {};

FAKE_MATLAB_API MATFile *matOpen(const char *path, const char *mode)
{
    const bool isThere = std::strcmp(path, "there.mat") == 0 && std::strcmp(mode, "r") == 0;
    return isThere ? new MATFile : nullptr;
}

FAKE_MATLAB_API int matClose(MATFile *file)
{
    delete file;
    return 0;
}

FAKE_MATLAB_API mxArray *matGetVariable(MATFile *, const char *name)
{
    if (std::strncmp(name, "random", 6) == 0)
        return MakeRandom(static_cast<unsigned>(std::atoi(name + 6)));
    for (mxArray &variable : g_variables) {
        if (std::strcmp(variable.name, name) == 0)
            return &variable;
    }
    return nullptr;
}
