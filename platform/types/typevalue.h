// Values of a type, "old format": their sizes, and bytes as text and back.
#pragma once

#include <string>
#include <string_view>

#include "platform/types/typereader.h"

namespace Kestrin {

/// Whether the type is an enumeration or a number.
bool IsScalar(const STypeDescription &type);
/// Bytes of one scalar value, 0 for a type that is none.
unsigned ScalarSize(const STypeDescription &type);

/// The text of a scalar. @param bytes  `ScalarSize` of them
std::string ScalarText(const STypeDescription &type, const unsigned char *bytes);
/// The text of `count` elements of the scalar type `element`, one behind the other in `bytes`; "" if one has no text.
std::string ArrayText(const STypeDescription &element, const unsigned char *bytes, std::size_t count);

/// Reads the text of a scalar and appends its bytes to `bytes`. @return false if it is no value of the type
bool ScalarBytes(const STypeDescription &type, std::string_view text, std::string &bytes);
/// Reads the text of exactly `count` elements of the scalar type `element` and appends their bytes, those in front of a
/// fault too. The work is bounded by the text, whatever the count.
bool ArrayBytes(const STypeDescription &element, std::size_t count, std::string_view text, std::string &bytes);

}  // namespace Kestrin
