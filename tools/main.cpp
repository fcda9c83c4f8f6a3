// The command-line tool: `tesk COMMAND ...`.
#include "tools/commands/commands.h"

int main(int argc, char **argv)
{
    CCommandLine commandLine;
    for (const auto add : {AddPlayCommand, AddCheckCommand, AddSplitCommand, AddClockCommand, AddCounterCommand,
                           AddRandomCommand, AddTypeCommand, AddSignalsCommand, AddConvertCommand})
        add(commandLine);
    return commandLine.Run(argc, argv);
}
