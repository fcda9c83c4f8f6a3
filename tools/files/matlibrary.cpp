#include "tools/files/matlibrary.h"

#include <iterator>

namespace tesk {

namespace {

constexpr const char *ClassNames[] = {"unknown", "cell",   "struct", "logical", "char",           "void",
                                      "double",  "single", "int8",   "uint8",   "int16",          "uint16",
                                      "int32",   "uint32", "int64",  "uint64",  "function_handle"};

bool Is(const char *entry, const mxArray *array)
{
    const CMatEntry libmx("libmx.dll", entry);
    auto *const test = libmx.As<bool(const mxArray *)>();
    return test != nullptr && test(array);
}

}  // namespace

const char *const NoMatLibraries =
    "neither an installed MATLAB nor the libraries that come with tesk can be loaded; these lie in "
    "../lib/tesk beside the folder of the tool";

CMatEntry::CMatEntry(const char *library, const char *entry)
    : m_library(LoadLibraryA(library)), m_entry(m_library != nullptr ? GetProcAddress(m_library, entry) : nullptr)
{}

CMatEntry::~CMatEntry()
{
    if (m_library != nullptr)
        FreeLibrary(m_library);
}

MatFilePtr OpenMatFile(const std::string &path)
{
    return MatFilePtr(MatLibraries().matOpen(path.c_str(), "r"));
}

std::string MatReaderFault()
{
    const CMatEntry libmat("libmat.dll", "matTeskFault");
    auto *const fault = libmat.As<const char *()>();
    return fault != nullptr ? fault() : "";
}

std::string MatFileFault()
{
    const std::string fault = MatReaderFault();
    return fault.empty() ? "the file is no MAT-file, or it is damaged" : "the file cannot be read: " + fault;
}

bool IsMatSparse(const mxArray *array)
{
    return Is("mxIsSparse", array);
}

bool IsMatComplex(const mxArray *array)
{
    return Is("mxIsComplex", array);
}

std::string MatClassName(int classId)
{
    return classId >= 0 && classId < static_cast<int>(std::size(ClassNames)) ? ClassNames[classId] : "object";
}

}  // namespace tesk
