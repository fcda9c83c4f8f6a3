#include "fuzz/support/matuse.h"

#include <algorithm>
#include <functional>
#include <numeric>

#include "fuzz/support/inputfile.h"
#include "platform/matlab/matfile.h"

namespace fuzz {

namespace {

// The sizes tell how many values there are, and they all are there.
void Use(const mxArray &array)
{
    const std::size_t elements =
        std::accumulate(array.sizes.begin(), array.sizes.end(), std::size_t{1}, std::multiplies<>());
    Require(elements == array.elements);
    if (array.real != nullptr)
        std::count(array.real.get(), array.real.get() + array.elements, 1.0);
    Require(array.fieldNames.empty() || array.fieldValues.size() % array.fieldNames.size() == 0);
    for (const auto &field : array.fieldValues) {
        if (field != nullptr)
            Use(*field);
    }
}

}  // namespace

void UseMatFile(const std::string &reader, const std::string &path)
{
    CMatFile file(reader, path);
    if (const mxArray *variable = file.ReadVariable("v"))
        Use(*variable);
    const auto *names = file.ReadNames();
    if (names == nullptr)
        return;
    for (const std::string &name : *names) {
        if (const mxArray *info = file.ReadInfo(name.c_str()))
            Use(*info);
    }
}

}  // namespace fuzz
