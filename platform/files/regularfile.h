// Opening waveform files for reading.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace NTARN {

struct SFileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, SFileCloser>;

/// Opens a file for reading. Only regular ones are taken: the opening of a pipe would wait.
/// @return never null. @throw XFileDoesNotExist, or XFileCorrupted if it is no regular file or must not be read
FilePtr OpenRegularFile(const std::string &path);

/// Bytes of an open file. @throw XFileCorrupted
std::uint64_t SizeOfFile(std::FILE *file);

/// Goes to a position from the beginning. @return whether that worked
bool SeekFile(std::FILE *file, std::uint64_t position);

}  // namespace NTARN
