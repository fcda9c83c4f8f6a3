// The types of a GHW file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ghw/ghwsection.h"
#include "platform/ghw/ghwstrings.h"

namespace NTARN {

enum class EGhwKind : std::uint8_t {
    Enumeration,
    Integer,
    LongInteger,  // of 64 bits
    Real,
    Physical,
    LongPhysical,
    Array,
    Record
};

/// Bounds of a scalar type or of a dimension; a bound of an enumeration is a position in it.
struct SGhwRange {
    bool isDown = false;
    std::int64_t left = 0;
    std::int64_t right = 0;
    double realLeft = 0;  ///< of a real, instead of the two above
    double realRight = 0;

    /// Values between the bounds; the largest number if there are more.
    std::uint64_t Length() const;
};

struct SGhwField {
    std::uint32_t name;  // of a string
    std::uint32_t type;  // place among the types
};

/// One type. The types that it is made of stand in front of it.
struct SGhwType {
    EGhwKind kind = EGhwKind::Record;
    bool isBounded = true;       ///< a signal may have it; not an array whose ranges are open, nor what is made of one
    std::uint32_t name = 0;      ///< of a string; of a subtype without a name that of what it is made of
    std::uint32_t base = 0;      ///< place of the type that this is a subtype of; its own if it is none
    std::uint32_t element = 0;   ///< of an array: place of its type
    std::uint32_t depth = 1;     ///< of types in one another
    std::uint64_t scalars = 1;   ///< in one signal, the largest number if there are more
    std::uint64_t vectors = 1;   ///< as scalars, but scalars in one row of an array count once
    std::uint64_t textSize = 0;  ///< of the type description, or some more
    std::uint64_t cost = 0;  ///< bytes that the type description takes where it is taken apart, roughly; the largest
                             ///< number if there can be none
    SGhwRange range;         // of a scalar
    std::vector<SGhwRange> dimensions;      // of a bounded array
    std::vector<std::uint32_t> literals;    // of an enumeration that is no subtype: strings
    std::vector<std::uint32_t> indexTypes;  // of an array that is no subtype: places
    std::vector<SGhwField> fields;          // of a record

    bool IsScalar() const { return kind < EGhwKind::Array; }
    /// Parts of a signal: the elements of an array, the fields of a record.
    std::uint64_t PartCount() const;
};

/// Types nest no deeper than this.
constexpr std::uint32_t DeepestGhwType = 64;

class CGhwTypes {
public:
    CGhwTypes() = default;
    /// Reads what stands behind the tag of the section. @param strings  must outlive the types
    /// @throw XGhwDamage
    CGhwTypes(CGhwBytes &bytes, const CGhwStrings &strings, CGhwBudget &budget);

    /// The place of the type that the file gives this number, counted from 1. @throw XGhwDamage if there is none
    std::uint32_t PlaceOf(std::uint32_t number) const;
    const SGhwType &At(std::uint32_t place) const { return m_types[place]; }
    /// The type of one part of an array or a record.
    const SGhwType &PartAt(const SGhwType &type, std::size_t part) const { return m_types[PartPlace(type, part)]; }
    static std::uint32_t PartPlace(const SGhwType &type, std::size_t part)
    {
        return type.kind == EGhwKind::Array ? type.element : type.fields[part].type;
    }
    const CGhwStrings &Strings() const { return *m_strings; }

private:
    friend class CGhwTypeReader;

    const CGhwStrings *m_strings = nullptr;
    std::vector<SGhwType> m_types;
    std::vector<std::uint32_t> m_places;  // of those that have a number
};

}  // namespace NTARN
