#include "tools/runtool.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

#include "testpaths.h"

std::string ReadFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

CTemporaryFolder::CTemporaryFolder()
{
    char name[] = "/tmp/tesk-test-XXXXXX";
    m_path = mkdtemp(name);
}

CTemporaryFolder::~CTemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

SToolRun RunShell(const std::string &commandLine)
{
    const CTemporaryFolder folder;
    const std::string command =
        "export LC_ALL=C.UTF-8; PATH=\"$(dirname '" TESK_TOOL "'):$PATH\"; cd '" TESK_SOURCE_DIR "' && { " +
        commandLine + "\n} >'" + (folder / "out").string() + "' 2>'" + (folder / "err").string() + "' </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder / "out"), ReadFile(folder / "err")};
}
