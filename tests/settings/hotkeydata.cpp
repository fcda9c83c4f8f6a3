#include <random>
#include <string>

#include "settings/stiparser.h"
#include <gtest/gtest.h>

namespace {

using SimpleString::CStr;

TEST(HotKeyData, IsKeyAndStimulator)
{
    CStr text("old");
    MergeHotKeyData(65, "force", text);
    EXPECT_STREQ(text, "65/force");
    MergeHotKeyData(0, "", text);
    EXPECT_STREQ(text, "0/");
    MergeHotKeyData(static_cast<unsigned long>(-1), "1 0ns, 0 10ns", text);
    EXPECT_STREQ(text, "-1/1 0ns, 0 10ns");
}

TEST(HotKeyData, MayBeMergedIntoItsOwnText)
{
    CStr text("force");
    MergeHotKeyData(65, text, text);
    EXPECT_STREQ(text, "65/force");
}

TEST(HotKeyData, IsReadUpToAFurtherSlash)
{
    const struct {
        const char *text;
        unsigned long key;
        const char *data;
    } rows[] = {{"65/force", 65, "force"},
                {"65/force/x", 65, "force"},
                {"//65///force//", 65, "force"},
                {" 65x/ f", 65, " f"},
                {"x/y", 0, "y"},
                {"-1/y", static_cast<unsigned long>(-1), "y"}};
    for (const auto &row : rows) {
        unsigned long key = 7;
        CStr data("old");
        EXPECT_TRUE(ParseHotKeyData(row.text, &key, data)) << row.text;
        EXPECT_EQ(key, row.key) << row.text;
        EXPECT_STREQ(data, row.data) << row.text;
    }
}

TEST(HotKeyData, WithoutAStimulatorFailsButTellsTheKey)
{
    for (const char *text : {"65", "65/", "/65//"}) {
        unsigned long key = 7;
        CStr data("old");
        EXPECT_FALSE(ParseHotKeyData(text, &key, data)) << text;
        EXPECT_EQ(key, 65ul) << text;
        EXPECT_STREQ(data, "") << text;
    }
}

TEST(HotKeyData, WithoutAnythingFails)
{
    for (const char *text : {"", "/", "///", static_cast<const char *>(nullptr)}) {
        unsigned long key = 7;
        CStr data("old");
        EXPECT_FALSE(ParseHotKeyData(text, &key, data));
        EXPECT_EQ(key, 7ul);
        EXPECT_STREQ(data, "");
    }
}

TEST(HotKeyData, NeedsNoPlaceForTheKey)
{
    CStr data;
    EXPECT_TRUE(ParseHotKeyData("65/force", nullptr, data));
    EXPECT_STREQ(data, "force");
}

TEST(HotKeyData, MayBeReadIntoItsOwnText)
{
    CStr text("65/force");
    unsigned long key = 0;
    EXPECT_TRUE(ParseHotKeyData(text, &key, text));
    EXPECT_EQ(key, 65ul);
    EXPECT_STREQ(text, "force");
}

TEST(HotKeyData, ReadsBack)
{
    std::mt19937_64 random(3);
    for (int round = 0; round < 1000; ++round) {
        const unsigned long key = static_cast<unsigned long>(random() >> random() % 64);
        CStr text, data;
        MergeHotKeyData(key, "force", text);
        unsigned long again = 0;
        ASSERT_TRUE(ParseHotKeyData(text, &again, data)) << text;
        ASSERT_EQ(again, key);
    }
}

TEST(HotKeyData, SurvivesAMegabyteOfAnything)
{
    constexpr std::size_t Size = 1 << 20;
    std::mt19937 random(4);
    std::string noise(Size, ' ');
    for (char &c : noise)
        c = static_cast<char>(random() % 255 + 1);
    for (const std::string &text : {noise, std::string(Size, '/'), std::string(Size, '9'), std::string(Size, '%')}) {
        unsigned long key = 0;
        CStr data;
        ParseHotKeyData(text.c_str(), &key, data);
        MergeHotKeyData(key, text.c_str(), data);
        EXPECT_GT(data.GetLength(), static_cast<int>(Size));
    }
}

}  // namespace
