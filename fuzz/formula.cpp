// Any text as a formula: made, walked, checked and written back.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/stimiterator.h"
#include "core/stimulus.h"

namespace {

// What is written of a formula can be read again.
void WriteAndReadBack(IStimulus &stimulus)
{
    SimpleString::CStr formula;
    stimulus.GetFormula(formula);
    IStimulus *again = IStimulus::Create(formula, 0, g_simRes, nullptr, true, true);
    again = reinterpret_cast<IStimulus *>(reinterpret_cast<std::uintptr_t>(again) & ~std::uintptr_t{1});
    if (again != nullptr)
        again->Destroy();
}

void Walk(IStimulus &stimulus)
{
    SimpleString::CStr text;
    long long time = -1;
    for (int i = 0; i < 100 && (i == 0 || time != -1); ++i) {
        time = stimulus.GetNextEventTime(time);
        stimulus.GetValue(time, text);
        stimulus.GetTimeString(time, text);
    }
    for (const long long edge : {LLONG_MIN, LLONG_MAX}) {
        stimulus.GetNextEventTime(edge);
        stimulus.GetValue(edge, text);
    }
    CStimIterator iterator(&stimulus);
    while (ISimpleStimulus *event = iterator.Next())
        event->GetTimeString(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::string formula(reinterpret_cast<const char *>(data + 2), size - 2);
    const long long resolution = data[0] % 4 == 0 ? 1 : data[0] * 100LL;
    const long long start = data[1] % 2 == 0 ? 0 : (LLONG_MAX >> (data[1] % 64));
    const tesk::StimulusPtr stimulus(IStimulus::Create(formula.c_str(), start, resolution, nullptr, false, false));
    if (stimulus == nullptr)
        return 0;
    stimulus->CheckSettings(nullptr);
    Walk(*stimulus);
    WriteAndReadBack(*stimulus);
    return 0;
}
