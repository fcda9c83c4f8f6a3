// The importer against a second, slow reader of the same texts, and against vcd2fst where it is installed.
#include "tests/platform/vcd/vcdsupport.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>
#include <sstream>

#include "waveform/wavestore.h"

namespace {

// -- A writer of random dumps

class CRandomDump {
public:
    explicit CRandomDump(unsigned seed) : m_random(seed) {}

    std::string Make()
    {
        m_text << "$timescale" << Blank() << "1 ns $end\n";
        const int count = 1 + Pick(12);
        for (int i = 0; i < count; ++i)
            Declare(i);
        m_text << "$enddefinitions $end" << Blank();
        long long time = 0;
        for (int i = Pick(60); i > 0; --i) {
            if (Pick(3) == 0)
                m_text << '#' << (time += Pick(5)) << Blank();
            Change(m_variables[static_cast<std::size_t>(Pick(count))]);
        }
        return m_text.str();
    }

private:
    struct SVariable {
        std::string code;
        int width;  // 0 of a real one
    };

    int Pick(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }

    const char *Blank()
    {
        constexpr const char *Blanks[] = {" ", "\n", "\r\n", "\t", "\n\n  "};
        return Blanks[Pick(5)];
    }

    std::string Code()
    {
        std::string code;
        for (int i = 1 + Pick(5); i > 0; --i)
            code += static_cast<char>('!' + Pick(94));
        return code;
    }

    void Declare(int index)
    {
        SVariable variable{Code(), Pick(4) == 0 ? 0 : 1 + Pick(Pick(4) == 0 ? 300 : 70) * Pick(2)};
        if (index > 0 && Pick(4) == 0)
            variable = m_variables[static_cast<std::size_t>(Pick(index))];  // an alias
        for (const SVariable &other : m_variables) {
            if (other.code == variable.code)
                variable.width = other.width;
        }
        m_variables.push_back(variable);
        m_text << "$var " << (variable.width > 0 ? "wire " : "real ") << (variable.width > 0 ? variable.width : 64)
               << Blank() << variable.code << Blank() << "v" << index << " $end" << Blank();
    }

    void Change(const SVariable &variable)
    {
        if (variable.width == 0) {
            m_text << 'r' << Pick(1000) * 0.25 << Blank() << variable.code << Blank();
        } else if (variable.width == 1 && Pick(4) > 0) {
            m_text << "01xzXZ"[Pick(6)] << variable.code << Blank();
        } else {
            m_text << 'b';
            const int letters = Pick(2) == 0 ? variable.width : 1 + Pick(variable.width + 2);
            const char *const kinds = Pick(3) > 0 ? "01" : "01xz-uwlh";
            for (int i = 0; i < letters; ++i)
                m_text << kinds[static_cast<std::size_t>(Pick(static_cast<int>(std::string_view(kinds).size())))];
            m_text << Blank() << variable.code << Blank();
        }
    }

    std::mt19937 m_random;
    std::ostringstream m_text;
    std::vector<SVariable> m_variables;
};

// -- The slow reader: whole values as texts, extended to their full width, compared letter by letter

class CSlowReader {
public:
    explicit CSlowReader(const std::string &text)
    {
        std::istringstream words(text);
        std::string word;
        while (words >> word && word != "$enddefinitions") {
            if (word != "$var")
                continue;
            SVariable variable;
            std::string type, width;
            words >> type >> width >> variable.code >> variable.name;
            variable.width = type == "real" ? 0 : std::stoul(width);
            variable.events.resize(std::max<std::size_t>(variable.width, 1));
            m_variables.push_back(variable);
        }
        words >> word;
        while (words >> word)
            Take(word, words);
    }

    std::string Events(const std::string &name, std::size_t element) const
    {
        for (const SVariable &variable : m_variables) {
            if (variable.name == name)
                return variable.events.at(element);
        }
        return "";
    }

private:
    struct SVariable {
        std::string name, code, value;
        std::size_t width = 0;
        std::vector<std::string> events;
    };

    void Take(const std::string &word, std::istringstream &words)
    {
        std::string code = word.substr(1);
        std::string value = word.substr(0, 1);
        if (word[0] == '#') {
            m_time = word.substr(1);
            return;
        }
        if (word[0] == 'b' || word[0] == 'r') {
            value = word.substr(1);
            words >> code;
        }
        for (SVariable &variable : m_variables) {
            if (variable.code == code)
                Set(variable, value);
        }
    }

    void Set(SVariable &variable, std::string value)
    {
        if (variable.width == 0)
            return Add(variable.events[0], std::to_string(std::stod(value)));
        for (char &letter : value)
            letter = static_cast<char>(std::toupper(letter));
        while (value.size() < variable.width)
            value.insert(0, 1, value[0] == '1' ? '0' : value[0]);
        value = value.substr(value.size() - variable.width);
        for (std::size_t i = 0; i < variable.width; ++i) {
            if (variable.width == 1 || variable.value.empty() || variable.value[i] != value[i])
                Add(variable.events[i], value.substr(i, 1));
        }
        variable.value = value;
    }

    void Add(std::string &events, const std::string &value) const
    {
        events += (events.empty() ? "" : " ") + m_time + "=" + value;
    }

    std::string m_time = "0";
    std::vector<SVariable> m_variables;
};

// A positive zero is what the recorder takes for the letter 'U'.
std::string SameZeros(std::string events)
{
    for (std::size_t at = events.find("=U"); at != events.npos; at = events.find("=U", at))
        events.replace(at, 2, "=0.000000");
    return events;
}

TEST(VcdImport, AgreesWithASlowReaderOnRandomDumps)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        const std::string text = CRandomDump(seed).Make();
        const SImport import(text);
        const CSlowReader slow(text);
        ASSERT_EQ(import.error, "") << text;
        ASSERT_THAT(import.messages, testing::IsEmpty()) << text;
        for (const CRecorder::SSignal &signal : import.writer.signals) {
            const bool isReal = signal.type[0] == 'f';
            for (std::size_t i = 0; i < signal.handles.size(); ++i) {
                const std::string events = import.writer.Events(signal.name, i);
                ASSERT_EQ(isReal ? SameZeros(events) : events, slow.Events(signal.name, i))
                    << signal.name << " " << i << "\n"
                    << text;
            }
        }
    }
}

// As the recorder writes them.
std::string EventsOf(const WaveStore &store, long long handle, std::size_t room)
{
    CRecorder recorder;
    tesk::SEventPlace place;
    std::vector<WaveEvent> events(room);
    while (const std::size_t count = store.ReadEvents(handle, place, events.data(), events.size())) {
        for (std::size_t i = 0; i < count; ++i)
            recorder.addEvent(&handle, &events[i]);
    }
    return recorder.events[handle];
}

TEST(VcdImport, GivesAStoreTheEventsThatAnyWriterGets)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        const std::string text = CRandomDump(seed).Make();
        const SImport import(text);
        const CTextFile file(text);
        const std::unique_ptr<WaveStore> store(ImportVcdFile(file.Name().c_str()));
        for (const CRecorder::SSignal &signal : import.writer.signals) {
            for (const long long handle : signal.handles) {
                const auto events = import.writer.events.find(handle);
                ASSERT_EQ(EventsOf(*store, handle, 1 + seed % 40),
                          events != import.writer.events.end() ? events->second : "")
                    << signal.name << " " << handle << "\n"
                    << text;
            }
        }
    }
}

// Values after the last time that a bit of a signal changed.
TEST(VcdImport, ReadsBackWhatVcd2fstMadeOfADump)
{
    ASSERT_EQ(std::system("command -v vcd2fst >/dev/null && command -v fst2vcd >/dev/null"), 0)
        << "fst2vcd and vcd2fst are in the package gtkwave";
    const std::string text =
        "$timescale 1 ns $end\n$scope module tb $end\n$var wire 1 ! a $end\n$var wire 5 \" v [4:0] $end\n"
        "$var wire 5 \" w [0:4] $end\n$var real 64 # r $end\n$upscope $end\n$enddefinitions $end\n#0\n"
        "$dumpvars\nx!\nb1 \"\nr0.5 #\n$end\n#7\n1!\nbx1 \"\n#9\nr1e10 #\nb11111 \"\n#30\n0!\n";
    const CTextFile first(text);
    const CTextFile database("");
    const CTextFile second("");
    const std::string command = "vcd2fst " + first.Name() + " " + database.Name() + " >/dev/null 2>&1 && fst2vcd -f " +
                                database.Name() + " -o " + second.Name() + " >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::ostringstream back;
    back << std::ifstream(second.Name()).rdbuf();
    const SImport own(text);
    const SImport foreign(back.str());
    for (const char *name : {"tb.v", "tb.w"})
        EXPECT_EQ(foreign.writer.AllEvents(name, 5), own.writer.AllEvents(name, 5)) << back.str();
    EXPECT_EQ(foreign.writer.Events("tb.a"), own.writer.Events("tb.a"));
    EXPECT_EQ(foreign.writer.Events("tb.r"), own.writer.Events("tb.r"));
    EXPECT_EQ(foreign.writer.resolution, own.writer.resolution);
}

}  // namespace
