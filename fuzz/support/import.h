// What another tool has, imported.
#pragma once

#include <string>

#include "tools/exchange/importforce.h"

namespace fuzz {

using CImport = void (*)(const std::string &text, const tesk::SImportOptions &options, tesk::CImported &imported);

/// Imports a text and writes the bench of what was understood, which is one that can be read.
void ImportAndReadBack(const std::string &text, CImport import);

}  // namespace fuzz
