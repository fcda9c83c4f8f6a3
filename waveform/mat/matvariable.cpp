#include "waveform/mat/matvariable.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "base/wrap.h"
#include "waveform/mat/matlibraries.h"

namespace tesk {

namespace {

constexpr int DoubleClass = 6;
constexpr std::size_t None = std::string_view::npos;

// Size of one of at least two dimensions. Counted in 32 bits, the second of them is the upper half of what would be the
// first in 64, which is no size that an array has. An array without elements may have 0 there, and then the
// sizes behind the first are not looked at: one of them is 0, and so they all count.
std::uint64_t SizeOf(const mxArray *array, int dimension)
{
    const void *sizes = MatLibraries().mxGetDimensions(array);
    if (sizes == nullptr)
        return 0;
    std::uint64_t first = 0;
    std::memcpy(&first, sizes, sizeof first);
    if (first > std::numeric_limits<std::uint32_t>::max())
        return static_cast<const std::uint32_t *>(sizes)[dimension];
    if (first != 0 && MatLibraries().mxGetNumberOfElements(array) == 0)
        return dimension == 0 ? first : 0;
    return static_cast<const std::uint64_t *>(sizes)[dimension];
}

// Reads "2" or "1,2" as the number of an element, from 0. @return false if the variable has no such element
bool ReadElement(const mxArray *array, std::string_view list, std::size_t &element)
{
    const int rank = MatLibraries().mxGetNumberOfDimensions(array);
    long long value = 0;
    for (int number = 0;; ++number) {
        if (number > 0 && (rank < 2 || number > rank))
            return false;
        if (number > 0)
            value = tesk::WrapMultiply(value, static_cast<long long>(SizeOf(array, number - 1)));
        const std::size_t comma = list.find(',');
        value = tesk::WrapAdd(value, tesk::ReadInt(std::string(list.substr(0, comma)).c_str()) - 1LL);
        if (comma == None)
            break;
        list.remove_prefix(comma + 1);
    }
    element = static_cast<std::size_t>(value);
    return value >= 0 && element < MatLibraries().mxGetNumberOfElements(array);
}

// What is left of a path, and where its first "." and "(" are.
struct SPath {
    explicit SPath(std::string_view text) : rest(text), dot(text.find('.')), par(text.find('(')) {}

    std::string Name() const { return std::string(rest.substr(0, std::min(dot, par))); }

    // The element behind the "(" and in front of its ")".
    bool ReadElement(const mxArray *array, std::size_t &element) const
    {
        const std::size_t end = rest.find(')', par);
        return end < dot && tesk::ReadElement(array, rest.substr(par + 1, end - par - 1), element);
    }

    std::string_view rest;
    std::size_t dot;
    std::size_t par;
};

const mxArray *FindField(const mxArray *array, std::size_t element, const std::string &name)
{
    const SMatLibraries &matlab = MatLibraries();
    const int count = matlab.mxGetNumberOfFields(array);
    for (int i = 0; i < count; ++i) {
        const char *field = matlab.mxGetFieldNameByNumber(array, i);
        if (field != nullptr && name == field)
            return matlab.mxGetField(array, element, field);
    }
    return nullptr;
}

}  // namespace

const mxArray *FindMatVariable(const char *text, MATFile *file)
{
    SPath path(text);
    const mxArray *variable = MatLibraries().matGetVariable(file, path.Name().c_str());
    std::size_t element = 0;
    if (path.dot == None && path.par != None && variable != nullptr)
        return path.ReadElement(variable, element) ? variable : nullptr;
    while (variable != nullptr && path.dot != None && path.dot > 0 && MatLibraries().mxIsStruct(variable)) {
        element = 0;
        if (path.par < path.dot && !path.ReadElement(variable, element))
            return nullptr;
        path = SPath(path.rest.substr(path.dot + 1));
        variable = FindField(variable, element, path.Name());
    }
    return path.dot == None ? variable : nullptr;
}

std::vector<std::uint64_t> ReadMatSizes(const mxArray *array)
{
    constexpr int MostDimensions = 64;
    const int rank = MatLibraries().mxGetNumberOfDimensions(array);
    if (rank == 1)
        return {MatLibraries().mxGetNumberOfElements(array)};
    std::vector<std::uint64_t> sizes;
    for (int i = 0; rank <= MostDimensions && i < rank; ++i)
        sizes.push_back(SizeOf(array, i));
    return sizes;
}

bool ReadMatMatrix(const mxArray *array, SMatMatrix &matrix)
{
    const SMatLibraries &matlab = MatLibraries();
    if (matlab.mxGetClassID(array) != DoubleClass)
        return false;
    matrix.rank = matlab.mxGetNumberOfDimensions(array);
    matrix.elements = matlab.mxGetNumberOfElements(array);
    matrix.data = matlab.mxGetPr(array);
    if (matrix.rank > 2 || (matrix.data == nullptr && matrix.elements > 0))
        return false;
    if (matrix.rank < 2)
        return true;
    matrix.rows = SizeOf(array, 0);
    matrix.columns = SizeOf(array, 1);
    std::size_t product = 0;
    return !__builtin_mul_overflow(matrix.rows, matrix.columns, &product) && product == matrix.elements;
}

std::size_t LaneCount(const SMatMatrix &matrix, bool byRows)
{
    return byRows ? matrix.rows : matrix.columns;
}

SMatLane LaneOf(const SMatMatrix &matrix, bool byRows, std::size_t lane)
{
    if (matrix.rank != 2)
        return {matrix.data, matrix.elements, 1};
    const std::size_t step = byRows ? matrix.rows : 1;
    std::size_t first = 0;
    if (__builtin_mul_overflow(lane, byRows ? 1 : matrix.rows, &first) || first >= matrix.elements)
        return {};
    const std::size_t places = (matrix.elements - first - 1) / step + 1;  // some elements, so the step is not 0
    return {matrix.data + first, std::min(byRows ? matrix.columns : matrix.rows, places), step};
}

}  // namespace tesk
