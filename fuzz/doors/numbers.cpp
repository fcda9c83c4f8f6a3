// Any text as a number, a literal, a time or a frequency.
#include <string>

#include "core/basedliteral.h"
#include "fuzz/doors.h"
#include "settings/bitvector.h"
#include "settings/decconverter.h"
#include "settings/longnumber.h"
#include "settings/timeunits.h"
#include "tools/exchange/imported.h"

namespace fuzz {

void Numbers(std::string_view input)
{
    const std::string text(input);
    SimpleString::CStr bits;
    for (const unsigned radix : {2U, 8U, 10U, 16U}) {
        CLongNumber(text.c_str(), radix).BitLength();
        CBitVector(70, text.c_str(), radix).ToBinaryText();
        ConvertBasedValue(text.c_str(), radix, -1, bits, true);
        ConvertBasedValue(text.c_str(), radix, 5, bits, false);
        TKc_decConverter converter;
        if (converter.Convert(text.c_str(), static_cast<int>(radix)))
            converter.MakeBin(40, bits);
    }
    double value = 0;
    int unit = 0;
    tesk::TextToTime(text.c_str(), &value, &unit);
    tesk::ReadImportedTime(text, 1000);
    tesk::LiteralBits(text);
}

}  // namespace fuzz
