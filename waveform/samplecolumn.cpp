#include "waveform/samplecolumn.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "platform/kestrin.h"
#include "signal/signal.h"

std::unordered_map<int, CSampleColumn *> g_SampleColumns;
int g_NextSampleHandle = 1;

namespace {

using Kestrin::ETypeKind;

constexpr int IntegerBits = 32;
constexpr int PhysicalWidth = 8;

int BitCount(const Kestrin::KTypeInfo &type)
{
    int left = 0, right = 0, direction = 0;
    type.GetArrayDimensionRanges(0, left, right, direction);
    const long long distance = std::llabs(static_cast<long long>(right) - left);
    return static_cast<int>(std::min<long long>(distance + 1, INT_MAX));
}

// The base in which the values of an array are written. Deliberate: only the spelling "UNSIGNED" makes a VHDL array
// unsigned, all others count as signed.
int ArrayRadix(const Kestrin::KTypeInfo &type)
{
    const char *text = type.GetTypeInfoString();
    if (!type.IsVerilog())
        return std::strstr(text, "UNSIGNED") != nullptr ? 2 : -2;
    const int radix = std::strstr(text, "integer") != nullptr ? 10 : 2;
    return type.IsSigned() ? -radix : radix;
}

}  // namespace

CSampleColumn::~CSampleColumn()
{
    if (m_isReal)
        return;
    for (const SampleEvent &event : m_events)
        std::free(event.m_text);
}

void ClassifyValueType(ISignal *signal, CSampleColumn &column, int &width, int &radix)
{
    width = 1;
    radix = -2;
    const Kestrin::KTypeInfo *type = signal != nullptr ? signal->GetTypeInfo() : nullptr;
    switch (KindOf(type)) {
    case ETypeKind::Integer:
        column.m_isInteger = true;
        width = IntegerBits;
        radix = type->IsVerilog() && !type->IsSigned() ? 10 : -10;
        break;
    case ETypeKind::Real: column.m_isReal = true; break;
    case ETypeKind::Array:
        width = BitCount(*type);
        radix = ArrayRadix(*type);
        break;
    case ETypeKind::Physical:
        column.m_isInteger = true;
        width = PhysicalWidth;
        radix = 10;
        break;
    default: break;
    }
}
