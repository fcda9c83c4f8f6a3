#include "formula/kinds/keywordsearch.h"

#include <algorithm>
#include <cstddef>

namespace tesk {

SimpleString::CStr ArgumentsOf(const char *formula, const char *behindKeyword)
{
    const SimpleString::CStr arguments(behindKeyword);
    const int last = arguments.GetLength() - 1;
    const bool isQuoted = *formula == '"' && last >= 0 && arguments[last] == '"';
    return isQuoted ? arguments.Left(last) : arguments;
}

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

}  // namespace tesk
