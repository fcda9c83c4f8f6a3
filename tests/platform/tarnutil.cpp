#include "platform/tarnutil.h"

#include <gmock/gmock.h>

#include "tests/platform/vcd/vcdsupport.h"
#include "tests/slots.h"

namespace {

using NTARN::IDatabaseStreamWriter;
using testing::HasSubstr;

TEST(StreamWriter, KeepsTheOrderOfItsOperations)
{
    using W = IDatabaseStreamWriter;
    const std::size_t slots[] = {
        SlotOf(&W::open),         SlotOf(&W::setOption),  SlotOf(&W::beginHeader),   SlotOf(&W::endHeader),
        SlotOf(&W::beginSignals), SlotOf(&W::endSignals), SlotOf(&W::beginEvents),   SlotOf(&W::endEvents),
        SlotOf(&W::acceptsData),  SlotOf(&W::addSignal),  SlotOf(&W::addHandle),     SlotOf(&W::endSignal),
        SlotOf(&W::addEvent),     SlotOf(&W::setEndTime), SlotOf(&W::setResolution), SlotOf(&W::setFlag),
    };
    for (std::size_t i = 0; i < std::size(slots); ++i)
        EXPECT_EQ(slots[i], i);
    // The destructor takes two slots.
    EXPECT_EQ(SlotOf(&W::getInterface), 18u);
    EXPECT_EQ(SlotOf(&W::isCancelled), 19u);
    EXPECT_EQ(SlotOf(&W::setUserData), 20u);
}

TEST(WaveEvent, IsARecordOf24Bytes)
{
    EXPECT_EQ(sizeof(WaveEvent), 24u);
}

TEST(VcdImporter, CallsTheWriterInOrder)
{
    EXPECT_EQ(
        SImport(VcdHead + "#1 1!").writer.calls,
        "open beginHeader endHeader beginSignals endSignals beginEvents endEvents setEndTime setResolution setFlag ");
}

TEST(VcdImporter, GivesNoEventsToAWriterThatWantsNone)
{
    const CTextFile file(VcdHead + "#1 1!");
    CRecorder writer;
    writer.accepts = false;
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(file.Name());
    importer.vcdImport();
    EXPECT_EQ(writer.signals.size(), 3u);
    EXPECT_TRUE(writer.events.empty());
}

TEST(VcdImporter, StopsWhenTheWriterCancels)
{
    const CTextFile file(VcdHead);
    CRecorder writer;
    writer.cancelled = true;
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(file.Name());
    try {
        importer.vcdImport();
        FAIL();
    } catch (const std::runtime_error &raised) {
        EXPECT_EQ(raised.what(), file.Name() + ": the import was cancelled");
    }
}

TEST(VcdImporter, TellsASharingWriterOnceThatHandlesHaveTheSameEvents)
{
    class CSharer : public CRecorder, public NTARN::IEventSharing {
    public:
        void shareEvents(const long long *handle, const long long *original) override
        {
            shared += std::to_string(*handle) + "=" + std::to_string(*original) + " ";
        }
        std::string shared;
    } writer;
    const CTextFile file("$var wire 2 ! a $end $var wire 2 ! b $end $var wire 1 ! c $end $var wire 2 ! d $end "
                         "$enddefinitions $end #1 b11 !");
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(file.Name());
    importer.vcdImport();
    EXPECT_EQ(writer.shared, "3=1 4=2 6=1 7=2 ");
    EXPECT_EQ(writer.Events("a"), "1=1");
    EXPECT_EQ(writer.Events("b"), "");
    EXPECT_EQ(writer.Events("c"), "1=1");
}

TEST(VcdImporter, ReportsItsProgressWhileAHookIsSet)
{
    struct SProgress {
        int calls = 0;
        long long bytes = 0;
        long long size = 0;
    } progress;
    const auto note = [](void *context, long long bytesRead, long long fileSize) {
        auto *const seen = static_cast<SProgress *>(context);
        EXPECT_GE(bytesRead, seen->bytes);
        *seen = {seen->calls + 1, bytesRead, fileSize};
    };
    const std::string text = VcdHead + "$comment " + std::string(3000000, 'c') + " $end";
    NTARN::NImport::SetProgress(note, &progress);
    const SImport import(text);
    NTARN::NImport::SetProgress(nullptr, nullptr);
    const int calls = progress.calls;
    EXPECT_GT(calls, 2);
    EXPECT_EQ(progress.bytes, static_cast<long long>(text.size()));
    EXPECT_EQ(progress.size, static_cast<long long>(text.size()));
    const SImport silent(text);
    EXPECT_EQ(progress.calls, calls);
}

}  // namespace
