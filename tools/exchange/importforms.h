// The one table of the forms that are read into a bench.
#pragma once

#include <set>
#include <string>

#include "tools/exchange/importforce.h"

namespace tesk {

struct SImportForm {
    const char *name;    ///< of the option --from
    const char *ending;  ///< of a file's name that stands for it, behind the point
    void (*read)(const std::string &text, const SImportOptions &options, CImported &imported);
};

/// Reads the lanes of a drawing of WaveDrom; the unit is that of a brick.
void ImportWaveJson(const std::string &text, const SImportOptions &options, CImported &imported);

std::set<std::string> ImportFormNames();

/// @param name  what was given to --from; may be empty
/// @param path  of the file, whose ending decides where no name was given
/// @throw CWrongUsage if neither tells
const SImportForm &FindImportForm(const std::string &name, const std::string &path);

}  // namespace tesk
