#include "core/tokenizer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/plain/tokenviews.h"

using SimpleString::CStr;

namespace {

struct STaken {
    std::string token;
    std::string rest;
};

STaken Take(const char *text)
{
    CStr rest(text);
    const CStr token = NextToken(rest, ParserOpen, ParserClose, TokenBlanks);
    return {std::string(token), std::string(rest)};
}

}  // namespace

TEST(NextToken, TakesAWordOrAGroup)
{
    const struct {
        const char *text;
        const char *token;
        const char *rest;
    } rows[] = {
        {"  (a b) c", "(a b)", " c"},
        {"(a b", "(a b", ""},
        {"one two", "one", " two"},
        {"\n\t one\ttwo", "one", "\ttwo"},
        {"one", "one", ""},
        {"", "", ""},
        {" \n\t", "", ""},
        {"(a (b) c) d", "(a (b) c)", " d"},
        {"((a b", "((a b", ""},
        {"((a) b) c", "((a) b)", " c"},
        {"\"a b\" c", "\"a b\"", " c"},
        {"'a b' c", "'a b'", " c"},
        {"\"a (b\" c", "\"a (b\"", " c"},
        {"(a \") b\" c", "(a \")", " b\" c"},  // deliberate: only the outer opener is tracked
        {"a(b c)", "a(b", " c)"},
        {") b", ")", " b"},
        {"\"\"x", "\"\"", "x"},
        {"[a b]", "[a", " b]"},  // no group here
    };
    for (const auto &row : rows) {
        const STaken taken = Take(row.text);
        EXPECT_EQ(taken.token, row.token) << row.text;
        EXPECT_EQ(taken.rest, row.rest) << row.text;
    }
}

TEST(NextToken, IsEmptyWithoutSets)
{
    for (const char *nothing : {"", static_cast<const char *>(nullptr)}) {
        CStr text(" a b");
        EXPECT_STREQ(NextToken(text, nothing, ParserClose, TokenBlanks), "");
        EXPECT_STREQ(text, "a b");  // the blanks in front are gone all the same
        EXPECT_STREQ(NextToken(text, ParserOpen, nothing, TokenBlanks), "");
        EXPECT_STREQ(NextToken(text, ParserOpen, ParserClose, nothing), "");
        EXPECT_STREQ(text, "a b");
    }
}

TEST(NextToken, TakesAnOpenerWithoutACloserInTheSetForAWord)
{
    CStr text("(a b) c");
    EXPECT_STREQ(NextToken(text, "[(", "]", " "), "(a");
}

TEST(PeekToken, LeavesTheTextAlone)
{
    const CStr text(" one two");
    EXPECT_STREQ(PeekToken(text, ParserOpen, ParserClose, TokenBlanks), "one");
    EXPECT_STREQ(text, " one two");
}

TEST(SplitChunk, TakesEverythingUpToTheStop)
{
    const struct {
        const char *text;
        const char *between;
        const char *behind;
        const char *rest;
    } rows[] = {
        {"1 10ns,0 20ns", "1 10ns", "1 10ns ", "0 20ns"},
        {"1  10ns\t5,,, 0", "1 10ns 5", "1 10ns 5 ", " 0"},
        {"(1,0) 5ns,x", "(1,0) 5ns", "(1,0) 5ns ", "x"},
        {",a", "", "", "a"},
        {"a ,b", "a b", "a b ", ""},  // deliberate: behind a blank a stop is skipped with the blanks
        {"a ", "a ", "a  ", ""},      // an empty last token
        {"", "", "", ""},
    };
    for (const auto &row : rows) {
        CStr text(row.text);
        EXPECT_STREQ(SplitChunk(text, ",", ParserOpen, ParserClose, TokenBlanks), row.between) << row.text;
        EXPECT_STREQ(text, row.rest) << row.text;
        text = row.text;
        EXPECT_STREQ(SplitChunk(text, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BehindEveryToken), row.behind)
            << row.text;
    }
}

TEST(SplitChunk, EndsWithoutSets)
{
    CStr text("abc");
    EXPECT_STREQ(SplitChunk(text, ",", "", "", ""), "");
    text = "abc";
    EXPECT_STREQ(SplitChunk(text, nullptr, nullptr, nullptr, nullptr), "");
}

TEST(Tokeniser, LosesNoTokenOfAnyText)  // what tokens hold and what stands between them make up the text
{
    std::mt19937 random(1);
    constexpr char Alphabet[] = "ab ,()\"'\n\t[]1";
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (auto i = random() % 30; i > 0; --i)
            text += Alphabet[random() % (sizeof Alphabet - 1)];
        std::string_view rest = text;
        std::string rebuilt;
        while (!rest.empty()) {
            const std::string_view before = rest;
            const std::string_view token = tesk::TakeToken(rest, ParserOpen, ParserClose, TokenBlanks);
            ASSERT_LT(rest.size(), before.size());
            rebuilt += before.substr(0, before.size() - rest.size() - token.size());
            rebuilt += token;
        }
        ASSERT_EQ(rebuilt, text);
    }
}
