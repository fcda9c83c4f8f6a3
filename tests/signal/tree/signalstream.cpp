#include <cstring>
#include <random>

#include "signal/signaltools.h"

namespace {

std::string Saved(ISignal &signal)
{
    CMemoryStream stream;
    EXPECT_EQ(signal.SaveToStream(&stream), S_OK);
    return stream.bytes;
}

// Loads one signal into a container of its own.
struct SLoaded {
    explicit SLoaded(const std::string &bytes) : stream(bytes), container(MakeContainer())
    {
        TReference<ISignal> made = MakeSignal(StdLogicType);
        result = made->LoadFromStream(&stream, container.get(), nullptr);
        if (result >= 0)
            signal = made.release();  // the container's
    }

    CMemoryStream stream;
    TReference<ISignalContainer> container;
    ISignal *signal = nullptr;
    long result;
};

TEST(SaveToStream, WritesPropertiesInKeyOrderThenNoChildren)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("b", "2");
    signal->SetProperty("A", "one");
    EXPECT_EQ(Saved(*signal), Word(2) + Pair("A", "one") + Pair("b", "2") + Word(0));
}

TEST(SaveToStream, AddsInformationAndTheBusFlag)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulatorInfo("info");
    EXPECT_EQ(Saved(*signal), Word(1) + Pair("Stimulator", "info") + Word(0));
    signal->SetProperty("VBus", "5");
    EXPECT_EQ(Saved(*signal), Word(3) + Pair("VBus", "5") + Pair("Stimulator", "info") + Pair("VBus", "1") + Word(0));
}

TEST(SaveToStream, WritesTheChildrenBehind)
{
    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    EXPECT_EQ(Saved(*vector), Word(1) + Pair("Display Mode", "0") + Word(2) +
                                  Saved(*ChildAt(vector->GetChildren(), 0)) +
                                  Saved(*ChildAt(vector->GetChildren(), 1)));
}

TEST(SaveToStream, CutsATextThatItsLengthCannotTell)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("k", std::string(70000, 'x').c_str());
    EXPECT_EQ(Saved(*signal), Word(1) + Pair("k", std::string(65535, 'x')) + Word(0));
}

TEST(SaveToStream, AnnouncesNoMorePropertiesThanItWrites)
{
    const TReference<ISignal> signal = MakeEmpty();
    for (int i = 0; i < 65535; ++i)
        signal->SetProperty(std::to_string(i).c_str(), "");
    const std::string whole = Saved(*signal);
    EXPECT_EQ(whole.substr(0, 2), Word(65535));
    const SLoaded loaded(whole);
    EXPECT_EQ(loaded.result, S_OK);
    EXPECT_EQ(loaded.stream.position, loaded.stream.bytes.size());
    EXPECT_EQ(PropertyOf(*loaded.signal, "99999"), "(none)");
    EXPECT_EQ(PropertyOf(*loaded.signal, "9999"), "") << "the last in order";

    signal->SetProperty("99999", "");
    EXPECT_EQ(Saved(*signal), whole);
}

TEST(SaveToStream, FailsIfTheCountCannotBeWritten)
{
    CMemoryStream stream;
    stream.writesLeft = 0;
    EXPECT_EQ(MakeEmpty()->SaveToStream(&stream), E_FAIL);
    EXPECT_EQ(MakeEmpty()->SaveToStream(nullptr), E_FAIL);
}

// A stream of which single writes fail, counted from 0.
class CFailingStream final : public ISignalStream {
public:
    explicit CFailingStream(int failing) : m_failing(failing) {}
    long Read(void *, unsigned) override { return E_FAIL; }
    long Write(const void *, unsigned) override { return writes++ == m_failing ? E_FAIL : S_OK; }
    int writes = 0;

private:
    int m_failing;
};

TEST(SaveToStream, StopsTheTableAtTheEntryBehindAFailureButDeliberatelyGoesOn)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("a", "1");
    signal->SetProperty("b", "2");
    signal->SetStimulatorInfo("x");
    for (int failing = 1; failing <= 4; ++failing) {
        CFailingStream stream(failing);
        EXPECT_EQ(signal->SaveToStream(&stream), S_OK) << "the result is that of the last write";
        EXPECT_EQ(stream.writes, 1 + 4 + 4 + 1) << failing;
    }
    CFailingStream last(1 + 8 + 4);
    EXPECT_EQ(signal->SaveToStream(&last), E_FAIL);
}

TEST(LoadFromStream, RestoresPropertiesAndEntersTheContainer)
{
    const SLoaded loaded(Word(3) + Pair("Color", "7") + Pair("STIMULATOR", "info") + Pair("vbus", "1") + Word(0));
    ASSERT_EQ(loaded.result, S_OK);
    EXPECT_EQ(loaded.signal->GetColor(), 7);
    EXPECT_STREQ(loaded.signal->GetStimulatorInfo(), "info");
    EXPECT_TRUE(loaded.signal->IsVBus());
    EXPECT_EQ(PropertyOf(*loaded.signal, "Stimulator"), "info");
    EXPECT_EQ(loaded.signal->GetStdType(), 1);
    EXPECT_EQ(loaded.signal->GetValueSize(), 4U);
    EXPECT_EQ(ReferencesTo(*loaded.signal), 1U) << "the container holds the only reference";
    EXPECT_EQ(ChildAt(loaded.container.get(), 0), loaded.signal);
}

TEST(LoadFromStream, DeliberatelyKeepsNameHandleAndMaxTimeInTheTableOnly)
{
    const SLoaded loaded(Word(3) + Pair("Name", "clk") + Pair("Handle", "5") + Pair("MaxTime", "9") + Word(0));
    ASSERT_EQ(loaded.result, S_OK);
    EXPECT_STREQ(loaded.signal->GetName(), "");
    EXPECT_EQ(loaded.signal->GetHandle(), -1);
    EXPECT_EQ(loaded.signal->GetMaxTime(), 0);
    EXPECT_EQ(PropertyOf(*loaded.signal, "Name"), "clk");
}

TEST(LoadFromStream, ThenSaveDeliberatelyWritesInformationTwice)
{
    const SLoaded loaded(Word(2) + Pair("Stimulator", "x") + Pair("VBus", "1") + Word(0));
    ASSERT_EQ(loaded.result, S_OK);
    const std::string twice = Pair("Stimulator", "x") + Pair("VBus", "1");
    EXPECT_EQ(Saved(*loaded.signal), Word(5) + Pair("Display Mode", "0") + twice + twice + Word(0));
}

TEST(LoadFromStream, MakesTheChildren)
{
    const std::string leaf = Word(0) + Word(0);
    const SLoaded loaded(Word(0) + Word(2) + leaf + Word(0) + Word(1) + leaf);
    ASSERT_EQ(loaded.result, S_OK);
    EXPECT_EQ(loaded.signal->GetWave(), nullptr);
    ASSERT_EQ(loaded.signal->GetChildren()->GetCount(), 2U);
    ISignal *second = ChildAt(loaded.signal->GetChildren(), 1);
    EXPECT_EQ(second->GetParent(), loaded.signal);
    EXPECT_EQ(second->GetChildren()->GetCount(), 1U);
    EXPECT_EQ(loaded.stream.position, loaded.stream.bytes.size());
}

TEST(LoadFromStream, PutsChildrenOnTheContainersManager)
{
    const SLoaded loaded(Word(0) + Word(1) + Word(0) + Word(0));
    ASSERT_EQ(loaded.result, S_OK);
    IHandleManager *manager = nullptr, *below = nullptr;
    loaded.container->GetHandleManager(&manager);
    loaded.signal->GetChildren()->GetHandleManager(&below);
    EXPECT_EQ(manager, below);
    manager->Release();
    below->Release();
}

TEST(LoadFromStream, ReplacesTheChildrenThatASignalHad)
{
    CMemoryStream stream(Word(0) + Word(1) + Word(0) + Word(0));
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> vector = MakeSignal(VectorType(3));
    vector->SetHandle(5);
    ASSERT_EQ(tesk::Share(vector.get()).release()->LoadFromStream(&stream, container.get(), nullptr), S_OK);
    EXPECT_EQ(vector->GetChildren()->GetCount(), 1U);
    EXPECT_EQ(vector->GetHandle(), -1) << "only leaves keep handles";
}

TEST(LoadFromStream, BindsAHandleThatTheSignalHas)
{
    CMemoryStream stream(Word(0) + Word(0));
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", StdLogicType);
    const TReference<ISignal> parent = MakeEmpty();
    signal->SetHandle(5);
    ASSERT_EQ(tesk::Share(signal.get()).release()->LoadFromStream(&stream, container.get(), parent.get()), S_OK);
    EXPECT_EQ(signal->GetParent(), parent.get());
    IHandleManager *manager = nullptr;
    container->GetHandleManager(&manager);
    EXPECT_EQ(manager->GetFirstSignal(5), signal.get());
    manager->Release();
}

TEST(LoadFromStream, TakesKeysAndValuesOfAnyLength)
{
    for (const std::size_t length : {0U, 127U, 128U, 129U, 65535U}) {
        const std::string text(length, 'k');
        const SLoaded loaded(Word(1) + Pair(text, text) + Word(0));
        ASSERT_EQ(loaded.result, S_OK) << length;
        EXPECT_EQ(PropertyOf(*loaded.signal, text.c_str()), text) << length;
    }
}

TEST(LoadFromStream, EndsATextAtAZero)
{
    const SLoaded loaded(Word(1) + Pair(std::string("k\0x", 3), std::string("v\0y", 3)) + Word(0));
    ASSERT_EQ(loaded.result, S_OK);
    EXPECT_EQ(PropertyOf(*loaded.signal, "k"), "v");
}

TEST(LoadFromStream, WithoutAStreamOrAContainerIsRefused)
{
    CMemoryStream stream;
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->LoadFromStream(nullptr, container.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(signal->LoadFromStream(&stream, nullptr, nullptr), E_INVALIDARG);
}

TEST(LoadFromStream, KeepsWhatItReadBeforeAFailure)
{
    const std::string bytes = Word(2) + Pair("a", "1") + Pair("b", "2");
    const TReference<ISignalContainer> container = MakeContainer();
    CMemoryStream stream(bytes.substr(0, bytes.size() - 1));
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->LoadFromStream(&stream, container.get(), nullptr), E_FAIL);
    EXPECT_EQ(PropertyOf(*signal, "a"), "1");
    EXPECT_EQ(PropertyOf(*signal, "b"), "(none)");
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(LoadFromStream, OfAStreamThatEndsAtAnyByteReleasesWhatItMade)
{
    const TReference<ISignal> record = MakeSignal(RecordType({{"a", BitType}, {"v", VectorType(3)}}));
    record->SetStimulatorInfo("info");
    const std::string bytes = Saved(*record);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const SLoaded loaded(bytes.substr(0, length));
        EXPECT_EQ(loaded.container->GetCount(), loaded.result >= 0 ? 1U : 0U) << length;
    }
}

// The shape of what was loaded: children in parentheses.
std::string Shape(ISignal &signal)
{
    std::string shape = "(";
    for (unsigned i = 0; signal.GetChildren() != nullptr && i < signal.GetChildren()->GetCount(); ++i)
        shape += Shape(*ChildAt(signal.GetChildren(), i));
    return shape + ")";
}

TEST(LoadFromStream, BringsBackWhatWasSaved)  // property
{
    std::mt19937 random(1);
    const auto below = [&random](unsigned limit) {
        return std::uniform_int_distribution<unsigned>(0, limit - 1)(random);
    };
    for (int round = 0; round < 200; ++round) {
        std::vector<SField> fields;
        for (unsigned i = 0; i <= below(4); ++i)
            fields.push_back(
                {"f" + std::to_string(i), below(2) != 0 ? VectorType(1 + static_cast<int>(below(4))) : BitType});
        const TReference<ISignal> signal = MakeSignal(RecordType(fields));
        signal->SetProperty("key", std::string(below(300), 'x').c_str());
        const SLoaded loaded(Saved(*signal));
        ASSERT_EQ(loaded.result, S_OK);
        ASSERT_EQ(loaded.stream.position, loaded.stream.bytes.size());
        ASSERT_EQ(Shape(*loaded.signal), Shape(*signal));
        ASSERT_EQ(Saved(*loaded.signal), Saved(*signal));
    }
}

TEST(LoadFromStream, SurvivesAnyBytes)  // hostile input
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(std::uniform_int_distribution<std::size_t>(0, 200)(random), 0);
        for (char &byte : bytes)  // small words, so that something nests
            byte = static_cast<char>(random() % 4 != 0 ? 0 : random() % 5);
        const SLoaded loaded(bytes);
        ASSERT_LE(loaded.container->GetCount(), 1U);
    }
}

TEST(LoadFromStream, SurvivesAClaimOf65535ChildrenAtEveryLevel)  // hostile input
{
    std::string bytes;
    for (int level = 0; level < 200; ++level)
        bytes += Word(0) + Word(65535);
    const SLoaded loaded(bytes);
    EXPECT_EQ(loaded.result, S_OK) << "what cannot be read is passed over";
    EXPECT_EQ(Shape(*loaded.signal).size(), 400U);
}

// Every signal has no properties and 65,535 children, for ever.
class CBottomlessStream final : public ISignalStream {
public:
    long Read(void *buffer, unsigned size) override
    {
        ++reads;
        std::memset(buffer, reads % 2 == 0 ? 0xFF : 0, size);
        return S_OK;
    }
    long Write(const void *, unsigned) override { return E_FAIL; }
    long long reads = 0;
};

TEST(LoadFromStream, GivesUpOnAStreamThatNestsWithoutEnd)  // hostile input
{
    CBottomlessStream stream;
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->LoadFromStream(&stream, container.get(), nullptr), E_FAIL);
    EXPECT_LT(stream.reads, 1000);
    EXPECT_EQ(container->GetCount(), 0U);
    ++stream.reads;
    EXPECT_EQ(container->Load(&stream, nullptr), E_FAIL);

    CMemoryStream good(Word(1) + Word(0) + Word(0));
    EXPECT_EQ(container->Load(&good, nullptr), S_OK) << "the next load starts afresh";
    CMemoryStream empty(Word(2));
    EXPECT_EQ(container->Load(&empty, nullptr), S_OK);
}

}  // namespace
