// The forms force and add_force read.
#pragma once

#include <string>

#include "tools/exchange/imported.h"

namespace tesk {

/// How what has no equivalent of its own is read.
struct SImportOptions {
    long long unit = 1'000'000;  ///< femtoseconds of a time without a unit
    bool isUnitTold = false;     ///< else such a time is told
};

/// Reads the force, noforce and run commands of a script. Others are told and left out.
void ImportQuestaForces(const std::string &script, const SImportOptions &options, CImported &imported);

/// Reads the add_force and run commands of a script. Others are told and left out.
void ImportVivadoForces(const std::string &script, const SImportOptions &options, CImported &imported);

}  // namespace tesk
