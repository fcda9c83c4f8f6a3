// The tasks that a Verilog design can call.
#pragma once

namespace tesk::vpi {

/// Registers $tesk_stimulate(signal, "formula" [, "strength"]), $tesk_release(signal) and $tesk_bench("file").
void RegisterSystemTasks();

}  // namespace tesk::vpi
