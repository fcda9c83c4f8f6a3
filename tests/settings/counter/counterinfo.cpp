#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <random>
#include <string>

#include "settings/counter.h"

namespace {

using CInfo = tesk::CCounterStimulusInfo;

constexpr const char *GoodFormula = "\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1\\PERIOD\\10 ns\\REV\\0";

void SetAll(CInfo &info)
{
    info.SetType(CInfo::CounterBinary);
    info.SetDir(CInfo::DirUp);
    info.SetStartingValue("0");
    info.SetDisplayRadix(2);
    info.SetIncrementBy("1");
    info.SetCountPeriod("10 ns");
    info.SetReverseBitOrder(false);
}

std::string Formula(const CInfo &info)
{
    char text[1000] = "unchanged";
    const bool isWritten = info.GenerateFormula(text, sizeof text);
    return isWritten ? text : std::string("refused, text ") + text;
}

std::string Start(const CInfo &info)
{
    char text[100] = "?";
    return info.GetStartingValue(text, sizeof text) ? text : std::string("none ") + text;
}

std::string Period(const CInfo &info)
{
    char text[100] = "?";
    return info.GetCountPeriod(text, sizeof text) ? text : std::string("none ") + text;
}

// All settings in a row, unset ones too.
std::string Settings(const CInfo &info)
{
    char increment[100] = "?";
    info.GetIncrementBy(increment, sizeof increment);
    return std::to_string(info.GetType()) + "," + std::to_string(info.GetDir()) + "," +
           std::to_string(info.GetDisplayRadix()) + "," + Start(info) + "," + increment + "," + Period(info) + "," +
           (info.GetReverseBitOrder() ? "reverse" : "straight");
}

TEST(CounterSettings, AreUnsetWhenNew)
{
    EXPECT_EQ(Settings(CInfo()), "0,0,0,none ,,none ,straight");
}

TEST(CounterSettings, HaveTheNumbersOfTheirTypes)
{
    EXPECT_EQ(CInfo::CounterBinary, 1);
    EXPECT_EQ(CInfo::CounterGray, 2);
    EXPECT_EQ(CInfo::CounterJohnson, 3);
    EXPECT_EQ(CInfo::CounterCircularOne, 4);
    EXPECT_EQ(CInfo::CounterCircularZero, 5);
    EXPECT_EQ(CInfo::DirUp, 1);
}

TEST(CounterSettings, AreKept)
{
    CInfo info;
    SetAll(info);
    info.SetType(CInfo::CounterJohnson);
    info.SetDir(CInfo::DirDown);
    info.SetReverseBitOrder(true);
    EXPECT_EQ(Settings(info), "3,2,2,0,1,10 ns,reverse");
}

TEST(CounterSettings, AreCopiedWithTheObject)
{
    CInfo info;
    SetAll(info);
    CInfo copy(info);
    copy.SetStartingValue("1");
    copy.SetType(CInfo::CounterGray);
    EXPECT_EQ(Formula(info), GoodFormula);
    EXPECT_EQ(Start(copy), "1");
    EXPECT_NE(info.GetImpl(), copy.GetImpl());
}

TEST(CounterSettings, AreSharedAfterAnAssignment)  // deliberate
{
    CInfo info;
    SetAll(info);
    alignas(CInfo) unsigned char storage[sizeof(CInfo)];
    CInfo *reader = new (storage) CInfo;
    delete reader->GetImpl();
    *reader = info;
    EXPECT_EQ(reader->GetImpl(), info.GetImpl());
    info.SetStartingValue("1");
    EXPECT_EQ(Start(*reader), "1");  // `reader` is not destroyed: the settings belong to `info`
}

TEST(CounterSettings, DropAStartingValueThatIsNoNumberInANewRadix)
{
    const struct {
        const char *start;
        int radix;
        const char *kept;
    } rows[] = {
        {"12", 10, "12"},  {"12", 2, "none "},  {"12", 0, "12"},       {"12", 3, "none "},
        {"FF", 16, "FF"},  {"FF", 10, "none "}, {"16#FF", 2, "16#FF"}, {"-5", 10, "-5"},
        {"", 10, "none "}, {"777", 8, "777"},   {"-", 10, "none "},    {"12", -10, "none "},
    };
    for (const auto &row : rows) {
        CInfo info;
        info.SetStartingValue(row.start);
        info.SetDisplayRadix(row.radix);
        EXPECT_EQ(Start(info), row.kept) << row.start << " in " << row.radix;
        EXPECT_EQ(info.GetDisplayRadix(), row.radix);
    }
}

TEST(CounterSettings, TakeOnlyAPeriodWithAUnitAndOtherThanZero)
{
    for (const char *period : {"10ns", "1.5 us", "-3ps", "2 s"}) {
        CInfo info;
        info.SetCountPeriod(period);
        EXPECT_EQ(Period(info), period);
    }
    for (const char *period : {"", "10", "0ns", "0.0 us", "10 parsec", "+5ns", "1e3ns"}) {
        CInfo info;
        info.SetCountPeriod("7ns");
        info.SetCountPeriod(period);
        EXPECT_EQ(Period(info), "7ns") << period;
    }
    CInfo info;
    info.SetCountPeriod(nullptr);
    EXPECT_EQ(Period(info), "none ");
}

TEST(CounterSettings, AreGivenOutLikeStrncpy)
{
    CInfo info;
    info.SetStartingValue("1234");
    char text[8];
    std::memset(text, '?', sizeof text);
    EXPECT_TRUE(info.GetStartingValue(text, 4));  // no terminating zero
    EXPECT_EQ(std::string(text, 8), "1234????");
    EXPECT_TRUE(info.GetStartingValue(text, 0));
    EXPECT_EQ(std::string(text, 8), "1234????");
    EXPECT_TRUE(info.GetStartingValue(text, 8));
    EXPECT_EQ(std::string(text, 8), std::string("1234\0\0\0\0", 8));
    EXPECT_FALSE(info.GetIncrementBy(text, 2));
    EXPECT_EQ(std::string(text, 8), std::string("\0\00034\0\0\0\0", 8));
    EXPECT_TRUE(info.GetStartingValue(nullptr, 8));
    EXPECT_FALSE(info.GetCountPeriod(nullptr, 0));
}

TEST(CounterFormulaText, IsWrittenFromAllSettings)
{
    CInfo info;
    SetAll(info);
    EXPECT_EQ(Formula(info), GoodFormula);
    info.SetType(CInfo::CounterCircularZero);
    info.SetDir(CInfo::DirDown);
    info.SetDisplayRadix(16);
    info.SetStartingValue("16#a");
    info.SetIncrementBy("b");
    info.SetReverseBitOrder(true);
    EXPECT_EQ(Formula(info), "\\counter\\TYPE\\5\\DIR\\2\\RADIX\\16\\START\\16#a\\INC\\b\\PERIOD\\10 ns\\REV\\1");
}

TEST(CounterFormulaText, IsNotWrittenWhileSomethingIsUnset)
{
    void (*const unset[])(CInfo & info) = {
        [](CInfo &info) { info.SetType(CInfo::Type{}); },    [](CInfo &info) { info.SetDir(CInfo::Dir{}); },
        [](CInfo &info) { info.SetDisplayRadix(0); },        [](CInfo &info) { info.SetStartingValue(""); },
        [](CInfo &info) { info.SetStartingValue(nullptr); }, [](CInfo &info) { info.SetIncrementBy(""); },
    };
    for (const auto change : unset) {
        CInfo info;
        SetAll(info);
        change(info);
        EXPECT_EQ(Formula(info), "refused, text unchanged");
    }
    CInfo info;
    info.FromFormula("\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1");
    EXPECT_EQ(Formula(info), "refused, text unchanged");
}

TEST(CounterFormulaText, IsCutAtTheSizeOfTheBuffer)
{
    CInfo info;
    SetAll(info);
    char text[12] = "???????????";
    EXPECT_FALSE(info.GenerateFormula(text, 0));
    EXPECT_FALSE(info.GenerateFormula(nullptr, 12));
    EXPECT_TRUE(info.GenerateFormula(text, 8));
    EXPECT_STREQ(text, "\\counter???");
}

TEST(CounterFormulaText, ReadsBackTheSameSettings)
{
    for (const std::string &text : {std::string(GoodFormula), "\"" + std::string(GoodFormula) + "\""}) {
        CInfo info;
        EXPECT_TRUE(info.FromFormula(text.c_str())) << text;
        EXPECT_EQ(Formula(info), GoodFormula);
    }
}

TEST(CounterFormulaText, IsReadInAnyLetterCaseAndWithRunsOfBackslashes)
{
    CInfo info;
    EXPECT_TRUE(info.FromFormula(
        "COUNTER\\\\type\\\\3\\Dir\\2\\rAdIx\\10\\start\\12\\inc\\5\\period\\any thing\\rev\\-1\\more"));
    EXPECT_EQ(Settings(info), "3,2,10,12,5,any thing,reverse");
}

TEST(CounterFormulaText, KnowsTheRadixByNameOrNumber)
{
    const struct {
        const char *word;
        int radix;
    } rows[] = {
        {"hex", 16},
        {"dec", 10},
        {"octal", 8},
        {"binary", 2},
        {"HEX", 2},  // deliberate: a name in capitals is no
                     // number
        {"Dec", 2},
        {"16", 16},
        {"10", 10},
        {"8", 8},
        {"0", 2},
        {"x", 2},
        {"-3", -3},
        {"7up", 7},
    };
    for (const auto &row : rows) {
        CInfo info;
        const std::string text =
            std::string("\\counter\\TYPE\\1\\DIR\\1\\RADIX\\") + row.word + "\\START\\0\\INC\\1\\PERIOD\\1ns\\REV\\0";
        EXPECT_TRUE(info.FromFormula(text.c_str())) << row.word;
        EXPECT_EQ(info.GetDisplayRadix(), row.radix) << row.word;
    }
}

TEST(CounterFormulaText, StoresWhatItReadsBeforeAFault)
{
    const struct {
        const char *text, *settings;
    } rows[] = {
        {nullptr, "9,9,16,f,e,7ns,reverse"},
        {"", "9,9,16,f,e,7ns,reverse"},
        {"\"", "9,9,16,f,e,7ns,reverse"},
        {"\\count\\TYPE\\1", "9,9,16,f,e,7ns,reverse"},
        {" \\counter\\TYPE\\1", "9,9,16,f,e,7ns,reverse"},
        {"\\counter", "9,9,16,f,e,7ns,reverse"},
        {"\\counter\\TYPE", "9,9,16,f,e,7ns,reverse"},
        {"\\counter\\TYPE\\1", "1,9,16,f,e,7ns,reverse"},
        {"\\counter\\TYPE\\1\\RADIX\\2", "1,9,16,f,e,7ns,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2", "1,2,16,f,e,7ns,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\1\\START\\0", "1,2,16,f,e,7ns,reverse"},  // a radix of 1 is refused
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\8\\START", "1,2,8,f,e,7ns,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\8\\START\\0", "1,2,8,0,e,7ns,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\8\\START\\0\\INC\\3", "1,2,8,0,3,7ns,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\8\\START\\0\\INC\\3\\PERIOD\\soon", "1,2,8,0,3,soon,reverse"},
        {"\\counter\\TYPE\\1\\DIR\\2\\RADIX\\8\\START\\0\\INC\\3\\PERIOD\\soon\\REV", "1,2,8,0,3,soon,reverse"},
    };
    for (const auto &row : rows) {
        CInfo info;
        ASSERT_TRUE(info.FromFormula("counter\\TYPE\\9\\DIR\\9\\RADIX\\16\\START\\f\\INC\\e\\PERIOD\\7ns\\REV\\1"));
        EXPECT_FALSE(info.FromFormula(row.text)) << (row.text ? row.text : "null");
        EXPECT_EQ(Settings(info), row.settings) << (row.text ? row.text : "null");
    }
}

TEST(CounterFormulaText, SurvivesAnyBytes)
{
    const char *words[] = {"\\",     "counter", "TYPE", "DIR", "RADIX", "START", "INC",
                           "PERIOD", "REV",     "1",    "2",   "\"",    "10 ns", "x"};
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (int i = static_cast<int>(random() % 40); i > 0; --i)
            text += words[random() % std::size(words)];
        CInfo info;
        info.FromFormula(text.c_str());
        Formula(info);
    }
}

}  // namespace
