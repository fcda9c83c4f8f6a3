// Event streams whose stretches of time are not what they should be, with checksums that fit.
#include <gmock/gmock.h>

#include <cstdint>
#include <string>

#include "platform/morvel.h"
#include "tests/logcatcher.h"
#include "tests/platform/stream/streamfiles.h"
#include "tests/platform/stream/stretchfile.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using namespace std::string_literals;

// Handles of the file that `StretchFile` makes.
enum { A, R, V, B, V3, V2, V1, V0 };

// Two times, 5 and 12. One block: each scalar of its own, the vector as one.
const SStretchClaim Claim{5, 12, 0, 6, 2};
const std::string Times = "\2\7"s;
// Of a, r, v and b: the step to its track, scalars but one, bytes.
const std::string Chunks = "\4"
                           "\0\0\4"
                           "\1\0\x13"
                           "\1\3\7"
                           "\4\0\4"s;
const std::string EventsOfA = "\2\2\0\5"s;  // 2 events, low is '0': '0', then a step and '1'
const std::string EventsOfR = "\2\2"
                              "12345678"
                              "\6"
                              "abcdefgh"s;
const std::string EventsOfV = "\2\2\1\xF\5\4\xF"s;  // all have "0101", then all toggle
const std::string EventsOfB = "\2\2\1\4"s;

std::string Saved(const CStreamFolder &folder, const std::string &bytes)
{
    WriteBytesTo(folder / "a.zyn", bytes);
    return folder / "a.zyn";
}

CEvents EventsOf(const std::string &bytes, int handle)
{
    const CStreamFolder folder;
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(Saved(folder, bytes).c_str()));
    return raw != nullptr ? AllEvents(raw->GetEventsStore(handle)) : CEvents();
}

TEST(StretchByHand, HoldsTheEventsThatItsBytesTell)
{
    const std::string file = StretchFile(Claim, Times + Chunks, EventsOfA + EventsOfR + EventsOfV + EventsOfB);
    const CLogCatcher log;
    EXPECT_EQ(EventsOf(file, A), (CEvents{{5, "\2"}, {12, "\3"}}));
    EXPECT_EQ(EventsOf(file, R), (CEvents{{5, "12345678"}, {12, "abcdefgh"}}));
    EXPECT_EQ(EventsOf(file, B), (CEvents{{5, "\3"}, {12, "\2"}}));
    EXPECT_EQ(EventsOf(file, V3), (CEvents{{5, "\2"}, {12, "\3"}}));
    EXPECT_EQ(EventsOf(file, V0), (CEvents{{5, "\3"}, {12, "\2"}}));
    EXPECT_EQ(EventsOf(file, V), (CEvents{{5, "\2\3\2\3"}, {12, "\3\2\3\2"}}));
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(LyingStretch, HasNoEvents)
{
    const std::string block = EventsOfA + EventsOfR + EventsOfV + EventsOfB;
    const auto table = [](const std::string &times) { return times + Chunks; };
    const auto withA = [&](const std::string &events) {
        return "\4\0\0"s + static_cast<char>(events.size()) + Chunks.substr(4);
    };
    const struct {
        const char *what;
        std::string table, block;
    } rows[] = {
        {"no table", "", block},
        {"no time", "\0"s + Chunks, block},
        {"more times than bytes", "\x7F\7"s, block},
        {"times without end", "\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80"s, block},
        {"a time again", table("\3\7\0"s), block},
        {"ends early", table("\2\6"s), block},
        {"ends late", table("\2\x8"s), block},
        {"no chunks", Times + "\0"s, block},
        {"something behind the table", Times + Chunks + "\0"s, block},
        {"chunks cut off", Times + Chunks.substr(0, 9), block},
        {"beyond the tracks", Times + "\1\7\0\4"s, EventsOfA},
        {"a group beyond the tracks", Times + "\1\6\1\4"s, EventsOfA},
        {"a group too large", Times + "\1\0\x40\4"s, EventsOfA},
        {"a chunk longer than the block", Times + "\1\0\0\5"s, EventsOfA},
        {"a block longer than the chunks", Times + "\1\0\0\3"s, EventsOfA},
        {"a group of different sizes", Times + "\1\0\1\4"s, EventsOfA},
        {"no events", Times + withA("\0\2"s), "\0\2"s + block.substr(4)},
        {"events missing", Times + withA("\2\2\0"s), "\2\2\0"s + block.substr(4)},
        {"events too many", Times + withA("\2\2\0\5\0"s), "\2\2\0\5\0"s + block.substr(4)},
        {"fewer than the index says", Times + withA("\1\2\0"s), "\1\2\0"s + block.substr(4)},
        {"more than the index says", Times + withA("\3\2\0\0\0"s), "\3\2\0\0\0"s + block.substr(4)},
        {"a step behind the last time", Times + withA("\2\2\0\x8"s), "\2\2\0\x8"s + block.substr(4)},
        {"a form that there is not", Times + withA("\2\2\0\3"s), "\2\2\0\3"s + block.substr(4)},
        {"an odd low", Times + withA("\2\3\0\5"s), "\2\3\0\5"s + block.substr(4)},
        {"a value cut off", Times + withA("\2\2\0\6"s), "\2\2\0\6"s + block.substr(4)},
    };
    for (const auto &row : rows) {
        const CLogCatcher log;
        EXPECT_THAT(EventsOf(StretchFile(Claim, row.table, row.block), A), IsEmpty()) << row.what;
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: "))) << row.what;
    }
}

TEST(LyingStretch, HasNoEventsOfAVector)
{
    const auto file = [](const std::string &events) {
        return StretchFile(Claim, Times + "\1\2\3"s + static_cast<char>(events.size()), events);
    };
    EXPECT_EQ(EventsOf(file(EventsOfV), V3).size(), 2u);
    const std::pair<const char *, std::string> rows[] = {
        {"nobody has the event", "\2\2\1\xF\5\1\0"s},  {"scalars that are not there", "\2\2\1\x1F\5\1\xF"s},
        {"bits of others", "\2\2\1\7\x8\1\xF\xF"s},    {"toggles what is not known", "\2\2\0\xF\0\xF"s},
        {"a mask cut off", "\2\2\1\xF\5\1"s},          {"a mask without end", "\2\2\1" + std::string(11, '\x80')},
        {"values cut off", "\2\2\1\xF\5\6\xF\2\2\2"s}, {"a form that there is not", "\2\2\1\xF\5\7\xF\5"s},
    };
    for (const auto &[what, events] : rows) {
        const CLogCatcher log;
        EXPECT_THAT(EventsOf(file(events), V3), IsEmpty()) << what;
        EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("is damaged: a block is not what the index says."))) << what;
    }
}

TEST(LyingStretch, IsRefusedWhereTheIndexCannotBe)
{
    const auto fault = [](const SStretchClaim &claim, std::uint32_t shared) {
        const CStreamFolder folder;
        const CLogCatcher log;
        const std::string block = EventsOfA;
        EXPECT_EQ(
            Morvel::CreateStreamRead(Saved(folder, StretchFile(claim, Times + "\1\0\0\4"s, block, shared)).c_str()),
            nullptr);
        return log.Messages().empty() ? std::string() : log.Messages().front();
    };
    EXPECT_THAT(fault({-1, 12, 0, 6, 2}, 6), HasSubstr("a stretch of time that cannot be"));
    EXPECT_THAT(fault({5, 4, 0, 6, 2}, 6), HasSubstr("a stretch of time that cannot be"));
    EXPECT_THAT(fault({5, 12, 3, 2, 2}, 6), HasSubstr("a stretch of time that cannot be"));
    EXPECT_THAT(fault({5, 12, 0, 7, 2}, 6), HasSubstr("a stretch of time that cannot be"));
    EXPECT_THAT(fault(Claim, 7), HasSubstr("a wrong number of scalars"));
    EXPECT_THAT(fault(Claim, 0xFFFFFFFE), HasSubstr("a wrong number of scalars"));
    EXPECT_THAT(fault(Claim, Morvel::NoTrack), HasSubstr("a wrong number of scalars"));
}

TEST(StretchByHand, MayShareTheEventsOfAScalar)
{
    SStretchClaim claim = Claim;
    claim.highTrack = 5;
    const std::string file = StretchFile(claim, Times + "\1\0\0\4"s, EventsOfA, 0);
    EXPECT_EQ(EventsOf(file, B), (CEvents{{5, "\2"}, {12, "\3"}}));
}

TEST(LyingStretch, HasNoEventsForASharerOfAnotherSize)
{
    SStretchClaim claim = Claim;
    claim.highTrack = 5;
    const CLogCatcher log;
    EXPECT_THAT(EventsOf(StretchFile(claim, Times + "\1\1\0\x13"s, EventsOfR, 1), B), IsEmpty());
    EXPECT_THAT(log.Messages(), ElementsAre(HasSubstr("has events that its type cannot have")));
}

}  // namespace
