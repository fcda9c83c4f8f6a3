// Text properties by name.
#pragma once

#include <map>

#include "platform/crt.h"
#include "settings/cstr.h"

/// Compares names of properties: without letter case.
struct SPropertyLess {
    using is_transparent = void;

    bool operator()(const char *left, const char *right) const { return _stricmp(left, right) < 0; }
};

/// A key exists once whatever its case, and keeps the spelling in which it came first. The walk goes in that order.
using CPropertyTable = std::map<SimpleString::CStr, SimpleString::CStr, SPropertyLess>;

/// @return the text of a property; null if there is none, also for a null `name`
inline const char *FindProperty(const CPropertyTable &table, const char *name)
{
    if (name == nullptr)
        return nullptr;
    const auto entry = table.find(name);
    return entry != table.end() ? static_cast<const char *>(entry->second) : nullptr;
}
