// Any text as a script that forces signals, in both forms.
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/import.h"

namespace fuzz {

void Forces(std::string_view input)
{
    const std::string script(input);
    ImportAndReadBack(script, tesk::ImportQuestaForces);
    ImportAndReadBack(script, tesk::ImportVivadoForces);
}

}  // namespace fuzz
