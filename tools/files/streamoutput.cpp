// Event streams out of other waveform files.
#include <array>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/morvel.h"
#include "tools/commandline.h"
#include "tools/files/waveoutput.h"
#include "tools/loglines.h"
#include "tools/progress.h"
#include "tools/quote.h"
#include "waveform/files/waveformfile.h"

using tesk::IElementWalk;
using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

// Calls a step of the writer, which logs why it fails.
template <class Function>
void WriteOrRefuse(const std::string &path, const Function &step)
{
    const CLogLines log;
    if (!step())
        throw CRefusal(OneLine(!log.LastError().empty() ? log.LastError() : path + ": cannot be written"));
}

// The scalars of the stream in groups that share their events, so that these are walked once.
class CScalars {
public:
    void Add(IWaveformFile &file, long long element, int number)
    {
        const auto [group, isNew] = m_groupOf.try_emplace(file.IdentifyEvents(element), m_groups.size());
        if (isNew)
            m_groups.push_back({element, {}});
        m_groups[group->second].numbers.push_back(number);
    }

    void WriteEvents(Morvel::IMorvelWrite &writer, IWaveformFile &file) const
    {
        tesk::CProgressLine progress("Writing");
        for (std::size_t i = 0; i < m_groups.size(); ++i)
            WriteGroup(writer, m_groups[i].numbers, *file.Walk(m_groups[i].element),
                       [&] { progress.Show(static_cast<long long>(i), std::ssize(m_groups)); });
    }

private:
    struct SGroup {
        long long element;         // one of them
        std::vector<int> numbers;  // in the stream
    };

    static void WriteGroup(Morvel::IMorvelWrite &writer, const std::vector<int> &numbers, IElementWalk &walk,
                           const std::function<void()> &goOn);

    std::vector<SGroup> m_groups;
    std::unordered_map<long long, std::size_t> m_groupOf;
};

void CScalars::WriteGroup(Morvel::IMorvelWrite &writer, const std::vector<int> &numbers, IElementWalk &walk,
                          const std::function<void()> &goOn)
{
    long long time = 0;
    std::uint64_t value = 0;
    while (walk.Next(time, value)) {
        goOn();
        std::array<unsigned char, 8> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<unsigned char>(value >> (8 * i));
        for (const int number : numbers)
            writer.AddEvent(number, time, bytes.data());
    }
}

void AddBus(Morvel::IMorvelWrite &writer, CScalars &scalars, IWaveformFile &file, const SFileSignal &signal)
{
    const int bus = writer.AddSignal(-1, signal.path.c_str(), signal.type.GetTypeInfoString());
    int left = 0;
    int right = 0;
    int direction = 0;
    signal.type.GetArrayDimensionRanges(0, left, right, direction);
    for (long long i = 0; i < signal.elementCount; ++i) {
        const std::string name = '(' + std::to_string(direction == 0 ? left + i : left - i) + ')';
        const int number = writer.AddSignal(bus, name.c_str(), signal.type.GetArrayElementTypeInfo());
        scalars.Add(file, signal.firstElement + i, number);
    }
}

void AddSignal(Morvel::IMorvelWrite &writer, CScalars &scalars, IWaveformFile &file, const SFileSignal &signal)
{
    if (!signal.type.IsScalar()) {
        AddBus(writer, scalars, file, signal);
        return;
    }
    const int number = writer.AddSignal(-1, signal.path.c_str(), signal.type.GetTypeInfoString());
    scalars.Add(file, signal.firstElement, number);
}

}  // namespace

void WriteEventStream(const std::string &path, IWaveformFile &file)
{
    Morvel::StreamWritePtr writer;
    WriteOrRefuse(path, [&] {
        writer.reset(Morvel::CreateStreamWrite(path.c_str(), file.GetResolution()));
        return writer != nullptr;
    });
    CScalars scalars;
    for (const SFileSignal &signal : file.GetSignals())
        AddSignal(*writer, scalars, file, signal);
    scalars.WriteEvents(*writer, file);
    writer->SetEndTime(file.GetEndTime());
    WriteOrRefuse(path, [&] { return writer->Finish(); });
}
