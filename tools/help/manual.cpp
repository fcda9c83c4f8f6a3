#include "tools/help/manual.h"

#include <sstream>
#include <string_view>
#include <vector>

#include "tools/help/formulahelp.h"

namespace tesk {

namespace {

// Text as roff takes it: what it would read as a request or an escape is written as a character.
std::string Roff(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '\\': escaped += "\\e"; break;
        case '-': escaped += "\\-"; break;
        case '\'': escaped += "\\(aq"; break;
        case '"': escaped += "\\(dq"; break;
        case '^': escaped += "\\(ha"; break;
        case '~': escaped += "\\(ti"; break;
        case '`': escaped += "\\(ga"; break;
        default: escaped += c; break;
        }
    }
    return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

void WriteHead(std::ostream &out, const char *name, int section, const std::string &version, const char *title)
{
    out << ".TH " << name << ' ' << section << " \"\" \"tesk " << version << "\" \"tesk\"\n.SH NAME\n" << title << '\n';
}

void WriteItem(std::ostream &out, const std::string &tag, const std::string &text)
{
    out << ".TP\n.B " << Roff(tag) << '\n' << Roff(text) << '\n';
}

// Lines as they stand.
void WriteLines(std::ostream &out, const std::string &text)
{
    out << ".PP\n.nf\n";
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        out << Roff(line) << '\n';
    out << ".fi\n";
}

std::string TagOf(const SOptionEntry &option)
{
    const std::string value = option.choices.empty() ? option.type : JoinWords(option.choices, "|");
    return JoinWords(option.names, ", ") + (value.empty() ? "" : ' ' + value);
}

void WriteCommand(std::ostream &out, const SCommandEntry &command)
{
    out << ".SS " << Roff(SynopsisOf(command)) << '\n' << Roff(command.description) << ".\n";
    for (const SArgumentEntry &argument : command.arguments)
        WriteItem(out, argument.name, argument.help);
    for (const SOptionEntry &option : command.options)
        WriteItem(out, TagOf(option), option.help);
    if (!command.footer.empty())
        WriteLines(out, command.footer);
}

}  // namespace

void WriteToolManual(std::ostream &out, const CCommandTable &table, const std::string &version)
{
    WriteHead(out, "TESK", 1, version, "tesk \\- stimulators and signals for VHDL and Verilog simulation");
    out << ".SH SYNOPSIS\n.B tesk\n.I command\n.RI [ options ]\n.I arguments\n.PP\n.B tesk \\-\\-version\n.PP\n"
           ".B tesk help\n.RI [ command | formulas ]\n.SH DESCRIPTION\n"
           "A formula is one line of text that says which values a signal has over time; see\n.BR tesk\\-formula (7).\n"
           "The commands play, check and compose formulas, and list and convert the waveform files of simulators.\n"
           ".SH COMMANDS\n";
    for (const SCommandEntry &command : table) {
        if (!command.isHidden)
            WriteCommand(out, command);
    }
    out << ".SH EXIT STATUS\n";
    WriteItem(out, "0", "Done.");
    WriteItem(out, "1", "A formula or a file was refused, or a check found a fault.");
    WriteItem(out, "2", "The command line was wrong.");
    out << ".SH ENVIRONMENT\n";
    WriteItem(out, "NO_COLOR", "If set and not empty, nothing is coloured on a terminal.");
    WriteItem(
        out, "LC_ALL, LC_CTYPE, LANG",
        "The first of them that is set tells whether pictures are drawn with line characters (UTF-8) or in ASCII.");
    out << ".SH SEE ALSO\n.BR tesk\\-formula (7)\n";
}

void WriteFormulaManual(std::ostream &out, const std::string &version)
{
    WriteHead(out, "TESK-FORMULA", 7, version, "tesk\\-formula \\- how the formulas of tesk are written");
    out << ".SH DESCRIPTION\nThe words that tell a kind may stand anywhere in the formula, in any letter case.\n";
    for (const char *note : FormulaNotes())
        out << ".PP\n" << Roff(note) << '\n';
    out << ".SH KINDS\n";
    for (const SFormulaHelp &help : FormulaHelps()) {
        out << ".SS " << Roff(help.title) << '\n';
        WriteLines(out, help.form);
        out << ".PP\n" << Roff(help.meaning) << '\n';
        const std::string options = help.options;
        WriteLines(out, "tesk play '" + std::string(help.example) + '\'' + (options.empty() ? "" : ' ' + options));
    }
    out << ".SH SEE ALSO\n.BR tesk (1)\n";
}

}  // namespace tesk
