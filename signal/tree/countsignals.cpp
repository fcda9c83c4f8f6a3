#include "signal/tree/countsignals.h"

#include <algorithm>
#include <cstring>

namespace tesk {

namespace {

constexpr long long TooMany = MaxSignals + 1;

// Indices of a dimension are walked from left to right, whichever is the greater.
long long WalkLength(const Kestrin::KTypeInfo &array, int dimension)
{
    int left = 0, right = 0, direction = 0;
    array.GetArrayDimensionRanges(dimension, left, right, direction);
    const long long span = static_cast<long long>(right) - left;
    return (span < 0 ? -span : span) + 1;
}

}  // namespace

long long CountSignals(const Kestrin::KTypeInfo &type)
{
    constexpr std::size_t LongName = 256;
    long long count = 0;
    if (const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo(); element != nullptr) {
        count = 1 + CountSignals(*element);
        for (int dimension = 0; dimension < type.GetNbOfDimensions(); ++dimension)
            count = std::min(count * WalkLength(type, dimension), TooMany);
    }
    for (int field = 0; field < type.GetNbOfFields(); ++field) {
        const Kestrin::KTypeInfo *fieldType = type.GetFieldKTypeInfo(field);
        count += 1 + static_cast<long long>(std::strlen(type.GetFieldName(field)) / LongName);
        count += fieldType != nullptr ? CountSignals(*fieldType) : 0;
        count = std::min(count, TooMany);
    }
    return count;
}

}  // namespace tesk
