#include "platform/fstreader.h"

#include <gmock/gmock.h>

#include "platform/fstvcd.h"

namespace {

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

TEST(FstReader, GivesWhatFst2VcdPrintsWhateverTheFileIsPackedWith)
{
    if (!HasProgram("fst2vcd") || !HasProgram("vcd2fst"))
        GTEST_SKIP() << "needs fst2vcd and vcd2fst";
    for (const char *options : {"", "-4", "-F", "-Z", "-c", "-p", "-Z -c", "-F -p"})
        ExpectPackedAsFst2Vcd("fst_counter.vcd", options);
}

}  // namespace
