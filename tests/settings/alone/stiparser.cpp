// What stimulator information does in a process that has not asked for any name yet. The tests depend on their order.
#include "settings/stiparser.h"

#include <string>

#include <gtest/gtest.h>

namespace {

std::string StrengthOf(const char *text)
{
    CStiParser info;
    EXPECT_TRUE(info.Init(text)) << text;
    return info.GetStrength(nullptr);
}

// Deliberate: neither of the two runs InitResources.
TEST(FreshProcess, KnowsNoStrength)
{
    for (const char *name : {"Default", "Override", "Deposit", "Drive", ""})
        EXPECT_EQ(CStiParser::StrengthValue(name), -1) << name;
    int value = 0;
    CStiParser().GetStrength(&value);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), -1);
}

TEST(FreshProcess, LearnsNothingFromValuesThatAreRefused)
{
    CStiParser info;
    EXPECT_FALSE(info.Init("VAL", 2, 16, "d", "i", true, ""));
    EXPECT_FALSE(info.Init("VAL", 0, -1, "d", "i", true, ""));
    EXPECT_FALSE(info.Init("A:FRM"));
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), -1);
}

// Deliberate: the first text that is read fills the tables too late for itself.
TEST(FreshProcess, TurnsTheFirstStrengthIntoOverride)
{
    EXPECT_EQ(StrengthOf("A:FRM:Drive"), "Override");
    EXPECT_EQ(StrengthOf("A:FRM:Drive"), "Drive");
}

TEST(FreshProcess, KnowsTheStrengthsFromThenOn)
{
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), 16);
    CStiParser::InitResources();
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), 16);
}

}  // namespace
