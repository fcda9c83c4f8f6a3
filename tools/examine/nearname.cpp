#include "tools/examine/nearname.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tools/quote.h"

namespace tesk {

namespace {

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool BeginsWith(std::string_view text, std::string_view beginning)
{
    return text.size() >= beginning.size() && NameDistance(text.substr(0, beginning.size()), beginning, 0) == 0;
}

// The shortest of the names that the typed one is a beginning of, or that is one of it.
std::string FindBeginning(std::string_view typed, std::span<const std::string> names)
{
    constexpr std::size_t Fewest = 3;
    const std::string *best = nullptr;
    for (const std::string &name : names) {
        const bool isNear =
            std::min(name.size(), typed.size()) >= Fewest && (BeginsWith(name, typed) || BeginsWith(typed, name));
        if (isNear && (best == nullptr || name.size() < best->size()))
            best = &name;
    }
    return best != nullptr ? *best : "";
}

// That of the name, or of what stands behind its last dot if the typed one has none.
std::size_t DistanceOf(std::string_view typed, std::string_view name, std::size_t limit)
{
    const std::size_t distance = NameDistance(typed, name, limit);
    const std::size_t dot = name.rfind('.');
    if (distance == 0 || dot == name.npos || typed.find('.') != typed.npos)
        return distance;
    return std::min(distance, NameDistance(typed, name.substr(dot + 1), limit));
}

}  // namespace

std::size_t NameDistance(std::string_view left, std::string_view right, std::size_t limit)
{
    const std::size_t gap = left.size() > right.size() ? left.size() - right.size() : right.size() - left.size();
    if (gap > limit)
        return limit + 1;
    // Rows of the table of distances between beginnings: the one before the last, the last, the present one.
    std::vector<std::size_t> older(right.size() + 1), last(right.size() + 1), row(right.size() + 1);
    for (std::size_t j = 0; j <= right.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::swap(older, last);
        std::swap(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const char l = Lower(left[i - 1]), r = Lower(right[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (l != r ? 1 : 0)});
            if (i > 1 && j > 1 && l == Lower(right[j - 2]) && r == Lower(left[i - 2]))
                row[j] = std::min(row[j], older[j - 2] + 1);
        }
        if (*std::ranges::min_element(row) > limit)
            return limit + 1;
    }
    return std::min(row[right.size()], limit + 1);
}

std::string FindNearName(std::string_view typed, std::span<const std::string> names)
{
    constexpr std::size_t Longest = 1000;  // the work grows with the square
    if (typed.size() > Longest)
        return {};
    std::size_t limit = typed.size() < 2 ? 0 : std::clamp<std::size_t>(typed.size() / 3, 1, 8);
    std::string nearest;
    for (const std::string &name : names) {
        const std::size_t distance = DistanceOf(typed, name, limit);
        if (distance > limit || (distance == limit && !nearest.empty()))
            continue;
        nearest = name;
        if (distance == 0)
            break;
        limit = distance;
    }
    return nearest.empty() ? FindBeginning(typed, names) : nearest;
}

std::string DidYouMean(std::string_view typed, std::span<const std::string> names)
{
    const std::string near = FindNearName(typed, names);
    return near.empty() ? "" : " (did you mean " + Quote(near) + "?)";
}

}  // namespace tesk
