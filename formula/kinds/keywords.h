// The keywords that tell the kinds of formula apart.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "settings/cstr.h"

inline constexpr std::string_view CustomKeyword = "/custom";
inline constexpr std::string_view TxtKeyword = "/txt";
inline constexpr std::string_view MatKeyword = "/mat";
inline constexpr std::string_view CounterKeyword = "\\counter";
inline constexpr std::string_view RandomKeyword = "\\random";
inline constexpr std::string_view BrelKeyword = "/brel";

/// The arguments of a formula: what stands behind its keyword, without the closing quote of a formula that stands in
/// double quotes as a whole.
/// @param behindKeyword  points into `formula`
SimpleString::CStr ArgumentsOf(const char *formula, const char *behindKeyword);

/// A formula in which keywords are looked for in any letter case.
class CKeywordSearch {
public:
    explicit CKeywordSearch(const char *formula);

    bool Has(std::string_view keyword) const { return m_lower.find(keyword) != std::string::npos; }

    /// Whether the formula refers to a file.
    bool HasFileKeyword() const { return Has(CustomKeyword) || Has(TxtKeyword) || Has(MatKeyword); }

    /// The formula in the caller's letter case.
    const char *Formula() const { return m_formula; }

    /// What stands behind the first occurrence of a keyword, in the caller's letter case; null without one.
    const char *Behind(std::string_view keyword) const;

private:
    const char *m_formula;
    std::string m_lower;
};
