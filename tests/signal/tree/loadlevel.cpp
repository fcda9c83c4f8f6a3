#include "signal/tree/loadlevel.h"

#include <gtest/gtest.h>

namespace {

TEST(LoadLevel, IsRefusedBelow256Others)
{
    const auto refuses = [](int levels, const auto &self) -> bool {
        const tesk::CLoadLevel level;
        return levels > 1 ? self(levels - 1, self) : tesk::CLoadLevel::IsRefused();
    };
    EXPECT_FALSE(refuses(tesk::MaxNesting, refuses));
    EXPECT_TRUE(refuses(tesk::MaxNesting + 1, refuses));
    EXPECT_FALSE(refuses(1, refuses)) << "the next load starts afresh";
}

TEST(LoadLevel, IsRefusedBehind2To24SignalsBelowTheOutermost)
{
    const tesk::CLoadLevel outermost;
    for (long long i = 0; i < 1LL << 24; ++i)
        const tesk::CLoadLevel level;
    EXPECT_FALSE(tesk::CLoadLevel::IsRefused());
    const tesk::CLoadLevel oneMore;
    EXPECT_TRUE(tesk::CLoadLevel::IsRefused());
}

}  // namespace
