// Asking for a name fills the tables of a fresh process.
#include "settings/stiparser.h"
#include <gtest/gtest.h>

namespace {

TEST(FreshProcess, KnowsTheStrengthsAfterADialogWasAskedFor)
{
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), -1);
    EXPECT_STREQ(CStiParser::DialogName("CLK"), "Clock");
    EXPECT_EQ(CStiParser::StrengthValue("Drive"), 16);
}

}  // namespace
