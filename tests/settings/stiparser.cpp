#include "settings/stiparser.h"

#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using SimpleString::CStr;
using testing::Each;
using testing::ElementsAre;
using testing::IsNull;

// As a caller does that wants the names of strengths honoured.
class StimulatorInfo : public testing::Test {
protected:
    StimulatorInfo() { CStiParser::InitResources(); }
};

using StimulatorInfoFromText = StimulatorInfo;
using StimulatorInfoFromValues = StimulatorInfo;
using StimulatorInfoAssignment = StimulatorInfo;

std::vector<const char *> RawFields(const CStiParser &info)
{
    return {info.GetDialogID(),   info.GetStimType(nullptr), info.GetStrength(nullptr), info.GetDialogData(),
            info.GetInfoString(), info.GetActive(nullptr),   info.GetStimStates()};
}

// The seven fields; "-" for null.
std::vector<std::string> Fields(const CStiParser &info)
{
    std::vector<std::string> fields;
    for (const char *field : RawFields(info))
        fields.emplace_back(field != nullptr ? field : "-");
    return fields;
}

CStiParser InfoOf(const std::string &text)
{
    CStiParser info;
    EXPECT_TRUE(info.Init(text.c_str())) << text;
    return info;
}

// The text form; "-" if there is none.
std::string Merged(const CStiParser &info)
{
    CStr text("old");
    return info.MergeStimInfo(text) ? static_cast<const char *>(text) : "-";
}

constexpr const char *Example = "FRM:FRM:Drive:\"a:b\":info:1:10ns;20ns";

TEST_F(StimulatorInfo, OfANewObjectIsNull)
{
    const CStiParser info;
    EXPECT_THAT(RawFields(info), Each(IsNull()));
    int type = 7, strength = 7;
    bool active = true;
    info.GetStimType(&type);
    info.GetStrength(&strength);
    info.GetActive(&active);
    EXPECT_EQ(type, -1);
    EXPECT_EQ(strength, -1);
    EXPECT_FALSE(active);
}

TEST_F(StimulatorInfoFromText, HasSevenFields)
{
    const CStiParser info = InfoOf(Example);
    EXPECT_THAT(Fields(info), ElementsAre("FRM", "FRM", "Drive", "\"a:b\"", "info", "1", "10ns;20ns"));
    int type = 7, strength = 7;
    bool active = false;
    EXPECT_STREQ(info.GetStimType(&type), "FRM");
    EXPECT_STREQ(info.GetStrength(&strength), "Drive");
    EXPECT_STREQ(info.GetActive(&active), "1");
    EXPECT_EQ(type, 0);
    EXPECT_EQ(strength, 16);
    EXPECT_TRUE(active);
}

TEST_F(StimulatorInfoFromText, IsSplitAtRunsOfColons)
{
    const struct {
        const char *text;
        std::vector<std::string> fields;
    } rows[] = {
        {"A:FRM:Drive", {"A", "FRM", "Drive", "", "", "0", ""}},
        {"A:FRM:Drive:data", {"A", "FRM", "Drive", "data", "", "0", ""}},
        {"A:FRM:Drive:data:info:1:s:t", {"A", "FRM", "Drive", "data", "info", "1", "s"}},
        {"A:FRM:Drive::info:1:", {"A", "FRM", "Drive", "info", "1", "0", ""}},
        {"::A:::FRM::Drive::data::info::x::s::", {"A", "FRM", "Drive", "data", "info", "x", "s"}},
        {" \t\nA: FRM:\v\fDrive: data: info: 1: s ", {"A", "FRM", "Drive", " data", " info", " 1", " s "}},
        {"A : :drive", {"A ", "", "drive", "", "", "0", ""}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Fields(InfoOf(row.text)), row.fields) << row.text;
}

TEST_F(StimulatorInfoFromText, LetsQuotedDataRunAcrossColons)
{
    const struct {
        const char *text;
        std::vector<std::string> rest;
    } rows[] = {
        {"\"a:b:c\":info:1:s", {"\"a:b:c\"", "info", "1", "s"}},
        {"\"a\":info", {"\"a\"", "info", "0", ""}},
        {"\"a::b\"::info", {"\"a::b\"", "info", "0", ""}},
        {"\":a\":info", {"\"", "a\"", "info", ""}},  // a lone quote is closed already
        {"\"a:\":info", {"\"a:\"", "info", "0", ""}},
        {"\"a\"b:c:info", {"\"a\"b:c:info", "", "0", ""}},
        {"\"a\"b:c\":info", {"\"a\"b:c\"", "info", "0", ""}},
        {"\"a:b", {"\"a:b", "", "0", ""}},
        {"\"a:b:", {"\"a:b:", "", "0", ""}},
        {"\"a::", {"\"a::", "", "0", ""}},
        {"\"a", {"\"a", "", "0", ""}},
        {"a\":b\":1", {"a\"", "b\"", "1", ""}},
        {" \"a:b\":1", {" \"a", "b\"", "1", ""}},  // white space in front: no quote
        {"::\"a:b\":i", {"\"a:b\"", "i", "0", ""}},
    };
    for (const auto &row : rows) {
        const std::vector<std::string> fields = Fields(InfoOf(std::string("A:FRM:Drive:") + row.text));
        EXPECT_EQ(std::vector(fields.begin() + 3, fields.end()), row.rest) << row.text;
    }
}

TEST_F(StimulatorInfoFromText, NeedsThreeFieldsAndKeepsThoseInFront)
{
    const struct {
        const char *text;
        std::vector<std::string> fields;
    } rows[] = {{"A:FRM", {"A", "FRM", "-", "-", "-", "-", "-"}},
                {" A::", {"A", "-", "-", "-", "-", "-", "-"}},
                {":::", {"-", "-", "-", "-", "-", "-", "-"}}};
    for (const auto &row : rows) {
        CStiParser info = InfoOf(Example);
        EXPECT_FALSE(info.Init(row.text)) << row.text;
        EXPECT_EQ(Fields(info), row.fields) << row.text;
        EXPECT_EQ(Merged(info), "-") << row.text;
    }
}

TEST_F(StimulatorInfoFromText, StaysAsItIsForANullOrEmptyText)
{
    CStiParser info = InfoOf(Example);
    EXPECT_FALSE(info.Init(nullptr));
    EXPECT_FALSE(info.Init(""));
    EXPECT_EQ(Merged(info), Example);
}

TEST_F(StimulatorInfoFromText, MayComeFromItsOwnFields)
{
    CStiParser info = InfoOf("A:FRM:Drive:\"B:KEY:Deposit\":info:1:s");
    EXPECT_TRUE(info.Init(info.GetDialogData() + 1));
    EXPECT_THAT(Fields(info), ElementsAre("B", "KEY", "Override", "", "", "0", ""));  // the strength is Deposit"
    EXPECT_FALSE(info.Init(info.GetDialogID()));
    EXPECT_STREQ(info.GetDialogID(), "B");
}

TEST_F(StimulatorInfoFromText, TurnsDefaultAndUnknownStrengthsIntoOverride)
{
    for (const char *strength : {"Default", "default", "Bogus", " ", "Over ride", "Drive ", "16"}) {
        const CStiParser info = InfoOf(std::string("A:FRM:") + strength + ":data");
        int value = 0;
        EXPECT_STREQ(info.GetStrength(&value), "Override") << strength;
        EXPECT_EQ(value, 1) << strength;
    }
}

TEST_F(StimulatorInfoFromText, KeepsKnownStrengthsAsWritten)
{
    for (const char *strength : {"Override", "OVERRIDE", "deposit", "Drive"})
        EXPECT_STREQ(InfoOf(std::string("A:FRM:") + strength).GetStrength(nullptr), strength);
}

TEST_F(StimulatorInfoFromText, TellsTheTypeIgnoringCase)
{
    const struct {
        const char *name;
        int type;
    } rows[] = {{"FRM", 0}, {"frm", 0}, {"key", 1}, {"Key", 1}, {"CLK", -1}, {"FRMX", -1}, {"FR", -1}};
    for (const auto &row : rows) {
        int type = 7;
        EXPECT_STREQ(InfoOf(std::string("A:") + row.name + ":Drive").GetStimType(&type), row.name);
        EXPECT_EQ(type, row.type) << row.name;
    }
}

TEST_F(StimulatorInfoFromText, IsActiveForAnyNumberButZero)
{
    const struct {
        const char *field;
        bool active;
    } rows[] = {{"1", true}, {"0", false}, {"-2", true}, {" 5x", true}, {"x", false}, {"0.5", false}, {"00", false}};
    for (const auto &row : rows) {
        bool active = !row.active;
        InfoOf(std::string("A:FRM:Drive:d:i:") + row.field).GetActive(&active);
        EXPECT_EQ(active, row.active) << row.field;
    }
}

TEST_F(StimulatorInfoFromValues, HasSevenFields)
{
    CStiParser info;
    EXPECT_TRUE(info.Init("CLK", 1, 8, "data", "info", true, "10ns"));
    EXPECT_THAT(Fields(info), ElementsAre("CLK", "KEY", "Deposit", "data", "info", "1", "10ns"));
    EXPECT_TRUE(info.Init("", 0, 512, "", "", false, ""));
    EXPECT_THAT(Fields(info), ElementsAre("", "FRM", "Default", "", "", "0", ""));
}

TEST_F(StimulatorInfoFromValues, TakesNullForTheEmptyText)
{
    CStiParser info;
    EXPECT_TRUE(info.Init("VAL", 0, 1, "data", "info", true, nullptr));
    EXPECT_THAT(Fields(info), ElementsAre("VAL", "FRM", "Override", "data", "info", "1", ""));
    EXPECT_TRUE(info.Init(nullptr, 0, 1, nullptr, nullptr, true, nullptr));
    EXPECT_THAT(Fields(info), ElementsAre("", "FRM", "Override", "", "", "1", ""));
}

TEST_F(StimulatorInfoFromValues, RefusesAnUnknownTypeOrStrength)
{
    const struct {
        int type, strength;
    } rows[] = {{-1, 1}, {2, 1}, {INT_MAX, 1}, {INT_MIN, 1}, {0, -1}, {0, 0}, {0, 2}, {0, 511}, {1, INT_MIN}};
    for (const auto &row : rows) {
        CStiParser info = InfoOf(Example);
        EXPECT_FALSE(info.Init("VAL", row.type, row.strength, "d", "i", true, "s")) << row.type << " " << row.strength;
        EXPECT_EQ(Merged(info), Example);
    }
}

TEST_F(StimulatorInfoFromValues, MayComeFromItsOwnFields)
{
    CStiParser info = InfoOf(Example);
    EXPECT_TRUE(
        info.Init(info.GetInfoString(), 1, 8, info.GetStimStates(), info.GetDialogID(), false, info.GetDialogData()));
    EXPECT_THAT(Fields(info), ElementsAre("info", "KEY", "Deposit", "10ns;20ns", "FRM", "0", "\"a:b\""));
}

TEST_F(StimulatorInfo, IsMergedWithAColonBehindTheFirstSix)
{
    EXPECT_EQ(Merged(InfoOf(Example)), Example);
    EXPECT_EQ(Merged(InfoOf("A:FRM:Drive:d:i")), "A:FRM:Drive:d:i:0:");
    EXPECT_EQ(Merged(InfoOf("A:FRM:Drive")), "A:FRM:Drive:::0:");
}

TEST_F(StimulatorInfo, IsNotMergedWithoutItsFields)
{
    CStr text("old");
    EXPECT_FALSE(CStiParser().MergeStimInfo(text));
    EXPECT_STREQ(text, "old");
}

TEST_F(StimulatorInfo, ReadsBackEqualUnlessAFieldIsEmpty)
{
    const std::vector<std::string> pieces = {":", ":", ":",     ":FRM:", ":Drive:", "\"", " ", "a",
                                             "b", "1", "10ns;", "key",   "Deposit", "%s", "\\"};
    std::mt19937 random(1);
    int compared = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text = "A:FRM:Drive:";
        for (int i = 0; i < 10; ++i)
            text += pieces[random() % pieces.size()];
        CStiParser info;
        if (!info.Init(text.c_str()))
            continue;
        const std::vector<std::string> fields = Fields(info);
        if (std::find(fields.begin(), fields.begin() + 6, "") != fields.begin() + 6)
            continue;
        ++compared;
        const CStiParser again = InfoOf(Merged(info));
        ASSERT_TRUE(info == again) << text;
        ASSERT_EQ(Fields(again), fields) << text;
    }
    EXPECT_GT(compared, 1000);
}

// The fields cut out once more, with strtok in the text itself.
TEST_F(StimulatorInfoFromText, AgreesWithStrtok)
{
    const auto take = [](const char *absent) {
        const char *token = std::strtok(nullptr, ":");
        return std::string(token != nullptr ? token : absent);
    };
    const std::vector<std::string> pieces = {":", ":", ":", "\"", "\"", " ", "a", "bc"};
    std::mt19937 random(2);
    for (int round = 0; round < 20000; ++round) {
        std::string text = "A:B:Drive:";
        for (int i = 0; i < 12; ++i)
            text += pieces[random() % pieces.size()];
        std::string copy = text;
        std::vector<std::string> expected = {std::strtok(copy.data(), ":")};
        expected.push_back(take(""));
        expected.push_back(take(""));
        char *data = std::strtok(nullptr, ":");
        for (char *token = data; token != nullptr && *data == '"' && token[std::strlen(token) - 1] != '"';) {
            char *end = token + std::strlen(token);
            if (end != copy.data() + copy.size())
                *end = ':';
            token = std::strtok(nullptr, ":");
        }
        expected.emplace_back(data != nullptr ? data : "");
        expected.push_back(take(""));
        expected.push_back(take("0"));
        expected.push_back(take(""));
        ASSERT_EQ(Fields(InfoOf(text)), expected) << text;
    }
}

TEST_F(StimulatorInfoAssignment, BuildsTheSameInfo)
{
    CStiParser info;
    info = InfoOf(Example);
    EXPECT_EQ(Merged(info), Example);
}

TEST_F(StimulatorInfoAssignment, WritesTypeStrengthAndActiveAnew)
{
    CStiParser info;
    info = InfoOf("A:frm:drive:d:i:5:s");
    EXPECT_EQ(Merged(info), "A:FRM:Drive:d:i:1:s");
    info = InfoOf("A:kEy:DEPOSIT:d:i:x:s");
    EXPECT_EQ(Merged(info), "A:KEY:Deposit:d:i:0:s");
}

// Deliberate: what cannot be built is not assigned, and nobody is told.
TEST_F(StimulatorInfoAssignment, ChangesNothingForAnUnknownTypeOrMissingFields)
{
    CStiParser info = InfoOf(Example);
    info = InfoOf("A:CLK:Drive:d:i:1:s");
    EXPECT_EQ(Merged(info), Example);
    info = CStiParser();
    EXPECT_EQ(Merged(info), Example);
    CStiParser partial;
    EXPECT_FALSE(partial.Init("A:FRM"));
    info = partial;
    EXPECT_EQ(Merged(info), Example);
}

TEST_F(StimulatorInfoAssignment, ToItselfKeepsTheInfo)
{
    CStiParser info = InfoOf(Example);
    const CStiParser &same = info;
    info = same;
    EXPECT_EQ(Merged(info), Example);
}

TEST_F(StimulatorInfoAssignment, DoesNotShareItsTexts)
{
    CStiParser info;
    {
        const CStiParser other = InfoOf(Example);
        info = other;
    }
    EXPECT_EQ(Merged(info), Example);
}

TEST_F(StimulatorInfo, IsCopiedFieldByField)
{
    const auto info = std::make_unique<CStiParser>(InfoOf("A:CLK:drive:d:i:5:s"));
    const CStiParser copy(*info);
    const std::vector<std::string> fields = Fields(*info);
    EXPECT_TRUE(copy == *info);
    EXPECT_NE(copy.GetDialogID(), info->GetDialogID());

    CStiParser partial;
    EXPECT_FALSE(partial.Init("A:FRM"));
    EXPECT_THAT(Fields(CStiParser(partial)), ElementsAre("A", "FRM", "-", "-", "-", "-", "-"));
    EXPECT_THAT(RawFields(CStiParser(CStiParser())), Each(IsNull()));
}

TEST_F(StimulatorInfo, ComparesIgnoringCase)
{
    EXPECT_TRUE(InfoOf("a:frm:DRIVE:d:i:1:10NS") == InfoOf("A:FRM:Drive:D:I:1:10ns"));
    EXPECT_TRUE(CStiParser() == CStiParser());
    EXPECT_FALSE(CStiParser() == InfoOf(Example));
    EXPECT_FALSE(InfoOf(Example) == CStiParser());
    for (const char *other :
         {"B:FRM:Drive:d:i:1:s", "A:KEY:Drive:d:i:1:s", "A:FRM:Deposit:d:i:1:s", "A:FRM:Drive:e:i:1:s",
          "A:FRM:Drive:d:j:1:s", "A:FRM:Drive:d:i:0:s", "A:FRM:Drive:d:i:1:t", "A:FRM:Drive:d:i:1"})
        EXPECT_FALSE(InfoOf("A:FRM:Drive:d:i:1:s") == InfoOf(other)) << other;
}

TEST_F(StimulatorInfo, SurvivesAMegabyteOfAnything)
{
    constexpr std::size_t Size = 1 << 20;
    std::mt19937 random(4);
    std::string noise(Size, ' ');
    for (char &c : noise)
        c = static_cast<char>(random() % 255 + 1);
    std::string quotes = "\"a";
    while (quotes.size() < Size)
        quotes += ":a";
    const std::vector<std::string> ends = {noise,
                                           quotes,
                                           std::string(Size, ':'),
                                           std::string(Size, '"'),
                                           std::string(Size, '\\'),
                                           std::string(Size, ' '),
                                           std::string(Size, '/')};
    for (const std::string &end : ends) {
        for (const char *front : {"", "A:FRM:Drive:", "A:FRM:Drive:\"", "A:FRM:Drive:d:i:"}) {
            CStiParser info;
            info.Init((front + end).c_str());
            Merged(info);
            CStiParser other(info);
            other = info;
            EXPECT_TRUE(other == info || other.GetDialogID() != nullptr);
        }
    }
}

}  // namespace
