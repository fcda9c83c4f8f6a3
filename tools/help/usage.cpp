#include "tools/help/usage.h"

#include <algorithm>
#include <array>

#include "base/ascii.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"

namespace tesk {

namespace {

constexpr std::array GeneralOptions = {"--help", "-h", "--help-all", "--version"};

bool IsGeneralOption(const std::string &word)
{
    return std::ranges::find(GeneralOptions, word) != GeneralOptions.end();
}

// An option in its long or short form; a formula such as "-1 0ns" and a lone "-" are none.
bool LooksLikeOption(const std::string &word)
{
    if (word.starts_with("--"))
        return word.size() > 2;
    return word.size() == 2 && word[0] == '-' && !tesk::IsDigit(word[1]) && word[1] != '.';
}

std::string Hint(const std::string &word, const std::vector<std::string> &names)
{
    const std::string near = FindNearName(word, names);
    return near.empty() ? "" : " (did you mean " + near + "?)";
}

// What stands behind an option that takes one of some words.
std::string FindChoiceFault(const std::vector<std::string> &words, std::size_t at, const SOptionEntry &option)
{
    const std::size_t equals = words[at].find('=');
    const std::string name = words[at].substr(0, equals);
    if (option.choices.empty() || (equals == std::string::npos && at + 1 == words.size()))
        return {};
    const std::string word = equals != std::string::npos ? words[at].substr(equals + 1) : words[at + 1];
    if (std::ranges::find(option.choices, word) != option.choices.end())
        return {};
    return name + " takes no " + Quote(word) + DidYouMean(word, option.choices) + "; use " +
           JoinWords(option.choices, ", ");
}

// The first argument that is required and not there.
std::string FindMissingArgument(const std::vector<std::string> &words, const SCommandEntry &command)
{
    std::size_t given = 0;
    bool hasOptions = true;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool isOption = hasOptions && LooksLikeOption(words[i]);
        hasOptions = hasOptions && words[i] != "--";
        const SOptionEntry *option = isOption ? FindOption(command, words[i]) : nullptr;
        given += isOption || words[i] == "--" ? 0 : 1;
        i += option != nullptr && !option->IsFlag() ? 1 : 0;
    }
    const auto missing = std::ranges::find_if(
        command.arguments, [&](const SArgumentEntry &argument) { return !argument.isOptional && given-- == 0; });
    if (missing == command.arguments.end())
        return {};
    std::string name = missing->name;
    std::ranges::transform(name, name.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
    return command.name + " needs " + name + "; \"tesk help " + command.name + "\" tells of it";
}

std::string FindOptionFault(const std::vector<std::string> &words, const SCommandEntry &command)
{
    for (std::size_t i = 1; i < words.size() && words[i] != "--"; ++i) {
        const std::string name = words[i].substr(0, words[i].find('='));
        if (!LooksLikeOption(name) || IsGeneralOption(name))
            continue;
        const SOptionEntry *option = FindOption(command, name);
        if (option == nullptr)
            return command.name + " has no option " + OneLine(name) + Hint(name, OptionNames(command)) +
                   "; \"tesk help " + command.name + "\" lists them";
        const bool takesNext = !option->IsFlag() && words[i].find('=') == std::string::npos;
        const std::string fault = FindChoiceFault(words, i, *option);
        if (!fault.empty())
            return fault;
        i += takesNext ? 1 : 0;
    }
    return FindMissingArgument(words, command);
}

}  // namespace

std::vector<std::string> CommandNames(const CCommandTable &table)
{
    std::vector<std::string> names;
    for (const SCommandEntry &command : table) {
        if (!command.isHidden)
            names.push_back(command.name);
    }
    return names;
}

std::string FindUsageFault(const std::vector<std::string> &words, const CCommandTable &table)
{
    if (words.empty())
        return "a command is missing, such as play or signals; \"tesk help\" lists them";
    const std::string &word = words.front();
    const auto command = std::ranges::find(table, word, &SCommandEntry::name);
    if (command != table.end())
        return FindOptionFault(words, *command);
    if (!word.starts_with('-'))
        return "no command " + Quote(word) + DidYouMean(word, CommandNames(table)) + "; \"tesk help\" lists them";
    const std::vector<std::string> general(GeneralOptions.begin(), GeneralOptions.end());
    return IsGeneralOption(word)
               ? ""
               : "no option " + OneLine(word) + Hint(word, general) + "; write tesk COMMAND [OPTIONS]";
}

}  // namespace tesk
