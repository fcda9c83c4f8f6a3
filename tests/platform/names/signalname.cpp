#include "platform/names/signalname.h"

#include <gtest/gtest.h>

namespace {

using NTARN::SpellSignalName;
using NTARN::VerilogName;
using tesk::ExtendedLength;

TEST(SignalName, IsSpelledAsAFormulaTakesIt)
{
    const struct {
        const char *name, *spelled;
    } rows[] = {
        {"clk", "clk"},           {"", ""},
        {"gen(0)", "gen[0]"},     {"m(3)(1)", "m[3][1]"},
        {"\\a+b", "\\a+b\\"},  // Verilog
        {"\\a(1)", "\\a[1]\\"},   {"\\a\\b", "\\a\\\\b\\"},
        {"\\", "\\\\"},           {"\\a+b\\", "\\a+b\\"},  // VHDL
        {"\\a b\\", "\\a b\\"},   {"\\a\\\\b\\", "\\a\\\\b\\"},
        {"\\a\\(3)", "\\a\\[3]"}, {"\\a\\.b", "\\a\\.b"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(SpellSignalName(row.name), row.spelled) << row.name;
        EXPECT_EQ(SpellSignalName(row.spelled), row.spelled) << "again, of " << row.name;
    }
}

TEST(SignalName, IsWrittenAsVerilogWhereThatIsReadBackTheSame)
{
    const struct {
        const char *name, *verilog;
    } rows[] = {
        {"clk", "clk"},   {"\\a+b\\", "\\a+b"},         {"\\a[0]\\", "\\a[0]"},   {"\\a b\\", "\\a b\\"},
        {"\\\\", "\\\\"}, {"\\a\\\\b\\", "\\a\\\\b\\"}, {"\\a\\[3]", "\\a\\[3]"}, {"", ""},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(VerilogName(row.name), row.verilog) << row.name;
        EXPECT_EQ(SpellSignalName(row.verilog), row.name);
    }
}

TEST(ExtendedIdentifier, EndsAtTheFirstSingleBackslash)
{
    const struct {
        const char *name;
        std::size_t length;
    } rows[] = {{"a\\b\\", 0}, {"\\a\\", 3}, {"\\a\\b", 3}, {"\\a\\\\b\\c", 6}, {"\\a\\\\", 0}, {"\\", 0}, {"", 0}};
    for (const auto &row : rows)
        EXPECT_EQ(ExtendedLength(row.name), row.length) << row.name;
}

}  // namespace
