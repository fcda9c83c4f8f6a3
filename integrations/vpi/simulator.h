// The simulator that loaded the module, through the standard interface (IEEE 1364) alone.
#pragma once

#include <string>
#include <vector>

#include <vpi_user.h>

#include "tools/examine/finding.h"

namespace tesk::vpi {

/// What simulators do differently.
struct SSimulator {
    const char *product;   ///< how the name begins that it tells of itself; empty for any other one
    bool hasForce;         ///< values can be forced, and released again
    bool releaseDeposits;  ///< a release sets the value given: the drivers of a signal once put are not heard again
    bool hasNineValues;    ///< signals hold the nine letters of std_logic, not 01xz
    bool hasUnknown;       ///< signals hold x and z
    bool hasSystemTasks;   ///< a design can call $tasks
    bool hasEveryObject;   ///< objects of all kinds can be listed; asking others for more is an error
    bool freesCallbacks;   ///< the handle of a callback is to be given up
    bool takesNumbers;     ///< bits may be put as numbers: one alone, and rows of known ones
    bool tellsChanges;     ///< a change of a signal can be heard of as it happens
    const char *missing;   ///< why a signal of a design may not be there; may be empty
};
const SSimulator &Simulator();

/// What is missing in a name of the interface, which writes to none of its texts.
inline PLI_BYTE8 *Text(const char *text)
{
    return const_cast<PLI_BYTE8 *>(text);
}

/// Now, in ticks.
long long Now();
/// Femtoseconds per tick.
long long Resolution();
/// Ticks of the simulation for ticks of another resolution; the largest number for times beyond it.
long long TicksOf(long long ticks, long long resolution);

/// The plus-arguments of the simulator's command line, such as "+tesk=bench.toml".
std::vector<std::string> PlusArguments();

/// Calls `routine(data)` after so many ticks.
/// @return the callback, until it is called; null if the simulator refuses
vpiHandle CallAfter(long long delay, PLI_INT32 (*routine)(t_cb_data *), void *data);
/// Calls `routine(data)` in this tick, when the design has reacted to what it has got so far.
vpiHandle CallAfterReaction(PLI_INT32 (*routine)(t_cb_data *), void *data);
/// Calls `routine(data)` when all that happens in this tick, or in the next one in which something does, is over.
vpiHandle CallWhenSettled(PLI_INT32 (*routine)(t_cb_data *), void *data);
/// Takes back a call that has not come.
void CancelCall(vpiHandle callback);
/// What is left to do about a callback that has been called.
void ForgetCall(vpiHandle callback);

/// One line of the simulator's output: "tb.v:12: error: text".
/// @param place  a file with the line, or a name
void Tell(ESeverity severity, const std::string &place, const std::string &text);
/// The same of what is no fault: "tv.v:12: text".
void Say(const std::string &place, const std::string &text);
/// How many errors were told.
int CountErrors();
/// Ends the simulation as its own tasks do at a fault: no further time step, and where that can be told a failure for a status.
void StopForFault();
/// Whether that was done: there is no simulation to speak of.
bool IsStopped();
/// The simulator goes on, and ends with the status 1 whatever it makes of the simulation. To be called at its end, too: the
/// design may have set another one meanwhile.
void FailAtExit();

}  // namespace tesk::vpi
