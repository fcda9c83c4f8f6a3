// The writer of event-stream files.
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <vector>

#include "platform/files/draft.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "platform/morvel.h"
#include "platform/stream/morvelformat.h"

namespace Morvel {

namespace {

void Report(const std::string &file, const std::string &why)
{
    Q71log_PrintFormattedString(1, "KERNEL", "", ("Event stream " + file + " cannot be written: " + why + ".").c_str());
}

struct SType {
    std::uint32_t number;
    unsigned valueSize;  // 0 of what is no scalar
};

struct SSignal {
    std::string name;
    SType type;
    int depth;
    std::vector<int> children;
    std::uint64_t events = 0;
    long long first = 0;  // of the block being filled
    long long last = 0;
    std::string deltas;  // of the block being filled, and its values
    std::string values;
    std::string blocks;  // entries of those that were written
};

void AppendDelta(std::string &bytes, long long delta)
{
    for (; delta > 0x7F; delta >>= 7)
        bytes += static_cast<char>(delta | 0x80);
    bytes += static_cast<char>(delta);
}

std::string Pack(const std::string &bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(size, '\0');
    if (compress(reinterpret_cast<Bytef *>(packed.data()), &size, reinterpret_cast<const Bytef *>(bytes.data()),
                 static_cast<uLong>(bytes.size())) != Z_OK)
        throw std::bad_alloc();  // all that can fail
    packed.resize(size);
    return packed;
}

class CMorvelWrite final : public IMorvelWrite {
public:
    CMorvelWrite(const char *file, long long resolution);
    CMorvelWrite(const CMorvelWrite &) = delete;
    CMorvelWrite &operator=(const CMorvelWrite &) = delete;

    int AddSignal(int parent, const char *name, const char *typeText) override;
    bool AddEvent(int signal, long long time, const void *value) override;
    void SetEndTime(long long time) override { m_endTime = std::max(m_endTime, time); }
    bool Finish() override;
    void Release() override { delete this; }

    bool IsOpen() const { return m_draft.IsOpen(); }
    int Error() const { return m_draft.Error(); }

private:
    SType TypeOf(const char *text);
    void WriteBlock(SSignal &signal);
    void WriteRest();
    std::string MakeIndex() const;
    std::string MakeHeader(std::uint64_t indexOffset, const std::string &index) const;
    void Write(const std::string &bytes);

    std::string m_path;
    tesk::CDraft m_draft;
    long long m_resolution;
    long long m_endTime = 0;
    std::uint64_t m_size = 0;  // of the file so far
    std::map<std::string, SType> m_types;
    std::vector<SSignal> m_signals;
    std::vector<int> m_topLevel;
    bool m_outOfMemory = false;
};

CMorvelWrite::CMorvelWrite(const char *file, long long resolution)
    : m_path(file), m_draft(m_path), m_resolution(resolution)
{
    Write(std::string(HeaderSize, '\0'));  // told when all else is known
}

SType CMorvelWrite::TypeOf(const char *text)
{
    const auto known = m_types.find(text);
    if (known != m_types.end())
        return known->second;
    const Kestrin::KTypeInfo type(text);
    const SType added{static_cast<std::uint32_t>(m_types.size()), type.IsScalar() ? type.GetScalarSize_OldFormat() : 0};
    m_types.emplace(text, added);
    return added;
}

int CMorvelWrite::AddSignal(int parent, const char *name, const char *typeText)
try {
    const int number = static_cast<int>(m_signals.size());
    if (parent < -1 || parent >= number || name == nullptr || typeText == nullptr)
        return -1;
    SSignal *above = parent >= 0 ? &m_signals[static_cast<std::size_t>(parent)] : nullptr;
    const int depth = above != nullptr ? above->depth + 1 : 1;
    if (depth > MaxDepth || (above != nullptr && above->type.valueSize != 0))
        return -1;
    (above != nullptr ? above->children : m_topLevel).push_back(number);
    m_signals.push_back({name, TypeOf(typeText), depth, {}, 0, 0, 0, {}, {}, {}});
    return number;
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return -1;
}

bool CMorvelWrite::AddEvent(int signal, long long time, const void *value)
try {
    if (signal < 0 || static_cast<std::size_t>(signal) >= m_signals.size() || value == nullptr)
        return false;
    SSignal &target = m_signals[static_cast<std::size_t>(signal)];
    if (target.type.valueSize == 0 || time < target.last)
        return false;
    if (target.events % EventsPerBlock == 0)
        target.first = time;
    else
        AppendDelta(target.deltas, time - target.last);
    target.values.append(static_cast<const char *>(value), target.type.valueSize);
    target.last = time;
    if (++target.events % EventsPerBlock == 0)
        WriteBlock(target);
    return true;
} catch (const std::bad_alloc &) {
    m_outOfMemory = true;
    return false;
}

void CMorvelWrite::WriteBlock(SSignal &signal)
{
    const std::string packed = Pack(signal.deltas + signal.values);
    AppendBlockEntry(signal.blocks, {m_size, static_cast<std::uint32_t>(packed.size()), Crc(packed), signal.first});
    Write(packed);
    signal.deltas.clear();
    signal.values.clear();
}

void CMorvelWrite::Write(const std::string &bytes)
{
    m_draft.Stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    m_size += bytes.size();
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
        Append(index, signal.events);
        index += signal.blocks;
        order.insert(order.end(), signal.children.begin(), signal.children.end());
    }
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
    for (SSignal &signal : m_signals) {
        SetEndTime(signal.last);
        if (!signal.values.empty())
            WriteBlock(signal);
    }
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

IMorvelWrite *CreateStreamWrite(const char *file, long long resolution)
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

}  // namespace Morvel
