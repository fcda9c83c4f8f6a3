#include "platform/kestrin.h"

#include <gmock/gmock.h>

using Kestrin::KTypeInfo;

TEST(TypeInfo, ReadsAVector)
{
    const KTypeInfo type("a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-");
    EXPECT_EQ(type.GetKind(), 4);
    EXPECT_STREQ(type.GetTypeIdentifier(), "std_logic_vector(7 downto 0)");
    EXPECT_EQ(type.GetNbOfElements(), 8);
    EXPECT_STREQ(type.GetArrayElementTypeInfo(), "e#9#std_logicc9 UX01ZWLH-");
    EXPECT_EQ(type.GetValueString_OldFormat("\2\3\2\3\4\5\6\7", 2, 0, -1, false), "0101ZWLH");
}
