#include "tools/files/wavefile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "platform/tarn.h"
#include "tools/commandline.h"
#include "tools/loglines.h"
#include "tools/quote.h"

namespace {

// Refuses with what the library said, so that the user reads one line.
template <class Function>
auto WithErrors(const std::string &path, const Function &function)
{
    const CLogLines log;
    auto result = function();
    if (result == nullptr)
        throw CRefusal(OneLine(!log.LastError().empty() ? log.LastError() : path + ": cannot be read"));
    return result;
}

// An opened file whose later errors become refusals too.
class CCheckedFile final : public IWaveFile {
public:
    CCheckedFile(std::string path, std::unique_ptr<IWaveFile> file) : m_path(std::move(path)), m_file(std::move(file))
    {}

    long long GetResolution() override { return m_file->GetResolution(); }
    long long GetEndTime() override { return m_file->GetEndTime(); }
    const std::vector<SFileSignal> &GetSignals() override { return m_file->GetSignals(); }

    long long IdentifyEvents(long long element) override
    {
        const CLogLines log;
        return m_file->IdentifyEvents(element);
    }

    std::unique_ptr<IElementWalk> Walk(long long element) override
    {
        return WithErrors(m_path, [&] { return m_file->Walk(element); });
    }

private:
    std::string m_path;
    std::unique_ptr<IWaveFile> m_file;
};

[[noreturn]] void Refuse(const std::string &path, const std::string &why)
{
    throw CRefusal(OneLine(path) + ": " + why);
}

bool IsRegularFile(const std::string &path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        Refuse(path, "there is no such file");
    if (status.type() == std::filesystem::file_type::directory)
        Refuse(path, "is a directory; give a VCD, FST or event-stream file");
    if (status.type() == std::filesystem::file_type::none)
        Refuse(path, "cannot be read: " + error.message());
    return status.type() == std::filesystem::file_type::regular;
}

// What comes through a pipe is read once, and from the front to the back: a look at it would take its beginning away.
EWaveKind KindOfPipe(const std::string &path)
{
    const std::filesystem::path extension = std::filesystem::path(path).extension();
    if (extension == ".zyn" || extension == ".tmp" || extension == ".fst")
        Refuse(path, "is no regular file; of the waveform files only a VCD can be read from a pipe");
    return EWaveKind::Vcd;
}

std::string Beginning(const std::string &path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(64, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    if (!file.is_open() || file.bad())
        Refuse(path, std::string("cannot be read: ") + std::strerror(errno != 0 ? errno : EIO));
    return bytes;
}

bool BeginsWithFstBlock(std::string_view bytes)
{
    constexpr std::string_view Header{"\0\0\0\0\0\0\0\x01\x49", 9};  // block 0 of 329 bytes
    return bytes.starts_with(Header) || bytes.starts_with('\xFE');   // or the whole file packed
}

std::unique_ptr<IWaveFile> Open(const std::string &path)
{
    switch (KindOfFile(path)) {
    case EWaveKind::Stream: return OpenStreamFile(path);
    case EWaveKind::Vcd: return OpenVcdFile(path);
    default: return OpenFstFile(path);
    }
}

}  // namespace

EWaveKind KindOfName(const std::string &path)
{
    const auto contains = [&](const char *extension) {
        const std::size_t position = path.find(extension);
        return position != std::string::npos && position > 0;
    };
    if (contains(".zyn") || contains(".tmp"))
        return EWaveKind::Stream;
    return contains(".vcd") ? EWaveKind::Vcd : EWaveKind::Fst;
}

EWaveKind KindOfFile(const std::string &path)
{
    if (!IsRegularFile(path))
        return KindOfPipe(path);
    const std::string bytes = Beginning(path);
    if (bytes.starts_with("teskevs"))
        return EWaveKind::Stream;
    if (BeginsWithFstBlock(bytes))
        return EWaveKind::Fst;
    const std::size_t text = bytes.find_first_not_of(" \t\r\n");
    if (text != std::string::npos && bytes[text] == '$')
        return EWaveKind::Vcd;
    return KindOfName(path);
}

std::unique_ptr<IWaveFile> OpenWaveFile(const std::string &path)
try {
    return std::make_unique<CCheckedFile>(path, WithErrors(path, [&] { return Open(path); }));
} catch (const NTARN::XFileDoesNotExist &) {
    Refuse(path, "there is no such file");
} catch (const NTARN::XFileCorrupted &) {
    Refuse(path, "is damaged, or no VCD, FST or event-stream file");
}
