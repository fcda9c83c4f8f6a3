#include "integrations/vpi/systemtasks.h"

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <vpi_user.h>

#include "integrations/vpi/benchdoor.h"
#include "integrations/vpi/design.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/quote.h"

namespace tesk::vpi {

namespace {

struct SCall {
    std::string task;
    std::string place;  // "tb.v:12"
    std::vector<vpiHandle> arguments;
};

struct STask {
    const char *name;
    const char *form;
    bool hasSignal;  // its first argument is one; the others are texts
    std::size_t least;
    std::size_t most;
    void (*run)(const SCall &call);
};

bool IsText(vpiHandle argument)
{
    return vpi_get(vpiType, argument) == vpiConstant && vpi_get(vpiConstType, argument) == vpiStringConst;
}

std::string TextOf(vpiHandle argument)
{
    s_vpi_value value = {};
    value.format = vpiStringVal;
    vpi_get_value(argument, &value);
    return value.value.str != nullptr ? value.value.str : "";
}

// A signal, or its name as a text. @throw CRefusal
vpiHandle SignalOf(vpiHandle argument)
{
    return IsText(argument) ? FindObject(TextOf(argument)) : argument;
}

void Stimulate(const SCall &call)
{
    constexpr std::size_t Strength = 2;
    SStimulation asked;
    asked.formula = TextOf(call.arguments[1]);
    asked.start = Now();
    asked.place = call.place;
    if (call.arguments.size() > Strength) {
        const std::string name = TextOf(call.arguments[Strength]);
        const std::optional<EStrength> strength = StrengthOf(name);
        if (!strength)
            throw CRefusal("no strength " + Quote(name) + "; write \"override\", \"deposit\" or \"drive\"");
        asked.strength = *strength;
    }
    CSession::Current().Stimulate(SignalOf(call.arguments[0]), std::move(asked));
}

void Release(const SCall &call)
{
    CSession::Current().Release(SignalOf(call.arguments[0]));
}

void Bench(const SCall &call)
{
    ApplyBench(TextOf(call.arguments[0]), call.place);
}

constexpr STask Tasks[] = {
    {"$tesk_stimulate", "$tesk_stimulate(signal, \"formula\" [, \"strength\"])", true, 2, 3, Stimulate},
    {"$tesk_release", "$tesk_release(signal)", true, 1, 1, Release},
    {"$tesk_bench", "$tesk_bench(\"file.toml\")", false, 1, 1, Bench},
};

SCall CurrentCall(const STask &task)
{
    const vpiHandle object = vpi_handle(vpiSysTfCall, nullptr);
    const char *file = vpi_get_str(vpiFile, object);
    SCall call{task.name, file != nullptr ? file : "", {}};
    call.place += ":" + std::to_string(vpi_get(vpiLineNo, object));
    if (const vpiHandle arguments = vpi_iterate(vpiArgument, object)) {
        while (const vpiHandle argument = vpi_scan(arguments))
            call.arguments.push_back(argument);
    }
    return call;
}

void TellFault(const SCall &call, const std::string &text)
{
    Tell(ESeverity::Error, call.place, call.task + ": " + text);
}

// What holds for the arguments whatever their values are. @return what is wrong; empty if nothing is
std::string FindFault(const STask &task, const SCall &call)
try {
    const std::size_t count = call.arguments.size();
    if (count < task.least || count > task.most)
        return "has " + std::to_string(count) + " arguments; write " + task.form;
    for (std::size_t i = 0; i < count; ++i) {
        const PLI_INT32 type = vpi_get(vpiType, call.arguments[i]);
        const bool isSignal = task.hasSignal && i == 0;
        if (isSignal && !IsText(call.arguments[i]))
            const CDesignSignal signal(call.arguments[i]);
        if (!isSignal &&
            (type == vpiRealVar || type == vpiModule || (type == vpiConstant && !IsText(call.arguments[i]))))
            return "argument " + std::to_string(i + 1) + " is no text; write " + task.form;
    }
    return {};
} catch (const CRefusal &refusal) {
    return "argument 1: " + std::string(refusal.what());
}

// The simulator knows no exceptions.
PLI_INT32 Check(PLI_BYTE8 *data)
{
    const STask &task = *reinterpret_cast<const STask *>(data);
    const SCall call = CurrentCall(task);
    const std::string fault = FindFault(task, call);
    if (!fault.empty()) {
        TellFault(call, fault);
        StopForFault();
    }
    return 0;
}

PLI_INT32 Run(PLI_BYTE8 *data)
{
    const STask &task = *reinterpret_cast<const STask *>(data);
    const SCall call = CurrentCall(task);
    try {
        task.run(call);
    } catch (const std::exception &fault) {
        TellFault(call, fault.what());
    }
    return 0;
}

}  // namespace

void RegisterSystemTasks()
{
    for (const STask &task : Tasks) {
        s_vpi_systf_data data = {};
        data.type = vpiSysTask;
        data.tfname = Text(task.name);
        data.calltf = Run;
        data.compiletf = Check;
        data.user_data = reinterpret_cast<PLI_BYTE8 *>(const_cast<STask *>(&task));
        vpi_register_systf(&data);
    }
}

}  // namespace tesk::vpi
