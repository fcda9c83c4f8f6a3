// Any bytes as an FST file.
#include "fuzz/doors.h"
#include "fuzz/support/database.h"

namespace fuzz {

void Fst(std::string_view input)
{
    WriteInput("input.fst", input);
    ReadDatabase("input.fst");
}

}  // namespace fuzz
