#include <cstdint>
#include <cstring>

#include "signal/signaltools.h"

namespace {

constexpr int Exact = 0, Before = 1, AtOrBefore = 3;

constexpr int LogicOne = 3, LogicZero = 2;  // positions of '1' and '0' in std_logic

std::string TextAt(ISignal &signal, long long time, int mode)
{
    return OrNone(signal.GetValueTextAt(time, mode));
}

ISignal *Child(ISignal &signal, unsigned index)
{
    return ChildAt(signal.GetChildren(), index);
}

TEST(ValueText, IsThatOfTheEffectiveType)
{
    const double half = 0.5;
    const std::int32_t number = -5;
    const unsigned char one = LogicOne;
    EXPECT_STREQ(MakeSignal(StdLogicType)->GetValueText(&one), "1");
    EXPECT_STREQ(MakeSignal(IntegerType)->GetValueText(&number), "-5");
    EXPECT_STREQ(MakeSignal(RealType)->GetValueText(&half), "0.5");
    EXPECT_STREQ(MakeSignal(VectorType(3))->GetValueText("\2\3\4"), "01Z");

    const TReference<ISignal> parent = MakeSignal(VectorType(2));
    const TReference<ISignal> element = MakeEmpty();
    element->SetParent(parent.get());
    EXPECT_STREQ(element->GetValueText(&one), "1");
}

TEST(ValueText, IsAbsentWithoutTypeValueOrLiteral)
{
    const unsigned char beyond = 9;
    EXPECT_EQ(MakeEmpty()->GetValueText(&beyond), nullptr);
    EXPECT_EQ(MakeSignal(StdLogicType)->GetValueText(nullptr), nullptr);
    EXPECT_EQ(MakeSignal(StdLogicType)->GetValueText(&beyond), nullptr);
    EXPECT_EQ(MakeSignal(RecordType({{"f", BitType}}))->GetValueText(&beyond), nullptr);
}

TEST(EventText, IsTheTextOfTheEventsValue)
{
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    AddEvent(*signal, 5, LogicOne);
    IEvent *event = nullptr;
    ASSERT_EQ(signal->GetWave()->FindEvent(5, Exact, &event), S_OK);
    EXPECT_STREQ(signal->GetEventText(event), "1");
    EXPECT_EQ(signal->GetEventText(nullptr), nullptr);
    EXPECT_EQ(MakeSignal(VectorType(1))->GetEventText(event), nullptr) << "needs a wave";
    EXPECT_EQ(MakeEmpty()->GetEventText(event), nullptr);
}

TEST(EventText, IsAbsentWhereTheEventHoldsFewerBytesThanTheTypeTakes)
{
    const TReference<ISignal> logic = MakeSignal(StdLogicType);
    const TReference<ISignal> real = MakeSignal(RealType);
    AddEvent(*logic, 5, LogicOne);
    real->ShareWave(logic->GetWave());
    EXPECT_EQ(real->GetValueTextAt(5, Exact), nullptr);
    EXPECT_EQ(real->GetInitialValueText(false), nullptr);
    IEvent *event = nullptr;
    logic->GetWave()->FindEvent(5, Exact, &event);
    EXPECT_EQ(real->GetEventText(event), nullptr);
    logic->SetTypeOnly(VectorType(64).c_str());
    EXPECT_EQ(logic->GetEventText(event), nullptr);
}

TEST(ValueTextAt, OfAScalarIsTheTextOfTheEventFound)
{
    const TReference<ISignal> signal = MakeSignal(IntegerType);
    AddEvent(*signal, 10, 7);
    AddEvent(*signal, 20, 8);
    EXPECT_EQ(TextAt(*signal, 10, Exact), "7");
    EXPECT_EQ(TextAt(*signal, 15, Exact), "(none)");
    EXPECT_EQ(TextAt(*signal, 15, AtOrBefore), "7");
    EXPECT_EQ(TextAt(*signal, 20, Before), "7");
    EXPECT_EQ(TextAt(*signal, 10, Before), "(none)");
    EXPECT_EQ(TextAt(*signal, 10, 99), "(none)");
}

TEST(ValueTextAt, PassesOverAnEventThatIsOnlyMarked)
{
    const TReference<ISignal> signal = MakeSignal(IntegerType);
    const int value = 7;
    signal->GetWave()->AddMarkedEvent(10, 0, &value, sizeof value);
    EXPECT_EQ(TextAt(*signal, 10, Exact), "(none)");
    AddEvent(*signal, 20, 8);
    signal->GetWave()->AddMarkedEvent(20, 0, &value, sizeof value);
    EXPECT_EQ(TextAt(*signal, 20, Exact), "7") << "the mark lies over an ordinary event";
}

TEST(ValueTextAt, OfAVectorOfOneElementIsInBits)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(1));
    AddEvent(*Child(*signal, 0), 10, LogicOne);
    EXPECT_EQ(TextAt(*signal, 10, Exact), "1");
    EXPECT_EQ(TextAt(*signal, 11, Exact), "(none)");
    EXPECT_EQ(TextAt(*signal, 11, AtOrBefore), "1");
}

TEST(ValueTextAt, OfALongerVectorIsDeliberatelyAbsent)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(2));
    AddEvent(*Child(*signal, 0), 10, LogicOne);
    AddEvent(*Child(*signal, 1), 10, LogicZero);
    EXPECT_EQ(TextAt(*signal, 10, Exact), "(none)");

    const TReference<ISignal> reals = MakeSignal(ArrayType("r(0 to 0)", 1, "rict0 0", RealType));
    const double half = 0.5;
    Child(*reals, 0)->GetWave()->AddEvent(10, 0, &half, sizeof half);
    EXPECT_EQ(TextAt(*reals, 10, Exact), "(none)");
}

TEST(ValueTextAt, OfAVectorNeedsChildrenWithEvents)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(1));
    EXPECT_EQ(TextAt(*signal, 10, Exact), "(none)");
    const TReference<ISignal> bare = MakeEmpty();
    bare->SetTypeOnly(VectorType(1).c_str());
    EXPECT_EQ(TextAt(*bare, 10, Exact), "(none)");
}

TEST(ValueTextAt, OfARecordLeavesAnEmptyPlaceForAFieldWithoutAText)
{
    const TReference<ISignal> record =
        MakeSignal(RecordType({{"a", StdLogicType}, {"b", IntegerType}, {"c", BitType}}));
    AddEvent(*Child(*record, 0), 10, LogicOne);
    AddEvent(*Child(*record, 1), 20, 1);
    EXPECT_EQ(TextAt(*record, 10, Exact), "(1,,)");
    EXPECT_EQ(TextAt(*record, 20, Exact), "(,1,)");
    EXPECT_EQ(TextAt(*record, 20, AtOrBefore), "(1,1,)");
    EXPECT_EQ(TextAt(*record, 15, Exact), "(none)") << "no field has an event exactly there";
    EXPECT_EQ(TextAt(*record, 5, AtOrBefore), "(,,)") << "other modes answer all the same";
}

TEST(ValueTextAt, OfNestedCompositesNestsItsParentheses)
{
    const std::string pair = RecordType({{"x", IntegerType}, {"y", IntegerType}});
    const TReference<ISignal> record =
        MakeSignal(RecordType({{"p", pair}, {"m", ArrayType("m(0 to 1)", 1, "rict0 1", pair)}, {"z", BitType}}));
    ISignal *p = Child(*record, 0);
    ISignal *m = Child(*record, 1);
    AddEvent(*Child(*p, 1), 10, 1);
    AddEvent(*Child(*Child(*m, 1), 0), 10, 2);
    EXPECT_EQ(TextAt(*record, 10, Exact), "((,1),(,(2,)),)");
    EXPECT_EQ(TextAt(*record, 9, AtOrBefore), "((,),((,),(,)),)");
    EXPECT_EQ(TextAt(*record, 9, Exact), "(none)");
}

TEST(ValueTextAt, OfACompositeWithoutChildrenIsAbsent)
{
    const TReference<ISignal> bare = MakeEmpty();
    bare->SetTypeOnly(RecordType({{"f", BitType}}).c_str());
    EXPECT_EQ(TextAt(*bare, 10, AtOrBefore), "(none)");
    EXPECT_EQ(TextAt(*MakeEmpty(), 10, AtOrBefore), "(none)");
    EXPECT_EQ(TextAt(*MakeSignal("r#3#rec0 "), 10, AtOrBefore), "()");
}

TEST(ValueTextAt, StartsAtTheBeginningOfTheBufferEachTime)
{
    const TReference<ISignal> signal = MakeSignal(IntegerType);
    AddEvent(*signal, 10, 123);
    AddEvent(*signal, 20, 4);
    const char *first = signal->GetValueTextAt(10, Exact);
    EXPECT_STREQ(first, "123");
    EXPECT_EQ(signal->GetValueTextAt(15, Exact), nullptr);
    const char *second = signal->GetValueTextAt(20, Exact);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(second, "4");
}

TEST(ValueText, StandsAtTheCursorWhichStays)
{
    const TReference<ISignal> signal = MakeSignal(IntegerType);
    AddEvent(*signal, 10, 123);
    const std::int32_t number = 7;
    const char *at = signal->GetValueTextAt(10, Exact);
    const char *text = signal->GetValueText(&number);
    EXPECT_EQ(text, at + 3) << "behind the text made last";
    EXPECT_EQ(signal->GetValueText(&number), text);
}

TEST(ValueTextAt, OfAVeryLongCompositeIsWhole)
{
    const int count = 60000;  // the text outgrows the buffer of 409,600 bytes
    const TReference<ISignal> array =
        MakeSignal(ArrayType("a", 1, "rict1 " + std::to_string(count), RecordType({{"n", IntegerType}})));
    std::string expected;
    for (unsigned i = 0; i < count; ++i) {
        AddEvent(*Child(*Child(*array, i), 0), 10, static_cast<int>(i) + 100000);
        expected += (i > 0 ? ",(" : "((") + std::to_string(i + 100000) + ")";
    }
    EXPECT_EQ(TextAt(*array, 10, Exact), expected + ")");
    EXPECT_EQ(TextAt(*array, 10, Exact), expected + ")");
}

TEST(InitialValueText, OfAScalarIsThatOfTheFirstEvent)
{
    const TReference<ISignal> signal = MakeSignal(RealType);
    EXPECT_EQ(signal->GetInitialValueText(false), nullptr);
    for (const double value : {0.25, 1.0})
        signal->GetWave()->AddEvent(static_cast<long long>(value * 100), 0, &value, sizeof value);
    EXPECT_EQ(OrNone(signal->GetInitialValueText(true)), "0.25");
    EXPECT_EQ(MakeEmpty()->GetInitialValueText(false), nullptr);
    const TReference<ISignal> bare = MakeEmpty();
    bare->SetTypeOnly(BitType);
    EXPECT_EQ(bare->GetInitialValueText(false), nullptr);
}

// The wave of each element is 4 bytes wide, and the elements' slots are read as one vector of 1-byte elements.
TEST(InitialValueText, OfAVectorDeliberatelyReadsTheSlotsOfItsElementsAsTheyStand)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(8));
    for (unsigned i = 0; i < 8; ++i)
        AddEvent(*Child(*signal, i), 5, LogicOne);
    EXPECT_EQ(OrNone(signal->GetInitialValueText(false)), "1UUU1UUU");

    const TReference<ISignal> integers = MakeSignal(ArrayType("i(0 to 2)", 1, "rict0 2", IntegerType));
    for (unsigned i = 0; i < 3; ++i)
        AddEvent(*Child(*integers, i), 5, static_cast<int>(i) - 1);
    EXPECT_EQ(OrNone(integers->GetInitialValueText(false)), "(-1,0,1)");
}

TEST(InitialValueText, OfAVectorNeedsAFirstValueInEveryElement)
{
    const TReference<ISignal> signal = MakeSignal(VectorType(2));
    AddEvent(*Child(*signal, 0), 5, LogicOne);
    EXPECT_EQ(signal->GetInitialValueText(false), nullptr);
}

TEST(InitialValueText, OfARecordLeavesAnEmptyPlaceForAFieldWithoutAText)
{
    const TReference<ISignal> record =
        MakeSignal(RecordType({{"a", IntegerType}, {"b", IntegerType}, {"v", VectorType(1)}}));
    EXPECT_EQ(OrNone(record->GetInitialValueText(false)), "(,,)");
    AddEvent(*Child(*record, 1), 50, 6);
    AddEvent(*Child(*Child(*record, 2), 0), 50, LogicZero);
    EXPECT_EQ(OrNone(record->GetInitialValueText(false)), "(,6,0)");
}

TEST(InitialValueText, OfALongVectorInsideARecordGrowsTheBuffersInPlace)
{
    constexpr unsigned Count = 30000;  // 120,004 bytes are more than the value buffer begins with
    const std::string integers = ArrayType("i", 1, "rict1 " + std::to_string(Count), IntegerType);
    const TReference<ISignal> record = MakeSignal(RecordType({{"a", IntegerType}, {"i", integers}}));
    AddEvent(*Child(*record, 0), 1, 5);
    std::string expected;
    for (unsigned i = 0; i < Count; ++i) {
        AddEvent(*Child(*Child(*record, 1), i), 1, 7);
        expected += i > 0 ? ",7" : "(5,(7";
    }
    EXPECT_EQ(OrNone(record->GetInitialValueText(false)), expected + "))");
}

TEST(ParseValue, TurnsATextIntoBytes)
{
    std::int32_t number = 0;
    EXPECT_EQ(MakeSignal(IntegerType)->ParseValue("-12", &number, sizeof number), S_OK);
    EXPECT_EQ(number, -12);
    unsigned char position = 0xFF;
    EXPECT_EQ(MakeSignal(StdLogicType)->ParseValue("Z", &position, 1), S_OK);
    EXPECT_EQ(position, 4);
}

TEST(ParseValue, FailsWithoutAScalarTypeOrForABadText)
{
    char buffer[16] = "";
    EXPECT_EQ(MakeEmpty()->ParseValue("1", buffer, 16), E_FAIL);
    EXPECT_EQ(MakeSignal(VectorType(1))->ParseValue("1", buffer, 16), E_FAIL);
    EXPECT_EQ(MakeSignal(StdLogicType)->ParseValue("?", buffer, 16), E_FAIL);
    EXPECT_EQ(MakeSignal(StdLogicType)->ParseValue(nullptr, buffer, 16), E_FAIL);
    EXPECT_EQ(MakeSignal(IntegerType)->ParseValue("x", buffer, 1), E_FAIL) << "told before the size is looked at";
}

TEST(ParseValue, WantsRoomForTheValue)
{
    char buffer[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(MakeSignal(IntegerType)->ParseValue("1", buffer, 3), E_INVALIDARG);
    EXPECT_EQ(std::string(buffer, 4), "xxxx");
    EXPECT_EQ(MakeSignal(IntegerType)->ParseValue("1", nullptr, 4), E_INVALIDARG);
    EXPECT_EQ(MakeSignal(IntegerType)->ParseValue("1", buffer, 4), S_OK);
}

}  // namespace
