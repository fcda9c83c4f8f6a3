// What fst2vcd, the foreign reader, prints of a file: the proof of ours.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "testpaths.h"
#include "tests/platform/fst/fsttools.h"

namespace fsttest {

inline std::filesystem::path DataFile(const std::string &name)
{
    return std::filesystem::path(TESK_SOURCE_DIR) / "tests/data" / name;
}

/// A dump as VCD tells it.
struct SVcdDump {
    struct SVariable {
        std::string type, id, name;
        int size;
    };
    struct SChange {
        long long time;
        std::string value;
    };

    std::vector<SVariable> variables;
    std::map<std::string, std::vector<SChange>> changes;  // by id
    long long timeZero = 0;
};

/// Reads the words of a dump that fst2vcd printed.
class CVcdText {
public:
    explicit CVcdText(std::istream &text) : m_text(text) {}

    SVcdDump Read()
    {
        std::string word;
        while (m_text >> word && word != "$enddefinitions")
            ReadDeclaration(word);
        while (m_text >> word)
            ReadChange(word);
        return std::move(m_dump);
    }

private:
    void ReadDeclaration(const std::string &keyword)
    {
        if (keyword == "$upscope")
            m_scopes.pop_back();
        std::vector<std::string> words;
        std::string word;
        while (m_text >> word && word != "$end")
            words.push_back(word);
        if (keyword == "$scope")
            m_scopes.push_back(words.size() > 1 ? words[1] : "");
        else if (keyword == "$timezero")
            m_dump.timeZero =
                std::max(0LL, std::stoll(words.at(0)));  // ours begin at 0, as the files of these tests do
        else if (keyword == "$var")
            AddVariable(words);
    }

    // A blank in a name is one in front of a range, or one of an extended identifier.
    void AddVariable(const std::vector<std::string> &words)
    {
        std::string name;
        for (const std::string &scope : m_scopes)
            name += scope.empty() ? "" : scope + ".";
        for (std::size_t i = 3; i < words.size(); ++i)
            name += (i > 3 && words[i][0] != '[' ? " " : "") + words[i];
        m_dump.variables.push_back({words.at(0), words.at(2), name, std::stoi(words.at(1))});
    }

    void ReadChange(const std::string &word)
    {
        if (word[0] == '$')
            return;
        if (word[0] == '#') {
            m_time = std::stoll(word.substr(1));
            return;
        }
        std::string value = word;
        std::string id;
        if (std::string("brps").find(word[0]) != std::string::npos) {
            value = word.substr(1);
            m_text >> id;
        } else {
            id = word.substr(1);
            value.resize(1);
        }
        m_dump.changes[id].push_back({m_time, value});
    }

    std::istream &m_text;
    SVcdDump m_dump;
    std::vector<std::string> m_scopes;
    long long m_time = 0;
};

inline bool HasProgram(const std::string &name)
{
    return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

inline SVcdDump RunFst2Vcd(const std::filesystem::path &file)
{
    const CTemporaryFolder folder;
    const std::filesystem::path vcd = folder / "dump.vcd";
    const std::string command = "fst2vcd -f '" + file.string() + "' -o '" + vcd.string() + "' >/dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    std::ifstream text(vcd);
    return CVcdText(text).Read();
}

/// The value of an element of a bus, or of a bit, as position in "UX01ZWLH-".
inline std::uint64_t PositionOf(char letter)
{
    constexpr std::string_view letters = "UX01ZWLH-";
    if (letter == '?')
        return 8;
    const std::size_t position = letters.find(static_cast<char>(std::toupper(letter)));
    return position == std::string_view::npos ? 1 : position;
}

/// The events that a dump tells of an element.
inline std::vector<SEvent> EventsOf(const SVcdDump &dump, const std::string &id, std::size_t element, bool isBus)
{
    std::vector<SEvent> events;
    std::optional<char> last;
    const auto changes = dump.changes.find(id);
    if (changes == dump.changes.end())
        return events;
    for (const SVcdDump::SChange &change : changes->second) {
        const char letter = change.value.at(element);
        if (!isBus || last != letter)
            events.push_back({change.time + dump.timeZero, PositionOf(letter)});
        last = letter;
    }
    return events;
}

inline std::vector<std::string> RealsOf(const SVcdDump &dump, const std::string &id)
{
    std::vector<std::string> reals;
    const auto changes = dump.changes.find(id);
    if (changes == dump.changes.end())
        return reals;
    for (const SVcdDump::SChange &change : changes->second)
        reals.push_back(std::to_string(change.time + dump.timeZero) + " " + change.value);
    return reals;
}

/// As fst2vcd prints it.
inline std::string RealText(const SEvent &event)
{
    double real = 0;
    std::memcpy(&real, &event.value, sizeof real);
    char text[64];
    std::snprintf(text, sizeof text, "%.16g", real);
    return std::to_string(event.time) + " " + text;
}

/// Our events without one that only the frame tells: fst2vcd keeps still about those at the time of the first change.
inline std::vector<SEvent> WithoutFrame(std::vector<SEvent> ours, std::size_t count, long long begin)
{
    if (ours.size() == count + 1 && ours[0].time == begin)
        ours.erase(ours.begin());
    return ours;
}

/// A name without what our spelling changes.
inline std::string WithoutSpelling(std::string name)
{
    std::ranges::replace(name, '(', '[');
    std::ranges::replace(name, ')', ']');
    std::erase(name, '\\');
    return name;
}

/// Compares every signal and every event.
inline void ExpectAsFst2Vcd(const std::filesystem::path &file)
{
    SCOPED_TRACE(file.filename());
    const SVcdDump dump = RunFst2Vcd(file);
    const ReaderPtr reader(NTARN::IDatabaseReader::create(file.c_str(), false));
    ASSERT_TRUE(reader);
    std::size_t handle = 0;
    for (const SVcdDump::SVariable &variable : dump.variables) {
        if (variable.size == 0)
            continue;
        const int root = reader->RootHandlesBegin()[handle++];
        const NTARN::HSignalRange children = reader->GetChildRange(root);
        const std::string name = reader->GetName(root);
        EXPECT_TRUE(WithoutSpelling(variable.name).starts_with(WithoutSpelling(name))) << variable.name << " " << name;
        const long long begin = dump.timeZero;
        if (reader->GetType(root).GetKind() == 3) {
            std::vector<std::string> reals;
            for (const SEvent &event : AllEvents(*reader, root))
                reals.push_back(RealText(event));
            EXPECT_EQ(reals, RealsOf(dump, variable.id)) << name;
        } else if (children.first < 0) {
            const std::vector<SEvent> theirs = EventsOf(dump, variable.id, 0, false);
            EXPECT_EQ(WithoutFrame(AllEvents(*reader, root), theirs.size(), begin), theirs) << name;
        } else {
            ASSERT_EQ(children.last - children.first + 1, variable.size) << name;
            for (int i = 0; i < variable.size; ++i) {
                const std::vector<SEvent> theirs = EventsOf(dump, variable.id, static_cast<std::size_t>(i), true);
                EXPECT_EQ(WithoutFrame(AllEvents(*reader, children.first + i), theirs.size(), begin), theirs)
                    << name << " element " << i;
            }
        }
    }
    EXPECT_EQ(reader->RootHandlesEnd() - reader->RootHandlesBegin(), static_cast<std::ptrdiff_t>(handle));
}

}  // namespace fsttest
