// Text properties by name.
#pragma once

#include <cstddef>
#include <map>

#include "platform/crt.h"
#include "settings/cstr.h"

namespace tesk {

/// Compares names of properties: without letter case.
struct SPropertyLess {
    using is_transparent = void;

    bool operator()(const char *left, const char *right) const { return _stricmp(left, right) < 0; }
};

/// A key exists once whatever its case, and keeps the spelling in which it came first. The walk goes in that order.
class CPropertyTable {
public:
    /// @return the text of a property; null if there is none, also for a null `name`
    const char *Find(const char *name) const;
    /// The number that the text of a property begins with. @return `byDefault` if there is no such property
    int GetNumber(const char *name, int byDefault) const;
    void Set(const char *name, const SimpleString::CStr &text);
    void SetNumber(const char *name, int number);
    void Remove(const char *name);
    void Clear() { m_texts.clear(); }

    std::size_t size() const { return m_texts.size(); }
    auto begin() const { return m_texts.begin(); }
    auto end() const { return m_texts.end(); }

private:
    std::map<SimpleString::CStr, SimpleString::CStr, SPropertyLess> m_texts;
};

}  // namespace tesk
