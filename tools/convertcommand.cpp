#include "tools/commands.h"
void AddConvertCommand(CCommandLine &) {}
