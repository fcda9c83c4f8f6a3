#include "tools/help/commandtable.h"

#include <algorithm>
#include <cctype>

namespace tesk {

namespace {

std::string Capitals(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

}  // namespace

std::string SynopsisOf(const SCommandEntry &command)
{
    std::string synopsis = "tesk " + command.name + (command.options.empty() ? "" : " [OPTIONS]");
    for (const SArgumentEntry &argument : command.arguments) {
        const std::string word = Capitals(argument.name) + (argument.isRepeated ? "..." : "");
        synopsis += argument.isOptional ? " [" + word + ']' : ' ' + word;
    }
    return synopsis;
}

const SOptionEntry *FindOption(const SCommandEntry &command, const std::string &name)
{
    const auto found = std::ranges::find_if(command.options, [&](const SOptionEntry &option) {
        return std::ranges::find(option.names, name) != option.names.end();
    });
    return found != command.options.end() ? &*found : nullptr;
}

std::vector<std::string> OptionNames(const SCommandEntry &command)
{
    std::vector<std::string> names = {"--help"};
    for (const SOptionEntry &option : command.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::string JoinWords(const std::vector<std::string> &words, const std::string &between)
{
    std::string joined;
    for (const std::string &word : words)
        joined += (joined.empty() ? "" : between) + word;
    return joined;
}

}  // namespace tesk
