#include "tools/commands/periodoption.h"

#include "tools/commandline.h"
#include "tools/timetext.h"

long long ReadPeriodOption(const std::string &text)
{
    constexpr long long Femtosecond = 1;  // as a resolution
    const long long period = ReadTimeOption("--period", text, Femtosecond);
    if (period < 1)
        RefuseOption("--period", text, "no period above 0; write a number and a unit, such as 10ns");
    return period;
}
