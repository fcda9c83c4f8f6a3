// Commands and their options. The option parser behind it stays out of sight: its header is slow to compile.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

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
    explicit CCommand(CLI::App &app) : m_app(&app) {}

    /// A required argument without a name.
    void Argument(const std::string &name, std::string &target, const std::string &help);
    /// @param names  such as "-o,--output"
    /// @param type   what stands behind the name in the help
    void Option(const std::string &names, std::string &target, const std::string &type, const std::string &help);
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
    CLI::App *m_app;
};

/// The command line of the tool.
class CCommandLine {
public:
    CCommandLine();
    ~CCommandLine();

    CCommand Add(const std::string &name, const std::string &description);

    /// Reads the words and runs the command; messages go to standard error.
    /// @return the status: 0 done, 1 refused, 2 wrong usage
    int Run(int argc, char **argv);

private:
    int Execute(int argc, char **argv);

    std::unique_ptr<CLI::App> m_app;
};
