#include "settings/text/fields.h"

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Fields(std::string_view text, char separator)
{
    std::vector<std::string> fields;
    while (const auto field = tesk::TakeField(text, separator))
        fields.emplace_back(*field);
    return fields;
}

TEST(TakeField, CutsAtTheSeparator)
{
    EXPECT_THAT(Fields("a;bc;d", ';'), ElementsAre("a", "bc", "d"));
}

TEST(TakeField, KnowsNoEmptyFields)
{
    EXPECT_THAT(Fields(";;a;;;b;", ';'), ElementsAre("a", "b"));
}

TEST(TakeField, FindsNothingInATextOfSeparators)
{
    EXPECT_THAT(Fields("", ';'), IsEmpty());
    EXPECT_THAT(Fields(";;;", ';'), IsEmpty());
}

TEST(TakeField, LeavesWhatStandsBehindTheSeparator)
{
    std::string_view rest = ":a::b:";
    EXPECT_EQ(tesk::TakeField(rest, ':'), "a");
    EXPECT_EQ(rest, ":b:");
}

TEST(TakeField, AgreesWithStrtok)
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 12, ' ');
        for (char &c : text)
            c = ";ab"[random() % 3];
        std::vector<std::string> expected;
        std::string copy = text;
        for (char *token = std::strtok(copy.data(), ";"); token != nullptr; token = std::strtok(nullptr, ";"))
            expected.emplace_back(token);
        ASSERT_EQ(Fields(text, ';'), expected) << text;
    }
}

}  // namespace
