// The commands of the tool, one source file each: <name>command.cpp.
#pragma once

#include "tools/commandline.h"

// Each adds its command, with its options, help and an example.
void AddCheckCommand(CCommandLine &commandLine);
void AddClockCommand(CCommandLine &commandLine);
void AddCompletionCommand(CCommandLine &commandLine);
void AddConvertCommand(CCommandLine &commandLine);
void AddCounterCommand(CCommandLine &commandLine);
void AddDiffCommand(CCommandLine &commandLine);
void AddExportCommand(CCommandLine &commandLine);
void AddHelpCommand(CCommandLine &commandLine);
void AddImportCommand(CCommandLine &commandLine);
void AddPlayCommand(CCommandLine &commandLine);
void AddRandomCommand(CCommandLine &commandLine);
void AddSignalsCommand(CCommandLine &commandLine);
void AddSplitCommand(CCommandLine &commandLine);
void AddTypeCommand(CCommandLine &commandLine);
void AddViewCommand(CCommandLine &commandLine);
