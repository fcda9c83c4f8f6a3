#include "platform/vcd/vcdcodes.h"

#include <map>
#include <random>

namespace {

using NTARN::NImport::CVcdCodes;

TEST(VcdCodes, KnowWhatWasSetAndNothingElse)
{
    CVcdCodes codes;
    EXPECT_EQ(codes.Find("!"), CVcdCodes::None);
    codes["!"] = 5;
    EXPECT_EQ(codes.Find("!"), 5u);
    for (const char *other : {"", "\"", "!!", "!!!!", " ", "\x7F", "\x80"})
        EXPECT_EQ(codes.Find(other), CVcdCodes::None) << other;
}

TEST(VcdCodes, AgreeWithAMap)
{
    std::mt19937 random(1);
    CVcdCodes codes;
    std::map<std::string, std::uint32_t> model;
    for (std::uint32_t i = 0; i < 60000; ++i) {
        std::string code;
        for (unsigned length = 1 + static_cast<unsigned>(random() % 4); length > 0; --length)
            code += static_cast<char>(random() % 20 == 0 ? random() : '!' + random() % 94);
        const auto [found, isNew] = model.try_emplace(code, i);
        std::uint32_t &number = codes[code];
        ASSERT_EQ(number, isNew ? CVcdCodes::None : found->second);
        number = found->second;
    }
    for (const auto &[code, number] : model)
        ASSERT_EQ(codes.Find(code), number);
}

}  // namespace
