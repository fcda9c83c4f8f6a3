// Any bytes as a GHW file.
#include "fuzz/database.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::CFuzzFile file(".ghw");
    fuzz::Read(file.Write(data, size));
    return 0;
}
