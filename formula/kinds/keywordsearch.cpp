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

const char *CKeywordSearch::Behind(std::string_view keyword) const
{
    const auto isSame = [](char letter, char small) {
        return (letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter) == small;
    };
    for (std::size_t at = m_formula.find(keyword.front()); at != m_formula.npos;
         at = m_formula.find(keyword.front(), at + 1)) {
        const std::string_view text = m_formula.substr(at, keyword.size());
        if (std::ranges::equal(text, keyword, isSame))
            return text.data() + text.size();
    }
    return nullptr;
}

}  // namespace tesk
