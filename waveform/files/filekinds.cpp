#include "waveform/files/filekinds.h"

#include <cstddef>
#include <iterator>

#include "platform/log.h"
#include "waveform/customstimulus.h"
#include "waveform/files/databasefile.h"
#include "waveform/files/fileuse.h"
#include "waveform/files/streamfile.h"
#include "waveform/files/vcdfile.h"
#include "waveform/openfiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

namespace tesk {

namespace {

template <typename TStimulus>
IStimulus *CreateStimulus(long long now, const char *arguments)
{
    std::unique_ptr<TStimulus> stimulus = std::make_unique<TStimulus>();
    return stimulus->InitFromFormula(now, arguments) ? stimulus.release() : nullptr;
}

std::unique_ptr<IWaveformFile> OpenVcd(const char *fileName)
{
    return CVcdFile::Open(fileName);
}

template <typename TUse>
std::unique_ptr<IFileUse> MakeUse()
{
    return std::make_unique<TUse>();
}

template <typename TReader>
void EndReader(void *reader)
{
    delete static_cast<TReader *>(reader);
}

//                                                brackets  faults  empty stretch  display units  scaled end
constexpr SWaveformFileRules StreamRules = {false, false, true, false, true};
constexpr SWaveformFileRules VcdRules = {true, true, false, true, false};
constexpr SWaveformFileRules DatabaseRules = {true, true, false, false, true};

// Event streams are not shared: what a host enters under such a name counts as a database.
constexpr SFileKind Kinds[] = {
    {EFileKind::Stream, StreamRules, OpenFile<CStreamFile>, MakeUse<CStreamUse>, CreateStimulus<CCustomStimulus>,
     EndReader<NTARN::IDatabaseReader>},
    {EFileKind::Vcd, VcdRules, OpenVcd, MakeUse<TSharedUse<CVcdFile>>, CreateStimulus<CVcdStimulus>,
     EndReader<WaveStore>},
    {EFileKind::Database, DatabaseRules, OpenFile<CDatabaseFile>, MakeUse<TSharedUse<CDatabaseFile>>,
     CreateStimulus<CTarnStimulus>, EndReader<NTARN::IDatabaseReader>},
};

constexpr bool IsEachRowInItsPlace()
{
    for (std::size_t i = 0; i < std::size(Kinds); ++i) {
        if (static_cast<std::size_t>(Kinds[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(IsEachRowInItsPlace());

// What a name has in it, in the order in which it is looked for.
struct SNamePart {
    std::string_view part;
    EFileKind kind;
};
constexpr SNamePart NameParts[] = {{".zyn", EFileKind::Stream}, {".tmp", EFileKind::Stream}, {".vcd", EFileKind::Vcd}};

bool BeginsAsGhw(std::string_view bytes)
{
    return bytes.starts_with("GHDLwave\n");
}

bool BeginsWithFstBlock(std::string_view bytes)
{
    constexpr std::string_view Header{"\0\0\0\0\0\0\0\x01\x49", 9};  // block 0 of 329 bytes
    return bytes.starts_with(Header) || bytes.starts_with('\xFE');   // or the whole file packed
}

}  // namespace

void SWaveformFileRules::Log(const char *text) const
{
    if (logsFaults)
        Q71log_PrintFormattedString(1, "KERNEL", "", text);
}

const SFileKind &FileKind(EFileKind kind)
{
    return Kinds[static_cast<std::size_t>(kind)];
}

EFileKind KindOfName(std::string_view fileName)
{
    for (const auto &[part, kind] : NameParts) {
        const std::size_t at = fileName.find(part);
        if (at != 0 && at != std::string_view::npos)
            return kind;
    }
    return EFileKind::Database;
}

std::optional<EFileKind> KindOfContents(std::string_view beginning)
{
    if (beginning.starts_with("teskevs"))
        return EFileKind::Stream;
    if (BeginsWithFstBlock(beginning) || BeginsAsGhw(beginning))
        return EFileKind::Database;
    const std::size_t text = beginning.find_first_not_of(" \t\r\n");
    if (text != std::string_view::npos && beginning[text] == '$')
        return EFileKind::Vcd;
    return std::nullopt;
}

void RenameBrackets(SimpleString::CStr &signalName)
{
    for (int i = 0; i < signalName.GetLength(); ++i) {
        if (signalName[i] == '(')
            signalName.SetAt(i, '[');
        else if (signalName[i] == ')')
            signalName.SetAt(i, ']');
    }
}

void CloseOpenWaveformFiles()
{
    for (const auto &[name, file] : g_OpenWaveformFiles)
        FileKind(KindOfName(static_cast<const char *>(name))).endReader(file.m_reader);
    g_OpenWaveformFiles.clear();
}

}  // namespace tesk
