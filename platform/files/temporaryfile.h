// Files that nobody else sees.
#pragma once

#include <string>

#include "platform/files/file.h"

namespace tesk {

/// The folder for temporary files, which the environment names (TMPDIR).
std::string TemporaryFolder();

/// Makes a file for reading and writing that has no name and goes when it is closed, however the process ends.
/// @return one that is not open on failure, with `errno`
CFile MakeTemporaryFile();

/// Digits that nobody can foretell, for the name of a file. @return none if the system has none
std::string RandomDigits();

}  // namespace tesk
