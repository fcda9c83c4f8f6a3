// The command-line tool: `tesk COMMAND ...`. Status 0 done, 1 refused, 2 wrong usage.
#include "tools/commands.h"

#include <cstdio>
#include <exception>

namespace {

constexpr int Refused = 1;
constexpr int WrongUsage = 2;

int Run(int argc, char **argv)
{
    CLI::App app("Stimulators for VHDL and Verilog simulation.", "tesk");
    app.require_subcommand(1);
    AddPlayCommand(app);
    AddCheckCommand(app);
    app.set_help_all_flag("--help-all", "Print the help of every command and exit");
    try {
        app.parse(argc, argv);
    } catch (const CLI::RuntimeError &status) {
        return status.get_exit_code();
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);  // help was asked for
        std::fprintf(stderr, "tesk: %s\n", error.what());
        return WrongUsage;
    }
    return 0;
}

}  // namespace

int main(int argc, char **argv)
{
    try {
        return Run(argc, argv);
    } catch (const CRefusal &refusal) {
        std::fprintf(stderr, "tesk: %s\n", refusal.what());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "tesk: %s\n", error.what());
    }
    return Refused;
}
