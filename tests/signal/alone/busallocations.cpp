// Counts what a bus event iterator allocates while it runs; the counter replaces the process's operator new.

#include <cstdlib>
#include <new>

#include "signal/signal.h"
#include "signal/tree/component.h"

namespace {

int g_allocations = 0;

}  // namespace

// Not inlined, or the compiler takes malloc and operator delete for a mismatched pair.
[[gnu::noinline]] void *operator new(std::size_t size)
{
    ++g_allocations;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace {

TEST(BusEventIterator, AllocatesNothingWhileItRuns)
{
    ISignal *created = nullptr;
    ASSERT_EQ(CreateSignal("a#15#mem(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-", nullptr, &created), S_OK);
    const tesk::TReference<ISignal> signal(created);
    for (unsigned i = 0; i < 8; ++i) {
        ISignal *leaf = nullptr;
        signal->GetChildren()->GetAt(i, &leaf);
        for (long long time = i; time < 100; time += 3)
            leaf->GetWave()->AddEvent(time, 0, &time, sizeof time);
    }
    IBusEventIterator *createdIterator = nullptr;
    ASSERT_EQ(CreateBusEventIterator(signal.get(), &createdIterator), S_OK);
    const tesk::TReference<IBusEventIterator> iterator(createdIterator);

    const int before = g_allocations;
    int steps = 0;
    for (; iterator->Next() == S_OK; ++steps)
        iterator->GetEvent()->GetFlags();
    iterator->Seek(50, 3);
    iterator->Reset();
    EXPECT_EQ(g_allocations, before);
    EXPECT_EQ(steps, 100);
}

}  // namespace
