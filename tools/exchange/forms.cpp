#include "tools/exchange/forms.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/commandline.h"

namespace tesk {

namespace {

const std::vector<SExportForm> &Forms()
{
    static const std::vector<SExportForm> forms = {
        {"sv", {"sv", "v"}, {true, true, true, true}, WriteSystemVerilog},
        {"vhdl", {"vhd", "vhdl"}, {true, true, true, true}, WriteVhdl},
        {"force", {"do"}, {true, true, false, false}, WriteQuestaForces},
        {"add_force", {"tcl"}, {true, true, false, false}, WriteVivadoForces},
        {"wavejson", {"json", "json5"}, {false, false, false, false}, WriteWaveJson},
        {"pwl", {"pwl", "cir", "sp"}, {true, false, true, false}, WriteSpiceSources},
    };
    return forms;
}

std::string NamesInWords()
{
    std::string names;
    for (const std::string &name : ExportFormNames())
        names += (names.empty() ? "" : ", ") + name;
    return names;
}

}  // namespace

std::set<std::string> ExportFormNames()
{
    std::set<std::string> names;
    for (const SExportForm &form : Forms())
        names.insert(form.name);
    return names;
}

const SExportForm &FindExportForm(const std::string &name, const std::string &path)
{
    std::string ending = std::filesystem::path(path).extension().string();
    ending.erase(0, 1);  // the point
    std::ranges::transform(ending, ending.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto found = std::ranges::find_if(Forms(), [&](const SExportForm &form) {
        return name.empty() ? std::ranges::find(form.endings, ending) != form.endings.end() : form.name == name;
    });
    if (found != Forms().end())
        return *found;
    throw CWrongUsage("--to is required where the ending of the output does not tell the form; they are " +
                      NamesInWords());
}

}  // namespace tesk
