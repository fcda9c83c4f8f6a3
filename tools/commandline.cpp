#include "tools/commandline.h"

#include <CLI/CLI.hpp>
#include <exception>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>

#include "tools/quote.h"

namespace {

constexpr int Refused = 1;
constexpr int WrongUsage = 2;

int Complain(const std::exception &error, int status)
{
    std::fprintf(stderr, "tesk: %s\n", MessageLine(error.what()).c_str());
    return status;
}

}  // namespace

void RefuseOption(const std::string &option, const std::string &text, const std::string &why)
{
    throw CWrongUsage(option + " " + Shorten(text) + ": " + why);
}

void CCommand::Argument(const std::string &name, std::string &target, const std::string &help)
{
    m_app->add_option(name, target, help)->required();
}

void CCommand::Option(const std::string &names, std::string &target, const std::string &type, const std::string &help)
{
    m_app->add_option(names, target, help)->type_name(type);
}

void CCommand::RequiredOption(const std::string &names, std::string &target, const std::string &type,
                              const std::string &help)
{
    m_app->add_option(names, target, help)->type_name(type)->required();
}

void CCommand::Number(const std::string &names, long long &target, long long least, long long most,
                      const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::Range(least, most));
}

void CCommand::RequiredNumber(const std::string &names, long long &target, long long least, long long most,
                              const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::Range(least, most))->required();
}

void CCommand::Choice(const std::string &names, std::string &target, const std::set<std::string> &choices,
                      const std::string &help)
{
    m_app->add_option(names, target, help)->check(CLI::IsMember(choices));
}

void CCommand::Flag(const std::string &names, bool &target, const std::string &help)
{
    m_app->add_flag(names, target, help);
}

void CCommand::Footer(const std::string &text)
{
    m_app->footer(text);
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
}

CCommandLine::~CCommandLine() = default;

CCommand CCommandLine::Add(const std::string &name, const std::string &description)
{
    return CCommand(*m_app->add_subcommand(name, description));
}

int CCommandLine::Run(int argc, char **argv)
{
    const int status = Execute(argc, argv);
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
        return isHelp ? m_app->exit(error) : Complain(error, WrongUsage);
    } catch (const CWrongUsage &error) {
        return Complain(error, WrongUsage);
    } catch (const std::bad_alloc &) {
        return Complain(CRefusal("there is not enough memory for this"), Refused);
    } catch (const std::exception &error) {
        return Complain(error, Refused);
    }
    return 0;
}
