// Any bytes as an FST file.
#include "fuzz/database.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::CFuzzFile file(".fst");
    fuzz::Read(file.Write(data, size));
    return 0;
}
