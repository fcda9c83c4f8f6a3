// The signal model, the light tree of the dialogs and the settings records: made, used and given up.
#pragma once

#include "tests/soak/dice.h"
#include "tests/soak/randomfiles.h"

namespace soak {

/// Loads a database into a tree of signals, and walks, copies, saves and loads it. A file that is none is passed over.
void UseSignals(CDice &dice, const SFile &file);

/// Makes signals of random types with waves.
void MakeSignals(CDice &dice);

/// Fills and empties data models, state lists, information strings and type descriptions.
void UseSettings(CDice &dice);

}  // namespace soak
