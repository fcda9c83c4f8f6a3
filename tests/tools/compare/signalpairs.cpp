// Which signals of two files are the same.
#include "tools/compare/signalpairs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/commandline.h"
#include "tools/compare/memoryfile.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

struct SNamed {
    std::string path;
    std::string type = NineStates;
    tesk::EComparedKind kind = tesk::EComparedKind::Levels;
};

std::vector<tesk::SFileSignal> SignalsOf(const std::vector<SNamed> &named)
{
    std::vector<tesk::SFileSignal> signals;
    for (const SNamed &signal : named) {
        const Kestrin::KTypeInfo type(signal.type.c_str());
        signals.push_back({signal.path, type, 0, type.GetNbOfElements()});
    }
    return signals;
}

std::vector<tesk::EComparedKind> KindsOf(const std::vector<SNamed> &named)
{
    std::vector<tesk::EComparedKind> kinds;
    for (const SNamed &signal : named)
        kinds.push_back(signal.kind);
    return kinds;
}

tesk::SSignalPairs Pair(const std::vector<SNamed> &expected, const std::vector<SNamed> &got,
                        const std::vector<tesk::SScopeMap> &scopes = {}, const std::vector<std::string> &globs = {})
{
    const std::vector<tesk::SFileSignal> expectedSignals = SignalsOf(expected);
    const std::vector<tesk::SFileSignal> gotSignals = SignalsOf(got);
    return tesk::PairSignals({expectedSignals, KindsOf(expected)}, {gotSignals, KindsOf(got)}, scopes, globs);
}

std::vector<std::string> Names(const tesk::SSignalPairs &found)
{
    std::vector<std::string> names;
    for (const tesk::SSignalPair &pair : found.pairs)
        names.push_back(pair.expectedName + '=' + pair.gotName);
    return names;
}

std::string Parts(const std::vector<tesk::SPairPart> &parts)
{
    std::string text;
    for (const tesk::SPairPart &part : parts)
        text += std::to_string(part.signal) + '.' + std::to_string(part.element) + '@' + std::to_string(part.slot) +
                'x' + std::to_string(part.count) + ' ';
    return text;
}

const std::string Four = VectorType(3, 0, NineStates);

}  // namespace

TEST(SignalPairs, AreFoundByNameInAnyOrderAndLetterCase)
{
    const auto found = Pair({{"tb.a"}, {"tb.Clk"}, {"tb.g(0).q"}}, {{"tb.g[0].Q"}, {"TB.CLK"}, {"tb.a"}});
    EXPECT_THAT(Names(found), ElementsAre("tb.a=tb.a", "tb.Clk=TB.CLK", "tb.g(0).q=tb.g[0].Q"));
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_THAT(found.additional, IsEmpty());
}

TEST(SignalPairs, GoByTheLettersWhereNamesDifferInThemOnly)
{
    EXPECT_THAT(Names(Pair({{"Sig"}, {"sig"}}, {{"sig"}, {"Sig"}})), ElementsAre("Sig=Sig", "sig=sig"));
    EXPECT_THAT(Names(Pair({{"SIG"}, {"sig"}}, {{"sig"}, {"Sig"}})), ElementsAre("sig=sig", "SIG=Sig"));
}

TEST(SignalPairs, TellWhatOneSideHasOnly)
{
    const auto found = Pair({{"a"}, {"b"}}, {{"b"}, {"c"}});
    EXPECT_THAT(Names(found), ElementsAre("b=b"));
    EXPECT_THAT(found.missing, ElementsAre("a"));
    EXPECT_THAT(found.additional, ElementsAre("c"));
}

TEST(SignalPairs, LieBelowTheScopesThatAreMapped)
{
    const std::vector<SNamed> expected = {{"tb.dut.a"}, {"tb.dut.sub.b"}, {"tb.clk"}, {"tb.dut2.c"}};
    const std::vector<SNamed> got = {{"top.u.sub.b"}, {"top.u.a"}, {"other"}};
    const auto found = Pair(expected, got, {{"tb.dut", "TOP.u"}});
    EXPECT_THAT(Names(found), ElementsAre("tb.dut.a=top.u.a", "tb.dut.sub.b=top.u.sub.b"));
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_THAT(found.additional, IsEmpty());
    EXPECT_THAT(Names(Pair({{"a"}}, {{"top.a"}}, {{"", "top"}})), ElementsAre("a=top.a"));
    EXPECT_THAT(Names(Pair({{"tb.a"}}, {{"tb.z"}}, {{"tb.a", "tb.z"}})), ElementsAre("tb.a=tb.z"));
}

TEST(SignalPairs, PutABusTogetherFromItsBits)
{
    const auto found = Pair({{"tb.v", Four}}, {{"tb.V[0]"}, {"tb.V(1)"}, {"tb.V[3]"}, {"tb.V[2]"}});
    ASSERT_THAT(Names(found), ElementsAre("tb.v=tb.v"));
    EXPECT_EQ(Parts(found.pairs[0].expected), "0.0@0x4 ");
    EXPECT_EQ(Parts(found.pairs[0].got), "2.0@0x1 3.0@1x1 1.0@2x1 0.0@3x1 ");
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_THAT(found.additional, IsEmpty());
}

// As a netlist has them, in a dump of Verilog.
TEST(SignalPairs, PutABusTogetherFromBitsThatAreExtendedIdentifiers)
{
    const auto found = Pair({{"tb.v", VectorType(1, 0, NineStates)}}, {{"tb.\\v[0]\\"}, {"tb.\\v[1]\\"}});
    ASSERT_THAT(Names(found), ElementsAre("tb.v=tb.v"));
    EXPECT_EQ(Parts(found.pairs[0].got), "1.0@0x1 0.0@1x1 ");
    const auto other = Pair({{"tb.\\V[0]\\"}, {"tb.\\v[1]\\"}}, {{"tb.v", VectorType(1, 0, NineStates)}}, {}, {"tb.v"});
    EXPECT_THAT(Names(other), ElementsAre("tb.V=tb.V"));
    EXPECT_EQ(tesk::PlainName("tb.\\a.b\\"), "tb.\\a.b\\");
    EXPECT_EQ(tesk::PlainName("tb.\\a+b[1]\\"), "tb.\\a+b[1]\\");
    EXPECT_EQ(tesk::PlainName("\\v[1]\\"), "v[1]");
    EXPECT_EQ(tesk::PlainName("\\"), "\\");
}

TEST(SignalPairs, PutABusTogetherFromItsParts)
{
    const auto found = Pair({{"v", VectorType(3, 2, NineStates)}, {"v", VectorType(1, 0, NineStates)}}, {{"v", Four}});
    ASSERT_THAT(Names(found), ElementsAre("v=v"));
    EXPECT_EQ(Parts(found.pairs[0].expected), "0.0@0x2 1.0@2x2 ");
    EXPECT_EQ(Parts(found.pairs[0].got), "0.0@0x4 ");
}

TEST(SignalPairs, CompareFromLeftToRightWhereTheRangesDiffer)
{
    const auto found = Pair({{"v", Four}}, {{"v", VectorType(0, 3, NineStates)}});
    ASSERT_THAT(Names(found), ElementsAre("v=v"));
    EXPECT_EQ(Parts(found.pairs[0].got), "0.0@0x4 ");
}

TEST(SignalPairs, TellTheBitsThatOneSideLacks)
{
    const auto found = Pair({{"v", Four}}, {{"v", VectorType(4, 1, NineStates)}, {"w"}});
    ASSERT_THAT(Names(found), ElementsAre("v=v"));  // of one width
    const auto narrow = Pair({{"v", Four}}, {{"v", VectorType(4, 2, NineStates)}});
    ASSERT_THAT(Names(narrow), ElementsAre("v=v"));
    EXPECT_EQ(Parts(narrow.pairs[0].expected), "0.0@0x2 ");
    EXPECT_THAT(narrow.missing, ElementsAre("v[0]", "v[1]"));
    EXPECT_THAT(narrow.additional, ElementsAre("v[4]"));
}

TEST(SignalPairs, TakeAnIntegerForAVector)
{
    const auto found = Pair({{"n", Integers, tesk::EComparedKind::Integer}}, {{"n", VectorType(31, 0, NineStates)}});
    ASSERT_THAT(Names(found), ElementsAre("n=n"));
    EXPECT_EQ(found.pairs[0].form, (tesk::SComparedForm{tesk::EComparedKind::Levels, 32}));
}

TEST(SignalPairs, TellWhatCannotBeCompared)
{
    const auto found = Pair({{"r", Reals, tesk::EComparedKind::Real}}, {{"r"}});
    ASSERT_EQ(found.unlike.size(), 1U);
    EXPECT_EQ(found.unlike[0].expectedType, "real");
    EXPECT_EQ(found.unlike[0].gotType, "std_logic");
}

TEST(SignalPairs, AreThoseOfTheGlobs)
{
    const std::vector<SNamed> expected = {{"tb.a"}, {"tb.v", Four}, {"tb.only"}};
    const std::vector<SNamed> got = {{"x.a"}, {"x.v[0]"}, {"x.v[1]"}, {"x.v[2]"}, {"x.v[3]"}, {"x.extra"}};
    const std::vector<tesk::SScopeMap> scopes = {{"tb", "x"}};
    const auto found = Pair(expected, got, scopes, {"tb.v", "*none"});
    EXPECT_THAT(Names(found), ElementsAre("tb.v=x.v"));
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_THAT(found.additional, IsEmpty());
    EXPECT_THAT(found.unmatchedGlobs, ElementsAre("*none"));
    const auto bit = Pair(expected, got, scopes, {"tb.v[2]", "tb.e*"});
    ASSERT_THAT(Names(bit), ElementsAre("tb.v=x.v"));
    EXPECT_EQ(Parts(bit.pairs[0].expected), "1.1@0x1 ");
    EXPECT_THAT(bit.additional, ElementsAre("x.extra"));
}

TEST(SignalPairs, PairSignalsOfOneNameInTheirOrder)
{
    const auto found = Pair({{"a"}, {"a", Four}, {"a"}}, {{"a", Four}, {"a"}});
    EXPECT_THAT(Names(found), ElementsAre("a=a", "a=a"));
    EXPECT_EQ(found.pairs[0].got[0].signal, 1U);
    EXPECT_EQ(found.pairs[1].got[0].signal, 0U);
    EXPECT_THAT(found.missing, ElementsAre("a"));
}

TEST(ScopeMap, IsTwoNamesWithASignBetween)
{
    const tesk::SScopeMap scope = tesk::ReadScopeMap("tb.dut=top");
    EXPECT_EQ(scope.expected, "tb.dut");
    EXPECT_EQ(scope.got, "top");
    for (const char *text : {"", "tb", "a=b=c"})
        EXPECT_THROW(tesk::ReadScopeMap(text), CWrongUsage) << text;
}
