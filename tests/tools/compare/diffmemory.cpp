// What a comparison of long files needs.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "testpaths.h"
#include "tools/compare/longrecord.h"
#include "tools/runtool.h"

TEST(Diff, NeedsNoMoreMemoryForLongerFiles)
{
    const CTemporaryFolder folder;
    constexpr std::uint64_t Times = 200'000;
    constexpr long Most = 8 << 10;  // kilobytes; the changes of the longer file would take ten times as much
    WriteLongRecord((folder / "short.fst").string(), Times);
    WriteLongRecord((folder / "long.fst").string(), 8 * Times);
    ASSERT_EQ(RunShell("cd " + (folder / "").string() +
                       " && tesk convert short.fst short.vcd && tesk convert long.fst long.vcd && "
                       "tesk convert short.fst short.zyn && tesk convert long.fst long.zyn")
                  .status,
              0);
    for (const char *kind : {".fst", ".vcd", ".zyn"}) {
        const auto peak = [&](const std::string &name) {
            const std::string path = (folder / (name + kind).c_str()).string();
            return PeakKilobytes("'" TESK_TOOL "' diff " + path + " " + path);
        };
        EXPECT_LT(peak("long"), peak("short") + Most) << kind;
    }
}
