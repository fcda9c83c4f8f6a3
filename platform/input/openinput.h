// Opening what is read from the front to the back: a file, or a pipe.
#pragma once

#include <string>

#include "platform/files/file.h"

namespace tesk {

/// Opens a file for reading. A pipe that has no writer, and gets none within half a second, is refused instead of waited
/// for; one that has a writer is waited for as long as it takes.
/// @return one that is not open on failure, with `errno`: ENXIO for a pipe without a writer
CFile OpenInput(const std::string &fileName);

/// What `errno` says of an input that cannot be opened or read.
std::string InputErrorText(int error);

}  // namespace tesk
