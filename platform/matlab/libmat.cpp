// The bundled libmat: the part of MATLAB's library of MAT-files that a reader of variables needs.
#include <dlfcn.h>
#include <memory>
#include <string>
#include <vector>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "platform/matlab/matfile.h"

using MATFile = CMatFile;

namespace {

// The reading program stands beside this library.
std::string ReaderPath()
{
    Dl_info place = {};
    if (dladdr(reinterpret_cast<void *>(&ReaderPath), &place) == 0 || place.dli_fname == nullptr)
        return "";
    const std::string library = place.dli_fname;
    return library.substr(0, library.rfind('/') + 1) + "tesk-matread";
}

// Pointers to texts, and behind them the texts. @return null if there is no memory
char **MakeBlock(const std::vector<std::string> &texts)
{
    std::size_t size = 0;
    for (const std::string &text : texts)
        size += sizeof(char *) + text.size() + 1;
    auto **block = static_cast<char **>(std::malloc(size));
    if (block == nullptr)
        return nullptr;
    char *at = reinterpret_cast<char *>(block + texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        block[i] = at;
        std::memcpy(at, texts[i].c_str(), texts[i].size() + 1);
        at += texts[i].size() + 1;
    }
    return block;
}

std::string g_fault;  // of the last file

}  // namespace

TESK_MATLAB_API MATFile *matOpen(const char *path, const char *mode)
try {
    if (path == nullptr || mode == nullptr || std::strcmp(mode, "r") != 0)
        return nullptr;
    auto file = std::make_unique<CMatFile>(ReaderPath(), path);
    const bool isGood = file->Check();
    g_fault = file->Fault();
    return isGood ? file.release() : nullptr;
} catch (const std::bad_alloc &) {
    return nullptr;
}

TESK_MATLAB_API int matClose(MATFile *file)
{
    delete file;
    return 0;
}

// Unlike MATLAB's, the variable belongs to the file: it goes with `matClose`.
TESK_MATLAB_API mxArray *matGetVariable(MATFile *file, const char *name)
try {
    if (file == nullptr || name == nullptr)
        return nullptr;
    mxArray *variable = file->ReadVariable(name);
    g_fault = file->Fault();
    return variable;
} catch (const std::bad_alloc &) {
    return nullptr;
}

// The names of all variables. @param count  receives how many they are, -1 for a file that cannot be read
// @return one block of memory, to be given back with `mxFree`; null for none
TESK_MATLAB_API char **matGetDir(MATFile *file, int *count)
try {
    if (count == nullptr)
        return nullptr;
    *count = -1;
    const std::vector<std::string> *names = file != nullptr ? file->ReadNames() : nullptr;
    g_fault = file != nullptr ? file->Fault() : "";
    if (names == nullptr || names->size() > std::size_t(std::numeric_limits<int>::max()))
        return nullptr;
    char **block = names->empty() ? nullptr : MakeBlock(*names);
    if (block != nullptr || names->empty())
        *count = static_cast<int>(names->size());
    return block;
} catch (const std::bad_alloc &) {
    return nullptr;
}

// A variable without its values. It belongs to the file too.
TESK_MATLAB_API mxArray *matGetVariableInfo(MATFile *file, const char *name)
try {
    if (file == nullptr || name == nullptr)
        return nullptr;
    mxArray *variable = file->ReadInfo(name);
    g_fault = file->Fault();
    return variable;
} catch (const std::bad_alloc &) {
    return nullptr;
}

// Not MATLAB's: what went wrong with the reading program when a file was last opened or a variable read, in words; empty if
// nothing did. It stays until the next of these.
TESK_MATLAB_API const char *matTeskFault()
{
    return g_fault.c_str();
}
