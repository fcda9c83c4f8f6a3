#include "core/plain/tokenviews.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Tokens = std::vector<std::string>;

// Chunk by chunk.
std::vector<Tokens> TokensOf(std::string_view formula)
{
    std::vector<Tokens> chunks;
    while (!formula.empty()) {
        tesk::CChunkTokens chunk(formula);
        chunks.emplace_back();
        while (!chunk.IsAtEnd())
            chunks.back().emplace_back(chunk.Take());
        EXPECT_EQ(chunk.Take(), "");
        formula = chunk.Behind();
    }
    return chunks;
}

// The same out of the chunks joined to texts.
std::vector<Tokens> JoinedTokensOf(std::string_view formula)
{
    std::vector<Tokens> chunks;
    while (!formula.empty()) {
        const std::string chunk =
            tesk::TakeChunk(formula, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BehindEveryToken);
        chunks.emplace_back();
        for (std::string_view rest = chunk; !rest.empty();)
            chunks.back().emplace_back(tesk::TakeToken(rest, ParserOpen, ParserClose, TokenBlanks));
        // The blank behind the last token gives an empty one.
        if (!chunks.back().empty() && chunks.back().back().empty())
            chunks.back().pop_back();
    }
    return chunks;
}

std::vector<Tokens> WithoutEmptyEnds(std::vector<Tokens> chunks)
{
    for (Tokens &tokens : chunks) {
        while (!tokens.empty() && tokens.back().empty())
            tokens.pop_back();
    }
    return chunks;
}

TEST(ChunkTokens, AreThoseOfTheJoinedChunks)
{
    constexpr std::string_view Letters = "01a,, \t\n()\"'@-";
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string formula;
        for (auto length = random() % 16; length-- > 0;)
            formula += Letters[random() % Letters.size()];
        ASSERT_EQ(WithoutEmptyEnds(TokensOf(formula)), WithoutEmptyEnds(JoinedTokensOf(formula))) << formula;
    }
}

TEST(ChunkTokens, HaveABlankBehindAGroupThatIsNotClosed)
{
    EXPECT_EQ(TokensOf("1 (a,b"), (std::vector<Tokens>{{"1", "(a,b "}}));
}

TEST(ChunkTokens, GoOnBehindACommaWithABlankInFrontOfIt)
{
    EXPECT_EQ(TokensOf("1 0ns ,0 5ns,1"), (std::vector<Tokens>{{"1", "0ns", "0", "5ns"}, {"1"}}));
}

TEST(ChunkTokens, ArePeekedAtWithoutBeingTaken)
{
    tesk::CChunkTokens chunk("10 ns,1");
    EXPECT_EQ(chunk.Take(), "10");
    EXPECT_EQ(chunk.Peek(), "ns");
    EXPECT_EQ(chunk.Take(), "ns");
    EXPECT_EQ(chunk.Peek(), "");
    EXPECT_EQ(chunk.Behind(), "1");
}

}  // namespace
