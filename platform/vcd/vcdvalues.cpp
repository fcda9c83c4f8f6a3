#include "platform/vcd/vcdvalues.h"

#include <algorithm>
#include <bit>
#include <string>

#include "platform/vcd/vcdtext.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

namespace {

constexpr std::uint8_t NoValue = 15;  // as in NoWord
constexpr int MostShapes = 16;        // a value goes to each shape of its code

bool IsLeftOut(EVcdKind kind)
{
    return kind == EVcdKind::String || kind == EVcdKind::Empty;
}

std::uint32_t WordsOf(std::uint32_t bits)
{
    return bits / VcdWordBits + (bits % VcdWordBits != 0 ? 1 : 0);
}

// The bits of which an element differs, in any of its planes.
std::uint64_t ChangesBetween(const WaveWord &left, const WaveWord &right)
{
    std::uint64_t changes = 0;
    for (int i = 0; i < 4; ++i)
        changes |= left.m_planes[i] ^ right.m_planes[i];
    return changes;
}

}  // namespace

CVcdValues::CVcdValues(IDatabaseStreamWriter &writer)
    : m_writer(writer), m_sharing(dynamic_cast<IEventSharing *>(&writer)),
      m_wordEvents(dynamic_cast<IWordEvents *>(&writer))
{}

bool CVcdValues::IsEmpty(std::string_view code) const
{
    const std::uint32_t shape = m_codes.Find(code);
    return shape != None && m_shapes[shape].kind == EVcdKind::Empty;
}

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
    m_shapes.push_back({variable.kind, NoValue, variable.width, 0, first, None, m_words.size(), handle});
    first = static_cast<std::uint32_t>(m_shapes.size() - 1);
    if (variable.kind == EVcdKind::Bus)
        AddWords(variable.width, handle + variable.width - 1);
}

// @param last  the handle of the rightmost bit
void CVcdValues::AddWords(std::uint32_t width, long long last)
{
    m_words.resize(m_words.size() + WordsOf(width), NoWord);
    if (m_wordEvents == nullptr)
        return;
    for (; width > VcdWordBits; width -= VcdWordBits, last -= VcdWordBits)
        m_wordEvents->addWord(&last, VcdWordBits);
    m_wordEvents->addWord(&last, width);
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

void CVcdValues::Count(int events)
{
    m_events += events;
    if (m_events > m_mostEvents)
        throw SVcdFault{"there are more than " + std::to_string(m_mostEvents) +
                        " changes of single bits, too many for a file of this size"};
}

void CVcdValues::Emit(const SShape &shape, std::uint64_t value)
{
    m_event.m_value = value;
    long long handle = shape.handle;
    for (std::uint32_t alias = shape.aliases;; alias = m_aliases[alias].next) {
        Count(1);
        m_writer.addEvent(&handle, &m_event);
        if (alias == None)
            return;
        handle = m_aliases[alias].handle;
    }
}

void CVcdValues::EmitWord(const SShape &shape, std::uint32_t index, const WaveWord &before, const WaveWord &after)
{
    const std::uint32_t right = index * VcdWordBits;  // bits to the right of the word
    const std::uint32_t count = std::min(shape.width - right, VcdWordBits);
    const std::uint64_t changed = ChangesBetween(before, after) & ~std::uint64_t{0} >> (VcdWordBits - count);
    if (changed == 0)
        return;
    if (m_wordEvents != nullptr) {
        Count(std::popcount(changed));
        m_wordEvents->addWordEvents(shape.firstWord + index, &m_event.m_time, &before, &after);
        return;
    }
    const long long last = shape.width - 1 - right;  // counted from the first handle
    EmitBits(shape.handle + last, changed, after);
    for (std::uint32_t alias = shape.aliases; alias != None; alias = m_aliases[alias].next)
        EmitBits(m_aliases[alias].handle + last, changed, after);
}

void CVcdValues::EmitBits(long long last, std::uint64_t changed, const WaveWord &value)
{
    for (; changed != 0; changed &= changed - 1) {
        const int bit = std::countr_zero(changed);
        const long long handle = last - bit;
        m_event.m_value = PositionAt(value, static_cast<unsigned>(bit));
        Count(1);
        m_writer.addEvent(&handle, &m_event);
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
    return ForEachShape(code, [this, position](SShape &shape) {
        if (shape.kind == EVcdKind::Bit) {
            Emit(shape, position);
        } else if (shape.kind == EVcdKind::Bus) {
            m_bit.Set(position);
            SetBus(shape, m_bit);
        }
        return shape.kind != EVcdKind::Real;
    });
}

EVcdOutcome CVcdValues::SetBits(std::string_view code, const CVcdBits &bits)
{
    return ForEachShape(code, [this, &bits](SShape &shape) {
        if (shape.kind == EVcdKind::Bit)
            Emit(shape, bits.At(0));
        else if (shape.kind == EVcdKind::Bus)
            SetBus(shape, bits);
        return shape.kind != EVcdKind::Real;
    });
}

EVcdOutcome CVcdValues::SetReal(std::string_view code, double value)
{
    return ForEachShape(code, [this, value](SShape &shape) {
        if (shape.kind == EVcdKind::Real)
            Emit(shape, std::bit_cast<std::uint64_t>(value));
        return shape.kind == EVcdKind::Real;
    });
}

void CVcdValues::SetBus(SShape &shape, const CVcdBits &bits)
{
    const auto letters = static_cast<std::uint32_t>(std::min<std::size_t>(bits.Count(), shape.width));
    const std::uint8_t fill = ExtendVcdBit(bits.At(letters - 1));
    const std::uint32_t words = WordsOf(letters);
    const std::uint32_t stored = std::max(words, shape.words);

    for (std::uint32_t i = shape.words; i < words; ++i)
        m_words[shape.firstWord + i] = MakeVcdWord(shape.fill);
    for (std::uint32_t i = 0; i < stored; ++i) {
        WaveWord &word = m_words[shape.firstWord + i];
        const WaveWord before = word;
        word = i < words ? bits.Word(i) : MakeVcdWord(fill);
        EmitWord(shape, i, before, word);
    }
    for (std::uint32_t i = stored; fill != shape.fill && i < WordsOf(shape.width); ++i)
        EmitWord(shape, i, MakeVcdWord(shape.fill), MakeVcdWord(fill));
    shape.words = words;
    shape.fill = fill;
}

}  // namespace NTARN::NImport
