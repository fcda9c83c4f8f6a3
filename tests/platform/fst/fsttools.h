// What the tests of waveform files share.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/tarn.h"

namespace fsttest {

using ReaderPtr = std::unique_ptr<NTARN::IDatabaseReader>;

/// One event, with its value in one piece.
struct SEvent {
    long long time;
    std::uint64_t value;

    friend bool operator==(const SEvent &, const SEvent &) = default;
    friend std::ostream &operator<<(std::ostream &out, const SEvent &event)
    {
        return out << event.value << "@" << event.time;
    }
};

inline SEvent EventAt(const NTARN::KEventIterator &it)
{
    return {*it, static_cast<std::uint64_t>(it.extValue()) << 32 | it.value()};
}

inline std::vector<SEvent> AllEvents(NTARN::IDatabaseReader &reader, int handle)
{
    std::vector<SEvent> events;
    const NTARN::KEventIterator end = reader.EventsEnd(handle);
    for (NTARN::KEventIterator it = reader.EventsFrom(handle, INT64_MIN); it != end; ++it)
        events.push_back(EventAt(it));
    return events;
}

/// The handle of a signal by its full path; -1 if there is none.
inline int HandleOf(NTARN::IDatabaseReader &reader, const std::string &path)
{
    for (const int *handle = reader.RootHandlesBegin(); handle != reader.RootHandlesEnd(); ++handle) {
        if (reader.GetName(*handle) == path)
            return *handle;
    }
    return -1;
}

/// A folder of its own that goes with the object; in memory where the system has such a place, for thousands of files
/// are written.
class CTemporaryFolder {
public:
    CTemporaryFolder()
    {
        std::error_code error;
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = std::filesystem::is_directory(memory, error);
        std::string name = (hasMemory ? memory : std::filesystem::temp_directory_path()) / "tesk-test-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    CTemporaryFolder(const CTemporaryFolder &) = delete;
    ~CTemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::filesystem::path operator/(const std::string &name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

using CBytes = std::vector<std::uint8_t>;

inline void WriteBytes(const std::filesystem::path &path, const CBytes &bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline CBytes ReadBytes(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace fsttest
