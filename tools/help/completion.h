// Scripts by which shells complete the words of a command line.
#pragma once

#include <ostream>

#include "tools/help/commandtable.h"

namespace tesk {

void WriteBashCompletion(std::ostream &out, const CCommandTable &table);
void WriteZshCompletion(std::ostream &out, const CCommandTable &table);
void WriteFishCompletion(std::ostream &out, const CCommandTable &table);

}  // namespace tesk
