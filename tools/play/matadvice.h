// What there is to say of a MAT-file of which nothing, or not all, can be played.
#pragma once

#include <string>

class CFileFormulaArgs;

/// Why a formula cannot be played: what is wrong with the program that reads the file, the file or its variables, and what
/// would do.
/// @return empty if nothing is found, or the variable is not there, which the library says
std::string ExplainMatFormula(const CFileFormulaArgs &args);

/// What of the variables is not played although they are; empty if nothing is left out.
std::string FindMatLoss(const CFileFormulaArgs &args);
