#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

// A list that remembers what it was told.
class CMemoryWriter final : public ISignalListWriter {
public:
    bool Begin() override { return begins; }
    bool AddSignal(int handle, const char *name, int parentHandle, int index, int mode, long long *maxTime) override
    {
        Log("signal", handle, name, parentHandle, index, mode, *maxTime);
        return ++added < refusedFrom;
    }
    bool AddBus(int handle, int childCount, const char *name, int parentHandle, int index, int mode,
                long long *maxTime) override
    {
        Log("bus" + std::to_string(childCount), handle, name, parentHandle, index, mode, *maxTime);
        return ++added < refusedFrom;
    }
    bool SetProperty(int handle, const char *name, const char *value) override
    {
        log.push_back(std::to_string(handle) + " " + name + "=" + value);
        return name != refusedProperty;
    }

    std::vector<std::string> log;
    bool begins = true;
    int added = 0;
    int refusedFrom = 1000;
    std::string refusedProperty;

private:
    void Log(const std::string &kind, int handle, const char *name, int parentHandle, int index, int mode,
             long long maxTime)
    {
        log.push_back(kind + " " + std::to_string(handle) + " " + name + " in " + std::to_string(parentHandle) +
                      " at " + std::to_string(index) + " mode " + std::to_string(mode) + " to " +
                      std::to_string(maxTime));
    }
};

TEST(ExportToList, AddsTheSignalWithItsInformationEvenIfThatIsEmpty)
{
    const TReference<ISignal> signal = MakeNamed("s", BitType);
    signal->SetHandle(5);
    signal->SetMaxTime(99);
    CMemoryWriter writer;
    EXPECT_EQ(signal->ExportToList(&writer, 3), S_OK);
    EXPECT_THAT(writer.log, ElementsAre("signal 5 s in -1 at 3 mode 6 to 99", "5 Stimulator="));
    signal->SetStimulatorInfo("info");
    signal->SetProperty("VBus", "2");
    writer.log.clear();
    EXPECT_EQ(signal->ExportToList(&writer, -1), S_OK);
    EXPECT_THAT(writer.log, ElementsAre("signal 5 s in -1 at -1 mode 6 to 99", "5 Stimulator=info", "5 VBus=1"));
}

TEST(ExportToList, AddsTheChildrenOfABus)
{
    const TReference<ISignal> vector = MakeNamed("v", VectorType(2));
    vector->SetHandle(5);
    vector->SetMode(1);
    CMemoryWriter writer;
    EXPECT_EQ(vector->ExportToList(&writer, 0), S_OK);
    EXPECT_THAT(writer.log,
                ElementsAre("bus2 5 v in -1 at 0 mode 1 to 0", "5 Stimulator=", "signal -1 (1) in 5 at 0 mode 1 to 0",
                            "-1 Stimulator=", "signal -1 (0) in 5 at 1 mode 1 to 0", "-1 Stimulator="));
}

TEST(ExportToList, StopsAtTheFirstRefusal)
{
    const TReference<ISignal> vector = MakeNamed("v", VectorType(3));
    vector->SetProperty("VBus", "1");
    EXPECT_EQ(vector->ExportToList(nullptr, 0), E_FAIL);
    for (const char *property : {"Stimulator", "VBus"}) {
        CMemoryWriter writer;
        writer.refusedProperty = property;
        EXPECT_EQ(vector->ExportToList(&writer, 0), E_FAIL) << property;
        EXPECT_EQ(writer.added, 1) << property;
    }
    CMemoryWriter writer;
    writer.refusedFrom = 3;
    EXPECT_EQ(vector->ExportToList(&writer, 0), E_FAIL);
    EXPECT_EQ(writer.added, 3);
}

}  // namespace
