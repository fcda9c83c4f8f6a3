// The input as a file.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

/// Writes a file of the current folder, which is the program's own.
inline void WriteInput(const std::string &name, std::string_view bytes)
{
    std::FILE *const file = std::fopen(name.c_str(), "wb");
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
        std::abort();
    std::fclose(file);
}

/// What was read must hold.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

}  // namespace fuzz
