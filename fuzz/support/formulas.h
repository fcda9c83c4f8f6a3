// What any stimulus is asked for.
#pragma once

#include <string>

#include "core/stimulus.h"
#include "settings/cstr.h"

namespace fuzz {

/// Without the mark that `IStimulus::Create` puts into the pointer.
IStimulus *Unmarked(IStimulus *stimulus);

/// Walks a stimulus forward, asks for all that it tells, and at both ends of time.
void Walk(IStimulus &stimulus);

/// Whether a formula names no file but, maybe, one in the current folder.
bool StaysHere(const std::string &formula);

}  // namespace fuzz
