// What the tests of the legacy gate-level notation share.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "settings/brel.h"

inline constexpr long long Ns = 1000000;  // femtoseconds

inline std::string BrelSource(const std::string &text)
{
    CBrelFormula formula;
    EXPECT_TRUE(formula.Parse(text.c_str())) << text;
    SimpleString::CStr source;
    EXPECT_TRUE(formula.GetSource(source)) << text;
    return std::string(source);
}

inline long long BrelDuration(const std::string &text)
{
    CBrelFormula formula;
    EXPECT_TRUE(formula.Parse(text.c_str())) << text;
    return formula.GetDuration();
}

/// Bytes that are likely to be a formula.
inline std::string RandomBrelText(std::mt19937 &random, std::size_t longest)
{
    const std::string alphabet = "(((()))))[[]]HLX01234.5 NSPMUFR ";
    std::string text;
    for (std::size_t i = random() % longest; i > 0; --i)
        text += alphabet[random() % alphabet.size()];
    return text;
}
