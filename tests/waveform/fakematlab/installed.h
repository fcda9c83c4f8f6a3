// A MATLAB that counts as installed while it lives.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

#include "testpaths.h"

/// Puts a program called "matlab" in front of all others that a shell would find, and takes it away again.
class CInstalledMatlab {
public:
    explicit CInstalledMatlab(const std::string &root)
        : m_before(std::getenv("PATH") != nullptr ? std::getenv("PATH") : "")
    {
        setenv("PATH", (root + "/bin:" + m_before).c_str(), 1);
    }
    CInstalledMatlab(const CInstalledMatlab &) = delete;
    CInstalledMatlab &operator=(const CInstalledMatlab &) = delete;
    ~CInstalledMatlab() { setenv("PATH", m_before.c_str(), 1); }

private:
    const std::string m_before;
};

/// A copy of the made-up MATLAB to change at will.
class CMatlabCopy {
public:
    CMatlabCopy()
    {
        static int s_number = 0;
        m_root = std::filesystem::temp_directory_path() /
                 ("matlab." + std::to_string(getpid()) + "." + std::to_string(++s_number));
        std::filesystem::copy(TESK_FAKE_MATLAB, m_root, std::filesystem::copy_options::recursive);
    }
    CMatlabCopy(const CMatlabCopy &) = delete;
    CMatlabCopy &operator=(const CMatlabCopy &) = delete;
    ~CMatlabCopy() { std::filesystem::remove_all(m_root); }

    std::string Root() const { return m_root.string(); }
    std::filesystem::path Library(const std::string &name) const { return m_root / "bin/glnxa64" / name; }

    /// Takes an entry point away: its name is another from now on.
    void Rename(const std::string &library, const std::string &entry) const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(Library(library), std::ios::binary).rdbuf();
        std::string image = bytes.str();
        const std::string mark = '\0' + entry + '\0';
        for (std::size_t at = image.find(mark); at != std::string::npos; at = image.find(mark, at + 1))
            image[at + entry.size()] = '_';
        std::ofstream(Library(library), std::ios::binary) << image;
    }

private:
    std::filesystem::path m_root;
};
