#include "tools/commands/namelist.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>

#include "core/fileformulaargs.h"
#include "platform/files/file.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/examine/tableexamination.h"
#include "tools/files/matlist.h"
#include "tools/files/selectedfile.h"
#include "tools/output.h"
#include "tools/quote.h"
#include "waveform/files/filekinds.h"

namespace tesk {

namespace {

constexpr const char *Column = "column";
constexpr const char *Variable = "variable";

std::string BeginningOf(const std::string &path)
{
    constexpr std::size_t Size = 64;
    std::string bytes;
    if (const int error = ReadBeginning(path, Size, bytes); error != 0)
        throw CRefusal(OneLine(path) + ": cannot be read: " + std::strerror(error));
    return bytes;
}

bool IsTableName(const std::string &path)
{
    constexpr std::array Endings = {".txt", ".csv", ".tsv"};
    return std::ranges::find(Endings, std::filesystem::path(path).extension()) != Endings.end();
}

SNameList ListColumns(const std::string &path)
{
    CFileFormulaArgs args;
    args.m_file = path.c_str();
    SNameList list{Column, {}};
    for (const std::string &name : TableNames(args))
        list.names.push_back({name, {}, {}});
    if (list.names.empty())
        throw CRefusal(OneLine(path) + ": has no line with names of columns");
    return list;
}

SNameList ListVariables(const std::string &path)
{
    SNameList list{Variable, {}};
    for (const SMatListed &variable : ListMatFile(path))
        list.names.push_back({variable.name, variable.className, variable.sizes});
    return list;
}

std::string SizeText(const SListedName &name)
{
    std::string text;
    for (const std::uint64_t size : name.sizes)
        text += (text.empty() ? "" : "x") + std::to_string(size);
    return text;
}

void WriteNamesJson(std::ostream &out, const SNameList &list, const std::string &path)
{
    nlohmann::ordered_json names = nlohmann::ordered_json::array();
    for (const SListedName &name : list.names) {
        if (list.noun == Column)
            names.push_back(name.name);
        else
            names.push_back({{"variable", name.name}, {"class", name.className}, {"size", name.sizes}});
    }
    const nlohmann::ordered_json document = {{"file", path}, {std::string(list.noun) + 's', names}};
    out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace

std::optional<SNameList> ListNames(const std::string &path)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return std::nullopt;
    const std::string beginning = BeginningOf(path);
    if (BeginsAsMatFile(beginning))
        return ListVariables(path);
    if (KindOfContents(beginning))
        return std::nullopt;
    if (IsTableName(path))
        return ListColumns(path);
    return std::filesystem::path(path).extension() == ".mat" ? std::optional(ListVariables(path)) : std::nullopt;
}

SNameList Select(const SNameList &list, const std::string &path, const std::vector<std::string> &globs)
{
    if (globs.empty())
        return list;
    for (const std::string &glob : globs) {
        if (std::ranges::any_of(list.names, [&](const SListedName &name) { return IsLikeGlob(name.name, glob); }))
            continue;
        std::vector<std::string> names;
        for (const SListedName &name : list.names)
            names.push_back(name.name);
        throw CRefusal(OneLine(path) + ": no " + list.noun + " is named " + Quote(glob) + DidYouMean(glob, names) +
                       "; \"tesk signals " + OneLine(path) + "\" lists them, and * stands for any letters");
    }
    SNameList selected{list.noun, {}};
    std::ranges::copy_if(list.names, std::back_inserter(selected.names), [&](const SListedName &name) {
        return std::ranges::any_of(globs, [&](const std::string &glob) { return IsLikeGlob(name.name, glob); });
    });
    return selected;
}

void WriteNames(std::ostream &out, const SNameList &list, const std::string &path, const std::string &format)
{
    if (format == "json") {
        WriteNamesJson(out, list, path);
        return;
    }
    const bool isCsv = format == "csv";
    std::vector<std::vector<std::string>> lines = {{list.noun, "class", "size"}};
    for (const SListedName &name : list.names)
        lines.push_back({isCsv ? CsvField(name.name) : Printable(name.name), name.className, SizeText(name)});
    for (auto &line : lines)
        line.resize(list.noun == Column ? 1 : line.size());
    if (!isCsv) {
        WriteColumns(out, lines, 2);
        return;
    }
    for (const auto &line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i)
            out << (i > 0 ? "," : "") << line[i];
        out << '\n';
    }
}

}  // namespace tesk
