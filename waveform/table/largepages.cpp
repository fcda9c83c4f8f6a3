#include "waveform/table/largepages.h"

#include <memory>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace tesk {

#if defined(__linux__) && defined(MADV_HUGEPAGE)

void PreferLargePages(void *memory, std::size_t size)
{
    constexpr std::size_t LargePage = 2 * 1024 * 1024;
    if (std::align(LargePage, LargePage, memory, size) != nullptr)
        madvise(memory, size - size % LargePage, MADV_HUGEPAGE);
}

#else

void PreferLargePages(void *, std::size_t) {}

#endif

}  // namespace tesk
