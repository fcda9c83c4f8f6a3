// How a variable of a MAT-file travels from the helper process to the library.
#pragma once

#include <cstdint>

// The helper writes, in the byte order of the machine:
//
//     stream   = StreamBegin [ node | list ] StreamEnd     a node if a variable was asked for, a list if the names were
//     list     = { u8 1 u32 length byte... node } u8 0     of each variable its name and a node without values
//     node     = u8 0                               nothing there
//              | u8 1 i32 class u32 rank u64 size... contents
//                                                   class: an EMatClass, with marks; sizes in MATLAB's order
//     contents = u64 count double...                of a dense array of doubles: class 6; count is the product of the sizes
//              | u32 fields { u32 length byte... } node...   of a structure: class 2; all fields of element 0, of 1, ...
//              |                                    of any other class
//
// A node without values has no contents if it is an array of doubles, and the fields of its first element alone, if it has one, if it
// is a structure.
//
// Whatever does not follow this, or ends early, is refused as a whole.

/// Whether a node has its values, or as in a list none.
enum class EDetail { Values, Headers };

inline constexpr char StreamBegin[8] = {'T', 'E', 'S', 'K', 'M', 'A', 'T', '1'};
inline constexpr char StreamEnd[8] = {'T', 'E', 'S', 'K', 'E', 'N', 'D', '1'};

/// What the helper ends with where the system could not read the file: this and the `errno`.
inline constexpr int ReadFailed = 100;

inline constexpr std::uint32_t MaximumRank = 64;
inline constexpr std::uint32_t MaximumFields = 65536;
inline constexpr std::uint32_t MaximumNameLength = 4096;
inline constexpr int MaximumDepth = 64;  ///< structures inside one another; what lies deeper is left out

// Marks beside a class.
inline constexpr std::int32_t ClassMask = 0xFF;
inline constexpr std::int32_t MarkComplex = 0x100;  ///< the imaginary parts are left out
inline constexpr std::int32_t MarkSparse = 0x200;   ///< the numbers are left out
