// A MAT-file of the bundled libmat.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/matlab/mxarray.h"

class CHelperProcess;

/// An open MAT-file. The file is read by a process of its own, `tesk-matread`, that may crash, hang or ask for all memory
/// on a damaged file; nothing of the kind reaches the host.
class CMatFile {
public:
    /// @param reader  path of the reading program
    /// @param path    of the file
    CMatFile(std::string reader, std::string path);

    /// @return whether it is a MAT-file, all of whose variables can be named
    bool Check();
    /// Reads a variable. @return it, owned by this object; null if there is none or it cannot be read
    mxArray *ReadVariable(const char *name);
    /// The names of all variables, and what ReadInfo tells of them. It is read once. @return null if it cannot be read
    const std::vector<std::string> *ReadNames();
    /// A variable without values: of doubles there are none, of a structure the fields of its first element alone.
    /// @return as ReadVariable
    mxArray *ReadInfo(const char *name);
    /// What went wrong with the reading program in the last of these, in words that begin with its path; empty if nothing
    /// did, whatever may be wrong with the file.
    const std::string &Fault() const { return m_fault; }

private:
    std::vector<std::string> Command() const;
    bool ReadList();
    void KeepFault(CHelperProcess &process);

    std::string m_reader;
    std::string m_path;
    std::string m_fault;
    std::size_t m_memory = 0;        // bytes that the process may use; 0 if there is no such file
    std::chrono::seconds m_time{0};  // of its processor, that it may use
    std::vector<std::unique_ptr<mxArray>> m_variables;
    bool m_isListed = false;
    std::vector<std::string> m_names;
    std::vector<std::unique_ptr<mxArray>> m_infos;  // of the names; any null
};
