// Event streams out of other waveform files.
#include "tools/files/streamoutput.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "platform/changes/changewalk.h"
#include "platform/stream/groupevents.h"
#include "tools/commandline.h"
#include "tools/files/readwatch.h"
#include "tools/files/streamsignals.h"
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

void AddValue(Morvel::IStreamWriter &writer, int number, long long time, std::uint64_t value)
{
    std::array<unsigned char, 8> bytes;
    tesk::StoreLittleEndian(value, bytes.data(), bytes.size());
    writer.AddEvent(number, time, bytes.data());
}

// The signals in the stream: of each, what the writer calls its first element.
std::vector<int> AddSignals(Morvel::IStreamWriter &writer, IWaveformFile &file)
{
    CStreamSignals stream(writer);
    std::vector<int> numbers;
    for (const SFileSignal &signal : file.GetSignals()) {
        const auto identify = [&](std::size_t i) {
            return file.IdentifyEvents(signal.firstElement + static_cast<long long>(i));
        };
        numbers.push_back(
            stream.Add(signal.path, signal.type, static_cast<std::size_t>(signal.elementCount), identify));
    }
    return numbers;
}

// A signal whose elements are of an enumeration, and its positions at its last change. A bit of a word stands for each; as
// in all words bit 0 is the last element's.
class CWrittenWords {
public:
    /// @param number  what the writer calls its first element
    CWrittenWords(int number, std::size_t count) : m_number(number), m_last(count, tesk::IChangeWalk::NoPosition) {}

    /// Writes those that are not what they were; all if each of them is, since something has changed and changed back.
    void Write(Morvel::IStreamWriter &writer, long long time, std::span<const std::uint8_t> positions)
    {
        const bool areSame = std::ranges::equal(positions, m_last);
        // The first word is the shorter one.
        std::size_t begin = 0;
        for (std::size_t end = (m_last.size() - 1) % Morvel::MaxGroup + 1; begin < m_last.size();
             begin = std::exchange(end, end + Morvel::MaxGroup))
            WriteWord(writer, time, positions, {begin, end}, areSame);
    }

private:
    struct SRange {
        std::size_t begin, end;
    };

    void WriteWord(Morvel::IStreamWriter &writer, long long time, std::span<const std::uint8_t> positions,
                   const SRange &range, bool takesAll)
    {
        WaveWord word{};
        std::uint64_t changed = 0;
        unsigned all = 0;
        for (std::size_t i = range.begin; i < range.end; ++i) {
            const std::uint8_t position = positions[i];
            const bool isTaken = position != m_last[i] || (takesAll && position != tesk::IChangeWalk::NoPosition);
            changed = changed << 1 | (isTaken ? 1 : 0);
            for (unsigned plane = 0; plane < std::size(word.m_planes); ++plane)
                word.m_planes[plane] = word.m_planes[plane] << 1 | (position >> plane & 1);
            all |= isTaken ? position : 0;
            m_last[i] = position;
        }
        if (changed == 0)
            return;
        const int first = m_number + static_cast<int>(range.begin);
        if (all < 16) {
            writer.AddWord(first, static_cast<unsigned>(range.end - range.begin), time, changed, word);
            return;
        }
        for (; changed != 0; changed &= changed - 1) {
            const std::size_t i = range.end - 1 - static_cast<std::size_t>(std::countr_zero(changed));
            AddValue(writer, m_number + static_cast<int>(i), time, positions[i]);
        }
    }

    int m_number;
    std::vector<std::uint8_t> m_last;
};

// As the changes come in the file. What shares the events of another signal has none of its own, so that the writer takes
// none.
class CChangesInTime {
public:
    CChangesInTime(Morvel::IStreamWriter &writer, IWaveformFile &file, const std::vector<int> &numbers)
        : m_writer(writer), m_file(file), m_numbers(numbers), m_last(numbers.size())
    {
        for (std::size_t i = 0; i < numbers.size(); ++i)
            m_words.emplace_back(numbers[i], static_cast<std::size_t>(file.GetSignals()[i].elementCount));
    }

    void Write(tesk::IChangeWalk &walk)
    {
        tesk::CProgressLine progress("Writing");
        const long long end = m_file.EstimateEndTime();
        long long time = 0;
        while (walk.Next(time, std::numeric_limits<long long>::max())) {
            progress.Show(time, end);
            for (const std::uint32_t signal : walk.GetChanged())
                WriteSignal(walk, signal, time);
        }
    }

private:
    void WriteSignal(tesk::IChangeWalk &walk, std::uint32_t signal, long long time)
    {
        const std::span<const std::uint8_t> positions = walk.GetPositions(signal);
        if (positions.size() > 1)
            m_words[signal].Write(m_writer, time, positions);
        else if (!positions.empty())
            AddValue(m_writer, m_numbers[signal], time, positions.front());
        else
            WriteValues(signal, time, walk.GetValues(signal));
    }

    void WriteValues(std::uint32_t signal, long long time, const tesk::CElementValues &values)
    {
        tesk::CElementValues &last = m_last[signal];
        last.resize(values.size());
        const bool areSame = values == last;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!values[i] || (values[i] == last[i] && !areSame))
                continue;
            AddValue(m_writer, m_numbers[signal] + static_cast<int>(i), time, *values[i]);
            last[i] = values[i];
        }
    }

    Morvel::IStreamWriter &m_writer;
    IWaveformFile &m_file;
    const std::vector<int> &m_numbers;
    std::vector<CWrittenWords> m_words;
    std::vector<tesk::CElementValues> m_last;  // of signals of several elements that are no words
};

// One element after the other, for files that cannot be walked otherwise.
void WriteElements(Morvel::IStreamWriter &writer, IWaveformFile &file, const std::vector<int> &numbers)
{
    tesk::CProgressLine progress("Writing");
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const SFileSignal &signal = file.GetSignals()[i];
        for (long long element = 0; element < signal.elementCount; ++element) {
            if (!writer.HasEvents(numbers[i] + static_cast<int>(element)))
                continue;
            const std::unique_ptr<IElementWalk> walk = file.Walk(signal.firstElement + element);
            long long time = 0;
            std::uint64_t value = 0;
            while (walk->Next(time, value)) {
                progress.Show(static_cast<long long>(i), std::ssize(numbers));
                AddValue(writer, numbers[i] + static_cast<int>(element), time, value);
            }
        }
    }
}

}  // namespace

StreamWriterPtr BeginEventStream(const std::string &path, long long resolution)
{
    StreamWriterPtr writer;
    WriteOrRefuse(path, [&] {
        writer.reset(Morvel::CreateStreamWriter(path.c_str(), resolution));
        return writer != nullptr;
    });
    return writer;
}

void FinishEventStream(const std::string &path, Morvel::IStreamWriter &writer)
{
    tesk::CReadWatch::Check();
    WriteOrRefuse(path, [&] { return writer.Finish(); });
}

void WriteEventStream(const std::string &path, IWaveformFile &file)
{
    const StreamWriterPtr writer = BeginEventStream(path, file.GetResolution());
    const std::vector<int> numbers = AddSignals(*writer, file);
    if (const std::unique_ptr<tesk::IChangeWalk> walk = file.WalkChanges(file.GetSignals()))
        CChangesInTime(*writer, file, numbers).Write(*walk);
    else
        WriteElements(*writer, file, numbers);
    writer->SetEndTime(file.GetEndTime());
    FinishEventStream(path, *writer);
}
