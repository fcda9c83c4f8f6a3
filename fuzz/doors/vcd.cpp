// Any bytes as a VCD file, imported into a store that is then asked for what it holds.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "platform/kestrin.h"
#include "waveform/files/mergedwalk.h"
#include "waveform/files/vcdfile.h"
#include "waveform/wavestore.h"

namespace fuzz {

namespace {

// Walks an element's changes: times rise, and each change is in force at its time.
void Walk(const WaveStore &store, long long handle)
{
    const WaveEvent *event = store.FindNext(handle, -1);
    for (int i = 0; event != nullptr && i < 1000; ++i) {
        const long long time = event->m_time;
        const WaveEvent *const last = store.FindLast(handle, time);
        if (last == nullptr || last->m_time != time || time > store.GetEndTime())
            std::abort();
        event = store.FindNext(handle, time);
        if (event != nullptr && event->m_time <= time)
            std::abort();
    }
}

// As the values come they make as many changes, at the same times.
void WalkByTime(WaveStore &store, const char *name)
{
    tesk::CVcdFile imported(store);
    tesk::CMergedWalk expected(imported, imported.GetSignals());
    const auto file = tesk::CVcdFile::Open(name);
    const auto walk = file != nullptr ? file->WalkChanges(file->GetSignals()) : nullptr;
    if (walk == nullptr)
        std::abort();
    const bool isSame =
        file->GetSignals().size() == imported.GetSignals().size();  // none was declared among the values
    long long time = 0;
    long long expectedTime = 0;
    long long peeked = 0;
    while (walk->PeekTime(peeked) && walk->Next(time, LLONG_MAX)) {
        if (peeked > time)
            std::abort();
        if (!isSame)
            continue;
        if (!expected.Next(expectedTime, LLONG_MAX) || time != expectedTime ||
            !std::ranges::equal(walk->GetChanged(), expected.GetChanged()))
            std::abort();
        for (const std::uint32_t signal : walk->GetChanged()) {
            if (walk->GetValues(signal) != expected.GetValues(signal))
                std::abort();
        }
    }
    if ((isSame && expected.Next(expectedTime, LLONG_MAX)) || file->GetEndTime() != store.GetEndTime())
        std::abort();
}

}  // namespace

void Vcd(std::string_view input)
{
    constexpr const char *name = "input.vcd";
    WriteInput(name, input);
    const std::unique_ptr<WaveStore> store(ImportVcdFile(name));
    if (store != nullptr)
        WalkByTime(*store, name);
    if (store == nullptr)
        return;
    for (const char *signal : {"a", "v", "tb.v", "tb.v[1]", "tb.dut.r", "v[0]"}) {
        if (const WaveEvent *const event = store->FindLast(store->FindSignal(signal), store->GetEndTime()))
            std::abs(event->m_time);
    }
    for (long long handle = 1; handle <= 300 && store->GetSignalType(handle, true) != nullptr; ++handle) {
        if (store->GetSignalType(handle, false) == nullptr)
            std::abort();
        Walk(*store, handle);
    }
}

}  // namespace fuzz
