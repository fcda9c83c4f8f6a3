// What a type description says, and the reader of its grammar.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kestrin.h"

namespace Kestrin {

template <class T>
struct TTypeRange {
    bool constrained = true;
    bool downto = false;
    T left{};
    T right{};
};

struct STypeField {
    std::string name;
    KTypeInfo type;
};

/// One type, taken apart. Lives in a `std::shared_ptr` and stays where it is: the literals point into the text.
struct STypeDescription {
    STypeDescription() = default;
    STypeDescription(const STypeDescription &) = delete;
    STypeDescription &operator=(const STypeDescription &) = delete;

    std::string text;
    ETypeKind kind = ETypeKind::Invalid;
    bool isVerilog = false;
    bool isSignedVerilog = false;
    std::string identifier;
    std::vector<std::string_view> literals;   // of an enumeration, by position
    bool hasOnlyCharacters = false;           // of an enumeration: each of the literals is one byte
    TTypeRange<long long> range;              // of an integer or a physical type
    TTypeRange<double> realRange;             // of a real
    std::vector<TTypeRange<int>> dimensions;  // of an array
    std::optional<KTypeInfo> element;         // of an array
    std::vector<STypeField> fields;           // of a record
};

/// Reads a description. @return one of kind Invalid, with the text and nothing else, for an unreadable or null `text`;
///         never null
std::shared_ptr<const STypeDescription> ReadTypeDescription(const char *text);

}  // namespace Kestrin
