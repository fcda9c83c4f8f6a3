// What commands there are and what they take: the one table behind the help, the manual, the completion of shells and
// the messages about words that are none of these.
#pragma once

#include <string>
#include <vector>

namespace tesk {

struct SOptionEntry {
    std::vector<std::string> names;    ///< such as "-o" and "--output"
    std::string type;                  ///< what stands behind the name; empty for a flag
    std::vector<std::string> choices;  ///< all that may stand there; empty if it is anything of the type
    std::string help;

    bool IsFlag() const { return type.empty(); }
};

struct SArgumentEntry {
    std::string name;
    std::string help;
    std::vector<std::string> choices;  ///< as of an option
    bool isOptional = false;
    bool isRepeated = false;
};

struct SCommandEntry {
    std::string name;
    std::string description;
    std::vector<SArgumentEntry> arguments;
    std::vector<SOptionEntry> options;
    std::string footer;     ///< notes and an example, on lines
    bool isHidden = false;  ///< is for scripts, and not listed
};

using CCommandTable = std::vector<SCommandEntry>;

/// How the command is written, such as "tesk play [OPTIONS] FORMULA".
std::string SynopsisOf(const SCommandEntry &command);

/// The entry of an option by one of its names. @return null if the command has none of that name
const SOptionEntry *FindOption(const SCommandEntry &command, const std::string &name);

/// All names of a command's options, --help first.
std::vector<std::string> OptionNames(const SCommandEntry &command);

std::string JoinWords(const std::vector<std::string> &words, const std::string &between);

}  // namespace tesk
