// The type descriptions of a GHW file's types.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ghw/ghwtypes.h"

namespace NTARN {

/// Describes a bounded type in the grammar that `Kestrin::KTypeInfo` reads, with the names and ranges of the design.
///
/// - The nine letters of std_ulogic are the type std_logic, whatever the subtype is called.
/// - Integers of 64 bits and physical types are physical types here, which have 8 bytes; values count the first unit.
/// - A subtype of an enumeration keeps all its literals, since values are positions in them.
/// - An array over an enumeration is one over its positions.
std::string GhwTypeText(const CGhwTypes &types, std::uint32_t place);

}  // namespace NTARN
