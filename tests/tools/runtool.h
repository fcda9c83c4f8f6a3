// Runs the built tool as a user's shell does.
#pragma once

#include <filesystem>
#include <string>

struct SToolRun {
    int status;
    std::string out;
    std::string err;
};

std::string ReadFile(const std::filesystem::path &path);

/// A folder of its own that goes with the object.
class CTemporaryFolder {
public:
    CTemporaryFolder();
    CTemporaryFolder(const CTemporaryFolder &) = delete;
    ~CTemporaryFolder();
    std::filesystem::path operator/(const char *name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

/// Runs a shell command line in which `tesk` is the tool, where letters are UTF-8 and nothing is a terminal.
SToolRun RunShell(const std::string &commandLine);
