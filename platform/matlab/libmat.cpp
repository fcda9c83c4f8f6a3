// The bundled libmat: the part of MATLAB's library of MAT-files that a reader of variables needs.
#include <dlfcn.h>
#include <memory>
#include <string>

#include <cstring>
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

// Not MATLAB's: what went wrong with the reading program when a file was last opened or a variable read, in words; empty if
// nothing did. It stays until the next of these.
TESK_MATLAB_API const char *matTeskFault()
{
    return g_fault.c_str();
}
