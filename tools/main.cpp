// The command-line tool: `tesk COMMAND ...`.
#include "tools/commands.h"

int main(int argc, char **argv)
{
    CCommandLine commandLine;
    AddPlayCommand(commandLine);
    AddCheckCommand(commandLine);
    AddClockCommand(commandLine);
    return commandLine.Run(argc, argv);
}
