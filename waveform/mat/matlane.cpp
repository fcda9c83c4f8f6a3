#include "waveform/mat/matlane.h"

#include "base/wrap.h"
#include "core/stimulus.h"
#include "platform/kestrin.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;

constexpr int Absent = -1;

// Takes "(3)" off the end of the name. @return false if there is no "(" behind the first character
bool TakeIndex(SimpleString::CStr &name, int &index)
{
    int at = name.GetLength() - 1;
    while (at > 0 && name[at] != '(')
        --at;
    if (at <= 0)
        return false;
    index = tesk::ReadInt(static_cast<const char *>(name) + at + 1);
    name = name.Left(at);
    return true;
}

bool EndsInIndex(const SimpleString::CStr &name)
{
    return !name.IsEmpty() && name[name.GetLength() - 1] == ')';
}

Kestrin::KTypeInfo WholeType()
{
    return Kestrin::KTypeInfo(g_TypeDescription);
}

// Whether the signal is one element of the signal that is stimulated.
bool IsElement()
{
    return g_TypeDescription.Compare(g_SignalTypeDescription) != 0;
}

std::optional<long long> FindNumberLane(const SMatTarget &target, const SMatMatrix &matrix)
{
    if (target.index2 != Absent || (target.index1 != Absent && matrix.rank != 2))
        return std::nullopt;
    return target.index1 == Absent ? 0 : CorrectIndex(target.index1, WholeType());
}

// The indices of an array signal: the lane, and whether there is an index that names none.
struct SArrayIndices {
    long long lane = 0;
    bool hasSecond = false;
};

SArrayIndices CorrectIndices(const SMatTarget &target, const Kestrin::KTypeInfo &type)
{
    const bool isElement = IsElement();
    const bool hasSecond = target.index2 != Absent;
    if (hasSecond && !isElement)
        return {CorrectIndex(target.index2, type), false};
    if (target.index1 == Absent)
        return {0, hasSecond};
    return {CorrectIndex(target.index1, isElement ? WholeType() : type), hasSecond};
}

std::optional<long long> FindArrayLane(const SMatTarget &target, const Kestrin::KTypeInfo &type,
                                       const SMatMatrix &matrix)
{
    const SArrayIndices indices = CorrectIndices(target, type);
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    switch (KindOf(element)) {
    case ETypeKind::Enumeration:
        if (matrix.rank != 2 && indices.hasSecond)
            return std::nullopt;
        return indices.lane;
    case ETypeKind::Integer:
    case ETypeKind::Real:
    case ETypeKind::Array:
    case ETypeKind::Physical:
        if (indices.hasSecond || type.GetNbOfDimensions() != 1 || matrix.rank != 2)
            return std::nullopt;
        return indices.lane;
    default: return std::nullopt;
    }
}

}  // namespace

bool SMatTarget::Read(const SimpleString::CStr &signal)
{
    name = signal;
    if (!EndsInIndex(name))
        return true;
    if (!TakeIndex(name, index1))
        return false;
    if (!EndsInIndex(name))
        return true;
    index2 = index1;
    return TakeIndex(name, index1);
}

long long CorrectIndex(long long index, const Kestrin::KTypeInfo &type)
{
    int left = 0, right = 0, direction = 0;
    if (KindOf(type) == ETypeKind::Array)
        type.GetArrayDimensionRanges(0, left, right, direction);
    return index - (direction != 0 ? right : left);
}

std::optional<long long> FindLane(const SMatTarget &target, const Kestrin::KTypeInfo &type, const SMatMatrix &matrix)
{
    switch (KindOf(type)) {
    case ETypeKind::Enumeration:
        if (target.index1 != Absent || target.index2 != Absent)
            return std::nullopt;
        return 0;
    case ETypeKind::Integer:
    case ETypeKind::Real:
    case ETypeKind::Physical: return FindNumberLane(target, matrix);
    case ETypeKind::Array: return FindArrayLane(target, type, matrix);
    default: return std::nullopt;
    }
}

}  // namespace tesk
