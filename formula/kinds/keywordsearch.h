// Looking for keywords in a formula.
#pragma once

#include <string_view>

#include "settings/cstr.h"

namespace tesk {

/// The arguments of a formula: what stands behind its keyword, without the closing quote of a formula that stands in
/// double quotes as a whole.
/// @param behindKeyword  points into `formula`
SimpleString::CStr ArgumentsOf(const char *formula, const char *behindKeyword);

/// A formula in which keywords are looked for in any letter case.
class CKeywordSearch {
public:
    /// @param formula  must outlive the search
    explicit CKeywordSearch(const char *formula) : m_formula(formula) {}

    bool Has(std::string_view keyword) const { return Behind(keyword) != nullptr; }

    /// What stands behind the first occurrence of a keyword, in the caller's letter case; null without one.
    /// @param keyword  in small letters; begins with no letter
    const char *Behind(std::string_view keyword) const;

private:
    std::string_view m_formula;
};

}  // namespace tesk
