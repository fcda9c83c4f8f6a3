// Any text as a drawing of WaveDrom.
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/import.h"
#include "tools/exchange/importforms.h"

namespace fuzz {

void WaveJson(std::string_view input)
{
    ImportAndReadBack(std::string(input), tesk::ImportWaveJson);
}

}  // namespace fuzz
