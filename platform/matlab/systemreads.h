// The reads of the system as the libraries below the helper ask for them, in a place where a test can have them fail.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>

/// fread(3), but for a negative number, and an `errno`, where the system fails.
ssize_t SystemReadItems(void *to, std::size_t size, std::size_t count, std::FILE *file);
/// read(2).
ssize_t SystemRead(int file, void *to, std::size_t size);
/// pread(2).
ssize_t SystemReadAt(int file, void *to, std::size_t size, off_t position);
