// Mutations that know what a file is made of, so that they get behind its packing, lengths and counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace fuzz {

using CBytes = std::vector<std::uint8_t>;

/// Mutates bytes as libFuzzer does, to no more than `most` of them.
void MutateBytes(CBytes &bytes, std::size_t most);

/// Mutates a file. @return false if it is none that can be taken apart, or nothing of it was chosen; `file` is then as it was
using CMutator = bool (*)(CBytes &file, std::mt19937 &random);

/// What is inside the blocks of an FST file, unpacked and packed again, or whole blocks.
bool MutateFst(CBytes &file, std::mt19937 &random);

/// A property or a signal of a saved tree.
bool MutateTree(CBytes &file, std::mt19937 &random);

/// A section of a GHW file with the counts in front of it, or whole sections.
bool MutateGhw(CBytes &file, std::mt19937 &random);

}  // namespace fuzz
