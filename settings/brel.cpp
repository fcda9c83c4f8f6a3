#include "settings/brel.h"

#include <algorithm>
#include <climits>
#include <string>
#include <utility>

#include "settings/brel/brelparser.h"
#include "settings/brel/breltime.h"

using namespace tesk;

namespace {

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    for (char &c : upper) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::string RepeatText(long long time)
{
    const SBrelTime scaled(time);
    return " -r " + scaled.number + scaled.unit;
}

}  // namespace

bool CBrelFormula::Parse(const char *text)
{
    const std::string upper = UpperCase(text != nullptr ? text : "");
    std::string_view items = upper;
    const std::size_t clockMark = items.find("/CLK");
    m_isClock = clockMark != std::string_view::npos;
    items = items.substr(0, clockMark);

    auto root = std::make_unique<CBrelSequence>();
    const bool isRead = ReadBrelItems(items, *root);
    m_root = std::move(root);
    return isRead;
}

int CBrelFormula::GetTextLength()
{
    long long time = 0;
    const long long rootLength = m_root ? m_root->GetTextLength(time) : 0;
    if (rootLength == 0)
        return 0;
    const std::size_t repeatLength = m_isClock ? RepeatText(time).size() : 0;
    return static_cast<int>(std::min<long long>(rootLength + 1 + static_cast<long long>(repeatLength), INT_MAX));
}

bool CBrelFormula::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
    const long long room = GetTextLength() * 5LL + 1;
    if (room == 1 || room > INT_MAX)
        return false;
    const auto text = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(room) + IBrelFormula::SpareRoom);
    long long time = 0;
    if (!m_root->WriteFormula(text.get(), time, static_cast<int>(room)))
        return false;
    formula = text.get();
    if (m_root->HasRepeat())
        formula += RepeatText(time).c_str();
    if (!m_isClock)
        formula += (" -cancel " + std::to_string(GetDuration()) + " fs").c_str();
    return true;
}

bool CBrelFormula::GetSource(SimpleString::CStr &text)
{
    return m_root && m_root->GetSource(text);
}

long long CBrelFormula::GetDuration()
{
    return m_root ? m_root->GetDuration() : 0;
}

bool CBrelFormula::GetValue(long long time, SimpleString::CStr &value)
{
    return m_root && m_root->GetValue(time, value);
}

long long CBrelFormula::GetNextEvent(long long time)
{
    if (!m_root)
        return -1;
    if (time == -1)
        return 0;
    const long long next = m_root->GetNextEvent(time);
    return next < m_root->GetDuration() ? next : -1;
}

bool CBrelFormula::CheckRepeat(int maximum)
{
    return m_root && m_root->CheckRepeat(maximum);
}

bool ExpandBrelFormula(const char *text, SimpleString::CStr &formula)
{
    CBrelFormula notation;
    const bool isRead = notation.Parse(text);
    formula.Empty();  // not before: the text may stand in it
    return isRead && notation.GetFormula(formula);
}

bool CheckBrelMaxRepeatCount(const char *text, int maximum)
{
    CBrelFormula formula;
    return !formula.Parse(text) || formula.CheckRepeat(maximum);
}
