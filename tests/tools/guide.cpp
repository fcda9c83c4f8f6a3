// The commands, pictures and listings of the guide and the README are what the tool and the examples are.
//
//   ```console blocks         "$ command" lines, each followed by what it prints
//   <!-- picture FILE: command -->   the command prints the file
//   <!-- file FILE -->        the next code block is the file
//
// With TESK_UPDATE_GUIDE set in the environment they are written instead of compared.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "testpaths.h"
#include "tools/runtool.h"

namespace {

const std::filesystem::path Source = TESK_SOURCE_DIR;

bool IsUpdating()
{
    return std::getenv("TESK_UPDATE_GUIDE") != nullptr;
}

std::vector<std::string> Lines(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string Output(const std::string &command)
{
    const SToolRun run = RunShell("{ " + command + "\n} 2>&1");
    std::string text = run.out;
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    return text;
}

// The page with every listing as it should be. Pictures are written or compared on the way.
class CPage {
public:
    explicit CPage(const std::filesystem::path &path) : m_lines(Lines(ReadFile(path))) {}

    std::string Renewed()
    {
        std::string file;
        while (m_at < m_lines.size()) {
            const std::string line = Take();
            if (line.starts_with("<!-- picture "))
                Picture(line);
            if (line.starts_with("<!-- file "))
                file = line.substr(10, line.find(" -->") - 10);
            else if (line == "```console")
                Console();
            else if (line.starts_with("```") && !file.empty()) {
                Listing(file);
                file.clear();
            }
        }
        return m_text;
    }

    int CommandCount() const { return m_commands; }

private:
    std::string Take()
    {
        m_text += m_lines[m_at] + '\n';
        return m_lines[m_at++];
    }

    void Picture(const std::string &line)
    {
        const std::size_t colon = line.find(": ");
        const std::filesystem::path path = Source / line.substr(13, colon - 13);
        const std::string picture = Output(line.substr(colon + 2, line.find(" -->") - colon - 2));
        ++m_commands;
        if (IsUpdating())
            std::ofstream(path, std::ios::binary) << picture;
        EXPECT_EQ(ReadFile(path), picture) << path;
    }

    void Console()
    {
        for (; m_at < m_lines.size() && m_lines[m_at] != "```"; ++m_at) {
            if (!m_lines[m_at].starts_with("$ "))
                continue;
            m_text += m_lines[m_at] + '\n' + Output(m_lines[m_at].substr(2));
            ++m_commands;
        }
        Take();
    }

    void Listing(const std::string &file)
    {
        m_text += ReadFile(Source / file);
        while (m_at < m_lines.size() && m_lines[m_at] != "```")
            ++m_at;
        Take();
    }

    std::vector<std::string> m_lines;
    std::size_t m_at = 0;
    std::string m_text;
    int m_commands = 0;
};

}  // namespace

TEST(Guide, ShowsWhatTheToolPrints)
{
    std::vector<std::filesystem::path> pages = {Source / "README.md"};
    for (const auto &entry : std::filesystem::directory_iterator(Source / "docs")) {
        if (entry.path().extension() == ".md")
            pages.push_back(entry.path());
    }
    int commands = 0;
    for (const auto &path : pages) {
        CPage page(path);
        const std::string renewed = page.Renewed();
        commands += page.CommandCount();
        if (IsUpdating())
            std::ofstream(path, std::ios::binary) << renewed;
        EXPECT_EQ(ReadFile(path), renewed) << path;
    }
    EXPECT_GT(commands, 5);
}
