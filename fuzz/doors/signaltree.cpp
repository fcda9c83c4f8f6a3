// Any bytes as a saved signal tree: loaded, walked, written back and loaded again.
#include <algorithm>
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "tests/signal/memorystream.h"

namespace fuzz {

namespace {

tesk::TReference<ISignalContainer> Load(CMemoryStream &stream)
{
    ISignalContainer *made = nullptr;
    CreateSignalContainer(&made, nullptr);
    tesk::TReference<ISignalContainer> container(made);
    container->Load(&stream, nullptr);
    return container;
}

std::string Save(ISignalContainer &container)
{
    CMemoryStream stream;
    container.Save(&stream);
    return stream.bytes;
}

void Use(ISignalContainer &container)
{
    char buffer[64];
    for (unsigned i = 0; i < std::min(container.GetCount(), 8U); ++i) {
        ISignal *signal = nullptr;
        container.GetAt(i, &signal);
        signal->GetFullName(buffer, sizeof buffer);
        signal->GetStimulator(nullptr, nullptr, buffer, sizeof buffer);
        signal->GetMode();
        signal->GetDisplayRadix();
        signal->GetValueTextAt(0, 3);
        signal->GetInitialValueText(false);
        const int handle = 5;
        container.SetHandles(signal->GetName(), &handle, 1);
    }
}

}  // namespace

void SignalTree(std::string_view input)
{
    CMemoryStream stream{std::string(input)};
    const tesk::TReference<ISignalContainer> container = Load(stream);
    Use(*container);
    // What was saved loads, and is saved the same: but for "Stimulator" and "VBus", which a first load doubles.
    CMemoryStream saved;
    saved.bytes = Save(*container);
    const std::string once = Save(*Load(saved));
    CMemoryStream again;
    again.bytes = once;
    Require(Save(*Load(again)) == once);
}

}  // namespace fuzz
