// Makes small GHW files to the letter, in both byte orders.
#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/tarn.h"
#include "tests/platform/fst/fstmaker.h"
#include "tests/platform/fst/fsttools.h"

namespace ghwtest {

using fsttest::AllEvents;
using fsttest::CBytes;
using fsttest::CByteWriter;
using fsttest::CTemporaryFolder;
using fsttest::ReadBytes;
using fsttest::ReaderPtr;
using fsttest::SEvent;
using fsttest::WriteBytes;

inline ReaderPtr Open(const std::filesystem::path &path)
{
    return ReaderPtr(NTARN::IDatabaseReader::create(path.c_str(), false));
}

/// Kinds of types, as a range begins with them, and of whole entries.
enum : std::uint8_t { Bit = 22, Enum = 23, Int = 25, Long = 26, Real = 27, Phys = 28, LongPhys = 29, Down = 128 };
enum : std::uint8_t { Array = 31, Record = 32, SubScalar = 34, SubArray = 35, SubRecord = 38 };
/// Scopes and signals.
enum : std::uint8_t {
    Block = 3,
    If = 4,
    For = 5,
    Instance = 6,
    Package = 7,
    Process = 13,
    End = 15,
    Signal = 16,
    In = 17
};

using CNumbers = std::initializer_list<std::uint64_t>;

/// Bounds of an integer or a physical type.
inline CBytes Range(int kind, std::int64_t left, std::int64_t right)
{
    return CByteWriter().Byte(static_cast<std::uint64_t>(kind)).SignedVarint(left).SignedVarint(right).bytes;
}

inline CBytes Joined(std::initializer_list<CBytes> parts)
{
    CByteWriter writer;
    for (const CBytes &part : parts)
        writer.Append(part);
    return writer.bytes;
}

class CGhwMaker {
public:
    bool isBigEndian = false;
    std::uint32_t elementCount = 0;
    CByteWriter strings, types, scopes, changes;
    std::uint32_t stringCount = 0, typeCount = 0;
    bool hasEnd = true;  ///< the directory and what tells where it is

    CBytes Word(std::uint64_t value, int size = 4) const
    {
        CByteWriter writer;
        for (int i = 0; i < size; ++i)
            writer.Byte(value >> 8 * (isBigEndian ? size - 1 - i : i));
        return writer.bytes;
    }

    /// A string of its own, which shares no letters with its neighbours.
    std::uint32_t String(const std::string &text)
    {
        strings.Letters(text).Byte(0);
        return ++stringCount;
    }

    /// Any type; gives its number.
    std::uint32_t Type(int kind, const std::string &name, const CBytes &rest = {})
    {
        types.Byte(static_cast<std::uint64_t>(kind)).Varint(name.empty() ? 0 : String(name)).Append(rest);
        return ++typeCount;
    }
    std::uint32_t Enumeration(const std::string &name, std::initializer_list<const char *> literals)
    {
        CByteWriter rest;
        rest.Varint(literals.size());
        for (const char *literal : literals)
            rest.Varint(String(literal));
        return Type(literals.size() == 2 ? Bit : Enum, name, rest.bytes);
    }
    std::uint32_t ArrayOf(const std::string &name, std::uint64_t element, CNumbers indices)
    {
        CByteWriter rest;
        rest.Varint(element).Varint(indices.size());
        for (const std::uint64_t index : indices)
            rest.Varint(index);
        return Type(Array, name, rest.bytes);
    }
    std::uint32_t RecordOf(const std::string &name,
                           std::initializer_list<std::pair<const char *, std::uint64_t>> fields)
    {
        CByteWriter rest;
        rest.Varint(fields.size());
        for (const auto &[field, type] : fields)
            rest.Varint(String(field)).Varint(type);
        return Type(Record, name, rest.bytes);
    }
    std::uint32_t Subtype(int kind, const std::string &name, std::uint64_t base, const CBytes &bounds = {})
    {
        return Type(kind, name, CByteWriter().Varint(base).Append(bounds).bytes);
    }

    CGhwMaker &Scope(int kind, const std::string &name)
    {
        scopes.Byte(static_cast<std::uint64_t>(kind)).Varint(String(name));
        return *this;
    }
    CGhwMaker &ForScope(const std::string &name, std::uint64_t type, const CBytes &value)
    {
        Scope(For, name);
        scopes.Varint(type).Append(value);
        return *this;
    }
    CGhwMaker &EndScope()
    {
        scopes.Byte(End);
        return *this;
    }
    /// @param elements  their numbers, counted from 1
    CGhwMaker &AddSignal(const std::string &name, std::uint64_t type, CNumbers elements, int kind = Signal)
    {
        Scope(kind, name);
        scopes.Varint(type);
        for (const std::uint64_t element : elements) {
            scopes.Varint(element);
            elementCount = std::max(elementCount, static_cast<std::uint32_t>(element));
        }
        return *this;
    }

    /// The values of all elements.
    CGhwMaker &Snapshot(std::uint64_t time, const CBytes &values)
    {
        changes.Letters(Tag("SNP")).Append(Word(0)).Append(Word(time, 8)).Append(values).Letters(Tag("ESN"));
        return *this;
    }
    /// Lists of changes; between two of them the way from one time to the next.
    CGhwMaker &Cycles(std::uint64_t time, std::initializer_list<std::pair<std::int64_t, CBytes>> lists)
    {
        changes.Letters(Tag("CYC")).Append(Word(time, 8));
        bool isFirst = true;
        for (const auto &[step, list] : lists) {
            if (!isFirst)
                changes.SignedVarint(step);
            isFirst = false;
            changes.Append(list).Byte(0);
        }
        changes.SignedVarint(-1).Letters(Tag("ECY"));
        return *this;
    }

    /// What stands in front of the changes.
    CBytes Head() const
    {
        CByteWriter file;
        file.Letters("GHDLwave\n").Append({16, 0, 1, static_cast<std::uint8_t>(isBigEndian ? 2 : 1), 4, 1, 0});
        file.Letters(Tag("STR"))
            .Append(Word(0))
            .Append(Word(stringCount))
            .Append(Word(strings.bytes.size() - stringCount));
        file.Append(strings.bytes).Letters(Tag("EOS"));
        file.Letters(Tag("TYP")).Append(Word(0)).Append(Word(typeCount)).Append(types.bytes).Byte(0);
        file.Letters(Tag("WKT")).Append(Word(0)).Byte(2).Varint(1).Byte(0);
        file.Letters(Tag("HIE")).Append(Word(0)).Append(Word(1)).Append(Word(1)).Append(Word(elementCount));
        file.Append(scopes.bytes).Byte(0).Letters(Tag("EOH"));
        return file.bytes;
    }
    CBytes Bytes() const
    {
        CByteWriter file;
        file.Append(Head()).Append(changes.bytes);
        if (!hasEnd)
            return file.bytes;
        const std::size_t directory = file.bytes.size();
        file.Letters(Tag("DIR")).Append(Word(0)).Append(Word(1)).Letters(Tag("DIR")).Append(Word(directory));
        file.Letters(Tag("EOD")).Letters(Tag("TAI")).Append(Word(0)).Append(Word(directory));
        return file.bytes;
    }

private:
    static std::string Tag(const std::string &letters) { return letters + std::string(1, '\0'); }
};

/// A real as it stands in a file.
inline CBytes RealBytes(const CGhwMaker &maker, double value)
{
    return maker.Word(std::bit_cast<std::uint64_t>(value), 8);
}

/// Two bits, an integer and a real, which change at 0, 10 and 30.
inline CGhwMaker Sample(bool isBigEndian = false)
{
    CGhwMaker maker;
    maker.isBigEndian = isBigEndian;
    const std::uint32_t bit = maker.Enumeration("bit", {"'0'", "'1'"});
    const std::uint32_t integer = maker.Type(Int, "integer");
    const std::uint32_t real = maker.Type(Real, "real");
    const std::uint32_t pair = maker.RecordOf("pair", {{"valid", bit}, {"place", integer}});
    maker.Scope(Instance, "tb").AddSignal("a", bit, {1}).AddSignal("p", pair, {2, 3}).AddSignal("r", real, {4});
    maker.EndScope();
    maker.Snapshot(0, Joined({{0, 1, 0x7B}, RealBytes(maker, 1.5)}));
    maker.Cycles(0, {{0, {}}, {10, {1, 1, 2, 7}}, {20, Joined({{2, 0, 2}, RealBytes(maker, -2)})}});
    return maker;
}

}  // namespace ghwtest
