#include "platform/tarn.h"

#include <array>

namespace {

using NTARN::KEventIterator;

constexpr std::array<NTARN::SFileEvent, 2> Events = {{{5, 1, 2}, {9, 3, 4}}};

KEventIterator At(std::size_t position)
{
    return {Events.data(), Events.size(), position};
}

TEST(FileEventIterator, GivesTimeAndBothHalvesOfTheValue)
{
    const KEventIterator it = At(1);
    EXPECT_EQ(*it, 9);
    EXPECT_EQ(it.value(), 3u);
    EXPECT_EQ(it.extValue(), 4u);
}

TEST(FileEventIterator, StepsForwardToTheEndAndStaysThere)
{
    KEventIterator it = At(0);
    EXPECT_EQ(*++it, 9);
    EXPECT_TRUE(++it == At(2));
    EXPECT_TRUE(++it == At(2));
}

TEST(FileEventIterator, StepsBackFromTheEndAndOffTheFirstEventToTheEnd)
{
    KEventIterator it = At(2);
    EXPECT_EQ(*--it, 9);
    EXPECT_EQ(*--it, 5);
    EXPECT_TRUE(--it == At(2));
}

TEST(FileEventIterator, OfASignalWithoutEventsIsTheEndAndGoesNowhere)
{
    KEventIterator it(nullptr, 0, 7);
    const KEventIterator end(nullptr, 0, 0);
    EXPECT_TRUE(it == end);
    EXPECT_TRUE(++it == end);
    EXPECT_TRUE(--it == end);
    EXPECT_EQ(*it, -1);
    EXPECT_EQ(it.value(), 0u);
    EXPECT_EQ(it.extValue(), 0u);
}

TEST(FileErrors, SayWhatIsWrong)
{
    EXPECT_STREQ(NTARN::XFileDoesNotExist().what(), "file does not exist");
    EXPECT_STREQ(NTARN::XFileCorrupted().what(), "file corrupted");
}

}  // namespace
