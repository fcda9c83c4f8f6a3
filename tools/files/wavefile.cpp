#include "tools/files/wavefile.h"

#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "platform/files/file.h"
#include "platform/files/regularfile.h"
#include "platform/input/foreignkinds.h"
#include "platform/input/packedinput.h"
#include "platform/tarn.h"
#include "platform/tarnutil.h"
#include "tools/commandline.h"
#include "tools/files/pipeinput.h"
#include "tools/loglines.h"
#include "tools/progress.h"
#include "tools/quote.h"

using tesk::EFileKind;
using tesk::IElementWalk;
using tesk::IWaveformFile;
using tesk::SFileSignal;

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
class CCheckedFile final : public IWaveformFile {
public:
    CCheckedFile(std::string path, std::unique_ptr<IWaveformFile> file)
        : m_path(std::move(path)), m_file(std::move(file))
    {}

    long long GetResolution() override { return m_file->GetResolution(); }
    long long GetEndTime() override { return m_file->GetEndTime(); }
    std::optional<long long> FindEndTime() override { return m_file->FindEndTime(); }
    std::optional<int> FindSignal(const char *name) override { return m_file->FindSignal(name); }
    long MakeSignal(int handle, bool whole, ISignal **signal) override
    {
        return m_file->MakeSignal(handle, whole, signal);
    }
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

    std::unique_ptr<tesk::IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all) override
    {
        return WithErrors(m_path, [&] { return m_file->WalkTogether(first, count, all); });
    }

    std::unique_ptr<tesk::IChangeWalk> WalkChanges(const std::vector<SFileSignal> &signals) override
    {
        return m_file->WalkChanges(signals);
    }

    std::optional<std::vector<tesk::SChangeCount>> CountChanges(const std::vector<SFileSignal> &signals,
                                                                const tesk::SStretch &stretch,
                                                                const tesk::FProgress &progress) override
    {
        return m_file->CountChanges(signals, stretch, progress);
    }

    long long EstimateEndTime() override { return m_file->EstimateEndTime(); }

private:
    std::string m_path;
    std::unique_ptr<IWaveformFile> m_file;
};

// Tells on a terminal how far an import is.
class CImportProgress {
public:
    CImportProgress() { NTARN::NImport::SetProgress(Show, this); }
    CImportProgress(const CImportProgress &) = delete;
    CImportProgress &operator=(const CImportProgress &) = delete;
    ~CImportProgress() { NTARN::NImport::SetProgress(nullptr, nullptr); }

private:
    static void Show(void *context, long long bytesRead, long long fileSize)
    {
        tesk::CProgressLine &line = static_cast<CImportProgress *>(context)->m_line;
        if (fileSize > 0)
            line.ShowNow(bytesRead, fileSize);
        else
            line.ShowBytes(bytesRead);
    }

    tesk::CProgressLine m_line{"Reading"};
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
        Refuse(path, "is a directory; give a VCD, FST, GHW or event-stream file");
    if (status.type() == std::filesystem::file_type::none)
        Refuse(path, "cannot be read: " + error.message());
    return status.type() == std::filesystem::file_type::regular;
}

std::string Beginning(const std::string &path)
{
    constexpr std::size_t Size = 64;
    std::string bytes;
    if (const int error = tesk::ReadBeginning(path, Size, bytes); error != 0)
        Refuse(path, std::string("cannot be read: ") + std::strerror(error));
    return bytes;
}

// Of what gzip packed, the beginning of that.
std::string Unpacked(const std::string &path, std::string bytes)
try {
    std::string unpacked(bytes.size(), '\0');
    unpacked.resize(tesk::CPackedInput(path).Read(unpacked.data(), unpacked.size()));
    return unpacked;
} catch (const tesk::XInputFault &) {
    return bytes;  // who reads all of it says what is wrong
}

std::unique_ptr<IWaveformFile> OpenReadable(const std::string &path)
try {
    return std::make_unique<CCheckedFile>(path, WithErrors(path, [&] { return OpenAs(KindOfFile(path), path); }));
} catch (const NTARN::XFileDoesNotExist &) {
    Refuse(path, "there is no such file");
} catch (const NTARN::XFileUnreadable &fault) {
    Refuse(path, fault.what());
} catch (const NTARN::XFileCorrupted &) {
    Refuse(path, "is damaged, or no VCD, FST, GHW or event-stream file");
}

}  // namespace

EFileKind KindOfFile(const std::string &given)
{
    const std::string path = tesk::ReadablePath(given);
    if (!IsRegularFile(path))
        return EFileKind::Vcd;  // and read as it comes
    const std::string bytes = Unpacked(path, Beginning(path));
    if (const auto kind = tesk::KindOfContents(bytes))
        return *kind;
    if (const tesk::SForeignKind *const foreign = tesk::FindForeignKind(bytes, path))
        Refuse(path, tesk::ForeignKindText(*foreign));
    return tesk::KindOfName(path);
}

std::unique_ptr<IWaveformFile> OpenAs(EFileKind kind, const std::string &path)
{
    const CImportProgress progress;
    return tesk::FileKind(kind).open(path.c_str());
}

std::unique_ptr<IWaveformFile> OpenWaveFile(const std::string &given)
{
    return OpenReadable(tesk::ReadablePath(given));
}

void ImportVcd(const std::string &path, NTARN::IDatabaseStreamWriter &writer)
try {
    const CLogLines log;
    const CImportProgress progress;
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(tesk::ReadablePath(path));
    importer.vcdImport();
} catch (const std::runtime_error &error) {
    throw CRefusal(OneLine(error.what()));
}

CFormulaFile::CFormulaFile(const std::string &path) : m_use(tesk::FileKind(tesk::KindOfName(path)).makeUse())
{
    const CLogLines log;
    const CImportProgress progress;
    try {
        m_file = m_use->Find(path.c_str());
    } catch (const std::exception &) {  // whatever the reader of the file raises
        return;
    }
    if (m_file != nullptr)
        m_use->KeepOpen();
}
