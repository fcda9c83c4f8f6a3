// Any bytes as a MAT-file, read by the program that reads them for the library. That may crash or hang; the library may not.
#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "fuzz/support/matuse.h"

namespace fuzz {

void MatFile(std::string_view input)
{
    WriteInput("input.mat", input);
    UseMatFile(TESK_MATREAD, "input.mat");
}

}  // namespace fuzz
