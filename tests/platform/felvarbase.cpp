#include "platform/felvarbase.h"

namespace {

TEST(HierarchySettings, StartWithADotAndCaseSensitive)
{
    EXPECT_EQ(GetVHDLHierarchySeparator(), '.');
    EXPECT_TRUE(IsHierarchyCaseSensitive());
}

TEST(HierarchySettings, AnswerWhatWasSet)
{
    SetVHDLHierarchySeparator('/');
    SetHierarchyCaseSensitive(false);
    EXPECT_EQ(GetVHDLHierarchySeparator(), '/');
    EXPECT_FALSE(IsHierarchyCaseSensitive());
    SetVHDLHierarchySeparator('.');
    SetHierarchyCaseSensitive(true);
}

}  // namespace
