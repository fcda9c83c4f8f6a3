#include "settings/brel/brelparser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "settings/brel/brelsupport.h"
#include "settings/decconverter.h"
#include "settings/timeunits.h"

namespace {

bool Parses(const std::string &text)
{
    CBrelFormula formula;
    return formula.Parse(text.c_str());
}

TEST(BrelTime, IsReadInNanosecondsUnlessAUnitOfTwoLettersFollows)
{
    const struct {
        const char *text;
        long long duration;
    } rows[] = {
        {"H10", 10 * Ns},
        {"H10NS", 10 * Ns},
        {"H10ns", 10 * Ns},
        {"H10FS", 10},
        {"H10PS", 10000},
        {"H10US", 10000 * Ns},
        {"H10MS", 10000000 * Ns},
        {"H1HR", 3600000000000 * Ns},
        {"HHR", 0},                        // no digits: zero hours
        {"H.5", Ns / 2},                   //
        {"H5.", 5 * Ns},                   //
        {"H5.NS", 5 * Ns},                 //
        {"H1.5", Ns + Ns / 2},             //
        {"H1.0005", Ns},                   // cut at picoseconds
        {"H1.5FS", 1},                     // cut at once
        {"H1.5PS", 1000},                  //
        {"H1.5US", 1500 * Ns},             //
        {"H1.5HR", 5400000000000 * Ns},    //
        {"H0.001US", Ns},                  //
        {"H", -1},                         // no time at all
        {"H10 NS", 10 * Ns - 1 - 1},       // a blank ends the time: two more events, "N" and "S"
        {"H10SEC", 10 * Ns - 1 - 1 - 1},   // no unit of two letters: three more events
        {"H10S", 10 * Ns - 1},             //
        {"H10N", 10 * Ns - 1},             //
        {"H1.2.3", Ns + Ns / 5 + 3 * Ns},  // "." is the next value
        {"H0", 0},                         //
    };
    for (const auto &row : rows)
        EXPECT_EQ(BrelDuration(row.text), row.duration) << row.text;
}

TEST(BrelTime, KeepsANumberThatNoIntegerHolds)
{
    const std::string digits(400, '9');
    EXPECT_EQ(BrelDuration("H" + digits + "FS"), LLONG_MIN);
}

TEST(BrelEvent, CannotBeReadWithAnUnknownUnit)
{
    CBrelEvent event;
    EXPECT_FALSE(event.Parse("1", false, "10XX"));
    EXPECT_FALSE(event.Parse("FG", true, "10NS"));
}

TEST(BrelItems, ThatCannotBeReadAreDropped)
{
    const struct {
        const char *text, *source;
    } rows[] = {
        {"[GG]10 H5", "15"},     // no hexadecimal digits
        {"[]10 H5", "15"},       //
        {"[-]10 H5", "15"},      //
        {"[1[2]3]10 H5", "15"},  // one value with nested brackets
        {"((H1))2 H5", "15"},    // nothing behind the inner group, so the outer one fails
        {"((H1)2)3 H5", "((11)2)315"},
        {"((H1)2 )3 H5", "((11)2)315"},
        {"[FF", "[FF]-1fs"},  // an unclosed value takes the rest
        {"H1[FF 5", "11"},    // and "FF 5" is no number
        {"([FF)2]5 H1", "([FF]-1fs)2]511"},
        {"H5)2", "15)2"},  // a bracket that closes nothing is a value
        {"H5]2", "15]2"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(BrelSource(row.text), row.source) << row.text;
}

TEST(BrelItems, EndWithAGroupThatHasNothingBehindIt)
{
    for (const char *text : {"(H10)", "(", "()", "(H10", "H5 (H10)", "H5 ((H10)2", "(H1)2(L1)"})
        EXPECT_FALSE(Parses(text)) << text;
    for (const char *text : {"(H10)2", "(H10) ", "(H10)X", "() ", ")", "]", "["})
        EXPECT_TRUE(Parses(text)) << text;
    CBrelFormula formula;
    EXPECT_FALSE(formula.Parse("H5 (L1)2 (X1)"));
    SimpleString::CStr source;
    EXPECT_TRUE(formula.GetSource(source));
    EXPECT_STREQ(source, "15(01)2");  // what was read before it is kept
}

TEST(BrelItems, MayLieInOneAnotherAThousandDeep)
{
    for (const int depth : {1, 1000, 1001, 100000}) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += '(';
        text += "H1";
        for (int i = 0; i < depth; ++i)
            text += ")1 ";
        EXPECT_EQ(BrelSource("L5" + text), depth <= 1000 ? "0511" : "05") << depth;
    }
}

// A second reading of the notation that looks for each closing bracket anew and copies what is inside. It writes the
// source text of what it has read.
class CSecondReader {
public:
    static bool Read(const std::string &text, std::string &source)
    {
        for (std::size_t at = 0;;) {
            at = text.find_first_not_of(" \t\n\v\f\r", at);
            if (at == std::string::npos)
                return true;
            if (text[at] == '(') {
                const std::size_t close = Match(text, at);
                if (close + 1 >= text.size())
                    return false;
                const std::size_t end = EndOfDigits(text, close + 1);
                const long long count = std::atoll(text.substr(close + 1, end - close - 1).c_str());
                std::string inner;
                if (Read(text.substr(at + 1, close - at - 1), inner))
                    source += count > 1 ? "(" + inner + ")" + std::to_string(count) : inner;
                at = end;
                continue;
            }
            std::size_t behind = at + 1;
            std::string value = text.substr(at, 1);
            if (text[at] == '[') {
                const std::size_t close = Match(text, at);
                value = "[" + Hex(text.substr(at + 1, close - at - 1)) + "]";
                behind = std::min(close + 1, text.size());
            }
            value = value == "H" ? "1" : value == "L" ? "0" : value;
            if (value != "[]")
                source += value;
            const std::size_t end = behind == text.size() ? behind : EndOfTime(text, behind);
            if (value != "[]")
                source += Time(text.substr(behind, end - behind));
            if (behind == text.size())
                return true;
            at = end;
        }
    }

private:
    static std::size_t Match(const std::string &text, std::size_t at)
    {
        const char opening = text[at], closing = opening == '(' ? ')' : ']';
        for (std::size_t i = at + 1; i < text.size(); ++i) {
            if (text[i] == opening)
                i = Match(text, i);
            else if (text[i] == closing)
                return i;
        }
        return text.size();
    }
    static std::size_t EndOfDigits(const std::string &text, std::size_t at)
    {
        return std::min(text.find_first_not_of("0123456789", at), text.size());
    }
    static std::size_t EndOfTime(const std::string &text, std::size_t at)
    {
        at = EndOfDigits(text, at);
        if (at < text.size() && text[at] == '.')
            at = EndOfDigits(text, at + 1);
        for (const char *unit : {"FS", "PS", "NS", "US", "MS", "HR"}) {
            if (text.compare(at, 2, unit) == 0)
                return at + 2;
        }
        return at;
    }
    static std::string Hex(const std::string &digits)
    {
        TKc_decConverter converter;
        if (!converter.Convert(digits.c_str(), 16))
            return "";
        char text[16];
        std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(converter.GetValue()));
        return text;
    }
    static std::string Time(const std::string &time)
    {
        if (time.empty())
            return "-1fs";
        double number = 0.0;
        int unit = -1;
        const std::size_t end = std::min(time.find_first_not_of("0123456789."), time.size());
        number = tesk::TextToDouble(time.substr(0, end).c_str());
        unit = end < time.size() ? tesk::UnitIDFromName(time.c_str() + end) : 2;
        while (number != std::trunc(number) && unit >= 2) {
            number *= unit < 6 ? 1000 : 60;
            --unit;
        }
        const std::string name = tesk::UnitNameFromID(static_cast<unsigned>(unit));
        return std::to_string(static_cast<long long>(number)) + (name == "ns" ? "" : name);
    }
};

TEST(BrelItems, AgreeWithASecondReader)
{
    std::mt19937 random(1);
    int read = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::string text = RandomBrelText(random, 40);
        CBrelFormula formula;
        std::string expected;
        const bool isRead = CSecondReader::Read(text, expected);
        ASSERT_EQ(formula.Parse(text.c_str()), isRead) << text;
        SimpleString::CStr source;
        ASSERT_TRUE(formula.GetSource(source)) << text;
        ASSERT_EQ(std::string(source), expected) << text;
        read += isRead;
    }
    EXPECT_GT(read, 2000);
}

}  // namespace
