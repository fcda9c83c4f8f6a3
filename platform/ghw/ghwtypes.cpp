#include "platform/ghw/ghwtypes.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace NTARN {
namespace {

constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();

std::uint64_t Add(std::uint64_t left, std::uint64_t right)
{
    return left > Most - right ? Most : left + right;
}

std::uint64_t Multiply(std::uint64_t left, std::uint64_t right)
{
    return right != 0 && left > Most / right ? Most : left * right;
}

bool FitsInt(const SGhwRange &range)
{
    const auto fits = [](std::int64_t bound) { return bound == static_cast<std::int32_t>(bound); };
    return fits(range.left) && fits(range.right);
}

// What an entry begins with.
enum class EGhwEntry : std::uint8_t {
    End = 0,
    Bit = 22,  // an enumeration of two literals
    Enumeration = 23,
    Integer = 25,
    LongInteger = 26,
    Real = 27,
    Physical = 28,
    LongPhysical = 29,
    Array = 31,
    Record = 32,
    ScalarSubtype = 34,
    ArraySubtype = 35,
    RecordSubtype = 38
};

constexpr std::uint8_t DownFlag = 0x80;

EGhwKind ScalarKind(EGhwEntry entry)
{
    switch (entry) {
    case EGhwEntry::Bit:
    case EGhwEntry::Enumeration: return EGhwKind::Enumeration;
    case EGhwEntry::Integer: return EGhwKind::Integer;
    case EGhwEntry::LongInteger: return EGhwKind::LongInteger;
    case EGhwEntry::Real: return EGhwKind::Real;
    case EGhwEntry::Physical: return EGhwKind::Physical;
    case EGhwEntry::LongPhysical: return EGhwKind::LongPhysical;
    default: throw XGhwDamage();
    }
}

SGhwRange WidestRange(EGhwKind kind)
{
    constexpr bool IsDown = false;
    switch (kind) {
    case EGhwKind::Integer:
    case EGhwKind::Physical:
        return {IsDown, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(), 0, 0};
    case EGhwKind::LongInteger:
    case EGhwKind::LongPhysical:
        return {IsDown, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(), 0, 0};
    case EGhwKind::Real:
        return {IsDown, 0, 0, std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max()};
    default: return {};
    }
}

// A description in pieces takes about so much more than its text.
constexpr std::uint64_t PieceCost = 300;
// Letters of the longest number, with what stands around it.
constexpr std::uint64_t NumberSize = 24;

}  // namespace

std::uint64_t SGhwRange::Length() const
{
    if (isDown ? left < right : left > right)
        return 0;
    const auto distance =
        static_cast<std::uint64_t>(isDown ? left : right) - static_cast<std::uint64_t>(isDown ? right : left);
    return Add(distance, 1);
}

std::uint64_t SGhwType::PartCount() const
{
    if (kind == EGhwKind::Record)
        return fields.size();
    std::uint64_t count = kind == EGhwKind::Array ? 1 : 0;
    for (const SGhwRange &range : dimensions)
        count = Multiply(count, range.Length());
    return count;
}

// Reads the section into the types.
class CGhwTypeReader {
public:
    CGhwTypeReader(CGhwTypes &types, CGhwBytes &bytes, CGhwBudget &budget)
        : m_owner(types), m_types(types.m_types), m_bytes(bytes), m_budget(budget)
    {}

    void Run()
    {
        ExpectGhwZeros(m_bytes);
        const std::uint32_t count = m_bytes.Word();
        if (count > m_bytes.Left())
            throw XGhwDamage();
        for (std::uint32_t i = 0; i < count; ++i)
            m_owner.m_places.push_back(ReadType());
        if (m_bytes.Byte() != static_cast<std::uint8_t>(EGhwEntry::End))
            throw XGhwDamage();
    }

private:
    std::uint32_t ReadType()
    {
        const auto entry = static_cast<EGhwEntry>(m_bytes.Byte());
        const std::uint32_t name = m_bytes.Number();
        switch (entry) {
        case EGhwEntry::Array: return ReadArray(name);
        case EGhwEntry::Record: return ReadRecord(name);
        case EGhwEntry::ScalarSubtype: return ReadScalarSubtype(name);
        case EGhwEntry::ArraySubtype: return ReadSubtype(name, EGhwKind::Array);
        case EGhwEntry::RecordSubtype: return ReadSubtype(name, EGhwKind::Record);
        default: return ReadScalar(ScalarKind(entry), name);
        }
    }

    std::uint32_t ReadScalar(EGhwKind kind, std::uint32_t name)
    {
        SGhwType type = Base(kind, name);
        type.range = WidestRange(kind);
        if (kind == EGhwKind::Enumeration) {
            ReadLiterals(type);
            type.range.right = static_cast<std::int64_t>(type.literals.size()) - 1;
        } else if (kind == EGhwKind::Physical || kind == EGhwKind::LongPhysical) {
            PassUnits();
        }
        return Keep(std::move(type));
    }

    void ReadLiterals(SGhwType &type)
    {
        const std::uint32_t count = m_bytes.Count();
        if (count == 0)
            throw XGhwDamage();
        m_budget.Charge(count);
        for (std::uint32_t i = 0; i < count; ++i)
            type.literals.push_back(NonEmptyString());
    }

    // A type description has no place for units: values are told in the first one.
    void PassUnits()
    {
        const std::uint32_t count = m_bytes.Count();
        for (std::uint32_t i = 0; i < count; ++i) {
            m_bytes.Number();
            m_bytes.Signed();
        }
    }

    std::uint32_t ReadArray(std::uint32_t name)
    {
        SGhwType type = Base(EGhwKind::Array, name);
        type.isBounded = false;
        type.element = Reference();
        const std::uint32_t count = m_bytes.Count();
        if (count == 0)
            throw XGhwDamage();
        m_budget.Charge(count);
        for (std::uint32_t i = 0; i < count; ++i)
            type.indexTypes.push_back(Reference());
        return Keep(std::move(type));
    }

    std::uint32_t ReadRecord(std::uint32_t name)
    {
        SGhwType type = Base(EGhwKind::Record, name);
        const std::uint32_t count = m_bytes.Count();
        m_budget.Charge(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t fieldName = NonEmptyString();
            type.fields.push_back({fieldName, Reference()});
            type.isBounded = type.isBounded && m_types[type.fields.back().type].isBounded;
        }
        return Keep(std::move(type));
    }

    std::uint32_t ReadScalarSubtype(std::uint32_t name)
    {
        const std::uint32_t of = Reference();
        SGhwType type = Subtype(m_types[of].base, name != 0 ? name : m_types[of].name);
        if (!type.IsScalar())
            throw XGhwDamage();
        type.range = ReadRange(type.kind);
        return Keep(std::move(type));
    }

    std::uint32_t ReadSubtype(std::uint32_t name, EGhwKind kind)
    {
        const std::uint32_t of = Reference();
        if (m_types[of].kind != kind)
            throw XGhwDamage();
        return ReadBounds(m_types[of].base, name != 0 ? name : m_types[of].name);
    }

    // The ranges of whatever is open in a type, from the outside in.
    std::uint32_t ReadBounds(std::uint32_t base, std::uint32_t name)
    {
        SGhwType type = Subtype(base, name);
        type.isBounded = true;
        if (type.kind == EGhwKind::Array) {
            ReadDimensions(type, base);
            type.element = Bounded(type.element);
        }
        m_budget.Charge(type.fields.size());
        for (SGhwField &field : type.fields)
            field.type = Bounded(field.type);
        return Keep(std::move(type));
    }

    std::uint32_t Bounded(std::uint32_t place)
    {
        return m_types[place].isBounded ? place : ReadBounds(m_types[place].base, 0);
    }

    void ReadDimensions(SGhwType &type, std::uint32_t base)
    {
        const std::size_t count = m_types[base].indexTypes.size();
        m_budget.Charge(count);
        for (std::size_t i = 0; i < count; ++i) {
            const EGhwKind index = m_types[m_types[base].indexTypes[i]].kind;
            if (index != EGhwKind::Enumeration && index != EGhwKind::Integer && index != EGhwKind::LongInteger)
                throw XGhwDamage();
            type.dimensions.push_back(ReadRange(index));
        }
    }

    SGhwRange ReadRange(EGhwKind kind)
    {
        const std::uint8_t head = m_bytes.Byte();
        if (ScalarKind(static_cast<EGhwEntry>(head & ~DownFlag)) != kind)
            throw XGhwDamage();
        SGhwRange range;
        range.isDown = (head & DownFlag) != 0;
        if (kind == EGhwKind::Real) {
            range.realLeft = std::bit_cast<double>(m_bytes.Long());
            range.realRight = std::bit_cast<double>(m_bytes.Long());
        } else {
            range.left = kind == EGhwKind::Enumeration ? m_bytes.Byte() : m_bytes.Signed();
            range.right = kind == EGhwKind::Enumeration ? m_bytes.Byte() : m_bytes.Signed();
        }
        if (kind == EGhwKind::Integer && !FitsInt(range))
            throw XGhwDamage();
        return range;
    }

    std::uint32_t Reference() { return m_owner.PlaceOf(m_bytes.Number()); }

    std::uint32_t NonEmptyString()
    {
        const std::uint32_t number = m_bytes.Number();
        if (m_owner.Strings().Text(number).empty())
            throw XGhwDamage();
        return number;
    }

    SGhwType Base(EGhwKind kind, std::uint32_t name) const
    {
        SGhwType type;
        type.kind = kind;
        type.name = name;
        type.base = static_cast<std::uint32_t>(m_types.size());
        return type;
    }

    SGhwType Subtype(std::uint32_t base, std::uint32_t name) const
    {
        const SGhwType &from = m_types[base];
        SGhwType type;
        type.kind = from.kind;
        type.name = name != 0 ? name : from.name;
        type.base = base;
        type.element = from.element;
        type.fields = from.fields;
        return type;
    }

    std::uint32_t Keep(SGhwType &&type)
    {
        m_budget.Charge(1);
        Measure(type);
        if (type.depth > DeepestGhwType)
            throw XGhwDamage();
        m_types.push_back(std::move(type));
        return static_cast<std::uint32_t>(m_types.size() - 1);
    }

    void Measure(SGhwType &type) const
    {
        const bool isSubtype = type.base < m_types.size();
        type.textSize = TextSize(type.name) + NumberSize * (3 + 2 * type.dimensions.size());
        for (const std::uint32_t literal : type.literals)
            type.textSize += TextSize(literal) + 1;
        if (isSubtype && type.kind == EGhwKind::Enumeration)
            type.textSize += m_types[type.base].textSize;
        // A type description tells bounds in 32 bits.
        type.cost = std::ranges::all_of(type.dimensions, FitsInt) ? PieceCost : Most;
        if (type.kind == EGhwKind::Array)
            MeasurePart(type, type.element);
        for (const SGhwField &field : type.fields) {
            type.textSize = Add(type.textSize, TextSize(field.name) + 2);
            MeasurePart(type, field.type);
        }
        type.cost = Add(type.cost, Multiply(2, type.textSize));
        type.scalars = type.IsScalar() ? 1 : Count(type, &SGhwType::scalars);
        type.vectors = IsRow(type) ? 1 : Count(type, &SGhwType::vectors);
    }

    void MeasurePart(SGhwType &type, std::uint32_t place) const
    {
        const SGhwType &part = m_types[place];
        type.depth = std::max(type.depth, part.depth + 1);
        type.textSize = Add(type.textSize, part.textSize);
        type.cost = Add(type.cost, part.cost);
    }

    bool IsRow(const SGhwType &type) const
    {
        return type.IsScalar() || (type.dimensions.size() == 1 && m_types[type.element].IsScalar());
    }

    // The sum over all parts.
    std::uint64_t Count(const SGhwType &type, std::uint64_t SGhwType::*member) const
    {
        if (!type.isBounded)
            return 0;
        if (type.kind == EGhwKind::Array)
            return Multiply(type.PartCount(), m_types[type.element].*member);
        std::uint64_t count = 0;
        for (const SGhwField &field : type.fields)
            count = Add(count, m_types[field.type].*member);
        return count;
    }

    std::uint64_t TextSize(std::uint32_t string) const { return m_owner.Strings().Text(string).size(); }

    CGhwTypes &m_owner;
    std::vector<SGhwType> &m_types;
    CGhwBytes &m_bytes;
    CGhwBudget &m_budget;
};

CGhwTypes::CGhwTypes(CGhwBytes &bytes, const CGhwStrings &strings, CGhwBudget &budget) : m_strings(&strings)
{
    CGhwTypeReader(*this, bytes, budget).Run();
}

std::uint32_t CGhwTypes::PlaceOf(std::uint32_t number) const
{
    if (number == 0 || number > m_places.size())
        throw XGhwDamage();
    return m_places[number - 1];
}

}  // namespace NTARN
