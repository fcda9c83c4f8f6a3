#include "tools/examine/generatorexamination.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/stdlogic.h"
#include "settings/timeunits.h"
#include "tools/examine/formulaitems.h"
#include "tools/examine/nearname.h"
#include "tools/examine/wordexamination.h"
#include "tools/quote.h"

namespace tesk {

namespace {

bool IsSameWord(std::string_view left, std::string_view right)
{
    return NameDistance(left, right, 0) == 0;
}

std::string Text(const SFormulaWord &word)
{
    return std::string(word.text);
}

// The fields between backslashes, from a keyword on.
std::vector<SFormulaWord> FieldsFrom(std::string_view formula, std::size_t begin)
{
    std::vector<SFormulaWord> fields;
    std::size_t end = formula.size();
    while (end > begin && std::string_view(" \t\r\n").find(formula[end - 1]) != std::string_view::npos)
        --end;
    if (formula.starts_with('"') && formula[end - 1] == '"')
        --end;
    for (std::size_t i = begin; i < end;) {
        if (formula[i] == '\\') {
            ++i;
            continue;
        }
        const std::size_t size = std::min(formula.find('\\', i), end) - i;
        fields.push_back({formula.substr(i, size), i, 1});
        i += size;
    }
    return fields;
}

std::optional<long long> ReadWhole(std::string_view text)
{
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

void ExaminePeriod(const SFormulaWord &word, long long resolution, CFindings &findings)
{
    const SFormulaTime time = ReadFormulaTime(word, resolution);
    if (auto finding = ExamineTimeWord(time, "the period", resolution))
        findings.push_back(*std::move(finding));
    else if (time.value.m_ticks <= 0)
        findings.push_back(FindingAt(word, ESeverity::Error, "a period of 0 or below never counts",
                                     "give a time above 0, such as 10ns"));
}

struct SCounterSetting {
    const char *name;
    long long least, most;  // of a whole number; both 0 where the setting is none
    const char *values;
};

// In the order in which they must stand.
constexpr std::array<SCounterSetting, 7> CounterSettings = {{
    {"TYPE", 1, 5, "1 binary, 2 gray, 3 johnson, 4 circular-one, 5 circular-zero"},
    {"DIR", 1, 2, "1 up, 2 down"},
    {"RADIX", 0, 0, "2, 8, 10 or 16"},
    {"START", 0, 0, "the first value"},
    {"INC", 0, 0, "what is added each time"},
    {"PERIOD", 0, 0, "the time between two counts, such as 10ns"},
    {"REV", 0, 1, "0, or 1 to mirror the bits"},
}};

void ExamineCounterSetting(const SCounterSetting &setting, const SFormulaWord &value, long long resolution,
                           CFindings &findings)
{
    if (IsSameWord(setting.name, "PERIOD"))
        return ExaminePeriod(value, resolution, findings);
    const auto number = ReadWhole(value.text);
    const bool isOut = setting.most != 0 && (!number || *number < setting.least || *number > setting.most);
    const bool isNoRadix =
        IsSameWord(setting.name, "RADIX") && number && *number != 2 && *number != 8 && *number != 10 && *number != 16;
    if (isOut || isNoRadix)
        findings.push_back(FindingAt(value, ESeverity::Error,
                                     Quote(Text(value)) + " is no " + setting.name + " of a counter",
                                     std::string(setting.name) + " is " + setting.values));
}

struct SDistribution {
    const char *name;
    std::size_t parameters;
};

// By their numbers, from 1.
constexpr std::array<SDistribution, 8> Distributions = {{{"uniform", 2},
                                                         {"normal", 2},
                                                         {"exponential", 1},
                                                         {"poisson", 1},
                                                         {"chi-square", 1},
                                                         {"t", 1},
                                                         {"erlang", 2},
                                                         {"full range", 0}}};

// Where a keyword begins, in any letter case.
std::size_t FindKeyword(std::string_view formula, std::string_view keyword)
{
    const auto isSame = [](char left, char right) { return IsSameWord({&left, 1}, {&right, 1}); };
    const auto found = std::search(formula.begin(), formula.end(), keyword.begin(), keyword.end(), isSame);
    return static_cast<std::size_t>(found - formula.begin());
}

// The items of the legacy notation from left to right: groups, values with how long they hold.
class CBrelExaminer {
public:
    CBrelExaminer(std::string_view formula, std::string_view keyword, CFindings &findings)
        : m_formula(formula), m_at(FindKeyword(formula, keyword) + keyword.size()), m_end(formula.size()),
          m_findings(findings)
    {
        const std::size_t mark = FindKeyword(formula, "/clk");
        m_end = std::min(m_end, mark);
        if (formula.starts_with('"') && formula.ends_with('"') && m_end == formula.size())
            --m_end;
    }

    void Examine()
    {
        for (SkipBlanks(); m_at < m_end; SkipBlanks())
            ExaminePiece();
        for (const std::size_t group : m_groups)
            Add(group, 1, "a group is not closed", "write groups such as (H10 L10)4");
    }

private:
    void SkipBlanks() { SkipAny(" \t\n\r"); }

    void SkipAny(std::string_view letters)
    {
        while (m_at < m_end && letters.find(m_formula[m_at]) != std::string_view::npos)
            ++m_at;
    }

    void Add(std::size_t begin, std::size_t length, std::string text, std::string advice)
    {
        m_findings.push_back(FindingAt({m_formula.substr(begin, length), begin, 1}, ESeverity::Error, std::move(text),
                                       std::move(advice)));
    }

    void ExaminePiece()
    {
        if (m_formula[m_at] == '(') {
            m_groups.push_back(m_at++);
            return;
        }
        if (m_formula[m_at] != ')')
            return ExamineItem();
        if (m_groups.empty())
            Add(m_at, 1, "a group is closed that was not opened", "write groups such as (H10 L10)4");
        else
            m_groups.pop_back();
        ++m_at;
        SkipAny(Digits);
    }

    void ExamineItem()
    {
        const std::size_t begin = m_at;
        const bool isRead = m_formula[m_at] == '[' ? TakeNumber() : TakeLetter();
        const std::size_t time = m_at;
        SkipAny(Digits);
        if (m_at < m_end && m_formula[m_at] == '.') {
            ++m_at;
            SkipAny(Digits);
        }
        const bool hasTime = m_at > time;
        if (m_end - m_at >= 2 && UnitIDFromName(std::string(m_formula.substr(m_at, 2)).c_str()) >= 0)
            m_at += 2;
        const std::string item(m_formula.substr(begin, m_at - begin));
        if (!isRead)
            Add(begin, m_at - begin, Quote(item) + " has no state letter and no number in brackets",
                "write a value and how long it holds, such as H10, L5NS or [FF]10");
        else if (!hasTime)
            Add(begin, m_at - begin, Quote(item) + " has no time", "write how long it holds, such as " + item + "10");
    }

    bool TakeLetter()
    {
        const char letter = m_formula[m_at++];
        return GateLevel2StdLogic(letter) != 0 ||
               GateLevel2StdLogic(static_cast<char>(std::toupper(static_cast<unsigned char>(letter)))) != 0;
    }

    bool TakeNumber()
    {
        const std::size_t begin = ++m_at;
        const std::size_t close = std::min(m_formula.find(']', begin), m_end);
        m_at = std::min(close + 1, m_end);
        const std::string_view digits = m_formula.substr(begin, close - begin);
        return close < m_end && !digits.empty() &&
               digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
    }

    static constexpr std::string_view Digits = "0123456789";

    std::string_view m_formula;
    std::size_t m_at;
    std::size_t m_end;
    CFindings &m_findings;
    std::vector<std::size_t> m_groups;  // where those begin that are open
};

// Whether it is the formula of one wire, which a splitter writes: "\\counter\\wire\\0\\handle\\3".
bool IsOfWire(const std::vector<SFormulaWord> &fields)
{
    return fields.size() > 1 && IsSameWord(fields[1].text, "wire");
}

}  // namespace

void ExamineCounterFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    const std::string_view formula = examined.formula;
    const auto fields = FieldsFrom(formula, FindKeyword(formula, kind.keyword));
    if (IsOfWire(fields))
        return;
    std::size_t field = 1;
    for (const SCounterSetting &setting : CounterSettings) {
        const bool isThere = field < fields.size();
        if (!isThere || !IsSameWord(fields[field].text, setting.name)) {
            const SFormulaWord &place = isThere ? fields[field] : fields.back();
            findings.push_back(FindingAt(place, ESeverity::Error,
                                         isThere ? Quote(Text(place)) + " stands where " + setting.name + " is expected"
                                                 : std::string(setting.name) + " is missing",
                                         "the settings are TYPE, DIR, RADIX, START, INC, PERIOD and REV, in this "
                                         "order; \"tesk counter\" writes them"));
            return;
        }
        if (field + 1 == fields.size()) {
            findings.push_back(FindingAt(fields[field], ESeverity::Error, std::string(setting.name) + " has no value",
                                         std::string(setting.name) + " is " + setting.values));
            return;
        }
        ExamineCounterSetting(setting, fields[field + 1], examined.resolution, findings);
        field += 2;
    }
}

void ExamineRandomFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    const std::string_view formula = examined.formula;
    const std::size_t keyword = FindKeyword(formula, kind.keyword);
    const auto fields = FieldsFrom(formula, keyword);
    if (IsOfWire(fields))
        return;
    const SFormulaWord word = {formula.substr(keyword, kind.keyword.size()), keyword, 1};
    if (word.text != "\\RANDOM")
        findings.push_back(FindingAt(word, ESeverity::Error, "the keyword is in capitals", "write \\RANDOM"));
    const auto number = fields.size() > 1 ? ReadWhole(fields[1].text) : std::nullopt;
    if (!number || *number < 1 || *number > static_cast<long long>(Distributions.size())) {
        findings.push_back(FindingAt(fields.size() > 1 ? fields[1] : word, ESeverity::Error,
                                     "a number of a distribution is missing",
                                     "they are 1 uniform, 2 normal, 3 exponential, 4 poisson, 5 chi-square, 6 t, 7 "
                                     "erlang, 8 full range"));
        return;
    }
    const SDistribution &distribution = Distributions[static_cast<std::size_t>(*number - 1)];
    const std::size_t wanted = 4 + distribution.parameters;  // keyword, kind, seed, parameters, period
    if (fields.size() != wanted) {
        findings.push_back(FindingAt(fields.back(), ESeverity::Error,
                                     std::string("a ") + distribution.name + " distribution has a seed, " +
                                         std::to_string(distribution.parameters) + " parameters and a period",
                                     "\"tesk random\" writes such a formula"));
        return;
    }
    for (std::size_t i = 2; i + 1 < fields.size(); ++i) {
        if (!ReadWhole(fields[i].text))
            findings.push_back(FindingAt(fields[i], ESeverity::Error, Quote(Text(fields[i])) + " is no whole number",
                                         "seed and parameters are whole numbers"));
    }
    ExaminePeriod(fields.back(), examined.resolution, findings);
}

void ExamineBrelFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    CBrelExaminer(examined.formula, kind.keyword, findings).Examine();
}

}  // namespace tesk
