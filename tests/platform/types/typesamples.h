// Type descriptions that several tests read.
#pragma once

#include <string>

inline const std::string Bit = "e#3#bitc2 01";
inline const std::string StdLogic = "e#9#std_logicc9 UX01ZWLH-";
inline const std::string Integer = "i#7#integerrict-2147483648 2147483647";
inline const std::string Real = "f#4#realrrct-1.79769e+308 1.79769e+308";
inline const std::string Time = "p#4#timerict-9223372036854775808 9223372036854775807";
inline const std::string State = "e#5#states3 idle run stop ";
inline const std::string Mixed = "e#5#mixeds3 'a b idle ";
inline const std::string Memory = "a#15#mem(7 downto 0)1 ricd7 0 " + Bit;
inline const std::string Bus = "r#3#bus2 valid " + Bit + " data " + Integer;
inline const std::string Grid = "a#23#grid(0 to 1,3 downto 2)2 rict0 1 ricd3 2 " + Bus;

inline std::string ArrayOf(const std::string &element, const std::string &range = "rict0 2")
{
    return "a#1#a1 " + range + " " + element;
}

inline std::string Nested(int arrays)
{
    std::string text;
    for (int i = 0; i < arrays; ++i)
        text += "a#1#a1 rict0 0 ";
    return text + Bit;
}
