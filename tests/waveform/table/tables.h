// Text tables in files, and what an import makes of them.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "core/fileformulaargs.h"
#include "core/stimulus.h"
#include "logcatcher.h"
#include "signal/signaltools.h"
#include "waveform/samplecolumn.h"
#include "waveform/textimporter.h"

inline constexpr const char *PhysicalType = "p#4#timerict-9223372036854775808 9223372036854775807";

/// A folder that goes with everything in it; it is the working folder while it lives.
class CTableFolder {
public:
    CTableFolder()
        : m_before(std::filesystem::current_path()),
          m_path(std::filesystem::temp_directory_path() / ("tables." + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
        std::filesystem::current_path(m_path);
    }
    CTableFolder(const CTableFolder &) = delete;
    CTableFolder &operator=(const CTableFolder &) = delete;
    ~CTableFolder()
    {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_path);
    }

    void Write(const std::string &name, const std::string &bytes) const
    {
        std::filesystem::remove(m_path / name);  // some file systems wait for the disk where a file is overwritten
        std::ofstream(m_path / name, std::ios::binary) << bytes;
    }

private:
    std::filesystem::path m_before;
    std::filesystem::path m_path;
};

/// One sample as a test writes it: "10:1", with "null" for no value and "%g" for a real one.
inline std::string SampleText(const CSampleColumn &column, const SampleEvent &event)
{
    char number[64];
    std::snprintf(number, sizeof number, "%g", column.m_isReal ? event.m_real : 0.0);
    const char *text = column.m_isReal ? number : event.m_text;
    return std::to_string(event.m_time) + ":" + (text != nullptr ? text : "null");
}

inline std::vector<std::string> SamplesOf(const CSampleColumn &column)
{
    std::vector<std::string> samples;
    for (const SampleEvent &event : column.m_events)
        samples.push_back(SampleText(column, event));
    return samples;
}

/// Tests of imports: a folder, caught messages, a resolution of one picosecond, and no column before or after.
class CTableTest : public testing::Test {
protected:
    using CTexts = std::vector<std::string>;

    CTableTest()
    {
        IStimulus::OnEndsim();
        g_simRes = 1000;
    }
    ~CTableTest() override
    {
        IStimulus::OnEndsim();
        g_simRes = 1000;
        IStimulus::SetupAdditionalInfo("", "");
    }

    /// The samples that the arguments of a "/txt" formula import, such as "t.txt,sig -rel"; nothing on failure.
    std::optional<CTexts> Import(const std::string &arguments, const std::string &type, long long startTime = 0)
    {
        CFileFormulaArgs args;
        EXPECT_TRUE(ParseTxtArgs(arguments.c_str(), args)) << arguments;
        const int handle = ImportTextFile(startTime, args, MakeSignal(type).get());
        if (handle == 0)
            return std::nullopt;
        return SamplesOf(*g_SampleColumns.at(handle));
    }

    /// The same of a table that is written first. `arguments` stand behind the file name.
    std::optional<CTexts> ImportTable(const std::string &table, const std::string &arguments,
                                      const std::string &type = VectorType(8), long long startTime = 0)
    {
        m_folder.Write("t.txt", table);
        return Import("t.txt," + arguments, type, startTime);
    }

    const std::vector<std::string> &Messages() const { return m_log.Messages(); }

    CTableFolder m_folder;
    CLogCatcher m_log;
};
