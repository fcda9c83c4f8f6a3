// tesk export: writes a bench in the words of another tool.
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>

#include "tools/bench/bench.h"
#include "tools/bench/toldbench.h"
#include "tools/commands/commands.h"
#include "tools/exchange/coursebuilder.h"
#include "tools/exchange/forms.h"
#include "tools/exchange/hdltext.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

struct SExportOptions {
    std::string bench;
    std::string form;
    std::string output;
    std::string until;
    std::string name = "stimuli";
    std::string low = "0", high = "1", rise = "100ps";
    bool mayWeaken = false;
    bool isStrict = false;
};

double ReadVolts(const std::string &option, const std::string &text)
{
    double volts = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), volts);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(volts))
        RefuseOption(option, text, "no number of volts, such as 1.8");
    return volts;
}

tesk::SFormOptions ReadFormOptions(const SExportOptions &options)
{
    tesk::SFormOptions form;
    form.name = options.name;
    if (!tesk::IsBasicWord(options.name))
        RefuseOption("--name", options.name, "no name of a module or entity; write letters, digits and _");
    form.low = ReadVolts("--low", options.low);
    form.high = ReadVolts("--high", options.high);
    form.rise = ReadTimeOption("--rise", options.rise, 1);
    if (form.rise == 0)
        RefuseOption("--rise", options.rise, "an edge takes 1fs at least");
    return form;
}

int Export(const SExportOptions &options)
{
    const tesk::SExportForm &form = tesk::FindExportForm(options.form, options.output);
    const tesk::SFormOptions formOptions = ReadFormOptions(options);
    const tesk::SBench bench = tesk::ReadToldBench(options.bench, options.isStrict, "exported");
    std::optional<long long> until;
    if (!options.until.empty())
        until = ReadTimeOption("--until", options.until, bench.resolution);
    tesk::CLosses losses(form.name, options.mayWeaken);
    const tesk::SCourses courses = tesk::BuildCourses(bench, until, form.ability, losses);
    std::ostringstream text;
    form.write(text, courses, formOptions, losses);
    losses.Tell();
    WriteOutput(options.output, [&](std::ostream &out) { out << text.str(); });
    return 0;
}

}  // namespace

void AddExportCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("export", "Write a bench in the words of another tool");
    const auto options = std::make_shared<SExportOptions>();
    command.Argument("bench", options->bench, "A bench file");
    command.Choice("--to", options->form, tesk::ExportFormNames(), "Default: by the ending of the output");
    command.Option("-o,--output", options->output, "FILE",
                   "Write to a file, whole or not at all; - is standard output");
    command.Option("--until", options->until, "TIME",
                   "Where to end what is written change by change (default: that of the bench)");
    command.Option("--name", options->name, "NAME", "Of the module or entity (default stimuli)");
    command.Option("--low", options->low, "VOLTS", "Level of 0 in pwl (default 0)");
    command.Option("--high", options->high, "VOLTS", "Level of 1 in pwl (default 1)");
    command.Option("--rise", options->rise, "TIME", "How long an edge takes in pwl (default 100ps)");
    command.Flag("--weaken", options->mayWeaken,
                 "Write the nearest value where the form has no place for one, with a warning");
    command.Flag("--strict", options->isStrict, "Write nothing if a formula cannot mean what it says");
    command.Footer("sv is a module of SystemVerilog and vhdl an entity, with an output for each signal;\n"
                   "force is a script of Questa and add_force one of Vivado;\n"
                   "wavejson is what WaveDrom draws, and pwl has voltage sources of SPICE.\n"
                   "Example: tesk export examples/counter.toml --to sv -o stimuli.sv");
    command.Action([options] { return Export(*options); });
}
