#include "tools/examine/formulaitems.h"

#include <algorithm>
#include <string>

#include "core/plain/tokenviews.h"

namespace tesk {

namespace {

bool IsWord(std::string_view token, std::string_view word)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::ranges::equal(token, word, {}, lower);
}

// The words of a formula, part by part.
class CWords {
public:
    explicit CWords(std::string_view formula) : m_formula(formula), m_rest(formula) {}

    // The next word of this part; empty at its end.
    SFormulaWord Take()
    {
        SkipBlanks();
        if (m_rest.empty() || m_rest.front() == ',')
            return At(m_rest.substr(0, 0));
        return At(TakeToken(m_rest, ParserOpen, ParserClose, ElementBlanks));
    }

    SFormulaWord Peek() const
    {
        CWords copy = *this;
        return copy.Take();
    }

    // @return false at the end of the formula
    bool NextPart()
    {
        SkipBlanks();
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(','), m_rest.size()));
        ++m_part;
        return !m_rest.empty();
    }

private:
    void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(TokenBlanks), m_rest.size())); }

    SFormulaWord At(std::string_view word) const
    {
        return {word, static_cast<std::size_t>(word.data() - m_formula.data()), m_part};
    }

    std::string_view m_formula;
    std::string_view m_rest;
    int m_part = 0;
};

// @param text  number and unit, without "@"
void ReadNumber(const std::string &text, long long resolution, SFormulaTime &time)
{
    int id = -1;
    time.isReadable = TextToTime(text.c_str(), &time.number, &id);
    time.hasNumber = text.find_first_of("0123456789") < text.find_first_not_of("0123456789.-");
    time.hasUnit = time.isReadable && id != -1;
    time.unit = UnitOrDefault(id);
    time.value.SetFromValue(time.number, time.unit, time.unit, resolution);
}

// A time whose unit may stand apart.
SFormulaTime ReadTime(SFormulaWord number, CWords &words, long long resolution)
{
    SFormulaTime time;
    time.word = number;
    time.isAbsolute = number.text.starts_with('@');
    std::string text(number.text.substr(time.isAbsolute ? 1 : 0));
    const SFormulaWord unit = words.Peek();
    if (UnitIDFromName(std::string(unit.text).c_str()) >= 0) {
        words.Take();
        text += unit.text;
        time.word.text = {number.text.data(), unit.column + unit.text.size() - number.column};
    }
    ReadNumber(text, resolution, time);
    return time;
}

SFormulaItem ReadSwitch(SFormulaItem::EKind kind, SFormulaWord word, CWords &words, long long resolution)
{
    SFormulaItem item{kind, word, false, std::nullopt};
    const SFormulaWord number = words.Take();
    if (!number.text.empty())
        item.time = ReadTime(number, words, resolution);
    return item;
}

void ReadPart(CWords &words, long long resolution, std::vector<SFormulaItem> &items)
{
    using EKind = SFormulaItem::EKind;
    for (bool isFirst = true;; isFirst = false) {
        const SFormulaWord word = words.Take();
        if (word.text.empty())
            return;
        if (IsWord(word.text, "-r")) {
            items.push_back(ReadSwitch(EKind::Repeat, word, words, resolution));
            continue;
        }
        if (IsWord(word.text, "-cancel")) {
            items.push_back(ReadSwitch(EKind::Cancel, word, words, resolution));
            continue;
        }
        SFormulaItem event{EKind::Event, word, isFirst, std::nullopt};
        const SFormulaWord number = words.Take();
        if (IsWord(number.text, "-cancel")) {
            items.push_back(ReadSwitch(EKind::Cancel, number, words, resolution));
        } else if (!number.text.empty()) {
            event.time = ReadTime(number, words, resolution);
        }
        items.push_back(event);
    }
}

}  // namespace

std::vector<SFormulaItem> ReadFormulaItems(std::string_view formula, long long resolution)
{
    std::vector<SFormulaItem> items;
    CWords words(formula);
    while (words.NextPart())
        ReadPart(words, resolution, items);
    return items;
}

SFormulaTime ReadFormulaTime(const SFormulaWord &word, long long resolution)
{
    SFormulaTime time;
    time.word = word;
    ReadNumber(std::string(word.text), resolution, time);
    return time;
}

}  // namespace tesk
