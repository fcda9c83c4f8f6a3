// Building from values fills the tables of a fresh process, also when the strength has no name.
#include "settings/stiparser.h"
#include <gtest/gtest.h>

namespace {

TEST(FreshProcess, KnowsTheStrengthsAfterAValueWasAskedFor)
{
    CStiParser info;
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), -1);
    EXPECT_FALSE(info.Init("VAL", 0, 2, "d", "i", true, ""));
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), 16);
}

}  // namespace
