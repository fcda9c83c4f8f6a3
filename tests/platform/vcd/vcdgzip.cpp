// VCD files that gzip packed.
#include "tests/platform/vcd/vcdsupport.h"

#include <gmock/gmock.h>

#include "tests/platform/input/gzipsupport.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string Changes = VcdHead + "#0\n0!\nb1010 \"\n#10\n1!\n#20\n0!\n";

TEST(PackedVcd, GivesTheEventsOfTheDump)
{
    for (const std::string &packed : {Gzip(Changes), Gzip(Changes.substr(0, 99)) + Gzip(Changes.substr(99)),
                                      Gzip(Changes) + std::string(512, '\0')}) {
        const SImport import(packed);
        EXPECT_EQ(import.error, "");
        EXPECT_THAT(import.messages, IsEmpty());
        EXPECT_EQ(import.writer.Events("a"), "0=0 10=1 20=0");
        EXPECT_EQ(import.writer.endTime, 20);
    }
}

TEST(PackedVcd, IsReadAsFarAsItGoesWhereItIsCutOff)
{
    std::string text = VcdHead;
    for (int i = 0; i < 20000; ++i)
        text += "#" + std::to_string(i) + "\n" + std::to_string(i % 2) + "!\n";
    const std::string packed = Gzip(text);
    const SImport import(packed.substr(0, packed.size() / 2));
    ASSERT_EQ(import.messages.size(), 1u);
    EXPECT_THAT(import.messages[0], HasSubstr(": the file ends inside what gzip packed; the file is read up to "));
    EXPECT_GT(import.writer.endTime, 5000);
    EXPECT_LT(import.writer.endTime, 19999);
}

TEST(PackedVcd, CutAnywhereIsReadOrRefused)
{
    const std::string packed = Gzip(Changes);
    for (std::size_t size = 0; size < packed.size(); ++size) {
        const SImport import(packed.substr(0, size));
        EXPECT_TRUE(!import.error.empty() || !import.messages.empty()) << size;
        EXPECT_TRUE(import.writer.isInOrder) << size;
    }
}

TEST(PackedVcd, WithAnyByteDamagedIsReadOrRefused)
{
    const std::string packed = Gzip(Changes);
    for (std::size_t at = 0; at < packed.size(); ++at) {
        std::string damaged = packed;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        EXPECT_TRUE(SImport(damaged).writer.isInOrder) << at;
    }
}

TEST(PackedVcd, GrowsNoFurtherThanItsSizeAllows)
{
    const SImport import(Gzip(VcdHead + "#1\n1!\n" + std::string(std::size_t{40} << 20, '\n')));
    EXPECT_EQ(import.writer.Events("a"), "1=1");
    ASSERT_EQ(import.messages.size(), 1u);
    EXPECT_THAT(import.messages[0], HasSubstr("too many for a file of this size; the file is read up to 1 ns"));
}

TEST(PackedVcd, HoldsNoLongerValueThanASignalMayHave)
{
    const SImport import(VcdHead + "#1\n1!\nb" + std::string(std::size_t{34} << 20, '0') + " \"\n");
    ASSERT_EQ(import.messages.size(), 1u);
    EXPECT_THAT(import.messages[0], HasSubstr("a value has more than 33554432 bytes; the file is read up to 1 ns"));
}

TEST(PackedVcd, ClaimsByItsOwnSize)
{
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += "$var wire 1 ! a $end ";
    EXPECT_THAT(SImport(Gzip(text + "$enddefinitions $end")).error,
                HasSubstr(" variables, too many for a file of this size"));
    EXPECT_EQ(SImport(text + "$enddefinitions $end").error, "");
}

TEST(ForeignFile, IsNamedInTheRefusal)
{
    EXPECT_EQ(SImport(std::string("GHDLwave\n\x10\x00", 11)).error,
              "F:1: not a VCD file: it is a GHW file, which is not read; let the simulator write a VCD or FST file "
              "(--vcd=FILE, --fst=FILE)");
    const struct {
        std::string bytes, name;
    } rows[] = {
        {"(SAIFILE\n(SAIFVERSION \"2.0\")", "a SAIF file"},
        {std::string("\x01\x38\x00\x04", 4), "an LXT file"},
        {std::string("\x13\x80\x00\x01", 4), "an LXT2 file"},
        {std::string("VZ\x00\x01 ", 5), "a VZT file"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(SImport(row.bytes).error, HasSubstr("it is " + row.name + ", which is not read; ")) << row.name;
}

}  // namespace
