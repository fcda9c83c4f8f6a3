// How formulas are written, on one screen: for "tesk help formulas" and for the manual page.
#pragma once

#include <ostream>
#include <span>

namespace tesk {

/// One kind of formula.
struct SFormulaHelp {
    const char *title;
    const char *form;     ///< how it is written
    const char *meaning;  ///< a line or two
    const char *example;  ///< a formula that can be played
    const char *options;  ///< of "tesk play" that the example needs
};

/// All kinds, plain formulas first.
std::span<const SFormulaHelp> FormulaHelps();

/// What holds for formulas of all kinds, a line each.
std::span<const char *const> FormulaNotes();

/// Writes both for a terminal.
void WriteFormulaHelp(std::ostream &out);

}  // namespace tesk
