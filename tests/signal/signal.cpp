#include "signal/signal.h"

#include "signal/signaltools.h"

namespace {

TEST(CreateEmptySignal, GivesASignalThatKnowsNothing)
{
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(ReferencesTo(*signal), 1U);
    EXPECT_STREQ(signal->GetName(), "");
    EXPECT_EQ(signal->GetTypeInfo(), nullptr);
    EXPECT_EQ(signal->GetWave(), nullptr);
    EXPECT_EQ(signal->GetChildren(), nullptr);
    EXPECT_EQ(signal->GetParent(), nullptr);
    EXPECT_EQ(signal->GetMaxTime(), 0);
    EXPECT_EQ(signal->GetHandle(), -1);
    EXPECT_EQ(signal->GetStdType(), 0);
    EXPECT_EQ(signal->GetValueSize(), 0U);
    EXPECT_STREQ(signal->GetStimulatorInfo(), "");
    EXPECT_FALSE(signal->GetSpareFlag());
    EXPECT_FALSE(signal->IsVBus());
    EXPECT_TRUE(signal->OwnsWave());
    EXPECT_EQ(signal->Reserved(5), 0);
}

TEST(CreateEmptySignal, WantsAPlaceForTheSignal)
{
    EXPECT_EQ(CreateEmptySignal(nullptr), E_INVALIDARG);
    EXPECT_EQ(CreateSignal(StdLogicType, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(CreateSignal(Kestrin::KTypeInfo(StdLogicType), nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(CreateStdSignal(1, nullptr, nullptr), E_INVALIDARG);
}

TEST(CreateSignal, FromNoTextGivesASignalWithoutAType)
{
    for (const char *text : {static_cast<const char *>(nullptr), ""}) {
        ISignal *signal = nullptr;
        ASSERT_EQ(CreateSignal(text, nullptr, &signal), S_OK);
        const TReference<ISignal> owner(signal);
        EXPECT_EQ(signal->GetTypeInfo(), nullptr);
        EXPECT_EQ(signal->GetWave(), nullptr);
    }
}

TEST(CreateSignal, FromATypeKeepsParentAndType)
{
    const TReference<ISignal> parent = MakeEmpty();
    ISignal *signal = nullptr;
    ASSERT_EQ(CreateSignal(Kestrin::KTypeInfo(RealType), parent.get(), &signal), S_OK);
    const TReference<ISignal> owner(signal);
    EXPECT_EQ(ReferencesTo(*signal), 1U);
    EXPECT_EQ(ReferencesTo(*parent), 1U) << "a signal holds no reference on its parent";
    EXPECT_EQ(signal->GetParent(), parent.get());
    EXPECT_STREQ(signal->GetTypeInfo()->GetTypeInfoString(), RealType);
    EXPECT_EQ(signal->GetValueSize(), 8U);
}

TEST(CreateSignal, FailsForATypeThatCannotBeRead)
{
    ISignal *const before = MakeEmpty().release();
    const TReference<ISignal> owner(before);
    ISignal *signal = before;
    EXPECT_EQ(CreateSignal("nonsense", nullptr, &signal), E_FAIL);
    EXPECT_EQ(CreateSignal(Kestrin::KTypeInfo("nonsense"), nullptr, &signal), E_FAIL);
    EXPECT_EQ(signal, before);
}

TEST(CreateSignal, OfTheParentsElementTypeBuildsNothing)
{
    const TReference<ISignal> parent = MakeSignal(VectorType(2));
    ISignal *signal = nullptr;
    ASSERT_EQ(CreateSignal(Kestrin::KTypeInfo(StdLogicType), parent.get(), &signal), S_OK);
    const TReference<ISignal> owner(signal);
    EXPECT_EQ(signal->GetTypeInfo(), nullptr);
    EXPECT_EQ(signal->GetWave(), nullptr);
}

TEST(CreateStdSignal, MakesThePredefinedScalars)
{
    const struct {
        unsigned type;
        const char *identifier;
        unsigned width;
        int stdType;
    } rows[] = {
        {0, "bit", 4, 0},     {1, "std_logic", 4, 1}, {2, "std_ulogic", 4, 1},
        {3, "integer", 4, 0}, {4, "real", 8, 0},      {5, "character", 4, 0},
    };
    for (const auto &row : rows) {
        ISignal *signal = nullptr;
        ASSERT_EQ(CreateStdSignal(row.type, nullptr, &signal), S_OK) << row.identifier;
        const TReference<ISignal> owner(signal);
        EXPECT_STREQ(signal->GetTypeInfo()->GetTypeIdentifier(), row.identifier);
        EXPECT_EQ(signal->GetValueSize(), row.width) << row.identifier;
        EXPECT_EQ(signal->GetStdType(), row.stdType) << row.identifier;
    }
}

TEST(CreateStdSignal, RefusesTheUnboundedVectorsAndUnknownTypes)
{
    ISignal *signal = nullptr;
    for (const unsigned vector : {6U, 7U, 8U})
        EXPECT_EQ(CreateStdSignal(vector, nullptr, &signal), E_FAIL) << vector;
    for (const unsigned unknown : {9U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(CreateStdSignal(unknown, nullptr, &signal), E_INVALIDARG) << unknown;
    EXPECT_EQ(signal, nullptr);
}

TEST(Signal, EndsWithItsLastReferenceAndReleasesWhatItHolds)
{
    TReference<ISignal> scalar = MakeSignal(StdLogicType);
    const TReference<ISignalWave> wave = tesk::Share(scalar->GetWave());
    EXPECT_EQ(ReferencesTo(*wave), 2U);
    scalar.reset();
    EXPECT_EQ(ReferencesTo(*wave), 1U);

    TReference<ISignal> vector = MakeSignal(VectorType(2));
    const TReference<ISignalContainer> children = tesk::Share(vector->GetChildren());
    const TReference<ISignal> child = tesk::Share(ChildAt(children.get(), 0));
    EXPECT_EQ(ReferencesTo(*children), 2U);
    EXPECT_EQ(ReferencesTo(*child), 2U) << "its container holds the only other one";
    vector.reset();
    EXPECT_EQ(ReferencesTo(*children), 1U);
    EXPECT_EQ(children->GetCount(), 2U);
}

TEST(Signal, AnswersToTwoIdentifiers)
{
    const TReference<ISignal> signal = MakeEmpty();
    void *out = nullptr;
    EXPECT_EQ(signal->QueryInterface(IID_ISignal, &out), S_OK);
    EXPECT_EQ(out, signal.get());
    EXPECT_EQ(signal->QueryInterface(IID_IUnknown, &out), S_OK);
    EXPECT_EQ(signal->Release(), 2U);
    EXPECT_EQ(signal->Release(), 1U);
    EXPECT_EQ(signal->QueryInterface(IID_ISignalContainer, &out), E_NOINTERFACE);
}

}  // namespace
