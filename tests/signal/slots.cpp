// The order of the operations of every interface, which is part of the binary interface.

#include "slots.h"

#include <vector>

#include "platform/tarn.h"
#include "signal/signal.h"

namespace {

template <typename... Operations>
std::vector<std::size_t> Slots(Operations... operations)
{
    return {SlotOf(operations)...};
}

std::vector<std::size_t> CountedFrom(std::size_t first, std::size_t count)
{
    std::vector<std::size_t> slots;
    for (std::size_t i = 0; i < count; ++i)
        slots.push_back(first + i);
    return slots;
}

#define EXPECT_SLOTS_FROM(first, ...)                                                                                  \
    do {                                                                                                               \
        const std::vector<std::size_t> slots = Slots(__VA_ARGS__);                                                     \
        EXPECT_EQ(slots, CountedFrom(first, slots.size()));                                                            \
    } while (false)

TEST(InterfaceSlots, OfComponentsBeginWithTheThreeOfIUnknown)
{
    EXPECT_SLOTS_FROM(0, &IUnknown::QueryInterface, &IUnknown::AddRef, &IUnknown::Release);
    EXPECT_SLOTS_FROM(0, &ISignal::QueryInterface, &ISignal::AddRef, &ISignal::Release);
}

TEST(InterfaceSlots, OfAWaveAreInOrder)
{
    using I = ISignalWave;
    EXPECT_SLOTS_FROM(3, &I::AddEvent, &I::AddMarkedEvent, &I::InsertEvent, &I::PushPendingEvent,
                      &I::CommitPendingEvents, &I::ClearPendingEvents, &I::ClearEvents, &I::CreateEventIterator,
                      &I::FindEvent, &I::DeleteEvent, &I::DeleteEvents, &I::GetEventCount, &I::GetValueWidth,
                      &I::GetFirstTime, &I::GetLastTime, &I::GetEventValue);
}

TEST(InterfaceSlots, OfAnEventAreInOrder)
{
    using I = IEvent;
    EXPECT_SLOTS_FROM(0, &I::GetTime, &I::GetValueSize, &I::SetValue, &I::GetValue, &I::GetValuePtr, &I::GetFlags,
                      &I::SetFlags);
}

TEST(InterfaceSlots, OfAnEventIteratorAreInOrder)
{
    using I = IEventIterator;
    EXPECT_SLOTS_FROM(3, &I::Current, &I::Next, &I::Reset, &I::HasPrevious, &I::HasNext, &I::HasEvents,
                      &I::GetCurrentTime, &I::Seek);
}

TEST(InterfaceSlots, OfASignalAreInOrder)
{
    using I = ISignal;
    EXPECT_SLOTS_FROM(3, &I::GetName, &I::SetName, &I::GetFullName, &I::GetTypeInfo, &I::SetTypeInfo,
                      &I::SetTypeInfoString, &I::GetStdType, &I::SetTypeOnly, &I::SetMaxTime, &I::GetTypeIdentifier,
                      &I::GetValueSize, &I::GetMode, &I::SetMode, &I::GetHandle, &I::SetHandle, &I::GetColor,
                      &I::SetColor, &I::GetStimulatorInfo, &I::SetStimulatorInfo, &I::GetDisplayMode,
                      &I::SetDisplayMode, &I::GetDisplayRadix, &I::ShareWave, &I::OwnsWave, &I::Refresh,
                      &I::SetValueTextOption, &I::GetValueTextOption, &I::GetValueText, &I::GetEventText,
                      &I::GetValueTextAt, &I::Reserved, &I::GetProperty, &I::SetProperty, &I::GetStimulator,
                      &I::SetStimulator, &I::GetHotKey, &I::SetHotKey, &I::GetSpareFlag, &I::GetParent, &I::GetChildren,
                      &I::GetWave, &I::CreateSignalIterator, &I::CreateEventIterator, &I::CreateBusEventIterator,
                      &I::ParseValue, &I::LoadFromStream, &I::SaveToStream, &I::AttachFromDatabase, &I::AttachFromList,
                      &I::ExportToList, &I::GetInitialValueText, &I::SetParent, &I::GetMaxTime, &I::IsVBus);
}

TEST(InterfaceSlots, OfWhatCallersSupplyAreInOrder)
{
    EXPECT_SLOTS_FROM(3, &ISignalStream::Read, &ISignalStream::Write);
    EXPECT_SLOTS_FROM(3, &ISignalListWriter::Begin, &ISignalListWriter::AddSignal, &ISignalListWriter::AddBus,
                      &ISignalListWriter::SetProperty);
    EXPECT_SLOTS_FROM(3, &ISignalListReader::GetCount, &ISignalListReader::GetChild, &ISignalListReader::GetTop,
                      &ISignalListReader::GetInfo, &ISignalListReader::GetProperty, &ISignalListReader::GetTypeInfo);
}

TEST(InterfaceSlots, OfAContainerAreInOrder)
{
    using I = ISignalContainer;
    EXPECT_SLOTS_FROM(3, &I::InsertBefore, &I::Add, &I::Remove, &I::Replace, &I::CreateStdSignal, &I::CreateSignal,
                      &I::Clear, &I::GetCount, &I::SetHandles, &I::Find, &I::CreateIterator, &I::GetAt,
                      &I::GetHandleManager, &I::SetHandleManager, &I::Load, &I::Save, &I::LoadFromDatabase,
                      &I::LoadFromList, &I::Export, &I::AddFromDatabase, &I::AddFromList, &I::GetMaxTime);
}

TEST(InterfaceSlots, OfASignalIteratorAreInOrder)
{
    EXPECT_SLOTS_FROM(3, &ISignalIterator::Next, &ISignalIterator::Reset);
}

TEST(InterfaceSlots, OfAHandleManagerAreInOrder)
{
    using I = IHandleManager;
    EXPECT_SLOTS_FROM(3, &I::GetFirstHandle, &I::GetNextHandle, &I::GetFirstSignal, &I::GetNextSignal, &I::Add,
                      &I::Remove, &I::RemoveHandle, &I::Clear);
}

TEST(InterfaceSlots, OfABusEventAreInOrder)
{
    using I = IBusEvent;
    EXPECT_SLOTS_FROM(0, &I::GetTime, &I::GetElementCount, &I::GetElementSize, &I::GetElementValue,
                      &I::GetElementValuePtr, &I::GetFlags, &I::GetElementCount2);
}

TEST(InterfaceSlots, OfABusEventIteratorAreInOrder)
{
    using I = IBusEventIterator;
    EXPECT_SLOTS_FROM(3, &I::GetEvent, &I::Next, &I::Reset, &I::Seek, &I::GetTotalValueSize);
}

TEST(InterfaceSlots, OfADatabaseReaderAreInOrderWithTheTwoOfItsDestructorBetween)
{
    using I = NTARN::IDatabaseReader;
    EXPECT_SLOTS_FROM(0, &I::GetEndTime, &I::GetResolution, &I::RootHandlesBegin, &I::RootHandlesEnd, &I::GetChildRange,
                      &I::GetName, &I::GetType, &I::EventsFrom, &I::EventsEnd);
    EXPECT_SLOTS_FROM(11, &I::GetMode, &I::GetFullName, &I::GetSignalEndTime);
}

}  // namespace
