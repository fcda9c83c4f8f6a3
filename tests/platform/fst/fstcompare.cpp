// Our reader beside fst2vcd, over files of several writers.
#include <gtest/gtest.h>

#include "logcatcher.h"
#include "platform/fst/fstmaker.h"
#include "platform/fst/fstvcd.h"

namespace {

using namespace fsttest;

constexpr char NeedsGtkwave[] = "fst2vcd and vcd2fst are in the package gtkwave";

// Packs a dump of ours as vcd2fst packs it.
void ExpectPackedAsFst2Vcd(const std::string &vcd, const std::string &options)
{
    SCOPED_TRACE(options);
    const CTemporaryFolder folder;
    const std::filesystem::path fst = folder / "packed.fst";
    const std::string command =
        "vcd2fst " + options + " '" + DataFile(vcd).string() + "' '" + fst.string() + "' >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    ExpectAsFst2Vcd(fst);
}

TEST(FstComparison, HoldsForFilesOfVcd2FstWhateverTheyArePackedWith)
{
    ASSERT_TRUE(HasProgram("fst2vcd") && HasProgram("vcd2fst")) << NeedsGtkwave;
    for (const char *options : {"", "-4", "-F", "-Z", "-c", "-p", "-Z -c", "-F -p"})
        ExpectPackedAsFst2Vcd("fst_counter.vcd", options);
}

TEST(FstComparison, HoldsForFilesOfSimulators)
{
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    const CLogCatcher log;
    for (const char *file : {"fst_counter.iverilog.fst", "fst_types.ghdl.fst", "fst_two.verilator.fst"})
        ExpectAsFst2Vcd(DataFile(file));
}

TEST(FstComparison, HoldsForTheFilesThatTheseTestsMake)
{
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    const CTemporaryFolder folder;
    for (const auto &[kind, packer, hierarchy] : {std::tuple(1, 'Z', 4), {5, '4', 6}, {8, 'F', 7}, {8, 'Z', 6}}) {
        CFstMaker maker;
        maker.kind = kind;
        maker.packer = packer;
        maker.hierarchyKind = hierarchy;
        maker.begin = 2;
        maker.end = 30;
        maker.timeZero = 7;
        maker.Scope("s").Variable(maker.Wire, "a", 1).Variable(maker.Wire, "b", 1).Variable(maker.Reg, "v[0:8]", 9);
        maker.Variable(maker.Real, "r", 8).Variable(maker.Wire, "again", 1, 1).EndScope();
        const CFstChanges same = {{0, "0"}, {1, "1"}, {2, "z"}};
        maker.Block(2, {5, 10, 20}, "10xxx01xxzz" + RealLetters(-1), {same, same, {{0, "01x0000hl"}}, {}});
        maker.Block(20, {20, 30}, "zz01x0000hl" + RealLetters(-1),
                    {{}, {{0, "1"}}, {{1, "110011001"}}, {{1, "00000001"}}});
        WriteBytes(folder / "made.fst", maker.Bytes());
        ExpectAsFst2Vcd(folder / "made.fst");
    }
}

// The format's own writer, built from the source that Verilator brings along.
class CWriter {
public:
    CWriter()
    {
        const std::string source = "/usr/share/verilator/include/gtkwave";
        if (!std::filesystem::exists(source + "/fstapi.c") || !HasProgram("cc"))
            return;
        m_isThere = Run("cc -w -DFST_CONFIG_INCLUDE='\"fst_config.h\"' -I" + source + " '" +
                        DataFile("fst_writer.c").string() + "' " + source + "/fstapi.c " + source + "/fastlz.c " +
                        source + "/lz4.c -o '" + (m_folder / "writer").string() + "' -lz -lpthread");
    }

    bool IsThere() const { return m_isThere; }

    std::filesystem::path Write(const std::string &form) const
    {
        const std::filesystem::path file = m_folder / "written.fst";
        EXPECT_TRUE(Run("'" + (m_folder / "writer").string() + "' '" + file.string() + "' '" + form + "'")) << form;
        return file;
    }

private:
    static bool Run(const std::string &command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

    CTemporaryFolder m_folder;
    bool m_isThere = false;
};

const CWriter &Writer()
{
    static const CWriter writer;
    return writer;
}

TEST(FstComparison, HoldsForFilesOfTheFormatsOwnWriter)
{
    const CWriter &writer = Writer();
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    ASSERT_TRUE(writer.IsThere()) << "the source of fstapi is in the package verilator";
    const CLogCatcher log;
    for (const char *form : {"zlib", "fastlz", "lz4", "zlib whole", "lz4 whole", "zero", "late", "fastlz long",
                             "sidecar", "zlib killed", "lz4 killed"}) {
        SCOPED_TRACE(form);
        ExpectAsFst2Vcd(writer.Write(form));
    }
}

TEST(FstComparison, HoldsForAHierarchyThatIsPackedTwice)
{
    const CWriter &writer = Writer();
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    ASSERT_TRUE(writer.IsThere()) << "the source of fstapi is in the package verilator";
    const CLogCatcher log;
    const std::filesystem::path file = writer.Write("lz4 many");
    const ReaderPtr reader(NTARN::IDatabaseReader::create(file.c_str(), false));
    EXPECT_EQ(reader->RootHandlesEnd() - reader->RootHandlesBegin(), 60007);
    EXPECT_EQ(AllEvents(*reader, 60006), AllEvents(*reader, 1));
}

// fst2vcd says nothing of values in front of the first time: the frame holds them.
TEST(FstComparison, AddsTheValuesInFrontOfTheFirstTime)
{
    const CWriter &writer = Writer();
    ASSERT_TRUE(HasProgram("fst2vcd")) << NeedsGtkwave;
    ASSERT_TRUE(writer.IsThere()) << "the source of fstapi is in the package verilator";
    const CLogCatcher log;
    const std::filesystem::path file = writer.Write("early");
    const ReaderPtr reader(NTARN::IDatabaseReader::create(file.c_str(), false));
    const SVcdDump dump = RunFst2Vcd(file);
    std::vector<SEvent> ours = AllEvents(*reader, 1);
    ASSERT_FALSE(ours.empty());
    EXPECT_EQ(ours[0].time, 0);
    ours.erase(ours.begin());
    EXPECT_EQ(ours, EventsOf(dump, dump.variables.at(0).id, 0, false));
}

}  // namespace
