// Any text in the legacy gate-level notation.
#include <climits>
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "settings/brel.h"

namespace fuzz {

void Notation(std::string_view input)
{
    const std::string text(input);
    CBrelFormula notation;
    SimpleString::CStr written;
    CheckBrelMaxRepeatCount(text.c_str(), 1000);
    if (!notation.Parse(text.c_str()))
        return;
    if (notation.GetSource(written)) {
        CBrelFormula again;
        again.Parse(written);
    }
    notation.GetFormula(written);
    notation.GetDuration();
    notation.CheckRepeat(5);
    long long time = -1;
    for (int i = 0; i < 100 && (i == 0 || time != -1); ++i) {
        time = notation.GetNextEvent(time);
        notation.GetValue(time, written);
    }
    for (const long long edge : {LLONG_MIN, LLONG_MAX}) {
        notation.GetNextEvent(edge);
        notation.GetValue(edge, written);
    }
}

}  // namespace fuzz
