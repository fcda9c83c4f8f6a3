#include "waveform/files/filekinds.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

using tesk::EFileKind;
using namespace std::string_view_literals;

TEST(KindOfName, LooksForAPartOfTheNameThatDoesNotStandAtItsBeginning)
{
    const struct {
        const char *name;
        EFileKind kind;
    } rows[] = {
        {"a.vcd", EFileKind::Vcd},
        {"a.vcd.db", EFileKind::Vcd},
        {"/x.vcd/a", EFileKind::Vcd},
        {".vcd", EFileKind::Database},
        {"", EFileKind::Database},
        {"a.VCD", EFileKind::Database},
        {"avcd", EFileKind::Database},
        {"a.vc", EFileKind::Database},
        {"a.fst", EFileKind::Database},
        {"a.zyn", EFileKind::Stream},
        {"a.tmp", EFileKind::Stream},
        {"/x.tmp/a", EFileKind::Stream},
        {".zyn", EFileKind::Database},
        {"a.ZYN", EFileKind::Database},
        {"a.vcd.zyn", EFileKind::Stream},
        {".zyn.vcd", EFileKind::Vcd},
        // Deliberate: only the first place of a part counts.
        {".vcd.vcd", EFileKind::Database},
        {".tmp.tmp", EFileKind::Database},
    };
    for (const auto &row : rows)
        EXPECT_EQ(tesk::KindOfName(row.name), row.kind) << row.name;
}

TEST(KindOfContents, IsToldByTheFirstBytes)
{
    const struct {
        std::string_view bytes;
        std::optional<EFileKind> kind;
    } rows[] = {
        {"teskevs\1", EFileKind::Stream},
        {"\0\0\0\0\0\0\0\x01\x49"sv, EFileKind::Database},
        {"\xFE", EFileKind::Database},
        {"$date", EFileKind::Vcd},
        {" \r\n\t$date", EFileKind::Vcd},
        {"", std::nullopt},
        {" \n", std::nullopt},
        {"teskev", std::nullopt},
        {"\0\0\0\0\0\0\0\x01\x48"sv, std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(tesk::KindOfContents(row.bytes), row.kind) << row.bytes;
}
