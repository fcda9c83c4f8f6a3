// The order of the operations of every interface, which is part of the binary interface.

#include "slots.h"

#include <vector>

#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

namespace {

template <typename... Operations>
void ExpectSlotsFromZero(Operations... operations)
{
    const std::vector<std::size_t> slots = {SlotOf(operations)...};
    for (std::size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], i);
}

// Deletes through the last slot, as a caller that knows only the table would.
template <typename Interface>
void DeleteThroughSlot(Interface *object, std::size_t slot)
{
    void **table = nullptr;
    std::memcpy(&table, static_cast<void *>(object), sizeof table);
    void (*destroy)(void *) = nullptr;
    std::memcpy(&destroy, &table[slot + 1], sizeof destroy);  // behind the destructor that does not delete
    destroy(object);
}

TEST(InterfaceSlots, OfSignalDataAreInOrder)
{
    using I = tesk::ISignalData;
    ExpectSlotsFromZero(&I::AddRef, &I::Release, &I::SetFullName, &I::SetTypeInfo, &I::SetHandle, &I::SetMode,
                        &I::SetMaxTime, &I::SetProperty, &I::AddScalar, &I::Init, &I::Reserved, &I::FindByName,
                        &I::GetTypeInfo, &I::GetChild, &I::GetScalar, &I::ClearScalars, &I::GetFullName, &I::GetName,
                        &I::GetPath, &I::GetTypeInfo2, &I::GetHandle, &I::GetMode, &I::GetMaxTime, &I::GetChildCount,
                        &I::GetScalarCount, &I::GetReserved, &I::GetProperty);
    tesk::ISignalData *data = nullptr;
    tesk::CreateSignalData(&data);
    DeleteThroughSlot(data, SlotOf(&I::GetProperty) + 1);
}

TEST(InterfaceSlots, OfASignalDataContainerAreInOrder)
{
    using I = tesk::ISignalDataContainer;
    ExpectSlotsFromZero(&I::AddRef, &I::Release, &I::Add, &I::Remove, &I::GetAt, &I::FindByName, &I::FindByHandle,
                        &I::GetCount);
    tesk::ISignalDataContainer *container = nullptr;
    tesk::CreateSignalDataContainer(&container);
    DeleteThroughSlot(container, SlotOf(&I::GetCount) + 1);
}

TEST(InterfaceSlots, OfScalarDataAreInOrder)
{
    using I = tesk::IScalarData;
    ExpectSlotsFromZero(&I::AddRef, &I::Release, &I::AddSignal, &I::RemoveSignal, &I::SetHandle, &I::SetValue,
                        &I::ResetValue, &I::GetHandle, &I::GetValueSize, &I::GetValue, &I::GetValuePtr,
                        &I::GetSignalCount, &I::GetSignal);
}

TEST(InterfaceSlots, OfAScalarDataContainerAreInOrder)
{
    using I = tesk::IScalarDataContainer;
    ExpectSlotsFromZero(&I::AddRef, &I::Release, &I::LinkSignal, &I::UnlinkSignal, &I::Link, &I::Unlink,
                        &I::InitValueSizes, &I::GetAt, &I::Find, &I::Clear, &I::GetCount);
    tesk::IScalarDataContainer *container = nullptr;
    tesk::CreateScalarDataContainer(&container);
    container->Link(1, 1);
    DeleteThroughSlot(container, SlotOf(&I::GetCount) + 1);
}

}  // namespace
