// Any text to each reader of a settings text, a number, a type description or the arguments of a file formula.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/basedliteral.h"
#include "core/fileformulaargs.h"
#include "core/simpleformulaparser.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "settings/bitvector.h"
#include "settings/brel.h"
#include "settings/clock.h"
#include "settings/counter.h"
#include "settings/decconverter.h"
#include "settings/longnumber.h"
#include "settings/random.h"
#include "settings/stimstate.h"
#include "settings/stiparser.h"

namespace {

using SimpleString::CStr;

void ReadNumbers(const char *text)
{
    CStr bits;
    for (const unsigned radix : {2U, 8U, 10U, 16U}) {
        CLongNumber(text, radix).BitLength();
        CBitVector(70, text, radix).ToBinaryText();
        ConvertBasedValue(text, radix, -1, bits, true);
        TKc_decConverter converter;
        if (converter.Convert(text, static_cast<int>(radix)))
            converter.MakeBin(40, bits);
    }
}

// What was read is written and read again.
void ReadSettings(const char *text)
{
    CStr written;
    CStiParser stimulator;
    if (stimulator.Init(text) && stimulator.MergeStimInfo(written))
        stimulator.Init(written);
    CStimState states;
    states.Create(text);
    char buffer[1000];
    if (states.Store(buffer, sizeof buffer) != 0)
        states.Create(buffer);
    CClock clock;
    if (clock.StreamIn(text)) {
        clock.StreamOut(written);
        clock.StreamIn(written);
    }
    clock.GenerateFormula(written, -1, nullptr);
    tesk::CCounterStimulusInfo counter;
    counter.FromFormula(text);
    tesk::CRandomStimulusInfo random;
    if (random.InitializeFromInternalFormula(text) && random.GenerateInternalFormula(written))
        random.InitializeFromInternalFormula(written);
    unsigned long key = 0;
    ParseHotKeyData(text, &key, written);
}

void ReadFormulaParts(const char *text)
{
    CBrelFormula notation;
    CStr written;
    if (notation.Parse(text) && notation.GetFormula(written))
        notation.GetSource(written);
    notation.GetNextEvent(0);
    notation.GetValue(1000000, written);
    for (const auto parse : {ParseCustomArgs, ParseTxtArgs, ParseMatArgs}) {
        CFileFormulaArgs arguments;
        parse(text, arguments);
    }
    std::vector<CStr> elements;
    for (const bool isBitVector : {true, false})
        CSimpleFormulaParser().Run(text, elements, 5, isBitVector, 1000, 0);
}

void ReadType(const char *text)
{
    const Kestrin::KTypeInfo type(text);
    unsigned char value[64] = {};
    if (type.GetKind() != 0 && type.GetSimpleSize_OldFormat() <= sizeof value) {
        const std::string shown = type.GetValueString_OldFormat(value, 2, 0, -1, false);
        type.GetBytes_OldFormat(shown.c_str(), value, sizeof value, 2, 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Q71log_SetSink([](void *, int, const char *, const char *) {}, nullptr);
    const std::string text(reinterpret_cast<const char *>(data), size);
    ReadNumbers(text.c_str());
    ReadSettings(text.c_str());
    ReadFormulaParts(text.c_str());
    ReadType(text.c_str());
    return 0;
}
