// Random tables, read by the importer and by a plain model of it.
#include <random>

#include "waveform/table/tablemodel.h"
#include "waveform/table/tables.h"

namespace {

class CTableMaker {
public:
    explicit CTableMaker(unsigned seed) : m_random(seed) {}

    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }
    bool OneIn(unsigned count) { return Below(count) == 0; }

    STableOptions Options()
    {
        STableOptions options;
        options.inRows = OneIn(2);
        options.relative = OneIn(3);
        options.signal = OneIn(8) ? "none" : "s";
        options.times = OneIn(3) ? "" : OneIn(8) ? "s" : "t";
        options.start = OneIn(3) ? Below(60) : 0;
        options.end = OneIn(3) ? Below(100) : options.end;
        options.startTime = OneIn(2) ? Below(60) : 0;
        return options;
    }

    std::string Table(bool inRows)
    {
        m_time = 0;
        std::string table;
        const unsigned lines = Below(8);
        m_columns.clear();
        for (unsigned i = Below(5); i-- > 0;)
            m_columns.push_back(Name());
        for (unsigned line = 0; line < lines; ++line) {
            if (inRows)
                table += RowLine();
            else
                table += line == 0 ? HeaderLine() : ColumnLine();
            if (line + 1 < lines || !OneIn(3))
                table += LineEnd();
        }
        return table;
    }

private:
    std::string Name()
    {
        static const char *const Names[] = {"s", "s", "t", "t", "x", "st", "S"};
        return Names[Below(7)];
    }

    std::string Time()
    {
        m_time += Below(12);
        const bool isLower = OneIn(40);
        return OneIn(20) ? "junk" : std::to_string(isLower ? m_time / 2 : m_time);
    }

    std::string Value()
    {
        static const char *const Values[] = {"0",  "1",   "10",   "0011", "-1",      "-101", "1X",
                                             "ZZ", "2.5", "-3e1", "7",    "x\"1F\"", "2#10", "word"};
        return Values[Below(14)];
    }

    std::string Gap()
    {
        static const char *const Gaps[] = {" ", ",", "\t", ";", " , ", ";;", "\t "};
        return Gaps[Below(7)];
    }

    std::string LineEnd()
    {
        static const char *const Ends[] = {"\n", "\n", "\r\n", "\r", "\n\n"};
        return Ends[Below(5)];
    }

    std::string HeaderLine()
    {
        std::string line = OneIn(4) ? Gap() : "";
        for (const std::string &name : m_columns)
            line += name + Gap();
        return line;
    }

    std::string ColumnLine()
    {
        std::string line = OneIn(4) ? Gap() : "";
        for (const std::string &name : m_columns)
            line += (name == "t" ? Time() : Value()) + Gap();
        return OneIn(30) ? line + Value() : line;
    }

    std::string RowLine()
    {
        const std::string name = Name();
        std::string line = (OneIn(4) ? Gap() : "") + name;
        for (unsigned i = Below(5); i-- > 0;)
            line += Gap() + (name == "t" ? Time() : Value());
        return line;
    }

    std::mt19937 m_random;
    std::vector<std::string> m_columns;
    long long m_time = 0;
};

CFileFormulaArgs Arguments(const STableOptions &options, const std::string &interval)
{
    CFileFormulaArgs args;
    args.m_file = "t.txt";
    args.m_signal = options.signal.c_str();
    args.m_timeSource = options.times.c_str();
    args.m_interval = interval.c_str();
    if (options.start != 0)
        args.m_start = (std::to_string(options.start * g_simRes) + "fs").c_str();
    if (options.end < 1000)
        args.m_end = (std::to_string(options.end * g_simRes) + "fs").c_str();
    args.m_flags = (options.inRows ? CFileFormulaArgs::FLAG_ROW : 0) |
                   (options.relative ? CFileFormulaArgs::FLAG_REL : 0) |
                   (options.times.empty() ? 0 : CFileFormulaArgs::FLAG_TIME_POINTS);
    return args;
}

class ImportTextFileRandom : public CTableTest {};

TEST_F(ImportTextFileRandom, AgreesWithAPlainModelOnThousandsOfTables)
{
    const std::string types[] = {StdLogicType, VectorType(3), ArrayType("UNSIGNED(3 downto 0)", 3, 0),
                                 IntegerType,  RealType,      PhysicalType};
    const struct {
        const char *text;
        double femtoseconds;
    } intervals[] = {{"", 0}, {"3ps", 3e3}, {"700fs", 700}, {"1ns", 1e6}};
    CTableMaker maker(35);
    int good = 0;
    for (int round = 0; round < 3000; ++round) {
        g_simRes = maker.OneIn(4) ? 10 : 1000;
        STableOptions options = maker.Options();
        const std::string &type = types[maker.Below(6)];
        const auto &interval = intervals[maker.OneIn(2) ? maker.Below(4) : 0];
        options.interval = interval.femtoseconds != 0 ? interval.femtoseconds : static_cast<double>(g_simRes);
        CSampleColumn probe;
        ClassifyValueType(MakeSignal(type).get(), probe, options.width, options.radix);
        options.isReal = probe.m_isReal;
        options.isInteger = probe.m_isInteger;

        const std::string table = maker.Table(options.inRows);
        const CTableModel model(table, options);
        CFileFormulaArgs args = Arguments(options, interval.text);
        m_folder.Write("t.txt", table);
        const CLogCatcher log;
        const int handle = ImportTextFile(options.startTime, args, MakeSignal(type).get());
        ASSERT_EQ(log.Messages(), model.Messages()) << round << "\n" << table;
        ASSERT_EQ(handle != 0, model.IsGood()) << round << "\n" << table;
        if (handle == 0)
            continue;
        ASSERT_EQ(SamplesOf(*g_SampleColumns.at(handle)), model.Samples()) << round << "\n" << table;
        ++good;
    }
    EXPECT_GT(good, 500);
}

TEST_F(ImportTextFileRandom, SurvivesAnyBytes)
{
    std::mt19937 random(4);
    const std::string bytes(" ,;\t\n\rst019-.xXe#\"\0\xff", 21);
    for (int round = 0; round < 1500; ++round) {
        std::string table;
        for (auto i = random() % 60; i-- > 0;)
            table += bytes[random() % bytes.size()];
        const CLogCatcher log;
        ImportTable(round % 2 == 0 ? "s t\n" + table : table, round % 3 == 0 ? "s -row -time_points t" : "s",
                    round % 5 == 0 ? RealType : VectorType(5));
    }
}

}  // namespace
