// The writer of event-stream files.
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "platform/files/draft.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "platform/stream/morvelformat.h"
#include "platform/stream/streampack.h"
#include "platform/stream/streamwriter.h"
#include "platform/stream/stretchwriter.h"

namespace Morvel {

namespace {

void Report(const std::string &file, const std::string &why)
{
    Q71log_PrintFormattedString(1, "KERNEL", "", ("Event stream " + file + " cannot be written: " + why + ".").c_str());
}

struct SType {
    std::uint32_t number;
    unsigned valueSize;  // 0 of what is no scalar
    unsigned low;        // what a bit 0 of its values stands for
};

struct SSignal {
    std::string name;
    SType type;
    int depth;
    std::uint32_t track;  // of a scalar
    bool hasEvents;       // of its own: it is a scalar that shares none
    std::vector<int> children;
};

// The position of '0' where '1' stands behind it, as in std_logic. Any other enumeration is taken as if it had these in front.
unsigned LowOf(const Kestrin::KTypeInfo &type, unsigned valueSize)
{
    if (valueSize != 1 || Kestrin::KindOf(type) != Kestrin::ETypeKind::Enumeration)
        return 0;
    unsigned char zero = 0;
    unsigned char one = 0;
    const bool hasBoth = type.GetBytes_OldFormat("0", &zero, 1, 2, 0) && type.GetBytes_OldFormat("1", &one, 1, 2, 0);
    return hasBoth && one == zero + 1 && zero % 2 == 0 ? zero : 0;
}

class CMorvelWrite final : public IStreamWriter {
public:
    CMorvelWrite(const char *file, long long resolution);
    CMorvelWrite(const CMorvelWrite &) = delete;
    CMorvelWrite &operator=(const CMorvelWrite &) = delete;

    int AddSignal(int parent, const char *name, const char *typeText) override;
    int AddSharedSignal(int parent, const char *name, const char *typeText, int original) override;
    bool AddEvent(int signal, long long time, const void *value) override;
    bool AddWord(int first, unsigned count, long long time, std::uint64_t changed, const WaveWord &word) override;
    bool HasEvents(int signal) const override { return m_signals[static_cast<std::size_t>(signal)].hasEvents; }
    void EndGroup() override { m_lastParent = -1; }
    void SetResolution(long long resolution) override { m_resolution = std::max(resolution, 1LL); }
    void SetEndTime(long long time) override { m_endTime = std::max(m_endTime, time); }
    bool Finish() override;
    void Release() override { delete this; }

    bool IsOpen() const { return m_draft.IsOpen(); }
    int Error() const { return m_draft.Error(); }

private:
    SType TypeOf(const char *text);
    bool CanAdd(int parent, const char *name, const char *typeText) const;
    int Add(int parent, const char *name, const SType &type, std::uint32_t track, bool hasEvents);
    void WriteRest();
    std::string MakeIndex() const;
    std::string MakeHeader(std::uint64_t indexOffset, const std::string &index) const;
    std::uint64_t Write(std::string_view bytes);

    std::string m_path;
    tesk::CDraft m_draft;
    long long m_resolution;
    long long m_endTime = 0;
    std::uint64_t m_size = 0;  // of the file so far
    std::map<std::string, SType> m_types;
    std::vector<SSignal> m_signals;
    std::vector<int> m_topLevel;
    int m_lastParent = -1;  // of the last scalar, as long as others may go together with it
    CStretchWriter m_stretches;
    bool m_outOfMemory = false;
};

CMorvelWrite::CMorvelWrite(const char *file, long long resolution)
    : m_path(file), m_draft(m_path), m_resolution(resolution),
      m_stretches([this](std::string_view bytes) { return Write(bytes); })
{
    Write(std::string(HeaderSize, '\0'));  // told when all else is known
}

SType CMorvelWrite::TypeOf(const char *text)
{
    const auto known = m_types.find(text);
    if (known != m_types.end())
        return known->second;
    const Kestrin::KTypeInfo type(text);
    const unsigned valueSize = type.IsScalar() ? type.GetScalarSize_OldFormat() : 0;
    const SType added{static_cast<std::uint32_t>(m_types.size()), valueSize, LowOf(type, valueSize)};
    m_types.emplace(text, added);
    return added;
}

int CMorvelWrite::AddSignal(int parent, const char *name, const char *typeText)
try {
    if (!CanAdd(parent, name, typeText))
        return -1;
    const SType type = TypeOf(typeText);
    if (type.valueSize == 0)
        return Add(parent, name, type, NoTrack, false);
    const bool isNeighbour = parent >= 0 && std::exchange(m_lastParent, parent) == parent;
    return Add(parent, name, type, m_stretches.AddTrack(isNeighbour, type.valueSize, type.low), true);
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return -1;
}

int CMorvelWrite::AddSharedSignal(int parent, const char *name, const char *typeText, int original)
try {
    if (!CanAdd(parent, name, typeText) || original < 0 || static_cast<std::size_t>(original) >= m_signals.size())
        return -1;
    const SSignal &shared = m_signals[static_cast<std::size_t>(original)];
    const SType type = TypeOf(typeText);
    if (type.valueSize == 0 || type.valueSize != shared.type.valueSize)
        return -1;
    return Add(parent, name, type, shared.track, false);
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return -1;
}

bool CMorvelWrite::CanAdd(int parent, const char *name, const char *typeText) const
{
    if (parent < -1 || parent >= static_cast<int>(m_signals.size()) || name == nullptr || typeText == nullptr)
        return false;
    if (parent == -1)
        return true;
    const SSignal &above = m_signals[static_cast<std::size_t>(parent)];
    return above.depth < MaxDepth && above.type.valueSize == 0;
}

int CMorvelWrite::Add(int parent, const char *name, const SType &type, std::uint32_t track, bool hasEvents)
{
    const int number = static_cast<int>(m_signals.size());
    SSignal *const above = parent >= 0 ? &m_signals[static_cast<std::size_t>(parent)] : nullptr;
    (above != nullptr ? above->children : m_topLevel).push_back(number);
    m_signals.push_back({name, type, above != nullptr ? above->depth + 1 : 1, track, hasEvents, {}});
    return number;
}

bool CMorvelWrite::AddEvent(int signal, long long time, const void *value)
try {
    if (signal < 0 || static_cast<std::size_t>(signal) >= m_signals.size() || value == nullptr || time < 0)
        return false;
    const SSignal &target = m_signals[static_cast<std::size_t>(signal)];
    const unsigned size = target.type.valueSize;
    return target.hasEvents &&
           m_stretches.Add(target.track, time, tesk::LoadLittleEndian(static_cast<const unsigned char *>(value), size));
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return false;
}

bool CMorvelWrite::AddWord(int first, unsigned count, long long time, std::uint64_t changed, const WaveWord &word)
try {
    const SSignal &target = m_signals[static_cast<std::size_t>(first)];
    if (time < 0)
        return false;
    const auto plane = [&word](unsigned number) { return word.m_planes[number]; };
    const auto isAlways = [&](unsigned number) {
        const std::uint64_t expected = (target.type.low >> number & 1) != 0 ? ~std::uint64_t{0} : 0;
        return ((plane(number) ^ expected) & changed) == 0;
    };
    // Tracks are given to scalars with events of their own, in turn.
    const SSignal &last = m_signals[static_cast<std::size_t>(first) + count - 1];
    const bool areNeighbours = target.hasEvents && last.hasEvents && last.track - target.track == count - 1;
    if (areNeighbours && target.type.low < 16 && isAlways(1) && isAlways(2) && isAlways(3) &&
        m_stretches.AddWord(target.track, count, time, changed, plane(0)))
        return true;
    bool areAdded = true;
    for (unsigned bit = count; bit-- > 0;) {
        const SSignal &element = m_signals[static_cast<std::size_t>(first) + count - 1 - bit];
        if ((changed >> bit & 1) != 0 && element.hasEvents)
            areAdded = m_stretches.Add(element.track, time, PositionAt(word, bit)) && areAdded;
    }
    return areAdded;
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return false;
}

std::uint64_t CMorvelWrite::Write(std::string_view bytes)
{
    m_draft.Stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return std::exchange(m_size, m_size + bytes.size());
}

std::string CMorvelWrite::MakeIndex() const
{
    std::vector<const std::string *> types(m_types.size());
    for (const auto &[text, type] : m_types)
        types[type.number] = &text;
    std::string index;
    Append(index, static_cast<std::uint32_t>(types.size()));
    for (const std::string *text : types)
        index.append(text->c_str(), text->size() + 1);
    Append(index, static_cast<std::uint32_t>(m_signals.size()));
    Append(index, static_cast<std::uint32_t>(m_topLevel.size()));
    std::vector<int> order = m_topLevel;  // level by level
    for (std::size_t i = 0; i < order.size(); ++i) {
        const SSignal &signal = m_signals[static_cast<std::size_t>(order[i])];
        index.append(signal.name.c_str(), signal.name.size() + 1);
        Append(index, signal.type.number);
        Append(index, static_cast<std::uint32_t>(signal.children.size()));
        if (signal.children.empty()) {
            Append(index, signal.track != NoTrack ? m_stretches.EventsOf(signal.track) : std::uint64_t{0});
            Append(index, signal.track);
        }
        order.insert(order.end(), signal.children.begin(), signal.children.end());
    }
    Append(index, m_stretches.StretchCount());
    index += m_stretches.Entries();
    return index;
}

std::string CMorvelWrite::MakeHeader(std::uint64_t indexOffset, const std::string &index) const
{
    std::string header(Magic);
    Append(header, Version);
    Append(header, std::uint32_t{0});
    Append(header, std::int64_t{m_resolution});
    Append(header, std::int64_t{m_endTime});
    Append(header, indexOffset);
    Append(header, std::uint64_t{index.size()});
    Append(header, Crc(index));
    Append(header, Crc(header));
    return header;
}

void CMorvelWrite::WriteRest()
{
    m_stretches.Finish();
    SetEndTime(m_stretches.LastTime());
    const std::uint64_t indexOffset = m_size;
    const std::string index = MakeIndex();
    Write(index);
    m_draft.Stream().seekp(0);
    Write(MakeHeader(indexOffset, index));
}

bool CMorvelWrite::Finish()
try {
    if (!IsOpen())
        return false;
    if (m_outOfMemory)
        throw std::bad_alloc();
    WriteRest();
    if (m_draft.Publish())
        return true;
    Report(m_path, std::strerror(m_draft.Error()));
    return false;
} catch (const std::exception &) {
    Report(m_path, "out of memory");
    return false;
}

// What cannot be replaced by a file: a folder, a device, a pipe.
bool IsInTheWay(const char *file)
{
    std::error_code error;
    const auto type = std::filesystem::status(file, error).type();
    if (type == std::filesystem::file_type::none)
        return false;  // nobody can tell; to write it will
    return type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::regular;
}

}  // namespace

IStreamWriter *CreateStreamWriter(const char *file, long long resolution)
try {
    if (file == nullptr || resolution < 1)
        return nullptr;
    if (IsInTheWay(file)) {
        Report(file, "what is there is no regular file");
        return nullptr;
    }
    auto writer = std::make_unique<CMorvelWrite>(file, resolution);
    if (writer->IsOpen())
        return writer.release();
    Report(file, std::strerror(writer->Error()));
    return nullptr;
} catch (const std::bad_alloc &) {
    return nullptr;
}

IMorvelWrite *CreateStreamWrite(const char *file, long long resolution)
{
    return CreateStreamWriter(file, resolution);
}

}  // namespace Morvel
