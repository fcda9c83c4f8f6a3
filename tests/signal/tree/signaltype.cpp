#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

TEST(SignalStdType, FollowsFromTheIdentifier)
{
    const struct {
        std::string type;
        int stdType;
        int displayMode;
    } rows[] = {
        {StdLogicType, 1, 0},
        {"e#9#STD_LOGICc9 UX01ZWLH-", 1, 0},
        {"e#10#std_ulogicc9 UX01ZWLH-", 1, 0},
        {"e#11#std_ulogicsc9 UX01ZWLH-", 0, 3},  // the whole identifier counts
        {BitType, 0, 3},
        {IntegerType, 0, 3},
        {VectorType(3), 7, 0},
        {ArrayType("Std_Logic_Vectors", 1, "rict0 1", StdLogicType), 7, 0},  // its first 16 characters count
        {ArrayType("std_ulogic_vector(0 to 1)", 1, "rict0 1", StdLogicType), 7, 0},
        {ArrayType("bit_vector(0 to 1)", 1, "rict0 1", BitType), 6, 0},
        {ArrayType("bit_vect(0 to 1)", 1, "rict0 1", BitType), 0, 4},
        {RecordType({{"f", BitType}}), 0, 4},
    };
    for (const auto &row : rows) {
        const TReference<ISignal> signal = MakeSignal(row.type);
        ASSERT_NE(signal, nullptr) << row.type;
        EXPECT_EQ(signal->GetStdType(), row.stdType) << row.type;
        EXPECT_EQ(signal->GetDisplayMode(), row.displayMode) << row.type;
    }
}

TEST(SetTypeInfo, DoesNothingForAnEqualDescription)
{
    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    ISignalContainer *children = vector->GetChildren();
    EXPECT_EQ(vector->SetTypeInfo(Kestrin::KTypeInfo(VectorType(2).c_str())), S_OK);
    EXPECT_EQ(vector->GetChildren(), children);

    const TReference<ISignal> scalar = MakeSignal(BitType);
    AddEvent(*scalar, 1, 1);
    EXPECT_EQ(scalar->SetTypeInfo(*scalar->GetTypeInfo()), S_OK);
    EXPECT_EQ(scalar->GetWave()->GetEventCount(), 1U);
}

TEST(SetTypeInfoString, DeliberatelyBuildsAnewForAnEqualDescription)
{
    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    const TReference<ISignalContainer> children = tesk::Share(vector->GetChildren());
    EXPECT_EQ(vector->SetTypeInfoString(VectorType(2).c_str()), S_OK);
    EXPECT_NE(vector->GetChildren(), children.get());

    const TReference<ISignal> scalar = MakeSignal(BitType);
    AddEvent(*scalar, 1, 1);
    EXPECT_EQ(scalar->SetTypeInfoString(BitType), S_OK);
    EXPECT_EQ(scalar->GetWave()->GetEventCount(), 0U) << "a 1-byte scalar gets a fresh wave at each build";
}

TEST(SetTypeInfoString, KeepsAWaveThatIsExactlyAsWideAsTheScalar)
{
    for (const char *type : {IntegerType, RealType}) {
        const TReference<ISignal> scalar = MakeSignal(type);
        AddEvent(*scalar, 1, 1);
        EXPECT_EQ(scalar->SetTypeInfoString(type), S_OK);
        EXPECT_EQ(scalar->GetWave()->GetEventCount(), 1U) << type;
    }
}

TEST(SetTypeInfo, ChangesBetweenWaveAndChildren)
{
    const TReference<ISignal> signal = MakeSignal(BitType);
    ASSERT_EQ(signal->SetTypeInfo(Kestrin::KTypeInfo(VectorType(2).c_str())), S_OK);
    EXPECT_EQ(signal->GetWave(), nullptr);
    EXPECT_EQ(signal->GetValueSize(), 0U);
    EXPECT_THAT(NamesIn(signal->GetChildren()), ElementsAre("(1)", "(0)"));
    ASSERT_EQ(signal->SetTypeInfo(Kestrin::KTypeInfo(IntegerType)), S_OK);
    EXPECT_EQ(signal->GetChildren(), nullptr);
    EXPECT_EQ(signal->GetValueSize(), 4U);
}

TEST(SetTypeInfo, MayTakeAPartOfTheTypeThatItReplaces)
{
    const TReference<ISignal> signal = MakeSignal(ArrayType("m(0 to 1)", 1, "rict0 1", VectorType(3)));
    ASSERT_EQ(signal->SetTypeInfo(*signal->GetTypeInfo()->GetArrayElementKTypeInfo()), S_OK);
    EXPECT_THAT(NamesIn(signal->GetChildren()), ElementsAre("(2)", "(1)", "(0)"));
    ASSERT_EQ(signal->SetTypeInfoString(signal->GetTypeInfo()->GetArrayElementTypeInfo()), S_OK);
    EXPECT_STREQ(signal->GetTypeInfo()->GetTypeIdentifier(), "std_logic");
}

TEST(SetTypeInfo, ThatFailsKeepsTypeWaveAndChildren)
{
    const char *const bad[] = {"", "nonsense", "a#1#a1 riut0 2147483647 e#3#bitc2 01"};
    for (const std::string &good : {std::string(StdLogicType), VectorType(2)}) {
        const TReference<ISignal> signal = MakeSignal(good);
        ISignalWave *wave = signal->GetWave();
        ISignalContainer *children = signal->GetChildren();
        for (const char *type : bad) {
            EXPECT_EQ(signal->SetTypeInfo(Kestrin::KTypeInfo(type)), E_FAIL) << type;
            EXPECT_EQ(signal->SetTypeInfoString(type), E_FAIL) << type;
        }
        EXPECT_EQ(signal->SetTypeInfoString(nullptr), E_FAIL);
        EXPECT_EQ(signal->GetTypeInfo()->GetTypeInfoString(), good);
        EXPECT_EQ(signal->GetWave(), wave);
        EXPECT_EQ(signal->GetChildren(), children);
        EXPECT_EQ(signal->GetStdType(), 0) << "cleared before the type is looked at";
    }
}

TEST(SetTypeOnly, LeavesWaveAndChildrenAlone)
{
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    ISignalWave *wave = signal->GetWave();
    signal->SetTypeOnly(VectorType(2).c_str());
    EXPECT_EQ(signal->GetWave(), wave);
    EXPECT_EQ(signal->GetChildren(), nullptr);
    EXPECT_EQ(signal->GetStdType(), 7);
    EXPECT_EQ(signal->GetDisplayMode(), 0);
    signal->SetTypeOnly(RecordType({{"f", BitType}}).c_str());
    EXPECT_EQ(signal->GetStdType(), 0);
    EXPECT_EQ(signal->GetDisplayMode(), 3) << "4 is for a signal that has children";
}

TEST(SetTypeOnly, KeepsTheStandardTypeWhereNoIdentifierCanBeFetched)
{
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    signal->SetTypeOnly("nonsense");
    EXPECT_EQ(signal->GetTypeInfo()->GetKind(), 0);
    EXPECT_EQ(signal->GetStdType(), 1);
    signal->SetTypeOnly(nullptr);
    EXPECT_EQ(signal->GetTypeInfo(), nullptr);
    EXPECT_EQ(signal->GetStdType(), 1);
}

TEST(SetTypeOnly, MayTakeAPartOfTheTypeThatItReplaces)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(2));
    signal->SetTypeOnly(signal->GetTypeInfo()->GetArrayElementTypeInfo());
    EXPECT_STREQ(signal->GetTypeInfo()->GetTypeInfoString(), StdLogicType);
}

TEST(EffectiveType, OfAnElementWithoutATypeIsTheParentsElementType)
{
    const TReference<ISignal> parent = MakeSignal(VectorType(2));
    const TReference<ISignal> element = MakeEmpty();
    char buffer[32];
    EXPECT_EQ(element->GetTypeIdentifier(buffer, sizeof buffer), E_FAIL);
    element->SetParent(parent.get());
    EXPECT_EQ(element->GetTypeIdentifier(buffer, sizeof buffer), S_OK);
    EXPECT_STREQ(buffer, "std_logic");
    EXPECT_EQ(element->GetTypeInfo(), nullptr);
    EXPECT_EQ(element->SetTypeInfo(Kestrin::KTypeInfo(StdLogicType)), S_OK);
    EXPECT_EQ(element->GetTypeInfo(), nullptr) << "it needs no copy of its own";
}

TEST(EffectiveType, IsNotTakenFromARecordOrAParentWithoutAType)
{
    const TReference<ISignal> record = MakeSignal(RecordType({{"f", BitType}}));
    const TReference<ISignal> untyped = MakeEmpty();
    const TReference<ISignal> element = MakeEmpty();
    char buffer[32];
    for (ISignal *parent : {record.get(), untyped.get()}) {
        element->SetParent(parent);
        EXPECT_EQ(element->GetTypeIdentifier(buffer, sizeof buffer), E_FAIL);
    }
}

TEST(TypeIdentifier, NeedsRoomForItsTerminator)
{
    const TReference<ISignal> signal = MakeSignal(BitType);
    char buffer[8] = "";
    EXPECT_EQ(signal->GetTypeIdentifier(buffer, 4), S_OK);
    EXPECT_STREQ(buffer, "bit");
    EXPECT_EQ(signal->GetTypeIdentifier(buffer, 3), E_OUTOFMEMORY);
    EXPECT_EQ(signal->GetTypeIdentifier(buffer, 0), E_OUTOFMEMORY);
    EXPECT_EQ(signal->GetTypeIdentifier(nullptr, 10), E_OUTOFMEMORY);
    EXPECT_EQ(MakeEmpty()->GetTypeIdentifier(buffer, 8), E_FAIL);
}

}  // namespace
