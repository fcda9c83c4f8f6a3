#include "signaldata/model/valuesizes.h"

#include "base/saturate.h"
#include "signal/unknown.h"

namespace tesk {

long CValueSizes::Walk(const Kestrin::KTypeInfo &type)
{
    if (type.IsScalar())
        return ResetNext(type.GetScalarSize_OldFormat());
    if (type.IsSimple())
        return WalkVector(type);
    switch (KindOf(type)) {
    case Kestrin::ETypeKind::Array: return WalkArray(type);
    case Kestrin::ETypeKind::Record: return WalkRecord(type);
    default: return E_UNEXPECTED;
    }
}

// The next scalar counts as done even if it is not in the table.
long CValueSizes::ResetNext(unsigned size)
{
    if (m_index >= m_count)
        return E_INVALIDARG;
    IScalarData *scalar = m_scalars.Find(m_data.GetScalar(static_cast<unsigned>(m_index++)));
    return scalar != nullptr ? scalar->ResetValue(size) : E_INVALIDARG;
}

long CValueSizes::WalkVector(const Kestrin::KTypeInfo &type)
{
    const long long elements = type.GetNbOfElements();
    if (elements > m_count - m_index)
        return E_UNEXPECTED;
    long result = S_OK;
    for (long long i = 0; i < elements && result >= 0; ++i)
        result = ResetNext(static_cast<unsigned>(type.GetSimpleSize_OldFormat() / elements));
    return result;
}

// Deliberate: an array of several dimensions is walked through once for each of them.
long CValueSizes::WalkArray(const Kestrin::KTypeInfo &type)
{
    const long long times = MultiplySaturating(type.GetNbOfElements(), type.GetNbOfDimensions());
    long result = S_OK;
    for (long long i = 0; i < times && result >= 0; ++i) {
        const long long before = m_index;
        result = Walk(*type.GetArrayElementKTypeInfo());
        // What used up no scalar uses up none the next time either, and gives the same result.
        if (m_index == before)
            break;
    }
    return result;
}

// Deliberate: a field that fails does not stop the walk, and only the last field's result counts.
long CValueSizes::WalkRecord(const Kestrin::KTypeInfo &type)
{
    long result = S_OK;
    for (int field = 0; field < type.GetNbOfFields(); ++field)
        result = Walk(*type.GetFieldKTypeInfo(field));
    return result;
}

}  // namespace tesk
