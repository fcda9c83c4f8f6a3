// tesk help and tesk completion: what the tool tells of itself.
#include <map>
#include <memory>
#include <string>

#include "tools/commands/commands.h"
#include "tools/help/completion.h"
#include "tools/help/formulahelp.h"
#include "tools/help/manual.h"
#include "tools/output.h"

namespace {

constexpr const char *Formulas = "formulas";

struct SHelpOptions {
    std::string topic;
    bool isManual = false;
};

int ShowHelp(const CCommandLine &commandLine, const SHelpOptions &options)
{
    const bool isFormulas = options.topic == Formulas || options.topic == "formula";
    if (options.isManual && !options.topic.empty() && !isFormulas)
        throw CWrongUsage("--man: there are two manual pages, that of the tool and that of formulas");
    WriteOutput({}, [&](std::ostream &out) {
        if (options.isManual && isFormulas)
            tesk::WriteFormulaManual(out, CCommandLine::Version());
        else if (options.isManual)
            tesk::WriteToolManual(out, commandLine.Table(), CCommandLine::Version());
        else if (isFormulas)
            tesk::WriteFormulaHelp(out);
        else
            out << commandLine.HelpOf(options.topic);
    });
    return 0;
}

using CCompletionWriter = void (*)(std::ostream &out, const tesk::CCommandTable &table);

const std::map<std::string, CCompletionWriter> Shells = {
    {"bash", tesk::WriteBashCompletion}, {"fish", tesk::WriteFishCompletion}, {"zsh", tesk::WriteZshCompletion}};

}  // namespace

void AddHelpCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("help", "Tell of a command, or how formulas are written");
    const auto options = std::make_shared<SHelpOptions>();
    command.OptionalArgument("topic", options->topic, "A command, or \"formulas\"");
    command.Flag("--man", options->isManual, "As a manual page: tesk(1), or of formulas tesk-formula(7)");
    command.Footer("Example: tesk help formulas");
    command.Action([&commandLine, options] { return ShowHelp(commandLine, *options); });
}

void AddCompletionCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.AddHidden("completion", "Write the script by which a shell completes words");
    const auto shell = std::make_shared<std::string>();
    command.ChoiceArgument("shell", *shell, {"bash", "fish", "zsh"}, "Which shell");
    command.Footer("Example: source <(tesk completion bash)");
    command.Action([&commandLine, shell] {
        WriteOutput({}, [&](std::ostream &out) { Shells.at (*shell)(out, commandLine.Table()); });
        return 0;
    });
}
