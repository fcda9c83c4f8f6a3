#include "fuzz/support/import.h"

#include <sstream>
#include <vector>

#include "fuzz/support/formulas.h"
#include "fuzz/support/inputfile.h"
#include "tools/bench/bench.h"

namespace fuzz {

namespace {

// A finding of a formula is none of the import; of a bench without signals there is nothing to read.
bool IsFault(const tesk::SBenchFault &fault)
{
    return fault.severity == tesk::ESeverity::Error && !fault.isOfFormula;
}

}  // namespace

void ImportAndReadBack(const std::string &text, CImport import)
{
    tesk::CImported imported;
    import(text, tesk::SImportOptions{1'000'000, true}, imported);
    std::ostringstream bench;
    imported.WriteBench(bench);
    if (!StaysHere(bench.str()))
        return;
    WriteInput("input.toml", bench.str());
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench read = tesk::ReadBench("input.toml", faults);
    for (const tesk::SBenchFault &fault : faults)
        Require(!IsFault(fault) || read.signals.empty());
}

}  // namespace fuzz
