#include "tools/files/matlist.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/bytes.h"
#include "tools/commandline.h"
#include "tools/files/matlibrary.h"
#include "tools/quote.h"
#include "waveform/mat/matvariable.h"
#include "waveform/matimporter.h"

namespace tesk {

namespace {

constexpr int MostDepth = 64;  // of structures inside one another

std::string ClassOf(const mxArray *array)
{
    constexpr int Unknown = 0;
    const int classId = MatLibraries().mxGetClassID(array);
    const bool isSparse = IsMatSparse(array);
    const std::string name = isSparse && classId == Unknown ? "double" : MatClassName(classId);
    return (isSparse ? "sparse " : "") + std::string(IsMatComplex(array) ? "complex " : "") + name;
}

void List(const std::string &name, const mxArray *array, int depth, std::vector<SMatListed> &list)
{
    if (array == nullptr || depth > MostDepth)
        return;
    list.push_back({name, ClassOf(array), ReadMatSizes(array)});
    const SMatLibraries &matlab = MatLibraries();
    const std::size_t elements = matlab.mxGetNumberOfElements(array);
    if (!matlab.mxIsStruct(array) || elements == 0)
        return;
    const std::string prefix = name + (elements > 1 ? "(1)." : ".");
    for (int i = 0; i < matlab.mxGetNumberOfFields(array); ++i) {
        const char *field = matlab.mxGetFieldNameByNumber(array, i);
        if (field != nullptr)
            List(prefix + field, matlab.mxGetField(array, 0, field), depth + 1, list);
    }
}

// MATLAB's list of names, which its own function gives back.
class CDirectory {
public:
    explicit CDirectory(MATFile *file)
    {
        if (auto *const directory = m_matGetDir.As<char **(MATFile *, int *)>())
            m_names = directory(file, &m_count);
    }
    CDirectory(const CDirectory &) = delete;
    CDirectory &operator=(const CDirectory &) = delete;
    ~CDirectory()
    {
        auto *const free = m_mxFree.As<void(void *)>();
        if (m_names != nullptr && free != nullptr)
            free(static_cast<void *>(m_names));
    }

    bool IsThere() const { return m_count == 0 || (m_count > 0 && m_names != nullptr); }
    std::vector<std::string> Names() const { return {m_names, m_names + m_count}; }

private:
    CMatEntry m_matGetDir{"libmat.dll", "matGetDir"};
    CMatEntry m_mxFree{"libmx.dll", "mxFree"};
    int m_count = -1;
    char **m_names = nullptr;
};

void CheckIsFile(const std::string &path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        throw CRefusal(OneLine(path) + ": there is no such file");
}

// Five words of version 4: a type in decimal digits "M0PT", rows, columns, whether complex, the length of the name and its null.
bool BeginsAsVersion4(std::string_view bytes, std::uint64_t (*load)(const char *, std::size_t))
{
    constexpr std::size_t Words = 5;
    constexpr std::uint64_t LastType = 1052;
    std::array<std::uint64_t, Words> words{};
    if (bytes.size() <= sizeof(std::uint32_t) * Words)
        return false;
    for (std::size_t i = 0; i < Words; ++i)
        words[i] = load(bytes.data() + i * sizeof(std::uint32_t), sizeof(std::uint32_t));
    const auto [type, rows, columns, isComplex, length] = words;
    const std::string_view name = bytes.substr(sizeof(std::uint32_t) * Words);
    if (type > LastType || type / 100 % 10 != 0 || type / 10 % 10 > 5 || type % 10 > 2 || isComplex > 1 || length < 2)
        return false;
    const std::string_view letters = name.substr(0, std::min<std::uint64_t>(length - 1, name.size()));
    return std::ranges::all_of(letters, [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; }) &&
           (letters.size() == name.size() || name[letters.size()] == '\0');
}

}  // namespace

bool BeginsAsMatFile(std::string_view beginning)
{
    return beginning.starts_with("MATLAB ") || beginning.starts_with("\x89HDF\r\n\x1A\n") ||
           BeginsAsVersion4(beginning, LoadLittleEndian<char>) || BeginsAsVersion4(beginning, LoadBigEndian<char>);
}

std::string FirstNames(const std::vector<SMatListed> &list)
{
    constexpr std::size_t Most = 12;
    std::string names;
    for (std::size_t i = 0; i < std::min(list.size(), Most); ++i)
        names += (i > 0 ? ", " : "") + Quote(list[i].name);
    return names + (list.size() > Most ? ", ..." : "");
}

std::optional<std::vector<SMatListed>> ListMatVariables(MATFile *file)
{
    const CDirectory directory(file);
    const CMatEntry info("libmat.dll", "matGetVariableInfo");
    auto *const getInfo = info.As<mxArray *(MATFile *, const char *)>();
    if (!directory.IsThere() || getInfo == nullptr)
        return std::nullopt;
    std::vector<SMatListed> list;
    for (const std::string &name : directory.Names())
        List(name, getInfo(file, name.c_str()), 0, list);
    return list;
}

std::vector<SMatListed> ListMatFile(const std::string &path)
{
    CheckIsFile(path);
    if (!LoadMatLibraries())
        throw CRefusal(OneLine(path) + ": " + NoMatLibraries);
    const MatFilePtr file = OpenMatFile(path);
    if (file == nullptr)
        throw CRefusal(OneLine(path) + ": " + MatFileFault());
    const auto list = ListMatVariables(file.get());
    if (!list)
        throw CRefusal(OneLine(path) + ": " + MatFileFault());
    return *list;
}

}  // namespace tesk
