// The one table of the forms in which a bench is written for other tools.
#pragma once

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tools/exchange/course.h"
#include "tools/exchange/coursebuilder.h"
#include "tools/exchange/losses.h"

namespace tesk {

/// What can be chosen of a form.
struct SFormOptions {
    std::string name = "stimuli";  ///< of the module or entity
    double low = 0, high = 1;      ///< volts
    long long rise = 100'000;      ///< femtoseconds of an edge
};

struct SExportForm {
    const char *name;                  ///< of the option --to
    std::vector<std::string> endings;  ///< of files' names that stand for it, behind the point
    SFormAbility ability;
    /// @param losses  receives what has no place
    void (*write)(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
};

std::set<std::string> ExportFormNames();

/// @param name  what was given to --to; may be empty
/// @param path  of the output, whose ending decides where no name was given
/// @throw CWrongUsage if neither tells
const SExportForm &FindExportForm(const std::string &name, const std::string &path);

void WriteSystemVerilog(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
void WriteVhdl(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
void WriteQuestaForces(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
void WriteSpiceSources(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
void WriteVivadoForces(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);
void WriteWaveJson(std::ostream &out, const SCourses &courses, const SFormOptions &options, CLosses &losses);

}  // namespace tesk
