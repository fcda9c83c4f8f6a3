#include "core/keywords.h"

#include <algorithm>

CKeywordSearch::CKeywordSearch(const char *formula) : m_formula(formula), m_lower(formula)
{
    const auto lower = [](char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c); };
    std::ranges::transform(m_lower, m_lower.begin(), lower);
}

const char *CKeywordSearch::Behind(std::string_view keyword) const
{
    const std::size_t at = m_lower.find(keyword);
    return at == std::string::npos ? nullptr : m_formula + at + keyword.size();
}
