// Opening what is read from the front to the back: a file, or a pipe.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace tesk {

/// Opens a file for reading. A pipe that has no writer, and gets none within half a second, is refused instead of waited
/// for; one that has a writer is waited for as long as it takes.
/// @return a descriptor, the caller's; -1 with `errno` on failure, ENXIO for a pipe without a writer
int OpenInput(const char *fileName);

/// What `errno` says of an input that cannot be opened or read.
std::string InputErrorText(int error);

struct SStreamCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using InputStream = std::unique_ptr<std::FILE, SStreamCloser>;

/// As `OpenInput`, for reading through the standard library. @return null with `errno` on failure
InputStream OpenInputStream(const char *fileName);

}  // namespace tesk
