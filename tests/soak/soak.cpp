// Uses the library for as long as it is told, as a host does that never ends: random files, formulas of all kinds on them, signal
// trees; runs begin and end. What is held behind a run may not grow.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/formulaparser.h"
#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "platform/log.h"
#include "tests/soak/memorywatch.h"
#include "tests/soak/randomformulas.h"
#include "tests/soak/signaltrees.h"

namespace {

using namespace soak;
using Clock = std::chrono::steady_clock;

constexpr int WarmUpRuns = 2000;
// What a process may hold more than behind the warm-up: tables of texts and allocators settle.
constexpr std::size_t MayBeAllocated = 64 << 10;
constexpr std::size_t MayBeResident = 24 << 20;  // with what a sanitizer keeps

struct STotals {
    long long runs = 0, steps = 0, messages = 0;
    std::map<std::string, std::pair<long long, long long>> formulas;  // by keyword: those tried, those that were good
};

// The word that tells the kind of a formula, and of a replay the kind of file.
std::string KindOf(const std::string &formula)
{
    for (const char *word :
         {"/brel", "/txt/internal", "/txt", "/mat/internal", "/mat", "\\counter", "\\RANDOM", "\\random"}) {
        if (formula.starts_with(word))
            return word;
    }
    for (const char *ending : {".vcd.gz", ".vcd", ".fst", ".ghw", ".zyn"}) {
        if (formula.starts_with("/custom") && formula.find(ending) != std::string::npos)
            return std::string("/custom ") + ending;
    }
    return "plain";
}

IStimulus *Create(const std::string &text, long long startTime, bool binaryValues)
{
    IStimulus *const stimulus = IStimulus::Create(text.c_str(), startTime, g_simRes, nullptr, binaryValues, false);
    return reinterpret_cast<IStimulus *>(reinterpret_cast<std::uintptr_t>(stimulus) & ~std::uintptr_t{1});
}

void Play(CDice &dice, IStimulus &stimulus, STotals &totals)
{
    SimpleString::CStr text;
    long long bits = 0;
    long long time = -1;
    if (dice.Chance(30))
        stimulus.AllowBinary8BytesValues();
    stimulus.CheckSettings(nullptr);
    for (int step = 0; step < 100; ++step, ++totals.steps) {
        stimulus.GetValue(time, text);
        stimulus.GetBinary8BytesValue(time, bits);
        stimulus.GetTimeString(time, text);
        const long long next = stimulus.GetNextEventTime(time);
        if (next == -1 || stimulus.IsFinishedAt(next))
            break;
        time = next > time ? next : time + 1;
    }
    stimulus.GetRepeatString(text);
    stimulus.GetCancelString(text);
    CStimIterator iterator(&stimulus);
    for (int event = 0; event < 50; ++event) {
        if (ISimpleStimulus *found = iterator.Next())
            found->GetValue(text);
    }
    // Plain text is read once more as it was written.
    stimulus.GetFormula(text);
    if (!stimulus.IsCounter() && !text.IsEmpty()) {
        const tesk::StimulusPtr again(Create(static_cast<const char *>(text), 0, false));
    }
}

// The formulas of the elements of a signal; one signal has one.
std::vector<std::string> Split(const SFormula &formula, long long startTime)
{
    if (formula.elements == 1)
        return {formula.text};
    std::vector<SimpleString::CStr> elements;
    CFormulaParser parser;
    parser.SetSimRes(g_simRes);
    parser.Run(formula.text.c_str(), elements, formula.elements, true, startTime);
    return {elements.begin(), elements.end()};
}

void UseFormula(CDice &dice, const SFormula &formula, std::vector<tesk::StimulusPtr> &kept, STotals &totals)
{
    IStimulus::SetupAdditionalInfo("tb.signal", formula.type.c_str());
    const long long startTime = dice.Chance(70) ? 0 : static_cast<long long>(dice.Below(100000));
    for (const std::string &element : Split(formula, startTime)) {
        tesk::StimulusPtr stimulus(Create(element, startTime, dice.Chance(30)));
        auto &[tried, good] = totals.formulas[KindOf(element)];
        ++tried;
        if (!stimulus)
            continue;
        ++good;
        Play(dice, *stimulus, totals);
        kept.push_back(std::move(stimulus));
    }
}

// One simulation from its begin to its end.
void Run(CDice &dice, const std::filesystem::path &folder, int &counters, STotals &totals)
{
    g_simRes = dice.Chance(70) ? 1000 : 1 + static_cast<long long>(dice.Below(1000000));
    std::vector<SFile> files;
    for (std::size_t count = dice.Below(4); count > 0; --count)
        files.push_back(MakeFile(dice, folder));
    std::vector<tesk::StimulusPtr> kept;
    for (std::size_t formulas = dice.Below(12); formulas > 0; --formulas) {
        UseFormula(dice, MakeFormula(dice, files, counters), kept, totals);
        if (dice.Chance(20))
            kept.clear();
    }
    for (const SFile &file : files)
        UseSignals(dice, file);
    MakeSignals(dice);
    UseSettings(dice);
    if (dice.Chance(50))
        kept.clear();  // else they outlive the run, and are given up behind it
    IStimulus::OnEndsim();
    IStimulus::SetupAdditionalInfo("", "");
    for (const SFile &file : files)
        std::filesystem::remove(file.path);
    ++totals.runs;
}

void Show(const STotals &totals, const SHolding &held, double seconds)
{
    long long tried = 0, good = 0;
    for (const auto &[kind, counts] : totals.formulas) {
        tried += counts.first;
        good += counts.second;
    }
    std::printf("%6.0f s: %lld runs, %lld formulas of which %lld are good, %lld steps, %lld messages; %zu KB resident, "
                "%zu KB allocated, "
                "%zu files open\n",
                seconds, totals.runs, tried, good, totals.steps, totals.messages, held.resident >> 10,
                held.allocated >> 10, held.descriptors);
    std::fflush(stdout);
}

void ShowKinds(const STotals &totals)
{
    for (const auto &[kind, counts] : totals.formulas)
        std::printf("    %-16s %9lld, %lld good\n", kind.c_str(), counts.first, counts.second);
}

// Tells what is held too much. @return whether nothing is
bool IsFlat(const SHolding &before, const SHolding &now)
{
    bool isFlat = true;
    const auto compare = [&isFlat](const char *what, std::size_t most, std::size_t is) {
        if (is <= most)
            return;
        std::printf("%s: %zu, and may be %zu\n", what, is, most);
        isFlat = false;
    };
    compare("bytes allocated", before.allocated + MayBeAllocated, now.allocated);
    compare("bytes resident", before.resident + MayBeResident, now.resident);
    compare("files open", before.descriptors, now.descriptors);
    compare("processes", before.processes, now.processes);
    return isFlat;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fputs("soak SECONDS [SEED]\n", stderr);
        return 2;
    }
    const double seconds = std::strtod(argv[1], nullptr);
    CDice dice(argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
    char pattern[] = "/tmp/tesk-soak-XXXXXX";
    if (mkdtemp(pattern) == nullptr)
        return 2;
    const std::filesystem::path folder = pattern;

    STotals totals;
    const auto countMessage = [](void *context, int, const char *, const char *) {
        ++static_cast<STotals *>(context)->messages;
    };
    Q71log_SetSink(countMessage, &totals);
    int counters = 0;
    SHolding before;
    const Clock::time_point start = Clock::now();
    double shown = 0;
    for (double now = 0; now < seconds || totals.runs < WarmUpRuns;) {
        Run(dice, folder, counters, totals);
        if (totals.runs == WarmUpRuns)
            before = WhatIsHeld();
        now = std::chrono::duration<double>(Clock::now() - start).count();
        if (now - shown < 60 && totals.runs != WarmUpRuns)
            continue;
        shown = now;
        Show(totals, WhatIsHeld(), now);
    }
    const SHolding after = WhatIsHeld();
    Show(totals, after, std::chrono::duration<double>(Clock::now() - start).count());
    std::filesystem::remove_all(folder);
    ShowKinds(totals);
    const bool isFlat = IsFlat(before, after);
    std::puts(isFlat ? "What is held does not grow." : "What is held grows.");
    return isFlat ? 0 : 1;
}
