// Commands and their options. The option parser behind it stays out of sight: its header is slow to compile.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/help/commandtable.h"

namespace CLI {
class App;
}

/// A formula or file that the tool refuses: what, where, why, and what would do, on one line. Ends with status 1.
class CRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Options that are used wrongly, told in the same way. Ends with status 2.
class CWrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Tells that what was given to an option will not do. @throw CWrongUsage
[[noreturn]] void RefuseOption(const std::string &option, const std::string &text, const std::string &why);

/// One command. The targets of its options must live as long as the command line.
class CCommand {
public:
    /// @param entry  of the table of commands; is filled in
    CCommand(CLI::App &app, tesk::SCommandEntry &entry) : m_app(&app), m_entry(&entry) {}

    /// A required argument without a name.
    void Argument(const std::string &name, std::string &target, const std::string &help);
    /// One that may be left out, behind the required ones.
    void OptionalArgument(const std::string &name, std::string &target, const std::string &help);
    /// One that must be one of some words.
    void ChoiceArgument(const std::string &name, std::string &target, const std::set<std::string> &choices,
                        const std::string &help);
    /// Any number of words, none of them required.
    void Arguments(const std::string &name, std::vector<std::string> &target, const std::string &help);
    /// @param names  such as "-o,--output"
    /// @param type   what stands behind the name in the help
    void Option(const std::string &names, std::string &target, const std::string &type, const std::string &help);
    /// One that may be repeated.
    void Options(const std::string &names, std::vector<std::string> &target, const std::string &type,
                 const std::string &help);
    void RequiredOption(const std::string &names, std::string &target, const std::string &type,
                        const std::string &help);
    /// A whole number from `least` to `most`; the target's value is the default.
    void Number(const std::string &names, long long &target, long long least, long long most, const std::string &help);
    void RequiredNumber(const std::string &names, long long &target, long long least, long long most,
                        const std::string &help);
    void Choice(const std::string &names, std::string &target, const std::set<std::string> &choices,
                const std::string &help);
    void Flag(const std::string &names, bool &target, const std::string &help);
    /// What stands below the help: an example, and what there is to know.
    void Footer(const std::string &text);
    /// What the command does. @return from `action`: the status
    void Action(const std::function<int()> &action);

    /// Whether an option was given.
    bool Has(const std::string &name) const;

private:
    void Enter(const std::string &names, const std::string &type, const std::string &help,
               const std::set<std::string> &choices = {});

    CLI::App *m_app;
    tesk::SCommandEntry *m_entry;
};

/// The command line of the tool.
class CCommandLine {
public:
    CCommandLine();
    ~CCommandLine();

    /// Of the tool, such as "0.1.0".
    static std::string Version();

    CCommand Add(const std::string &name, const std::string &description);
    /// Adds a command that is for scripts and not listed.
    CCommand AddHidden(const std::string &name, const std::string &description);

    /// All commands so far.
    tesk::CCommandTable Table() const;
    /// The help of a command, or with an empty name of the tool, as --help gives it. @throw CWrongUsage for no command
    std::string HelpOf(const std::string &command) const;

    /// Reads the words and runs the command; messages go to standard error.
    /// @return the status: 0 done, 1 refused, 2 wrong usage
    int Run(int argc, char **argv);

private:
    int Execute(int argc, char **argv);

    std::unique_ptr<CLI::App> m_app;
    std::vector<std::unique_ptr<tesk::SCommandEntry>> m_entries;
};
