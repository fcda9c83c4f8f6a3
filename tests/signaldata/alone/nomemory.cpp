// The data models without memory.
#include "nomemory.h"

#include <string>

#include "platform/kestrin.h"
#include "signal/tree/component.h"
#include "signal/unknown.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

namespace {

using DataPtr = tesk::TReference<tesk::ISignalData>;
using DatasPtr = tesk::TReference<tesk::ISignalDataContainer>;
using ScalarsPtr = tesk::TReference<tesk::IScalarDataContainer>;

constexpr const char *Letter = "e#9#std_logicc9 UX01ZWLH-";

DataPtr NewData(int handle)
{
    tesk::ISignalData *data = nullptr;
    EXPECT_EQ(tesk::CreateSignalData(&data), S_OK);
    data->SetHandle(handle);
    data->SetTypeInfo(Letter);
    return DataPtr(data);
}

}  // namespace

TEST(WithoutMemory, NoObjectIsMade)
{
    tesk::ISignalData *data = nullptr;
    tesk::ISignalDataContainer *datas = nullptr;
    tesk::IScalarDataContainer *scalars = nullptr;
    EXPECT_GT(Starve([&data] { return tesk::CreateSignalData(&data); }), 0);
    EXPECT_GT(Starve([&datas] { return tesk::CreateSignalDataContainer(&datas); }), 0);
    EXPECT_GT(Starve([&scalars] { return tesk::CreateScalarDataContainer(&scalars); }), 0);
    data->Release();
    datas->Release();
    scalars->Release();
}

TEST(WithoutMemory, ATypeStaysAsItWas)
{
    const DataPtr data = NewData(1);
    const std::string bus = "a#28#std_logic_vector(7 downto 0)1 ricd7 0 " + std::string(Letter);
    EXPECT_GT(Starve([&] {
                  const long result = data->SetTypeInfo(bus.c_str());
                  EXPECT_STREQ(data->GetTypeInfo()->GetTypeInfoString(), result == S_OK ? bus.c_str() : Letter);
                  return result;
              }),
              0);
}

TEST(WithoutMemory, NothingIsAddedToAContainer)
{
    tesk::ISignalDataContainer *made = nullptr;
    ASSERT_EQ(tesk::CreateSignalDataContainer(&made), S_OK);
    const DatasPtr datas(made);
    const DataPtr data = NewData(7);
    EXPECT_GT(Starve([&] {
                  const long result = datas->Add(data.get());
                  EXPECT_EQ(datas->GetCount(), result == S_OK ? 1u : 0u);
                  return result;
              }),
              0);
    EXPECT_EQ(datas->FindByHandle(7), data.get());
}

TEST(WithoutMemory, NothingIsLinked)
{
    tesk::IScalarDataContainer *made = nullptr;
    ASSERT_EQ(tesk::CreateScalarDataContainer(&made), S_OK);
    const ScalarsPtr scalars(made);
    EXPECT_GT(Starve([&] { return scalars->Link(3, 4); }), 0);
    ASSERT_NE(scalars->Find(3), nullptr);
    EXPECT_EQ(scalars->Find(3)->GetSignalCount(), 1u);
}
