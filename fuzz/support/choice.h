// Choices that stand in front of an input.
#pragma once

#include <cstddef>
#include <string_view>

namespace fuzz {

/// Takes a character off the front: a digit is its number, and any other counts round. @return a number below `count`
inline std::size_t Choose(std::string_view &input, std::size_t count)
{
    if (input.empty())
        return 0;
    const auto chosen = static_cast<unsigned char>(input.front() - '0') % count;
    input.remove_prefix(1);
    return chosen;
}

}  // namespace fuzz
