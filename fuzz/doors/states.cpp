// Any text as the moments at which a stimulator is switched on and off.
#include <string>
#include <vector>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "settings/stimstate.h"

namespace fuzz {

void States(std::string_view input)
{
    CStimState states;
    states.Create(std::string(input).c_str());
    const unsigned size = states.Store(nullptr, 0);
    if (size == 0)
        return;
    std::vector<char> text(size);
    Require(states.Store(text.data(), size) == size);
    Require(states.Store(text.data(), size - 1) == 0);
    states.Store(text.data(), size);
    CStimState again;
    again.Create(text.data());
    states.Add(5, true);
    // A change in the middle of a walk.
    for (long long time = states.FirstState(); time != -1; time = states.NextState())
        states.Add(time / 2, time % 4 < 2);
}

}  // namespace fuzz
