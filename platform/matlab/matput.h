// What the helper process writes: the stream of matstream.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Ends the process at once, without giving anything back.
[[noreturn]] void Leave(int status);

/// Leaves without a word: a stream without its end is refused.
[[noreturn]] void GiveUp();

void Put(const void *data, std::size_t size);

template <typename T>
void Put(const T &value)
{
    Put(&value, sizeof value);
}

/// In place of a node that is not there.
void PutNothing();
/// Begins a node. @param classId  with marks
/// @return the number of elements
std::size_t PutBegin(std::int32_t classId, const std::vector<std::uint64_t> &sizes);
/// A name of a variable or of a field, and cuts it where it is too long.
void PutName(std::string_view name);
