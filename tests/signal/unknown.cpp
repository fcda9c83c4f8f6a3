#include "signal/unknown.h"

#include <cstdio>
#include <string>
#include <type_traits>

#include "signal/reference.h"

namespace {

std::string Text(const GUID &id)
{
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", id.Data1, id.Data2, id.Data3,
                  id.Data4[0], id.Data4[1], id.Data4[2], id.Data4[3], id.Data4[4], id.Data4[5], id.Data4[6],
                  id.Data4[7]);
    return text;
}

TEST(InterfaceIdentifiers, HaveTheirSixteenBytes)
{
    static_assert(sizeof(GUID) == 16);
    const struct {
        GUID id;
        const char *text;
    } rows[] = {
        {IID_IUnknown, "{00000000-0000-0000-C000-000000000046}"},
        {IID_ISignalWave, "{3089B360-FDD0-11D0-A229-00C0DF12533A}"},
        {IID_IEventIterator, "{07E56E20-FF99-11D0-A229-00C0DF12533A}"},
        {IID_ISignal, "{DA43AC40-0985-11D1-A5BA-00C0DF12533A}"},
        {IID_ISignalContainer, "{4233D800-0990-11D1-A5BA-00C0DF12533A}"},
        {IID_ISignalIterator, "{F0907A10-0990-11D1-A5BA-00C0DF12533A}"},
        {IID_IHandleManager, "{11B54E90-0CDE-11D1-A5BC-00C0DF12533A}"},
        {IID_IBusEventIterator, "{485F9040-0CBC-11D1-A5BC-00C0DF12533A}"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Text(row.id), row.text);
}

TEST(ResultCodes, AreSigned32BitAndNegativeForFailures)
{
    const struct {
        long code;
        std::uint32_t bits;
        bool success;
    } rows[] = {
        {S_OK, 0, true},
        {S_FALSE, 1, true},
        {E_NOTIMPL, 0x80004001, false},
        {E_NOINTERFACE, 0x80004002, false},
        {E_FAIL, 0x80004005, false},
        {E_UNEXPECTED, 0x8000FFFF, false},
        {E_INVALIDARG, 0x80070057, false},
        {E_OUTOFMEMORY, 0x8007000E, false},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.bits);
        EXPECT_EQ(row.code >= 0, row.success) << row.bits;
    }
    static_assert(std::is_same_v<decltype(E_FAIL), const std::int32_t>);
}

TEST(QueryInterface, AcceptsIUnknownAndTheOwnInterfaceOnly)
{
    const TReference<ISignalWave> wave = NewWave();
    for (const GUID &id : {IID_IUnknown, IID_ISignalWave}) {
        void *out = nullptr;
        ASSERT_EQ(wave->QueryInterface(id, &out), S_OK);
        EXPECT_EQ(out, wave.get());
        EXPECT_EQ(wave->Release(), 1u) << "it adds one reference";
    }
}

TEST(QueryInterface, RefusesEveryOtherIdentifierAndLeavesOutAlone)
{
    const TReference<ISignalWave> wave = NewWave();
    GUID lastByteDiffers = IID_ISignalWave;
    ++lastByteDiffers.Data4[7];
    GUID firstWordDiffers = IID_ISignalWave;
    ++firstWordDiffers.Data1;
    for (const GUID &id : {IID_ISignal, IID_IEventIterator, lastByteDiffers, firstWordDiffers}) {
        int old = 0;
        void *out = &old;
        EXPECT_EQ(wave->QueryInterface(id, &out), E_NOINTERFACE) << Text(id);
        EXPECT_EQ(out, &old);
    }
    EXPECT_EQ(ReferencesTo(*wave), 1u);
}

TEST(QueryInterface, RefusesANullOut)
{
    const TReference<ISignalWave> wave = NewWave();
    EXPECT_EQ(wave->QueryInterface(IID_ISignalWave, nullptr), E_INVALIDARG);
    EXPECT_EQ(ReferencesTo(*wave), 1u);
}

TEST(ReferenceCount, StartsAtOneForTheCallerOfAFactoryAndCountsBothWays)
{
    ISignalWave *wave = nullptr;
    ASSERT_EQ(CreateSignalWave(4, &wave), S_OK);
    EXPECT_EQ(wave->AddRef(), 2u);
    EXPECT_EQ(wave->AddRef(), 3u);
    EXPECT_EQ(wave->Release(), 2u);
    EXPECT_EQ(wave->Release(), 1u);
    EXPECT_EQ(wave->Release(), 0u);  // the leak checker sees that the object is gone
}

class CStream : public ISignalStream {
    long Read(void * /*buffer*/, unsigned /*size*/) override { return E_FAIL; }
    long Write(const void * /*buffer*/, unsigned /*size*/) override { return E_FAIL; }
};

TEST(CallerSuppliedInterfaces, NeedNotWriteTheThreeOfIUnknown)
{
    CStream stream;
    void *out = &stream;
    EXPECT_EQ(stream.QueryInterface(IID_IUnknown, &out), E_NOINTERFACE);
    EXPECT_EQ(stream.AddRef(), 1u);
    EXPECT_EQ(stream.Release(), 1u);
}

}  // namespace
