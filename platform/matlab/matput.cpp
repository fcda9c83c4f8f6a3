#include "platform/matlab/matput.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/matlab/matstream.h"

#if defined(TESK_COVERAGE)
extern "C" void __gcov_dump();
#endif

void Leave(int status)
{
#if defined(TESK_COVERAGE)
    __gcov_dump();  // the counts of the lines that ran, which are else written at a usual end
#endif
    _exit(status);
}

void GiveUp()
{
    Leave(EXIT_FAILURE);
}

void Put(const void *data, std::size_t size)
{
    if (size > 0 && std::fwrite(data, size, 1, stdout) != 1)
        GiveUp();
}

void PutNothing()
{
    Put(std::uint8_t{0});
}

std::size_t PutBegin(std::int32_t classId, const std::vector<std::uint64_t> &sizes)
{
    if (sizes.size() > MaximumRank)
        GiveUp();
    Put(std::uint8_t{1});
    Put(classId);
    Put(static_cast<std::uint32_t>(sizes.size()));
    std::size_t elements = 1;
    for (const std::uint64_t size : sizes) {
        Put(size);
        if (__builtin_mul_overflow(elements, size, &elements))
            GiveUp();
    }
    return elements;
}

void PutName(std::string_view name)
{
    name = name.substr(0, MaximumNameLength);
    Put(static_cast<std::uint32_t>(name.size()));
    Put(name.data(), name.size());
}
