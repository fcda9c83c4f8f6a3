// Runs a design that Verilator has compiled, with the module in it. Compiled with each design; TESK_TOP names its class, and
// TESK_MODULE where the module is.
//
// What it takes besides the plus-arguments of the design and of the module: +dump=FILE writes the waves, if the design was
// compiled with --trace-fst (FST) or --trace (VCD).
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include <verilated.h>
#include <verilated_vpi.h>

#define TESK_QUOTED(text) #text
#define TESK_HEADER(name) TESK_QUOTED(name.h)
#include TESK_HEADER(TESK_TOP)

#if defined(VM_TRACE_FST) && VM_TRACE_FST
#include <verilated_fst_c.h>
using CDump = VerilatedFstC;
#elif defined(VM_TRACE) && VM_TRACE
#include <verilated_vcd_c.h>
using CDump = VerilatedVcdC;
#else
// The design was compiled without waves.
struct CDump {
    void open(const char *) { std::fprintf(stderr, "+dump: the design was compiled without --trace-fst or --trace\n"); }
    void dump(uint64_t) {}
    void close() {}
};
#endif

#ifndef TESK_MODULE
#define TESK_MODULE "tesk.vpi"  // looked for in the folders of LD_LIBRARY_PATH
#endif

namespace {

// Its functions of the interface are those of this program.
bool LoadModule()
{
    void *module = dlopen(TESK_MODULE, RTLD_NOW | RTLD_GLOBAL);
    if (module == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    auto *routines = static_cast<void (**)()>(dlsym(module, "vlog_startup_routines"));
    for (; routines != nullptr && *routines != nullptr; ++routines)
        (*routines)();
    return true;
}

void AddTrace(TESK_TOP &top, CDump &dump)
{
#if defined(VM_TRACE) && VM_TRACE
    constexpr int AllLevels = 99;
    top.trace(&dump, AllLevels);
#else
    (void)top;
    (void)dump;
#endif
}

// All that happens at one time.
void Settle(TESK_TOP &top)
{
    while (VerilatedVpi::callCbs(cbAfterDelay)) {
    }  // one may ask for another one at this time
    do {
        top.eval();
        VerilatedVpi::callValueCbs();
    } while (VerilatedVpi::callCbs(cbReadWriteSynch));
    VerilatedVpi::callCbs(cbReadOnlySynch);
}

// The next time at which something happens; the largest number for never.
uint64_t NextTime(TESK_TOP &top)
{
    const uint64_t called = VerilatedVpi::cbNextDeadline();
    return top.eventsPending() ? std::min<uint64_t>(called, top.nextTimeSlot()) : called;
}

void Run(VerilatedContext &context, TESK_TOP &top, CDump *dump)
{
    VerilatedVpi::callCbs(cbStartOfSimulation);
    while (!context.gotFinish()) {
        Settle(top);
        if (dump != nullptr)
            dump->dump(context.time());
        const uint64_t next = NextTime(top);
        if (next == ~uint64_t{0})
            break;
        context.time(next);
    }
    top.final();
    VerilatedVpi::callCbs(cbEndOfSimulation);
}

}  // namespace

int main(int argc, char **argv)
{
    VerilatedContext context;
    context.commandArgs(argc, argv);
    context.traceEverOn(true);
    Verilated::threadContextp(&context);
    context.fatalOnVpiError(false);                             // the module tells its faults
    const auto top = std::make_unique<TESK_TOP>(&context, "");  // no name in front of the top
    if (!LoadModule())
        return 1;
    CDump dump;
    const char *file = context.commandArgsPlusMatch("dump=");
    const bool isDumped = file != nullptr && *file != '\0';
    if (isDumped) {
        AddTrace(*top, dump);
        dump.open(file + std::strlen("+dump="));
    }
    Run(context, *top, isDumped ? &dump : nullptr);
    if (isDumped)
        dump.close();
    return 0;
}
