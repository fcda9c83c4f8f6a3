// What happens to value texts once an initial value text was given up half-way: it concerns all later texts of the
// process.
#include "signal/fakesignal.h"
#include "signal/signaltools.h"

namespace {

constexpr int Exact = 0;

TEST(AbandonedText, MakesLaterTextsDeliberatelyStandBehindOneAnother)
{
    const TReference<ISignal> signal = MakeSignal(IntegerType);
    AddEvent(*signal, 10, 12);
    AddEvent(*signal, 20, 345);
    const char *start = signal->GetValueTextAt(10, Exact);
    EXPECT_EQ(signal->GetValueTextAt(20, Exact), start);

    const TReference<ISignal> bare = MakeEmpty();
    bare->SetTypeOnly(RecordType({{"f", BitType}}).c_str());
    EXPECT_EQ(bare->GetValueTextAt(10, Exact), nullptr);
    EXPECT_EQ(signal->GetValueTextAt(10, Exact), start) << "only the initial value leaves the mark";

    EXPECT_EQ(bare->GetInitialValueText(false), nullptr);
    const char *first = signal->GetValueTextAt(10, Exact);
    const char *second = signal->GetValueTextAt(20, Exact);
    EXPECT_EQ(second, first + 2);
    EXPECT_STREQ(first, "12345");
    EXPECT_STREQ(second, "345");
    EXPECT_EQ(signal->GetValueTextAt(15, Exact), nullptr);
    EXPECT_EQ(signal->GetValueTextAt(10, Exact), second + 3);

    const TReference<ISignal> record = MakeSignal(RecordType({{"a", IntegerType}, {"b", IntegerType}}));
    AddEvent(*ChildAt(record->GetChildren(), 1), 10, 7);
    EXPECT_STREQ(record->GetValueTextAt(10, Exact), "(,7)") << "texts are right all the same";
}

// The children of a record, among them one of the host's, which shortens the list while it is asked.
TEST(AbandonedText, IsLeftByAListThatShrinksMeanwhileToo)
{
    const TReference<ISignal> record = MakeSignal(RecordType({{"a", IntegerType}, {"b", IntegerType}}));
    const FakePtr meddler = NewFake("meddler");
    ISignalContainer *children = record->GetChildren();
    meddler->m_initialValueText = [children] {
        children->Remove(ChildAt(children, 1));
        return "text";
    };
    children->InsertBefore(meddler.get(), ChildAt(children, 0));
    EXPECT_EQ(record->GetInitialValueText(false), nullptr) << "there is no third child any more";

    const TReference<ISignal> signal = MakeSignal(IntegerType);
    AddEvent(*signal, 10, 12);
    const char *first = signal->GetValueTextAt(10, Exact);
    EXPECT_EQ(signal->GetValueTextAt(10, Exact), first + 2);
    meddler->m_initialValueText = [] { return "text"; };
    EXPECT_STREQ(record->GetInitialValueText(false), "(text,)") << "the text of a host's signal is copied";
}

TEST(AbandonedText, NeverLetsLaterTextsLeaveTheBuffer)
{
    const TReference<ISignal> bare = MakeEmpty();
    bare->SetTypeOnly(RecordType({{"f", BitType}}).c_str());
    EXPECT_EQ(bare->GetInitialValueText(false), nullptr);
    const TReference<ISignal> record = MakeSignal(RecordType({{"a", IntegerType}, {"b", IntegerType}}));
    for (unsigned i = 0; i < 2; ++i)
        AddEvent(*ChildAt(record->GetChildren(), i), 10, 1234567890);
    const int number = 5;
    for (int i = 0; i < 100000; ++i) {  // 2.4 million bytes
        ASSERT_STREQ(record->GetValueTextAt(10, Exact), "(1234567890,1234567890)");
        ASSERT_STREQ(ChildAt(record->GetChildren(), 0)->GetValueText(&number), "5");
        ASSERT_STREQ(record->GetInitialValueText(false), "(1234567890,1234567890)");
    }
}

}  // namespace
