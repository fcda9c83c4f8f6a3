// Formulas that refer to a file.
#pragma once

#include <optional>
#include <string>

/// The name under which the tool stimulates a signal.
inline constexpr const char *SignalName = "stimulus";

/// Whether the formula refers to a file.
bool IsFileFormula(const std::string &formula);

/// Whether the formula plays a table, whose values are read by the type of the signal.
bool NeedsType(const std::string &formula);

/// The type description of the signal that a "/custom" formula replays; empty if there is none.
std::string FindReplayedType(const std::string &formula);

/// What a "/custom" formula replays.
struct SReplayArguments {
    std::string file;
    std::string signal;  ///< as the file's look-up takes it
    bool isWhole;        ///< from the beginning to the end, when the stimulator is applied, once
};

/// @return nothing for any other formula
std::optional<SReplayArguments> ReplayArguments(const std::string &formula);

/// Why a formula that refers to a file cannot be used, and what would do.
/// @param error  what the library logged; empty if it said nothing
std::string ExplainFileFormula(const std::string &formula, const std::string &error);

/// Tells on standard error what a formula that refers to a file, and can be used, leaves out of it.
void WarnOfLoss(const std::string &formula);
