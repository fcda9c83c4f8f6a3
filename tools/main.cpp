// The command-line tool: `tesk COMMAND ...`.
#include "tools/commands/commands.h"
#include "tools/files/readwatch.h"
#include "tools/loglines.h"
#include "tools/output.h"

int main(int argc, char **argv)
{
    RemoveDraftsOnSignals();
    const tesk::CReadWatch watch;
    const CLogLines log(CLogLines::EWarnings::Shown, CLogLines::EErrors::Shown);
    CCommandLine commandLine;
    for (const auto add : {AddPlayCommand, AddCheckCommand, AddSplitCommand, AddClockCommand, AddCounterCommand,
                           AddRandomCommand, AddTypeCommand, AddSignalsCommand, AddViewCommand, AddConvertCommand,
                           AddDiffCommand, AddExportCommand, AddImportCommand, AddHelpCommand, AddCompletionCommand})
        add(commandLine);
    return commandLine.Run(argc, argv);
}
