// MATLAB's libraries as the tool uses them: beyond what an importer needs of them.
#pragma once

#include <memory>
#include <string>

#include "platform/loader.h"
#include "waveform/mat/matlibraries.h"

namespace tesk {

/// Why they cannot be used. To be told where `LoadMatLibraries` fails.
extern const char *const NoMatLibraries;

struct SMatFileEnder {
    void operator()(MATFile *file) const { MatLibraries().matClose(file); }
};
using MatFilePtr = std::unique_ptr<MATFile, SMatFileEnder>;

/// Opens a file, after `LoadMatLibraries`. @return null if it cannot be read
MatFilePtr OpenMatFile(const std::string &path);

/// What is wrong with the program that reads the files for the library; empty for nothing.
std::string MatReaderFault();

/// Why a file could not be read.
std::string MatFileFault();

/// An entry point that an importer does without, while it lives. A library may lack it.
class CMatEntry {
public:
    /// @param library  such as "libmx.dll"
    CMatEntry(const char *library, const char *entry);
    CMatEntry(const CMatEntry &) = delete;
    CMatEntry &operator=(const CMatEntry &) = delete;
    ~CMatEntry();

    /// @return null if there is none
    template <typename Function>
    Function *As() const
    {
        return reinterpret_cast<Function *>(m_entry);
    }

private:
    HMODULE m_library;
    void *m_entry;
};

bool IsMatSparse(const mxArray *array);
bool IsMatComplex(const mxArray *array);

/// MATLAB's word for a class.
std::string MatClassName(int classId);

}  // namespace tesk
