#include "tools/examine/tableexamination.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/input/openinput.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"
#include "waveform/table/tablereader.h"
#include "waveform/table/texttable.h"

namespace tesk {

namespace {

constexpr std::size_t MostNames = 100000;
constexpr std::size_t MostRows = 1000;  // that are looked at for their number of values alone
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool IsWholeNumber(std::string_view text)
{
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

// The first time of a table that is read otherwise than it stands, and how many there are.
struct SOddTimes {
    std::string first;
    std::size_t count = 0;

    void Take(std::string_view time)
    {
        if (!IsWholeNumber(time) && count++ == 0)
            first = time;
    }
};

// The first row with another number of values than there are names.
struct SOddRow {
    std::size_t row;  // of values, from 1
    std::size_t values;
};

// One reading of a table, with the eyes of a person.
class CTableLook {
public:
    CTableLook(const CFileFormulaArgs &args, const CFile &file)
        : m_table(file), m_isByRow((args.m_flags & CFileFormulaArgs::FLAG_ROW) != 0),
          m_timeName((args.m_flags & CFileFormulaArgs::FLAG_TIME_POINTS) != 0 ? std::string(args.m_timeSource) : "")
    {}

    void Read()
    {
        if (m_isByRow)
            ReadRows();
        else
            ReadColumns();
    }

    /// Why the table could not be read on, as an `errno`; 0 if it could.
    int Error() const { return m_table.Error(); }
    const std::vector<std::string> &Names() const { return m_names; }
    const SOddTimes &Times() const { return m_times; }
    const std::string &TimeName() const { return m_timeName; }
    const std::optional<SOddRow> &OddRow() const { return m_oddRow; }

private:
    using EPiece = CTableReader::EPiece;

    void AddName(std::string_view name)
    {
        if (m_names.size() < MostNames)
            m_names.emplace_back(name);
    }

    void ReadColumns()
    {
        std::optional<std::size_t> times;
        while (m_table.Find() == EPiece::Token) {
            AddName(m_table.TakeToken());
            if (!m_timeName.empty() && m_names.back() == m_timeName)
                times = m_names.size() - 1;
        }
        std::size_t place = 0;
        for (EPiece piece = m_table.Find(); piece != EPiece::FileEnd; piece = m_table.Find()) {
            if (piece == EPiece::LineEnd) {
                EndRow(std::exchange(place, 0));
                if (!times && m_rows >= MostRows)
                    return;
            } else if (place++ == times) {
                m_times.Take(m_table.TakeToken());
            } else {
                m_table.SkipToken();
            }
        }
        EndRow(place);
    }

    void EndRow(std::size_t values)
    {
        if (values == 0)
            return;
        ++m_rows;
        if (values != m_names.size() && !m_oddRow)
            m_oddRow = {m_rows, values};
    }

    void ReadRows()
    {
        for (EPiece piece = m_table.Find(); piece != EPiece::FileEnd; piece = m_table.Find()) {
            if (piece == EPiece::LineEnd)
                continue;
            AddName(m_table.TakeToken());
            if (m_timeName.empty() || m_names.back() != m_timeName) {
                m_table.SkipLine();
                continue;
            }
            while (m_table.Find() == EPiece::Token)
                m_times.Take(m_table.TakeToken());
        }
    }

    CTableReader m_table;
    bool m_isByRow;
    std::string m_timeName;  // empty if the table has no times
    std::vector<std::string> m_names;
    SOddTimes m_times;
    std::size_t m_rows = 0;  // of values
    std::optional<SOddRow> m_oddRow;
};

std::string ListNames(const std::vector<std::string> &names)
{
    constexpr std::size_t Most = 12;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), Most); ++i)
        list += (i != 0 ? ", " : "") + Quote(names[i]);
    return list + (names.size() > Most ? ", ..." : "");
}

bool Has(const std::vector<std::string> &names, const std::string &name)
{
    return std::ranges::find(names, name) != names.end();
}

void FindMissingName(const std::string &name, const CTableLook &look, std::vector<STableFault> &faults)
{
    const bool isThere = Has(look.Names(), name) || Has(look.Names(), name.substr(0, name.find('(')));
    if (name.empty() || isThere)  // an element is read out of the column of the whole
        return;
    if (Has(look.Names(), '"' + name + '"')) {
        faults.push_back({true, "the table has no column " + Quote(name) + ": quotes are read as part of a name",
                          "write names without quotes"});
        return;
    }
    faults.push_back({true, "the table has no column " + Quote(name) + DidYouMean(name, look.Names()),
                      "its columns are " + ListNames(look.Names())});
}

// What of the first line is taken as part of a name.
void FindOddNames(const CTableLook &look, std::vector<STableFault> &faults)
{
    const std::vector<std::string> &names = look.Names();
    if (names.empty())
        return;
    if (names.front().starts_with(ByteOrderMark))
        faults.push_back({true, "the table begins with a byte-order mark, which is read as part of the first name",
                          "save it as UTF-8 without the mark"});
    else if (names.front().starts_with('#') || names.front().starts_with("//"))
        faults.push_back({true, "a comment is read as names of columns", "take comments out of the table"});
    const auto isQuoted = [](const std::string &name) { return name.starts_with('"'); };
    const auto quoted = std::ranges::find_if(names, isQuoted);
    if (quoted != names.end())
        faults.push_back({false, "quotes are read as part of a name: " + Quote(*quoted), "write names without quotes"});
}

void FindOddTimes(const CTableLook &look, std::vector<STableFault> &faults)
{
    const SOddTimes &times = look.Times();
    if (times.count == 0)
        return;
    const bool isDecimal = times.first.find_first_of(".,eE") != std::string::npos;
    faults.push_back({true,
                      std::to_string(times.count) + (times.count == 1 ? " time" : " times") + " in column " +
                          Quote(look.TimeName()) + ", first " + Quote(times.first) +
                          (isDecimal ? ", lose what stands behind their whole number" : ", are no whole numbers"),
                      isDecimal ? "write whole numbers and a finer -interval, such as 200 with -interval 1ps for 0.2 ns"
                                : "times are whole numbers of -interval"});
}

// Commas part values, also those that somebody means for decimal points.
void FindOddRow(const CTableLook &look, std::vector<STableFault> &faults)
{
    if (!look.OddRow())
        return;
    const auto [row, values] = *look.OddRow();
    const std::size_t columns = look.Names().size();
    faults.push_back({true,
                      "row " + std::to_string(row) + " of values has " + std::to_string(values) + " for " +
                          std::to_string(columns) + (columns == 1 ? " column" : " columns"),
                      values > columns
                          ? "blanks, commas, semicolons and tabs part values: write 0.5 and not 0,5, and no "
                            "blanks within a value"
                          : "give each column a value in each row"});
}

}  // namespace

std::vector<STableFault> ExamineTable(const CFileFormulaArgs &args)
{
    std::vector<STableFault> faults;
    SimpleString::CStr name = args.m_file;
    const CFile file = OpenTextTable(name);
    if (!file.IsOpen())
        return faults;
    CTableLook look(args, file);
    look.Read();
    if (look.Error() != 0)
        return faults;
    FindOddNames(look, faults);
    FindMissingName(std::string(args.m_signal), look, faults);
    FindMissingName(look.TimeName(), look, faults);
    FindOddTimes(look, faults);
    FindOddRow(look, faults);
    return faults;
}

std::vector<std::string> TableNames(const CFileFormulaArgs &args)
{
    SimpleString::CStr name = args.m_file;
    const CFile file = OpenTextTable(name);
    if (!file.IsOpen())
        throw CRefusal(OneLine(std::string(name)) + ": cannot be read: " + InputErrorText(errno));
    CTableLook look(args, file);
    look.Read();
    if (look.Error() != 0)
        throw CRefusal(OneLine(std::string(name)) + ": cannot be read: " + InputErrorText(look.Error()));
    return look.Names();
}

}  // namespace tesk
