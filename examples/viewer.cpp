// Loads a dump into a signal tree with its events, finds signals by their paths, and prints values and bus events.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>

#include <tesk.h>

namespace {

// Gives the waves of all leaves the events of the file. Leaves of one handle share a wave.
void LoadEvents(NTARN::IDatabaseReader &reader, IHandleManager &handles)
{
    for (int handle = handles.GetFirstHandle(); handle != -1; handle = handles.GetNextHandle()) {
        ISignal *leaf = handles.GetFirstSignal(handle);
        if (leaf == nullptr || leaf->GetWave() == nullptr)
            continue;
        const NTARN::KEventIterator end = reader.EventsEnd(handle);
        for (NTARN::KEventIterator event = reader.EventsFrom(handle, 0); !(event == end); ++event) {
            const std::uint32_t value[] = {event.value(), event.extValue()};
            leaf->GetWave()->AddEvent(*event, 0, value, leaf->GetValueSize());
        }
    }
}

constexpr int AtOrBefore = 3;  // the mode of a look-up by time

// What the signal of that path shows at some times.
void PrintValues(ISignalContainer &signals, const char *path)
{
    ISignal *signal = nullptr;
    if (signals.Find(path, &signal) < 0) {
        std::printf("%s: no such signal\n", path);
        return;
    }
    std::printf("%s:", path);
    for (const long long time : {0, 20, 50, 70, 100})
        std::printf(" %s at %lld", signal->GetValueTextAt(time, AtOrBefore), time);
    std::printf("\n");
}

// The first changes of a bus as a whole.
void PrintBus(ISignalContainer &signals, const char *path)
{
    ISignal *bus = nullptr;
    IBusEventIterator *walk = nullptr;
    if (signals.Find(path, &bus) < 0 || bus->GetChildren() == nullptr || bus->CreateBusEventIterator(&walk) < 0)
        return;
    for (int shown = 0; shown < 5 && walk->Next() == S_OK; ++shown) {
        IBusEvent *event = walk->GetEvent();
        std::printf("%lld: ", event->GetTime());
        for (unsigned i = 0; i < event->GetElementCount(); ++i) {
            ISignal *wire = nullptr;
            if (bus->GetChildren()->GetAt(i, &wire) == S_OK)
                std::printf("%s", wire->GetValueText(event->GetElementValuePtr(i)));
        }
        std::printf("\n");
    }
    walk->Release();
}

}  // namespace

int main(int argc, char **argv)
try {
    // `Find` parts a path at ".", and a tree out of a file has the whole path as the name of a signal: with another separator
    // that path holds no ".", and is found. To be set before the file is opened.
    SetVHDLHierarchySeparator('/');
    const std::unique_ptr<NTARN::IDatabaseReader> reader(
        NTARN::IDatabaseReader::create(argc > 1 ? argv[1] : "examples/traffic.fst", false));
    ISignalContainer *signals = nullptr;
    if (reader == nullptr || CreateSignalContainer(&signals, nullptr) < 0)
        return 1;
    IHandleManager *handles = nullptr;
    if (signals->LoadFromDatabase(reader.get()) == S_OK && signals->GetHandleManager(&handles) == S_OK) {
        LoadEvents(*reader, *handles);
        handles->Release();
        PrintValues(*signals, "tb/request");
        PrintValues(*signals, "tb/nothing");
        PrintBus(*signals, "tb/count");
    }
    signals->Release();
    return 0;
} catch (const std::exception &fault) {  // the reader tells so of a file that is not there or damaged
    std::printf("%s\n", fault.what());
    return 1;
}
