#include "tools/exchange/importforms.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>

#include "tools/commandline.h"

namespace tesk {

namespace {

constexpr SImportForm Forms[] = {
    {"force", "do", ImportQuestaForces},
    {"add_force", "tcl", ImportVivadoForces},
    {"wavejson", "json", ImportWaveJson},
};

}  // namespace

std::set<std::string> ImportFormNames()
{
    std::set<std::string> names;
    for (const SImportForm &form : Forms)
        names.insert(form.name);
    return names;
}

const SImportForm &FindImportForm(const std::string &name, const std::string &path)
{
    std::string ending = std::filesystem::path(path).extension().string();
    ending.erase(0, 1);  // the point
    std::ranges::transform(ending, ending.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto *found = std::ranges::find_if(
        Forms, [&](const SImportForm &form) { return name.empty() ? form.ending == ending : form.name == name; });
    if (found != std::end(Forms))
        return *found;
    std::string names;
    for (const SImportForm &form : Forms)
        names += (names.empty() ? "" : ", ") + std::string(form.name);
    throw CWrongUsage("--from is required where the ending of the file does not tell the form; they are " + names);
}

}  // namespace tesk
