// Types of signals for which formulas are made and split.
#pragma once

namespace fuzz {

/// What a formula is told of the signal that it stimulates.
struct SSignalType {
    const char *description;
    int elements;
    bool isBitVector;
};

inline constexpr SSignalType SignalTypes[] = {
    {"e#9#std_logicc9 UX01ZWLH-", 1, false},
    {"a#28#std_logic_vector(3 downto 0)1 ricd3 0 e#9#std_logicc9 UX01ZWLH-", 4, true},
    {"a#19#bit_vector(0 to 69)1 rict0 69 e#3#bitc2 01", 70, true},
    {"i#7#integerrict-2147483648 2147483647", 1, false},
    {"f#4#realrrct-1.79769e+308 1.79769e+308", 1, false},
    {"r#3#rec2 valid e#3#bitc2 01 data i#7#integerrict-2147483648 2147483647", 2, false},
    {"e#5#states4 idle run stop end ", 1, false},
    {"a#17#mem(1 to 2)(3 downto 0)2 rict1 2 ricd3 0 e#3#bitc2 01", 8, false},
    {"va#8#reg[7:0]1 ricd7 0 eBIT c2 01", 8, true},
    {"a#11#string(1 to 3)1 rict1 3 e#9#characterc3 abc", 3, false},
    {"", 0, false},
};

}  // namespace fuzz
