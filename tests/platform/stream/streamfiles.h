// Event-stream files for tests: written from a description, read back into one.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/morvel.h"

inline const char *const StdLogic = "e#9#std_logicc9 UX01ZWLH-";
inline const char *const Real = "f#4#realrrct-1.79769e+308 1.79769e+308";

using CEvents = std::vector<std::pair<long long, std::string>>;  // time, raw bytes

struct STreeNode {
    std::string name;
    std::string type;
    CEvents events;
    std::vector<STreeNode> children;

    bool operator==(const STreeNode &) const = default;
};

using StreamPtr = Morvel::StreamReadPtr;
using RawStreamPtr = Morvel::RawStreamReadPtr;
using StreamWriterPtr = Morvel::StreamWritePtr;

/// A folder of its own that goes with the object.
class CStreamFolder {
public:
    CStreamFolder()
    {
        char name[] = "/tmp/tesk-test-XXXXXX";
        m_path = mkdtemp(name);
    }
    CStreamFolder(const CStreamFolder &) = delete;
    CStreamFolder &operator=(const CStreamFolder &) = delete;
    ~CStreamFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::string operator/(const std::string &name) const { return (m_path / name).string(); }
    std::size_t FileCount() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path), {}));
    }

private:
    std::filesystem::path m_path;
};

inline void AddTree(Morvel::IMorvelWrite &writer, int parent, const STreeNode &node)
{
    const int number = writer.AddSignal(parent, node.name.c_str(), node.type.c_str());
    ASSERT_GE(number, 0) << node.name;
    for (const auto &[time, value] : node.events)
        ASSERT_TRUE(writer.AddEvent(number, time, value.data())) << node.name << " at " << time;
    for (const STreeNode &child : node.children)
        AddTree(writer, number, child);
}

inline void WriteStream(const std::string &file, const std::vector<STreeNode> &nodes, long long resolution = 1000,
                        long long endTime = 0)
{
    const StreamWriterPtr writer(Morvel::CreateStreamWrite(file.c_str(), resolution));
    ASSERT_NE(writer, nullptr);
    for (const STreeNode &node : nodes)
        AddTree(*writer, -1, node);
    writer->SetEndTime(endTime);
    ASSERT_TRUE(writer->Finish());
}

/// All events of a store, from the first one on.
inline CEvents AllEvents(const Morvel::KEventsStore *store)
{
    CEvents events;
    Morvel::KEventData event;
    while (store != nullptr && store->GetNextEvent(&event)) {
        std::string value(static_cast<std::size_t>(store->GetSecondSize()), '\x55');
        event.GetValue(reinterpret_cast<unsigned char *>(value.data()), static_cast<unsigned>(value.size()));
        events.emplace_back(event.GetTime(), value);
    }
    return events;
}

inline STreeNode ReadTree(Morvel::IMorvelRead &stream, Morvel::IRawMorvelRead &raw, int handle)
{
    const char *name = nullptr;
    int children = 0;
    stream.GetInfo(handle, nullptr, &children, &name, nullptr, nullptr);
    STreeNode node{name, stream.GetTypeText(handle), {}, {}};
    if (children == 0)
        node.events = AllEvents(raw.GetEventsStore(handle));
    for (int i = 0; i < children; ++i)
        node.children.push_back(ReadTree(stream, raw, stream.GetChild(handle, i)));
    return node;
}

inline std::vector<STreeNode> ReadStream(const std::string &file)
{
    std::vector<STreeNode> nodes;
    const StreamPtr stream(Morvel::CreateStreamRead(file.c_str()));
    const RawStreamPtr raw(Morvel::CreateRawMorvelRead(file.c_str()));
    if (stream == nullptr || raw == nullptr)
        return nodes;
    for (int i = 0; i < stream->GetSignalCount(); ++i)
        nodes.push_back(ReadTree(*stream, *raw, stream->GetSignal(i)));
    return nodes;
}

inline STreeNode Bit(const std::string &name, CEvents events)
{
    return {name, StdLogic, std::move(events), {}};
}

/// A vector of std_logic that counts down to 0, with the events of each element.
inline STreeNode Vector(const std::string &name, const std::vector<CEvents> &elements)
{
    const std::string left = std::to_string(elements.size() - 1);
    const std::string identifier = "std_logic_vector(" + left + " downto 0)";
    STreeNode node{
        name, "a#" + std::to_string(identifier.size()) + "#" + identifier + "1 ricd" + left + " 0 " + StdLogic, {}, {}};
    for (std::size_t i = 0; i < elements.size(); ++i)
        node.children.push_back(Bit("(" + std::to_string(elements.size() - 1 - i) + ")", elements[i]));
    return node;
}

inline std::string ReadBytesOf(const std::string &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void WriteBytesTo(const std::string &file, const std::string &bytes)
{
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
