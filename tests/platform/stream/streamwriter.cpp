#include "platform/stream/streamwriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/platform/stream/streamfiles.h"

namespace {

using WriterPtr = std::unique_ptr<Morvel::IStreamWriter, Morvel::SEndStream>;

WriterPtr NewWriter(const std::string &file)
{
    return WriterPtr(Morvel::CreateStreamWriter(file.c_str(), 1000));
}

int AddVector(Morvel::IStreamWriter &writer, const std::string &name, std::size_t width)
{
    const STreeNode node = Vector(name, std::vector<CEvents>(width));
    const int vector = writer.AddSignal(-1, name.c_str(), node.type.c_str());
    for (const STreeNode &child : node.children)
        writer.AddSignal(vector, child.name.c_str(), child.type.c_str());
    return vector + 1;
}

std::vector<CEvents> EventsOfElements(const std::string &file, int vector)
{
    std::vector<CEvents> events;
    const std::vector<STreeNode> nodes = ReadStream(file);
    for (const STreeNode &child : nodes.at(static_cast<std::size_t>(vector)).children)
        events.push_back(child.events);
    return events;
}

std::string Raw(unsigned position)
{
    return std::string(1, static_cast<char>(position));
}

// Random events of neighbours, at rising times. Most have only '0' and '1'.
struct SWordEvent {
    long long time;
    std::uint64_t changed;
    WaveWord word;
};
std::vector<SWordEvent> RandomWords(std::mt19937_64 &random, unsigned count)
{
    std::vector<SWordEvent> events;
    long long time = 0;
    const std::uint64_t all = ~std::uint64_t{0} >> (64 - count);
    for (int i = 0; i < 300; ++i) {
        time += static_cast<long long>(random() % 3);
        const std::uint64_t changed = random() % 4 == 0 ? all : (random() & random() & all) | 1;
        WaveWord word{{random(), ~std::uint64_t{0}, 0, 0}};
        if (random() % 8 == 0)
            word.m_planes[random() % 3] = random();
        events.push_back({time, changed, word});
    }
    return events;
}

std::vector<CEvents> ByElements(const std::vector<SWordEvent> &words, unsigned count)
{
    std::vector<CEvents> elements(count);
    for (const SWordEvent &event : words) {
        for (unsigned bit = 0; bit < count; ++bit) {
            if ((event.changed >> bit & 1) != 0)
                elements[count - 1 - bit].emplace_back(event.time, Raw(PositionAt(event.word, bit)));
        }
    }
    return elements;
}

TEST(StreamWriter, KeepsWordsAsTheEventsOfTheirElements)
{
    const CStreamFolder folder;
    std::mt19937_64 random(1);
    for (const unsigned count : {1U, 2U, 7U, 33U, 64U}) {
        const auto words = RandomWords(random, count);
        const WriterPtr writer = NewWriter(folder / "a.zyn");
        const int first = AddVector(*writer, "v", count);
        for (const SWordEvent &event : words)
            ASSERT_TRUE(writer->AddWord(first, count, event.time, event.changed, event.word));
        ASSERT_TRUE(writer->Finish());
        EXPECT_EQ(EventsOfElements(folder / "a.zyn", 0), ByElements(words, count)) << count;
    }
}

TEST(StreamWriter, KeepsTheEventsOfElementsThatComeOneElementAfterTheOther)
{
    const CStreamFolder folder;
    std::mt19937_64 random(2);
    const auto elements = ByElements(RandomWords(random, 33), 33);
    const WriterPtr writer = NewWriter(folder / "a.zyn");
    const int first = AddVector(*writer, "v", elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (const auto &[time, value] : elements[i])
            ASSERT_TRUE(writer->AddEvent(first + static_cast<int>(i), time, value.data()));
    }
    EXPECT_FALSE(writer->AddEvent(first, elements[0].back().first - 1, "\2"));
    ASSERT_TRUE(writer->Finish());
    EXPECT_EQ(EventsOfElements(folder / "a.zyn", 0), elements);
}

TEST(StreamWriter, TakesWordsWhereTheElementsHaveCeasedToGoTogether)
{
    const CStreamFolder folder;
    const WriterPtr writer = NewWriter(folder / "a.zyn");
    const int first = AddVector(*writer, "v", 2);
    ASSERT_TRUE(writer->AddEvent(first, 9, "\2"));
    ASSERT_TRUE(writer->AddEvent(first + 1, 5, "\3"));
    EXPECT_TRUE(writer->AddWord(first, 2, 10, 3, WaveWord{{1, 3, 0, 0}}));
    EXPECT_FALSE(writer->AddWord(first, 2, 9, 3, WaveWord{{1, 3, 0, 0}}));
    ASSERT_TRUE(writer->Finish());
    EXPECT_EQ(EventsOfElements(folder / "a.zyn", 0),
              (std::vector<CEvents>{{{9, "\2"}, {10, "\2"}}, {{5, "\3"}, {10, "\3"}}}));
}

TEST(StreamWriter, MakesAsManyStretchesAsItNeeds)
{
    constexpr int Count = 1300000;  // more than two stretches hold
    const CStreamFolder folder;
    const WriterPtr writer = NewWriter(folder / "a.zyn");
    const int bit = writer->AddSignal(-1, "a", StdLogic);
    const int first = AddVector(*writer, "v", 8);
    for (int i = 0; i < Count; ++i) {
        const char value = static_cast<char>(i % 9);
        if (i % 2 == 0)
            ASSERT_TRUE(writer->AddEvent(bit, i / 4, &value));
        else
            ASSERT_TRUE(writer->AddWord(first, 8, i / 4, 1U << i % 7, WaveWord{{static_cast<unsigned>(i), 255, 0, 0}}));
    }
    ASSERT_TRUE(writer->Finish());
    const auto nodes = ReadStream(folder / "a.zyn");
    ASSERT_EQ(nodes[0].events.size(), static_cast<std::size_t>(Count / 2));
    EXPECT_EQ(nodes[0].events.back(), (CEvents::value_type{(Count - 2) / 4, Raw((Count - 2) % 9)}));
    std::size_t count = 0;
    for (const STreeNode &child : nodes[1].children)
        count += child.events.size();
    EXPECT_EQ(count, static_cast<std::size_t>(Count / 2));
}

TEST(StreamWriter, LetsScalarsShareEvents)
{
    const CStreamFolder folder;
    const WriterPtr writer = NewWriter(folder / "a.zyn");
    const int a = writer->AddSignal(-1, "a", StdLogic);
    const int r = writer->AddSignal(-1, "r", Real);
    const int b = writer->AddSharedSignal(-1, "b", StdLogic, a);
    EXPECT_GE(b, 0);
    EXPECT_EQ(writer->AddSharedSignal(-1, "c", StdLogic, r), -1) << "values of another size";
    EXPECT_EQ(writer->AddSharedSignal(-1, "c", StdLogic, 3), -1);
    EXPECT_EQ(writer->AddSharedSignal(a, "c", StdLogic, a), -1);
    EXPECT_TRUE(writer->AddEvent(a, 1, "\3"));
    EXPECT_FALSE(writer->AddEvent(b, 2, "\2"));
    ASSERT_TRUE(writer->Finish());
    const auto nodes = ReadStream(folder / "a.zyn");
    EXPECT_EQ(nodes, (std::vector<STreeNode>{Bit("a", {{1, "\3"}}), {"r", Real, {}, {}}, Bit("b", {{1, "\3"}})}));
}

}  // namespace
