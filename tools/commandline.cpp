#include "tools/commandline.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <new>
#include <sstream>
#include <utility>

#include "tools/files/readwatch.h"
#include "tools/help/usage.h"
#include "tools/message.h"
#include "tools/quote.h"

namespace {

constexpr int Refused = 1;
constexpr int WrongUsage = 2;

// Of a file that the system could not read, only that is told: what else went wrong came of it.
int ComplainOfInput(const std::exception &error)
{
    const std::string fault = tesk::CReadWatch::Fault();
    TellRefusal(fault.empty() ? error.what() : fault);
    return Refused;
}

int Complain(const std::exception &error, int status)
{
    TellRefusal(error.what());
    return status;
}

}  // namespace

void RefuseOption(const std::string &option, const std::string &text, const std::string &why)
{
    throw CWrongUsage(option + " " + Shorten(text) + ": " + why);
}

void CCommand::Enter(const std::string &names, const std::string &type, const std::string &help,
                     const std::set<std::string> &choices)
{
    tesk::SOptionEntry option{{}, type, {choices.begin(), choices.end()}, help};
    std::istringstream words(names);
    for (std::string name; std::getline(words, name, ',');)
        option.names.push_back(name);
    m_entry->options.push_back(option);
}

void CCommand::Argument(const std::string &name, std::string &target, const std::string &help)
{
    m_app->add_option(name, target, help)->required();
    m_entry->arguments.push_back({name, help, {}});
}

void CCommand::OptionalArgument(const std::string &name, std::string &target, const std::string &help)
{
    m_app->add_option(name, target, help);
    m_entry->arguments.push_back({name, help, {}, true});
}

void CCommand::ChoiceArgument(const std::string &name, std::string &target, const std::set<std::string> &choices,
                              const std::string &help)
{
    m_app->add_option(name, target, help)->required()->check(CLI::IsMember(choices));
    m_entry->arguments.push_back({name, help, {choices.begin(), choices.end()}});
}

void CCommand::Arguments(const std::string &name, std::vector<std::string> &target, const std::string &help)
{
    m_app->add_option(name, target, help);
    m_entry->arguments.push_back({name, help, {}, true, true});
}

void CCommand::Option(const std::string &names, std::string &target, const std::string &type, const std::string &help)
{
    m_app->add_option(names, target, help)->type_name(type);
    Enter(names, type, help);
}

void CCommand::Options(const std::string &names, std::vector<std::string> &target, const std::string &type,
                       const std::string &help)
{
    m_app->add_option(names, target, help)->type_name(type)->expected(1)->take_all()->allow_extra_args(false);
    Enter(names, type, help);
}

void CCommand::RequiredOption(const std::string &names, std::string &target, const std::string &type,
                              const std::string &help)
{
    m_app->add_option(names, target, help)->type_name(type)->required();
    Enter(names, type, help);
}

void CCommand::Number(const std::string &names, long long &target, long long least, long long most,
                      const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::Range(least, most));
    Enter(names, "NUMBER", help);
}

void CCommand::RequiredNumber(const std::string &names, long long &target, long long least, long long most,
                              const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::Range(least, most))->required();
    Enter(names, "NUMBER", help);
}

void CCommand::Choice(const std::string &names, std::string &target, const std::set<std::string> &choices,
                      const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::IsMember(choices));
    Enter(names, "WORD", help, choices);
}

void CCommand::Flag(const std::string &names, bool &target, const std::string &help)
{
    m_app->add_flag(names, target, help);
    Enter(names, "", help);
}

void CCommand::Footer(const std::string &text)
{
    m_app->footer(text);
    m_entry->footer = text;
}

void CCommand::Action(const std::function<int()> &action)
{
    m_app->callback([action] {
        const int status = action();
        if (status != 0)
            throw CLI::RuntimeError(status);
    });
}

bool CCommand::Has(const std::string &name) const
{
    return m_app->count(name) > 0;
}

CCommandLine::CCommandLine()
    : m_app(std::make_unique<CLI::App>("Stimulators and signals for VHDL and Verilog simulation.", "tesk"))
{
    m_app->require_subcommand(1);
    m_app->set_help_all_flag("--help-all", "Print the help of every command and exit");
    m_app->set_version_flag("--version", "tesk " TESK_VERSION, "Print the version and exit");
    m_app->footer("\"tesk help COMMAND\" tells of a command, \"tesk help formulas\" how formulas are written.");
}

CCommandLine::~CCommandLine() = default;

std::string CCommandLine::Version()
{
    return TESK_VERSION;
}

CCommand CCommandLine::Add(const std::string &name, const std::string &description)
{
    auto entry = std::make_unique<tesk::SCommandEntry>();
    entry->name = name;
    entry->description = description;
    m_entries.push_back(std::move(entry));
    return {*m_app->add_subcommand(name, description), *m_entries.back()};
}

CCommand CCommandLine::AddHidden(const std::string &name, const std::string &description)
{
    const CCommand command = Add(name, description);
    m_app->get_subcommand(name)->group("");
    m_entries.back()->isHidden = true;
    return command;
}

tesk::CCommandTable CCommandLine::Table() const
{
    tesk::CCommandTable table;
    for (const auto &entry : m_entries)
        table.push_back(*entry);
    return table;
}

std::string CCommandLine::HelpOf(const std::string &command) const
{
    if (command.empty())  // a formatter of its own, since the one of a tool that runs a command tells of that command
        return CLI::Formatter().make_help(m_app.get(), "tesk", CLI::AppFormatMode::Normal);
    const bool isKnown = std::ranges::any_of(m_entries, [&](const auto &entry) { return entry->name == command; });
    if (!isKnown)
        throw CWrongUsage(tesk::FindUsageFault({command}, Table()));
    return static_cast<const CLI::App &>(*m_app).get_subcommand(command)->help("tesk");
}

int CCommandLine::Run(int argc, char **argv)
{
    const int status = Execute(argc, argv);
    if (const std::string fault = tesk::CReadWatch::Fault(); status == 0 && !fault.empty())
        return Complain(CRefusal(fault), Refused);
    errno = 0;
    if (status != 0 || std::cout.flush())
        return status;
    return Complain(
        CRefusal(std::string("standard output: cannot be written: ") + std::strerror(errno != 0 ? errno : EIO)),
        Refused);
}

int CCommandLine::Execute(int argc, char **argv)
{
    try {
        m_app->parse(argc, argv);
    } catch (const CLI::RuntimeError &status) {
        return status.get_exit_code();
    } catch (const CLI::ParseError &error) {
        const bool isHelp = error.get_exit_code() == 0;
        const std::string fault = isHelp ? "" : tesk::FindUsageFault({argv + 1, argv + argc}, Table());
        if (!fault.empty())
            return Complain(CWrongUsage(fault), WrongUsage);
        return isHelp ? m_app->exit(error) : Complain(error, WrongUsage);
    } catch (const CWrongUsage &error) {
        return Complain(error, WrongUsage);
    } catch (const std::bad_alloc &) {
        return Complain(CRefusal("there is not enough memory for this"), Refused);
    } catch (const std::exception &error) {
        return ComplainOfInput(error);
    }
    return 0;
}
