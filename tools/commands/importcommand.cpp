// tesk import: makes a bench file of what other tools have.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>

#include "platform/files/file.h"
#include "tools/commands/commands.h"
#include "tools/exchange/importforms.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

struct SImportCommandOptions {
    std::string file;
    std::string form;
    std::string output;
    std::string unit;
    bool isPartial = false;
};

constexpr std::size_t MostBytes = 16 << 20;

[[noreturn]] void RefuseFile(const std::string &path, const std::string &why)
{
    throw CRefusal(OneLine(path) + ": " + why);
}

int ReadStandardInput(std::string &text)
{
    tesk::CFile input(STDIN_FILENO);
    const int error = tesk::ReadBeginning(input, MostBytes + 1, text);
    input.Release();  // which is not ours to close
    return error;
}

// "-" is standard input.
std::string ReadText(const std::string &path)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        RefuseFile(path, std::strerror(EISDIR));
    std::string text;
    const int error = path != "-" ? tesk::ReadBeginning(path, MostBytes + 1, text) : ReadStandardInput(text);
    if (error != 0)
        RefuseFile(path, std::string("cannot be read: ") + std::strerror(error));
    if (text.size() > MostBytes)
        RefuseFile(path, "is longer than " + std::to_string(MostBytes) + " bytes");
    return text;
}

std::string ImportFaultLine(const std::string &path, const tesk::SImportFault &fault)
{
    return path + (fault.line > 0 ? ":" + std::to_string(fault.line) : "") +
           (fault.severity == tesk::ESeverity::Error ? ": error: " : ": warning: ") + fault.text;
}

void Tell(const std::string &path, const tesk::CImported &imported)
{
    for (const tesk::SImportFault &fault : imported.Faults())
        std::fprintf(stderr, "tesk: %s\n", MessageLine(ImportFaultLine(path, fault)).c_str());
    if (imported.MoreFaults() > 0)
        std::fprintf(stderr, "tesk: and %zu more\n", imported.MoreFaults());
}

int Import(const SImportCommandOptions &options)
{
    const tesk::SImportForm &form = tesk::FindImportForm(options.form, options.file);
    tesk::SImportOptions reading;
    reading.isUnitTold = !options.unit.empty();
    if (reading.isUnitTold)
        reading.unit = ReadTimeOption("--unit", options.unit, 1);
    tesk::CImported imported;
    form.read(ReadText(options.file), reading, imported);
    std::ostringstream bench;
    imported.WriteBench(bench);
    Tell(options.file, imported);
    if (imported.HasError() && !options.isPartial)
        throw CRefusal(OneLine(options.file) +
                       ": no bench is written, since not all has an equivalent; --partial writes what has");
    WriteOutput(options.output, [&](std::ostream &out) { out << bench.str(); });
    return imported.HasError() ? 1 : 0;
}

}  // namespace

void AddImportCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("import", "Make a bench file of what another tool has");
    const auto options = std::make_shared<SImportCommandOptions>();
    command.Argument("file", options->file, "What to read; - is standard input");
    command.Choice("--from", options->form, tesk::ImportFormNames(), "Default: by the ending of the file");
    command.Option("-o,--output", options->output, "FILE",
                   "Write to a file, whole or not at all; - is standard output");
    command.Option("--unit", options->unit, "TIME",
                   "What a time without a unit counts, or a brick of WaveDrom (default 1ns)");
    command.Flag("--partial", options->isPartial,
                 "Write a bench, with status 1, of what has an equivalent where not all has");
    command.Footer(
        "force reads the force, noforce and run lines of a Questa script, add_force those of a Vivado script;\n"
        "wavejson reads the lanes of a drawing of WaveDrom.\n"
        "Example: tesk import wave.do --from force -o bench.toml");
    command.Action([options] { return Import(*options); });
}
