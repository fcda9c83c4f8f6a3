#include "tools/help/completion.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk {

namespace {

// A text in single quotes, as all three shells read it.
std::string Quoted(std::string_view text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + '\'';
}

// A text inside a specification of zsh, where brackets and colons have a meaning.
std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        escaped += (std::string_view("[]:\\").find(c) != std::string_view::npos ? "\\" : "") + std::string(1, c);
    return escaped;
}

void ForListed(const CCommandTable &table, const std::function<void(const SCommandEntry &)> &act)
{
    for (const SCommandEntry &command : table) {
        if (!command.isHidden)
            act(command);
    }
}

std::vector<std::string> ListedNames(const CCommandTable &table)
{
    std::vector<std::string> names;
    ForListed(table, [&](const SCommandEntry &command) { names.push_back(command.name); });
    return names;
}

// Words that may stand where a command's argument does.
std::vector<std::string> ArgumentChoices(const SCommandEntry &command)
{
    return command.arguments.empty() ? std::vector<std::string>() : command.arguments.front().choices;
}

bool TakesFile(const SOptionEntry &option)
{
    return option.type == "FILE";
}

// What bash offers behind an option: its choices, files, or nothing.
std::string BashValues(const SOptionEntry &option)
{
    if (TakesFile(option))
        return "compgen -f -- \"$word\"";
    return option.choices.empty() ? ":" : "compgen -W '" + JoinWords(option.choices, " ") + "' -- \"$word\"";
}

void WriteBashCommand(std::ostream &out, const SCommandEntry &command)
{
    out << "    " << command.name << ")\n        case \"$former\" in\n";
    for (const SOptionEntry &option : command.options) {
        if (!option.IsFlag())
            out << "        " << JoinWords(option.names, "|") << ") " << BashValues(option) << "; return ;;\n";
    }
    out << "        esac\n        options='" << JoinWords(OptionNames(command), " ") << "'\n";
    if (!ArgumentChoices(command).empty())
        out << "        arguments='" << JoinWords(ArgumentChoices(command), " ") << "'\n";
    out << "        ;;\n";
}

// The last tag of a zsh specification: what stands there, and how it is completed.
std::string ZshAction(const std::string &name, const std::vector<std::string> &choices, bool isFile)
{
    const std::string action = isFile ? "_files" : choices.empty() ? "" : '(' + JoinWords(choices, " ") + ')';
    return ':' + name + ':' + action;
}

void WriteZshCommand(std::ostream &out, const SCommandEntry &command)
{
    out << "    " << command.name << ")\n        _arguments '--help[Print this help]'";
    for (const SOptionEntry &option : command.options) {
        const std::string action = option.IsFlag() ? "" : ZshAction(option.type, option.choices, TakesFile(option));
        for (const std::string &name : option.names)
            out << " \\\n            " << Quoted(name + '[' + Escaped(option.help) + ']' + action);
    }
    for (const SArgumentEntry &argument : command.arguments) {
        const std::string action = ZshAction(argument.name, argument.choices, argument.choices.empty());
        out << " \\\n            "
            << Quoted((argument.isRepeated ? "*" : ":") + action.substr(argument.isRepeated ? 0 : 1));
    }
    out << "\n        ;;\n";
}

void WriteFishOption(std::ostream &out, const std::string &command, const SOptionEntry &option)
{
    out << "complete -c tesk -n '__fish_seen_subcommand_from " << command << '\'';
    for (const std::string &name : option.names)
        out << (name.starts_with("--") ? " -l " : " -s ") << name.substr(name.starts_with("--") ? 2 : 1);
    if (TakesFile(option))
        out << " -r -F";
    else if (!option.IsFlag())
        out << " -x";
    if (!option.choices.empty())
        out << " -a '" << JoinWords(option.choices, " ") << '\'';
    out << " -d " << Quoted(option.help) << '\n';
}

}  // namespace

void WriteBashCompletion(std::ostream &out, const CCommandTable &table)
{
    const std::string commands = JoinWords(ListedNames(table), " ");
    out << "# bash completion for tesk\n"
           "_tesk_candidates() {\n"
           "    local word=$1 former=$2 command=$3 options= arguments=\n"
           "    if [ -z \"$command\" ]; then\n        compgen -W '"
        << commands
        << " --help --help-all --version' -- \"$word\"\n        return\n    fi\n"
           "    case \"$command\" in\n";
    ForListed(table, [&](const SCommandEntry &command) { WriteBashCommand(out, command); });
    out << "    esac\n"
           "    case \"$word\" in\n"
           "    -*) compgen -W \"$options\" -- \"$word\" ;;\n"
           "    *) compgen -W \"$arguments\" -- \"$word\"; [ -n \"$arguments\" ] || compgen -f -- \"$word\" ;;\n"
           "    esac\n}\n"
           "_tesk() {\n"
           "    local command=\n"
           "    [ \"$COMP_CWORD\" -le 1 ] || command=${COMP_WORDS[1]}\n"
           "    local IFS=$'\\n'\n"
           "    COMPREPLY=($(IFS=$' \\t\\n'; _tesk_candidates \"${COMP_WORDS[COMP_CWORD]}\" "
           "\"${COMP_WORDS[COMP_CWORD-1]}\" \"$command\"))\n}\n"
           "complete -o filenames -F _tesk tesk\n";
}

void WriteZshCompletion(std::ostream &out, const CCommandTable &table)
{
    out << "#compdef tesk\n_tesk() {\n    local -a commands\n    commands=(\n";
    ForListed(table, [&](const SCommandEntry &command) {
        out << "        " << Quoted(command.name + ':' + command.description) << '\n';
    });
    out << "    )\n    if (( CURRENT == 2 )); then\n        _describe command commands\n        return\n    fi\n"
           "    local command=$words[2]\n    shift words\n    (( CURRENT-- ))\n    case $command in\n";
    ForListed(table, [&](const SCommandEntry &command) { WriteZshCommand(out, command); });
    out << "    esac\n}\n_tesk \"$@\"\n";
}

void WriteFishCompletion(std::ostream &out, const CCommandTable &table)
{
    out << "# fish completion for tesk\n";
    ForListed(table, [&](const SCommandEntry &command) {
        out << "complete -c tesk -n __fish_use_subcommand -f -a " << command.name << " -d "
            << Quoted(command.description) << '\n';
    });
    out << "complete -c tesk -n __fish_use_subcommand -l version -d 'Print the version and exit'\n"
           "complete -c tesk -l help -d 'Print this help and exit'\n";
    ForListed(table, [&](const SCommandEntry &command) {
        for (const SOptionEntry &option : command.options)
            WriteFishOption(out, command.name, option);
        if (!ArgumentChoices(command).empty())
            out << "complete -c tesk -n '__fish_seen_subcommand_from " << command.name << "' -f -a '"
                << JoinWords(ArgumentChoices(command), " ") << "'\n";
    });
}

}  // namespace tesk
