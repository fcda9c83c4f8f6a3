// Names that are nearly the one that was typed.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tesk {

/// The fewest letters to insert, drop, change or swap with their neighbour to make `left` of `right`, in any letter
/// case (the restricted Damerau-Levenshtein distance).
/// @param limit  the search ends where it is passed; the answer is then `limit` + 1
std::size_t NameDistance(std::string_view left, std::string_view right, std::size_t limit);

/// The nearest of some names, the first of several. Of a name with dots that behind the last one may be meant, if no dot was typed. Where
/// none is near a name is taken that the typed one begins with, or that begins with it.
/// @return empty if none is near enough to have been meant: a third of the typed letters may differ, one at least
std::string FindNearName(std::string_view typed, std::span<const std::string> names);

/// As a question to put behind a message: " (did you mean "tb.request"?)"; empty if there is none.
std::string DidYouMean(std::string_view typed, std::span<const std::string> names);

}  // namespace tesk
