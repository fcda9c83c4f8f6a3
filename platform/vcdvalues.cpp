#include "platform/vcdvalues.h"

#include <algorithm>
#include <bit>
#include <string>

#include "platform/vcdtext.h"
#include "platform/vcdwords.h"

namespace NTARN::NImport {

namespace {

constexpr std::uint8_t Zero = 2;
constexpr std::uint8_t One = 3;
constexpr std::uint8_t NoValue = NoVcdLetter;
constexpr int MostShapes = 16;  // a value goes to each shape of its code

bool IsLeftOut(EVcdKind kind)
{
    return kind == EVcdKind::String || kind == EVcdKind::Empty;
}

// What bits to the left of a value's first have (IEEE 1364-2005, 18.2.2).
std::uint8_t Extend(std::uint8_t first)
{
    return first == One ? Zero : first;
}

}  // namespace

CVcdValues::CVcdValues(IDatabaseStreamWriter &writer)
    : m_writer(writer), m_sharing(dynamic_cast<IEventSharing *>(&writer))
{}

void CVcdValues::SetLimits(long long elements, long long events)
{
    m_mostHandles = elements;
    m_mostEvents = events;
}

void CVcdValues::Declare(const SVcdVariable &variable, const std::string &fullName)
{
    const long long elements = IsLeftOut(variable.kind) ? 0 : variable.width;
    if (elements > m_mostHandles - m_handles)
        throw SVcdFault{"the variables up to here have more than " + std::to_string(m_mostHandles) +
                        " elements, too many for a file of this size"};
    std::uint32_t &shapes = m_codes[variable.code];
    const std::uint32_t same = FindShape(shapes, variable);
    const long long first = m_handles + 1;
    if (elements > 0)
        Announce(variable, fullName);
    if (same == None)
        AddShape(shapes, variable, first);
    else
        AddAlias(m_shapes[same], first);
}

void CVcdValues::Announce(const SVcdVariable &variable, const std::string &fullName)
{
    m_writer.addSignal(fullName.c_str(), VcdTypeText(variable).c_str(), 0, 0, 0, 0, 0);
    for (std::uint32_t i = 0; i < variable.width; ++i) {
        ++m_handles;
        m_writer.addHandle(&m_handles, 0);
    }
    m_writer.endSignal();
}

// The shape of the variable among those of its code.
std::uint32_t CVcdValues::FindShape(std::uint32_t first, const SVcdVariable &variable) const
{
    int count = 0;
    for (std::uint32_t i = first; i != None; i = m_shapes[i].next) {
        if (m_shapes[i].kind == variable.kind && m_shapes[i].width == variable.width)
            return i;
        if (++count == MostShapes)
            throw SVcdFault{"variables of more than " + std::to_string(MostShapes) +
                            " different widths have the identifier code " + QuoteVcdWord(variable.code)};
    }
    return None;
}

void CVcdValues::AddShape(std::uint32_t &first, const SVcdVariable &variable, long long handle)
{
    m_shapes.push_back({variable.kind, NoValue, variable.width, 0, first, None, m_bits.size(), handle});
    first = static_cast<std::uint32_t>(m_shapes.size() - 1);
    if (variable.kind == EVcdKind::Bus)
        m_bits.resize(m_bits.size() + variable.width, NoValue);
}

// The handles from `handle` on are others for the same values.
void CVcdValues::AddAlias(SShape &shape, long long handle)
{
    if (IsLeftOut(shape.kind))
        return;
    if (m_sharing == nullptr) {
        m_aliases.push_back({handle, shape.aliases});
        shape.aliases = static_cast<std::uint32_t>(m_aliases.size() - 1);
        return;
    }
    long long original = shape.handle;
    for (; handle <= m_handles; ++handle, ++original)
        m_sharing->shareEvents(&handle, &original);
}

void CVcdValues::Emit(const SShape &shape, std::size_t element, std::uint64_t value)
{
    m_event.m_value = value;
    long long handle = shape.handle + static_cast<long long>(element);
    for (std::uint32_t alias = shape.aliases;; alias = m_aliases[alias].next) {
        if (++m_events > m_mostEvents)
            throw SVcdFault{"there are more than " + std::to_string(m_mostEvents) +
                            " changes of single bits, too many for a file of this size"};
        m_writer.addEvent(&handle, &m_event);
        if (alias == None)
            return;
        handle = m_aliases[alias].handle + static_cast<long long>(element);
    }
}

// Calls `set`, which answers whether the value fits, with each shape of a code.
template <class TSet>
EVcdOutcome CVcdValues::ForEachShape(std::string_view code, TSet set)
{
    std::uint32_t index = m_codes.Find(code);
    if (index == None)
        return EVcdOutcome::UnknownCode;
    bool isTaken = true;
    for (; index != None; index = m_shapes[index].next) {
        SShape &shape = m_shapes[index];
        isTaken &= IsLeftOut(shape.kind) || set(shape);
    }
    return isTaken ? EVcdOutcome::Taken : EVcdOutcome::WrongKind;
}

EVcdOutcome CVcdValues::SetBit(std::string_view code, std::uint8_t position)
{
    return SetBits(code, {&position, 1});
}

EVcdOutcome CVcdValues::SetBits(std::string_view code, std::span<const std::uint8_t> positions)
{
    return ForEachShape(code, [this, positions](SShape &shape) {
        if (shape.kind == EVcdKind::Bit)
            Emit(shape, 0, positions.back());
        else if (shape.kind == EVcdKind::Bus)
            SetBus(shape, positions);
        return shape.kind != EVcdKind::Real;
    });
}

EVcdOutcome CVcdValues::SetReal(std::string_view code, double value)
{
    return ForEachShape(code, [this, value](SShape &shape) {
        if (shape.kind == EVcdKind::Real)
            Emit(shape, 0, std::bit_cast<std::uint64_t>(value));
        return shape.kind == EVcdKind::Real;
    });
}

void CVcdValues::SetBus(SShape &shape, std::span<const std::uint8_t> positions)
{
    if (positions.size() > shape.width)
        positions = positions.last(shape.width);
    const std::size_t width = shape.width;
    const std::size_t begin = width - positions.size();  // of the letters of this value
    const std::size_t oldBegin = width - shape.letters;  // of those of the values before
    std::uint8_t *const bits = m_bits.data() + shape.bits;
    const std::uint8_t fill = Extend(positions.front());

    for (std::size_t i = 0; fill != shape.fill && i < std::min(begin, oldBegin); ++i)
        Emit(shape, i, fill);
    for (std::size_t i = oldBegin; i < begin; ++i) {
        if (bits[i] != fill)
            Emit(shape, i, fill);
    }
    if (begin < oldBegin)
        std::fill(bits + begin, bits + oldBegin, shape.fill);
    for (std::size_t i = begin; i < width; ++i) {
        const std::uint8_t bit = positions[i - begin];
        if (bits[i] == bit)
            continue;
        bits[i] = bit;
        Emit(shape, i, bit);
    }
    shape.letters = static_cast<std::uint32_t>(positions.size());
    shape.fill = fill;
}

}  // namespace NTARN::NImport
