#include "integrations/vpi/simulator.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk::vpi {

namespace {

constexpr SSimulator Simulators[] = {
    {"Icarus", true, false, false, true, true, true, false, true, true,
     "; Icarus Verilog leaves out what nothing in the design uses"},
    {"GHDL", true, true, true, true, false, false, false, false, true, "; GHDL shows no reals, records and times"},
    {"Verilator", false, false, false, false, false, false, true, false, false,
     "; compile the design with --public-flat-rw"},
    {"", true, false, false, true, true, true, false, true, true, ""},
};

const SSimulator &FindSimulator()
{
    s_vpi_vlog_info info = {};
    vpi_get_vlog_info(&info);
    const std::string_view product = info.product != nullptr ? info.product : "";
    return *std::ranges::find_if(Simulators, [&](const SSimulator &row) { return product.starts_with(row.product); });
}

long long CountTicks(const s_vpi_time &time)
{
    const std::uint64_t ticks = std::uint64_t{time.high} << 32 | time.low;
    return static_cast<long long>(std::min<std::uint64_t>(ticks, std::numeric_limits<long long>::max()));
}

s_vpi_time TimeOf(long long ticks)
{
    s_vpi_time time = {};
    time.type = vpiSimTime;
    time.high = static_cast<PLI_UINT32>(static_cast<std::uint64_t>(ticks) >> 32);
    time.low = static_cast<PLI_UINT32>(ticks);
    return time;
}

vpiHandle Register(PLI_INT32 reason, long long delay, PLI_INT32 (*routine)(t_cb_data *), void *data)
{
    s_vpi_time time = TimeOf(delay);
    s_cb_data callback = {};
    callback.reason = reason;
    callback.cb_rtn = routine;
    callback.time = &time;
    callback.user_data = static_cast<PLI_BYTE8 *>(data);
    return vpi_register_cb(&callback);
}

// Has the simulator fail at its end, where it lets itself be told. Of Icarus Verilog, not in the standard.
bool SetStatus()
{
    using CSetStatus = void (*)(int);
    const auto setStatus = reinterpret_cast<CSetStatus>(dlsym(RTLD_DEFAULT, "vpip_set_return_value"));
    if (setStatus != nullptr)
        setStatus(1);
    return setStatus != nullptr;
}

int s_errors = 0;
bool s_isStopped = false;

}  // namespace

const SSimulator &Simulator()
{
    static const SSimulator &s_simulator = FindSimulator();
    return s_simulator;
}

long long Now()
{
    s_vpi_time time = TimeOf(0);
    vpi_get_time(nullptr, &time);
    return CountTicks(time);
}

long long Resolution()
{
    constexpr int Femto = -15, MostDigits = 18;
    long long resolution = 1;
    for (int digits = std::clamp(vpi_get(vpiTimePrecision, nullptr) - Femto, 0, MostDigits); digits > 0; --digits)
        resolution *= 10;
    return resolution;
}

long long TicksOf(long long ticks, long long resolution)
{
    const Int128 here = static_cast<Int128>(ticks) * resolution / Resolution();
    constexpr long long Largest = std::numeric_limits<long long>::max();
    return here > Largest ? Largest : static_cast<long long>(here);
}

std::vector<std::string> PlusArguments()
{
    s_vpi_vlog_info info = {};
    vpi_get_vlog_info(&info);
    std::vector<std::string> arguments;
    for (int i = 0; i < info.argc; ++i) {
        if (info.argv[i] != nullptr && info.argv[i][0] == '+')
            arguments.emplace_back(info.argv[i]);
    }
    return arguments;
}

vpiHandle CallAfter(long long delay, PLI_INT32 (*routine)(t_cb_data *), void *data)
{
    return Register(cbAfterDelay, delay, routine, data);
}

vpiHandle CallAfterReaction(PLI_INT32 (*routine)(t_cb_data *), void *data)
{
    return Register(cbReadWriteSynch, 0, routine, data);
}

vpiHandle CallWhenSettled(PLI_INT32 (*routine)(t_cb_data *), void *data)
{
    return Register(cbReadOnlySynch, 0, routine, data);
}

void CancelCall(vpiHandle callback)
{
    if (callback != nullptr)
        vpi_remove_cb(callback);
}

void ForgetCall(vpiHandle callback)
{
    if (callback != nullptr && Simulator().freesCallbacks)
        vpi_free_object(callback);
}

void Tell(ESeverity severity, const std::string &place, const std::string &text)
{
    const bool isError = severity == ESeverity::Error;
    s_errors += isError ? 1 : 0;
    const std::string line = OneLine((place.empty() ? "tesk" : place) + (isError ? ": error: " : ": warning: ") + text);
    vpi_printf(Text("%s\n"), line.c_str());
}

void Say(const std::string &place, const std::string &text)
{
    vpi_printf(Text("%s\n"), OneLine((place.empty() ? "tesk" : place) + ": " + text).c_str());
}

int CountErrors()
{
    return s_errors;
}

bool IsStopped()
{
    return s_isStopped;
}

void FailAtExit()
{
    static bool s_isSet = false;
    if (SetStatus() || std::exchange(s_isSet, true))
        return;
    // The standard knows no status of the whole. What others have to do at the exit is done: it was asked for later than this.
    std::atexit([] {
        std::fflush(nullptr);
        std::_Exit(1);
    });
}

void StopForFault()
{
    SetStatus();
    s_isStopped = true;
    vpi_control(vpiFinish, 1);
}

}  // namespace tesk::vpi
