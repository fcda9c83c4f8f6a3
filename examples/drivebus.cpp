// Drives an 8-bit bus with one formula, the way a simulator kernel does: one stimulus for each wire.
#include <cstdio>
#include <string>
#include <vector>

#include <tesk.h>

namespace {

const char *const BusType = "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-";
constexpr int Wires = 8;
constexpr long long Resolution = 1000;  // femtoseconds per tick: times are picoseconds

// Messages of the library go where the host shows messages.
void ShowMessage(void *, int level, const char *category, const char *text)
{
    std::printf("%s %s: %s\n", category, level == 1 ? "error" : "warning", text);
}

// One stimulus for each wire, the leftmost first; none if the formula cannot be used.
std::vector<tesk::StimulusPtr> CreateWires(const char *formula)
{
    std::vector<SimpleString::CStr> formulas;
    std::vector<tesk::StimulusPtr> wires;
    CFormulaParser parser;
    parser.SetSimRes(Resolution);
    IStimulus::SetupAdditionalInfo("bus", BusType);
    if (parser.Run(formula, formulas, Wires, true, 0) == 0)
        return wires;
    for (const SimpleString::CStr &wireFormula : formulas) {
        wires.emplace_back(IStimulus::Create(wireFormula, 0, Resolution, nullptr, false, false));
        if (wires.back() == nullptr)
            return {};
    }
    return wires;
}

// The time of the next change of any wire, -1 if there is none.
long long NextChange(const std::vector<tesk::StimulusPtr> &wires, long long time)
{
    long long next = -1;
    for (const tesk::StimulusPtr &wire : wires) {
        const long long change = wire->GetNextEventTime(time);
        if (change != -1 && (next == -1 || change < next))
            next = change;
    }
    return next;
}

// What the wires drive, "Z" for one that is silent.
std::string Value(const std::vector<tesk::StimulusPtr> &wires, long long time)
{
    std::string value;
    for (const tesk::StimulusPtr &wire : wires) {
        SimpleString::CStr bit;
        value += wire->GetValue(time, bit) ? static_cast<const char *>(bit) : "Z";
    }
    return value;
}

}  // namespace

int main()
{
    Q71log_SetSink(ShowMessage, nullptr);
    {
        const std::vector<tesk::StimulusPtr> wires = CreateWires("x\"0F\" 10ns, x\"F0\" 20ns -r 20ns -cancel 45ns");
        for (long long time = NextChange(wires, -1); time != -1; time = NextChange(wires, time))
            std::printf("%lld ps: %s\n", time, Value(wires, time).c_str());
    }
    if (CreateWires("/custom missing.fst,tb.bus").empty())
        std::printf("no stimulus\n");
    IStimulus::OnEndsim();  // behind the last Destroy: open files and loaded tables go
}
