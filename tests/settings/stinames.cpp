// The names of strengths and dialogs.
#include <climits>

#include "settings/stiparser.h"
#include <gtest/gtest.h>

namespace {

TEST(StrengthNames, StandForFourValues)
{
    const struct {
        const char *name;
        int value;
    } rows[] = {{"Default", 512}, {"Override", 1}, {"Deposit", 8}, {"Drive", 16}};
    for (const auto &row : rows) {
        EXPECT_STREQ(CStiParser::StrengthName(row.value), row.name);
        EXPECT_EQ(CStiParser::StrengthValue(row.name), row.value);
    }
    for (const int value : {0, 2, -1, 511, INT_MIN, INT_MAX})
        EXPECT_EQ(CStiParser::StrengthName(value), nullptr) << value;
}

TEST(StrengthNames, AreReadIgnoringCase)
{
    CStiParser::InitResources();
    EXPECT_EQ(CStiParser::StrengthValue("DRIVE"), 16);
    EXPECT_EQ(CStiParser::StrengthValue("deFault"), 512);
    for (const char *name : {"", "Driv", "Drive ", "Bogus", static_cast<const char *>(nullptr)})
        EXPECT_EQ(CStiParser::StrengthValue(name), -1);
}

TEST(DialogNames, AreFoundByCodeIgnoringCase)
{
    const struct {
        const char *code, *name;
    } rows[] = {{"VAL", "Value"},  {"FRM", "Formula"}, {"CLK", "Clock"},  {"KEY", "Hotkey"}, {"PRD", "Predefined"},
                {"CST", "Custom"}, {"RND", "Random"},  {"rnd", "Random"}, {"Val", "Value"}};
    for (const auto &row : rows)
        EXPECT_STREQ(CStiParser::DialogName(row.code), row.name) << row.code;
    for (const char *code : {"", "XXX", "VALUE", "VA", static_cast<const char *>(nullptr)})
        EXPECT_EQ(CStiParser::DialogName(code), nullptr);
}

}  // namespace
