// Any bytes as a GHW file.
#include "fuzz/doors.h"
#include "fuzz/support/database.h"

namespace fuzz {

void Ghw(std::string_view input)
{
    WriteInput("input.ghw", input);
    ReadDatabase("input.ghw");
}

}  // namespace fuzz
