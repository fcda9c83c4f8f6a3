// Any bytes as what the program says that reads MAT-files for the library.
#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "fuzz/support/matuse.h"

namespace fuzz {

void MatStream(std::string_view input)
{
    // Of what it is given it finds the file alone, and writes that.
    WriteInput("input.mat", input);
    UseMatFile("/bin/cat", "input.mat");
}

}  // namespace fuzz
