// Saving and exporting a list of signals.

#include <string>
#include <vector>

#include "signal/signallist.h"

namespace {

class CStream final : public ISignalStream {
public:
    long Read(void * /*buffer*/, unsigned /*size*/) override { return E_FAIL; }
    long Write(const void *buffer, unsigned size) override
    {
        m_bytes.append(static_cast<const char *>(buffer), size);
        return m_result;
    }

    std::string m_bytes;
    long m_result = S_OK;
};

TEST(SavingAListOfSignals, WritesTheCountAsAWordAndEverySignal)
{
    CList list;
    std::vector<FakePtr> signals;
    for (int i = 0; i < 0x0102; ++i) {
        signals.push_back(NewFake("s"));
        list.Add(signals.back().get());
    }
    CStream stream;
    EXPECT_EQ(list.Save(&stream), S_OK);
    EXPECT_EQ(stream.m_bytes, "\x02\x01");
    for (const FakePtr &signal : signals)
        EXPECT_EQ(signal->m_saved, 1);
}

TEST(SavingAListOfSignals, WritesACountOfZeroForAnEmptyList)
{
    CStream stream;
    stream.m_result = S_FALSE;
    EXPECT_EQ(CList().Save(&stream), S_OK);
    EXPECT_EQ(stream.m_bytes, std::string(2, '\0'));
}

TEST(SavingAListOfSignals, RefusesMoreSignalsThanTheWordCanCount)
{
    CList list;
    const FakePtr signal = NewFake("s");
    for (int i = 0; i < 0xFFFF; ++i)
        list.Add(signal.get());
    CStream stream;
    EXPECT_EQ(list.Save(&stream), S_OK);
    EXPECT_EQ(stream.m_bytes, "\xFF\xFF");
    list.Add(signal.get());
    EXPECT_EQ(list.Save(&stream), E_FAIL);
    EXPECT_EQ(stream.m_bytes, "\xFF\xFF") << "nothing more is written";
}

TEST(SavingAListOfSignals, StopsAtTheFirstFailureAndAnswersIt)
{
    CList list;
    const FakePtr a = NewFake("a"), b = NewFake("b"), c = NewFake("c");
    for (CFakeSignal *signal : {a.get(), b.get(), c.get()})
        list.Add(signal);
    b->m_result = E_UNEXPECTED;
    CStream stream;
    EXPECT_EQ(list.Save(&stream), E_UNEXPECTED);
    EXPECT_EQ(a->m_saved, 1);
    EXPECT_EQ(c->m_saved, 0);

    stream.m_result = E_NOTIMPL;
    EXPECT_EQ(list.Save(&stream), E_NOTIMPL);
    EXPECT_EQ(a->m_saved, 1) << "after a failed write nothing is saved";
    EXPECT_EQ(list.Save(nullptr), E_INVALIDARG);
}

class CWriter final : public ISignalListWriter {
public:
    bool Begin() override { return m_begins; }
    bool AddSignal(int, const char *, int, int, int, long long *) override { return false; }
    bool AddBus(int, int, const char *, int, int, int, long long *) override { return false; }
    bool SetProperty(int, const char *, const char *) override { return false; }

    bool m_begins = true;
};

TEST(ExportingAListOfSignals, ExportsEverySignalWithoutAnIndex)
{
    CList list;
    const FakePtr a = NewFake("a"), b = NewFake("b");
    list.Add(a.get());
    list.Add(b.get());
    CWriter writer;
    EXPECT_EQ(list.Export(&writer), S_OK);
    EXPECT_EQ(a->m_exported, 1);
    EXPECT_EQ(b->m_exported, 1);
    EXPECT_EQ(b->m_exportIndex, -1);
}

TEST(ExportingAListOfSignals, EndsAtOnceIfTheWriterDoesNotBegin)
{
    CList list;
    const FakePtr a = NewFake("a");
    list.Add(a.get());
    CWriter writer;
    writer.m_begins = false;
    EXPECT_EQ(list.Export(&writer), S_OK);
    EXPECT_EQ(a->m_exported, 0);
    EXPECT_EQ(list.Export(nullptr), E_FAIL);
}

TEST(ExportingAListOfSignals, StopsAtTheFirstFailureAndAnswersIt)
{
    CList list;
    const FakePtr a = NewFake("a"), b = NewFake("b");
    list.Add(a.get());
    list.Add(b.get());
    a->m_result = E_INVALIDARG;
    CWriter writer;
    EXPECT_EQ(list.Export(&writer), E_INVALIDARG);
    EXPECT_EQ(b->m_exported, 0);
}

}  // namespace
