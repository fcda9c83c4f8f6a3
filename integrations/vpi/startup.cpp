// Where a simulator enters the module.
#include <exception>
#include <string>

#include <vpi_user.h>

#include "integrations/vpi/benchdoor.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "integrations/vpi/systemtasks.h"

namespace tesk::vpi {

namespace {

void Register(PLI_INT32 reason, PLI_INT32 (*routine)(t_cb_data *))
{
    s_cb_data callback = {};
    callback.reason = reason;
    callback.cb_rtn = routine;
    vpi_register_cb(&callback);
}

// At time 0, when the first lines of the design have run: what they set is not put over what is deposited.
PLI_INT32 Begin(t_cb_data *)
{
    bool isApplied = false;
    try {
        isApplied = ApplyBench(AskedBench(), "");
    } catch (const std::exception &fault) {
        Tell(ESeverity::Error, "", fault.what());
    }
    if (!isApplied)
        StopForFault();
    return 0;
}

PLI_INT32 Start(t_cb_data *)
{
    if (!AskedBench().empty())
        CallAfter(0, Begin, nullptr);
    return 0;
}

PLI_INT32 End(t_cb_data *)
{
    try {
        CSession::End();
    } catch (const std::exception &fault) {
        Tell(ESeverity::Error, "", fault.what());
    }
    return 0;
}

void Enter()
{
    if (Simulator().hasSystemTasks)
        RegisterSystemTasks();
    Register(cbStartOfSimulation, Start);
    Register(cbEndOfSimulation, End);
}

}  // namespace

}  // namespace tesk::vpi

extern "C" {
__attribute__((visibility("default"))) void (*vlog_startup_routines[])() = {tesk::vpi::Enter, nullptr};
}
