// What a text table loses where it is read.
#pragma once

#include <string>
#include <vector>

#include "core/fileformulaargs.h"

namespace tesk {

/// What is odd about a table, each with what would do.
struct STableFault {
    bool isError = true;
    std::string text;
    std::string advice;
};

/// Reads the table that the arguments name: the names of its columns (of its lines with "-row"), and the times in the
/// column that "-time_points" names.
/// @return the faults; none for a table that cannot be opened
std::vector<STableFault> ExamineTable(const CFileFormulaArgs &args);

/// The names of the columns, or of the lines with "-row"; empty for a table that cannot be opened.
std::vector<std::string> TableNames(const CFileFormulaArgs &args);

}  // namespace tesk
