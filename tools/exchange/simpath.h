// Paths of signals as simulators' scripts write them, and words of Tcl.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk {

/// "/tb/dut/clk" for "tb.dut.clk". @return nothing for a name with a "/" outside an extended identifier
std::optional<std::string> SimulatorPath(const std::string &name);

/// The way back. A data set in front, such as "sim:", is left out.
std::string NameOfPath(std::string_view path);

/// The parts of a name between the "." outside extended identifiers; at least one.
std::vector<std::string> NameParts(const std::string &name);

/// A text as one word of Tcl. @return nothing if braces cannot hold it
std::optional<std::string> TclWord(const std::string &text);

/// A command of a Tcl script.
struct STclCommand {
    int line = 0;  ///< where it begins, from 1
    std::vector<std::string> words;
    bool isComputed = false;  ///< a variable or a command in brackets stands in it, which is not computed
    bool isOpen = false;      ///< braces or quotes are not closed before the end
};

/// Gives away the commands of a script and, as a command of one word that begins with "#", its comments.
void ForEachTclCommand(std::string_view script, const std::function<void(const STclCommand &command)> &take);

}  // namespace tesk
