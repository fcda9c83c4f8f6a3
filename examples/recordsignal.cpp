// Makes a signal of a record type, gives its fields events, and walks them as one bus.
#include <cstdint>
#include <cstdio>

#include <tesk.h>

namespace {

// A record of a std_logic, an integer and a vector of two std_logic.
const char *const RecordType = "r#6#packet3 "
                               "valid e#9#std_logicc9 UX01ZWLH- "
                               "count i#7#integerrict-2147483648 2147483647 "
                               "data a#28#std_logic_vector(1 downto 0)1 ricd1 0 e#9#std_logicc9 UX01ZWLH-";

// Adds an event to the signal of that path. The text is turned into the bytes that the signal's wave keeps.
void AddEvent(ISignalContainer *signals, const char *path, long long time, const char *text)
{
    ISignal *signal = nullptr;
    std::uint32_t value = 0;
    if (signals->Find(path, &signal) >= 0 && signal->ParseValue(text, &value, sizeof value) >= 0)
        signal->GetWave()->AddEvent(time, 0, &value, sizeof value);
}

}  // namespace

int main()
{
    ISignalContainer *signals = nullptr;
    ISignal *packet = nullptr;
    if (CreateSignalContainer(&signals, nullptr) < 0 || CreateSignal(RecordType, nullptr, &packet) < 0)
        return 1;
    packet->SetName("packet");
    signals->Add(packet);
    packet->Release();  // the container holds a reference of its own

    AddEvent(signals, "packet.valid", 0, "0");
    AddEvent(signals, "packet.count", 0, "17");
    AddEvent(signals, "packet.data(1)", 0, "Z");
    AddEvent(signals, "packet.data(0)", 0, "Z");
    AddEvent(signals, "packet.valid", 10, "1");
    AddEvent(signals, "packet.data(0)", 10, "1");
    AddEvent(signals, "packet.count", 25, "18");

    const char *const leaves[] = {"packet.valid", "packet.count", "packet.data(1)", "packet.data(0)"};
    IBusEventIterator *walk = nullptr;
    if (packet->CreateBusEventIterator(&walk) < 0)
        return 1;
    while (walk->Next() == S_OK) {
        IBusEvent *event = walk->GetEvent();
        std::printf("%lld:", event->GetTime());
        for (unsigned i = 0; i < event->GetElementCount(); ++i) {
            ISignal *leaf = nullptr;
            if (signals->Find(leaves[i], &leaf) >= 0)
                std::printf(" %s=%s", leaves[i], leaf->GetValueText(event->GetElementValuePtr(i)));
        }
        std::printf("\n");
    }
    walk->Release();
    signals->Release();
}
