#include "signal/tree/loadlevel.h"

#include <gtest/gtest.h>

namespace {

TEST(LoadLevel, IsRefusedBelow256Others)
{
    const auto refuses = [](int levels, const auto &self) -> bool {
        const CLoadLevel level;
        return levels > 1 ? self(levels - 1, self) : CLoadLevel::IsRefused();
    };
    EXPECT_FALSE(refuses(MaxNesting, refuses));
    EXPECT_TRUE(refuses(MaxNesting + 1, refuses));
    EXPECT_FALSE(refuses(1, refuses)) << "the next load starts afresh";
}

TEST(LoadLevel, IsRefusedBehind2To24SignalsBelowTheOutermost)
{
    const CLoadLevel outermost;
    for (long long i = 0; i < 1LL << 24; ++i)
        const CLoadLevel level;
    EXPECT_FALSE(CLoadLevel::IsRefused());
    const CLoadLevel oneMore;
    EXPECT_TRUE(CLoadLevel::IsRefused());
}

}  // namespace
