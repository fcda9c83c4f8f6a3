#include "settings/brel/brelparser.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/ascii.h"
#include "base/wrap.h"

namespace tesk {

namespace {

constexpr int MostNested = 1000;

// Takes the digits off the front of `rest`.
std::string_view TakeDigits(std::string_view &rest)
{
    const std::size_t length = static_cast<std::size_t>(std::ranges::find_if_not(rest, IsDigit) - rest.begin());
    const std::string_view digits = rest.substr(0, length);
    rest.remove_prefix(length);
    return digits;
}

// Takes a time off the front of `rest`: digits, "." and digits, a unit of two letters, each there or not.
std::string_view TakeTime(std::string_view &rest)
{
    const std::string_view start = rest;
    TakeDigits(rest);
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        TakeDigits(rest);
    }
    if (rest.size() >= 2 && tesk::UnitIDFromName(std::string(rest.substr(0, 2)).c_str()) >= 0)
        rest.remove_prefix(2);
    return start.substr(0, start.size() - rest.size());
}

class CBrelReader {
public:
    explicit CBrelReader(std::string_view text);

    bool ReadItems(std::string_view rest, int depth, CBrelSequence &sequence) const;

private:
    void MatchBrackets(char opening, char closing);
    std::size_t InsideLength(std::string_view text) const;
    bool ReadGroup(std::string_view &rest, int depth, CBrelSequence &sequence) const;
    bool ReadEvent(std::string_view &rest, CBrelSequence &sequence) const;

    std::string_view m_text;
    std::vector<std::size_t> m_closing;  // for an opening bracket the place of its closing one, or the text's end
};

// Every bracket is matched here, once: to look for the match at each level would cost depth times length.
CBrelReader::CBrelReader(std::string_view text) : m_text(text), m_closing(text.size(), text.size())
{
    MatchBrackets('(', ')');
    MatchBrackets('[', ']');
}

void CBrelReader::MatchBrackets(char opening, char closing)
{
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        if (m_text[at] == opening)
            open.push_back(at);
        if (m_text[at] != closing || open.empty())
            continue;
        m_closing[open.back()] = at;
        open.pop_back();
    }
}

// How much stands between the bracket at the front of `text`, a part of the whole, and its match, or the part's end.
std::size_t CBrelReader::InsideLength(std::string_view text) const
{
    const std::size_t at = static_cast<std::size_t>(text.data() - m_text.data());
    return std::min(m_closing[at] - at, text.size()) - 1;
}

bool CBrelReader::ReadItems(std::string_view rest, int depth, CBrelSequence &sequence) const
{
    for (;;) {
        rest.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(rest, IsSpace) - rest.begin()));
        if (rest.empty())
            return true;
        if (rest.front() != '(') {
            if (!ReadEvent(rest, sequence))
                return true;
        } else if (!ReadGroup(rest, depth, sequence)) {
            return false;
        }
    }
}

// @return false if nothing stands behind the group
bool CBrelReader::ReadGroup(std::string_view &rest, int depth, CBrelSequence &sequence) const
{
    const std::string_view inside = rest.substr(1, InsideLength(rest));
    if (rest.size() <= inside.size() + 2)
        return false;
    rest.remove_prefix(inside.size() + 2);
    const std::string count(TakeDigits(rest));
    auto group = std::make_unique<CBrelSequence>();
    if (depth == MostNested || !ReadItems(inside, depth + 1, *group))
        return true;  // deliberate: an inner group that fails is dropped
    group->SetRepeat(tesk::ReadInt(count.c_str()));
    sequence.Append(std::move(group));
    return true;
}

// @return false if the text ends with the value
bool CBrelReader::ReadEvent(std::string_view &rest, CBrelSequence &sequence) const
{
    const bool numeric = rest.front() == '[';
    const std::string_view value = numeric ? rest.substr(1, InsideLength(rest)) : rest.substr(0, 1);
    rest.remove_prefix(numeric ? std::min(value.size() + 2, rest.size()) : 1);
    const bool hasTime = !rest.empty();
    auto event = std::make_unique<CBrelEvent>();
    if (event->Parse(value, numeric, TakeTime(rest)))
        sequence.Append(std::move(event));
    return hasTime;
}

}  // namespace

bool ReadBrelItems(std::string_view text, CBrelSequence &sequence)
{
    return CBrelReader(text).ReadItems(text, 0, sequence);
}

}  // namespace tesk
