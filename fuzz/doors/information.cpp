// Any text as what is kept of a signal's stimulator: the information string, a hot key, a clock, the settings of a counter and of
// random numbers. What was read is written and read again.
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "settings/clock.h"
#include "settings/counter.h"
#include "settings/random.h"
#include "settings/stiparser.h"

namespace fuzz {

namespace {

using SimpleString::CStr;

void ReadStimulator(const char *text)
{
    CStiParser stimulator;
    if (!stimulator.Init(text))
        return;
    int number = 0;
    bool isActive = false;
    stimulator.GetStimType(&number);
    stimulator.GetStrength(&number);
    stimulator.GetActive(&isActive);
    const CStiParser copy(stimulator);
    Require(copy == stimulator);
    CStr written;
    if (stimulator.MergeStimInfo(written))
        stimulator.Init(written);
}

void ReadHotKey(const char *text)
{
    unsigned long key = 0;
    CStr data;
    if (!ParseHotKeyData(text, &key, data))
        return;
    CStr written;
    MergeHotKeyData(key, data, written);
    unsigned long keyAgain = 0;
    CStr dataAgain;
    Require(ParseHotKeyData(written, &keyAgain, dataAgain) && keyAgain == key && dataAgain.Compare(data) == 0);
}

void ReadClock(const char *text)
{
    CClock clock;
    CStr written;
    if (clock.StreamIn(text)) {
        clock.StreamOut(written);
        clock.StreamIn(written);
    }
    long long offset = 0;
    for (int unit = -1; unit < 9; ++unit) {
        clock.GenerateFormula(written, unit, nullptr);
        clock.GenerateFormula(written, unit, &offset);
    }
}

void ReadGenerators(const char *text)
{
    tesk::CCounterStimulusInfo counter;
    counter.FromFormula(text);
    char buffer[300];
    if (counter.GenerateFormula(buffer, sizeof buffer)) {
        buffer[sizeof buffer - 1] = '\0';
        counter.FromFormula(buffer);
    }
    tesk::CRandomStimulusInfo random;
    CStr written;
    if (random.InitializeFromInternalFormula(text) && random.GenerateInternalFormula(written))
        random.InitializeFromInternalFormula(written);
}

}  // namespace

void Information(std::string_view input)
{
    const std::string text(input);
    CStiParser::InitResources();
    ReadStimulator(text.c_str());
    ReadHotKey(text.c_str());
    ReadClock(text.c_str());
    ReadGenerators(text.c_str());
}

}  // namespace fuzz
