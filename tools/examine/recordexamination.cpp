#include "tools/examine/recordexamination.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/examine/wordexamination.h"
#include "tools/files/wavefile.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// Stimuli compute in 64 bits of femtoseconds.
constexpr Int128 MostFemtoseconds = static_cast<Int128>(9223372036854775807LL);

char Lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool IsSameName(std::string_view left, std::string_view right)
{
    return std::ranges::equal(left, right, {}, Lower, Lower);
}

// The name as the stimuli look for it.
std::string LookedUpName(const CFileFormulaArgs &args, EFileKind kind)
{
    SimpleString::CStr name = args.m_signal;
    if (FileKind(kind).rules.renamesBrackets)
        RenameBrackets(name);
    return std::string(name);
}

const char *NameOf(EFileKind kind)
{
    switch (kind) {
    case EFileKind::Vcd: return "a VCD";
    case EFileKind::Database: return "an FST or GHW file";
    case EFileKind::Stream: return "an event stream";
    }
    return "";
}

// A number that is 1, 10 or 100 of a unit.
bool IsOneOfAUnit(long long resolution)
{
    while (resolution >= 1000 && resolution % 1000 == 0)
        resolution /= 1000;
    return resolution == 1;
}

// One look at the file of a formula.
class CRecordExaminer {
public:
    CRecordExaminer(const CFileFormulaArgs &args, const SFormulaWord &place, CFindings &findings)
        : m_args(args), m_place(place), m_findings(findings), m_path(args.m_file)
    {}

    void Examine()
    {
        if (!IsOfItsName())
            return;
        const CFormulaFile file(m_path);
        m_file = file.Get();
        if (m_file == nullptr)
            return;  // refused where the stimulus is made
        const std::string name = LookedUpName(m_args, m_kind);
        const SFileSignal *signal = FindSignal(name);
        if (signal == nullptr)
            return;
        ExamineIndex(*signal, name);
        ExamineAmbiguity(name);
        ExamineEnd();
        ExamineBus(*signal);
    }

private:
    void Add(ESeverity severity, std::string text, std::string advice)
    {
        m_findings.push_back(FindingAt(m_place, severity, std::move(text), std::move(advice)));
    }

    // Whether the file holds what a formula takes it for by its name. One that is not there is refused elsewhere.
    bool IsOfItsName()
    try {
        m_kind = KindOfName(m_path);
        const EFileKind contents = KindOfFile(m_path);
        if (contents == m_kind)
            return true;
        Add(ESeverity::Error, Quote(m_path) + " is " + NameOf(contents) + ", but its name makes it " + NameOf(m_kind),
            "give it a name that ends in its kind, such as .vcd, .fst or .zyn, and has no other of them in it");
        return false;
    } catch (const CRefusal &) {
        return false;
    }

    // A whole signal, or the one that an element belongs to. A composite one is there by its parts; it has no
    // changes that could be looked at.
    const SFileSignal *FindSignal(const std::string &name)
    {
        const bool isElement = name.ends_with(']') || name.ends_with(')');
        const std::string whole = isElement ? name.substr(0, name.find_last_of("[(")) : "";
        const SFileSignal *bus = nullptr;
        bool isComposite = false;
        for (const SFileSignal &signal : m_file->GetSignals()) {
            if (IsSameName(signal.path, name))
                return &signal;
            if (bus == nullptr && isElement && IsSameName(signal.path, whole))
                bus = &signal;
            isComposite = isComposite || IsPartOf(signal.path, name);
        }
        if (bus == nullptr && !isComposite)
            AddNearNames(name);
        return bus;
    }

    static bool IsPartOf(std::string_view path, std::string_view name)
    {
        return path.size() > name.size() && IsSameName(path.substr(0, name.size()), name) &&
               std::string_view(".[(").find(path[name.size()]) != std::string_view::npos;
    }

    void AddNearNames(const std::string &name)
    {
        std::vector<std::string> names;
        for (const SFileSignal &signal : m_file->GetSignals())
            names.push_back(signal.path);
        Add(ESeverity::Error, "the file has no signal " + Quote(name) + DidYouMean(name, names),
            "\"tesk signals " + m_path + "\" lists its signals");
    }

    // Whether a bus has the element that a name asks for.
    void ExamineIndex(const SFileSignal &signal, const std::string &name)
    {
        int left = 0, right = 0, direction = 0, index = 0;
        if (IsSameName(signal.path, name) || !signal.type.GetArrayDimensionRanges(0, left, right, direction))
            return;
        const std::size_t begin = signal.path.size() + 1;
        const auto read = std::from_chars(name.data() + begin, name.data() + name.size() - 1, index);
        const bool isWhole = read.ec == std::errc() && read.ptr == name.data() + name.size() - 1;
        if (isWhole && index >= std::min(left, right) && index <= std::max(left, right))
            return;
        Add(ESeverity::Error, Quote(signal.path) + " has no element " + name.substr(signal.path.size()),
            "its elements are " + std::to_string(left) + (direction == 0 ? " to " : " downto ") +
                std::to_string(right));
    }

    void ExamineAmbiguity(const std::string &name)
    {
        const SFileSignal *played = nullptr;
        for (const SFileSignal &signal : m_file->GetSignals()) {
            if (!IsSameName(signal.path, name))
                continue;
            if (played == nullptr) {
                played = &signal;
                continue;
            }
            const bool isEqual = played->path == signal.path;
            Add(ESeverity::Warning,
                isEqual ? "the file has several signals " + Quote(signal.path) + "; the first is played"
                        : Quote(played->path) + " and " + Quote(signal.path) +
                              " differ in letter case only; the first is played",
                "");
            return;
        }
    }

    void ExamineEnd()
    {
        const Int128 end = static_cast<Int128>(m_file->GetEndTime()) * m_file->GetResolution();
        if (end > MostFemtoseconds)
            Add(ESeverity::Warning,
                "the file goes to " + TimeText(end) +
                    (IsWhole() ? "; a simulator plays its times up to 9223 sec only, \"tesk play\" all of them"
                               : ", and times behind 9223 sec are not played"),
                IsWhole() ? "" : "without START, END, OFFSET and switches \"tesk play\" shows them");
        if (m_kind != EFileKind::Vcd || IsOneOfAUnit(m_file->GetResolution()))
            return;
        const long long unit = UnitOf(m_file->GetResolution());
        Add(ESeverity::Warning,
            "a VCD whose unit is " + TimeText(m_file->GetResolution()) + " plays to " +
                TimeText(static_cast<Int128>(m_file->GetEndTime()) * unit) + " of " + TimeText(end),
            "\"tesk convert\" makes an event stream of it, which plays to the end");
    }

    // Whether the formula names a file and a signal, and nothing else.
    bool IsWhole() const
    {
        const std::array parts = {&m_args.m_start, &m_args.m_end, &m_args.m_offset, &m_args.m_repeat, &m_args.m_cancel};
        return std::ranges::all_of(parts, [](const SimpleString::CStr *part) { return part->IsEmpty(); });
    }

    static long long UnitOf(long long resolution)
    {
        long long unit = 1;
        while (resolution % (unit * 1000) == 0 && unit < resolution)
            unit *= 1000;
        return unit;
    }

    // Elements of a bus of a VCD are looked up as if its right bound were 0.
    void ExamineBus(const SFileSignal &signal)
    {
        int left = 0, right = 0, direction = 0;
        if (m_kind != EFileKind::Vcd || !signal.type.GetArrayDimensionRanges(0, left, right, direction) || right == 0)
            return;
        Add(ESeverity::Error,
            "elements of a bus of a VCD are counted from a right bound of 0, and that of " + Quote(signal.path) +
                " is " + std::to_string(right) + ": another bit would be played",
            "\"tesk convert\" makes an event stream of it, in which every bus plays");
        m_findings.back().isRefused = true;
    }

    const CFileFormulaArgs &m_args;
    const SFormulaWord &m_place;
    CFindings &m_findings;
    std::string m_path;
    IWaveformFile *m_file = nullptr;
    EFileKind m_kind = EFileKind::Database;
};

}  // namespace

void ExamineRecord(const CFileFormulaArgs &args, const SFormulaWord &signal, CFindings &findings)
{
    CRecordExaminer(args, signal, findings).Examine();
}

}  // namespace tesk
