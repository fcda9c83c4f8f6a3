#include "base/stdlogic.h"

#include <algorithm>
#include <array>

namespace {

struct SStateLetter {
    char letter;
    char stdLogic;
};

// Deliberate: capital U and G are levels, small l, h and x are weak states.
constexpr std::array<SStateLetter, 18> StateLetters = {{
    {'1', '1'},
    {'0', '0'},
    {'H', '1'},
    {'L', '0'},
    {'X', 'X'},
    {'Z', 'Z'},
    {'R', 'X'},
    {'V', 'X'},
    {'.', 'X'},
    {'F', 'X'},
    {'U', '1'},
    {'G', '0'},
    {'S', 'X'},
    {'u', 'X'},
    {'d', 'X'},
    {'l', 'L'},
    {'h', 'H'},
    {'x', 'W'},
}};

}  // namespace

char GateLevel2StdLogic(char letter)
{
    const auto row = std::ranges::find(StateLetters, letter, &SStateLetter::letter);
    return row != StateLetters.end() ? row->stdLogic : '\0';
}

int GateLevel2StdLogicIndex(char letter)
{
    const char stdLogic = GateLevel2StdLogic(letter);
    return stdLogic == 0 ? -1 : static_cast<int>(tesk::StdLogicLetters.find(stdLogic));
}
