// Runs the built tool as a user's shell does.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

struct SToolRun {
    int status;
    std::string out;
    std::string err;
};

inline std::string ReadFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// A folder of its own that goes with the object.
class CTemporaryFolder {
public:
    CTemporaryFolder()
    {
        char name[] = "/tmp/tesk-test-XXXXXX";
        m_path = mkdtemp(name);
    }
    CTemporaryFolder(const CTemporaryFolder &) = delete;
    ~CTemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::filesystem::path operator/(const char *name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

/// Runs a shell command line in which `tesk` is the tool, where letters are UTF-8 and nothing is a terminal.
inline SToolRun RunShell(const std::string &commandLine)
{
    const CTemporaryFolder folder;
    const std::string command =
        "export LC_ALL=C.UTF-8; PATH=\"$(dirname '" TESK_TOOL "'):$PATH\"; cd '" TESK_SOURCE_DIR "' && { " +
        commandLine + "\n} >'" + (folder / "out").string() + "' 2>'" + (folder / "err").string() + "' </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder / "out"), ReadFile(folder / "err")};
}
