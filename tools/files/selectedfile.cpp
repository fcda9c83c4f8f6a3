#include "tools/files/selectedfile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <utility>

#include "platform/changes/changedset.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

char Folded(char c)
{
    if (c >= 'A' && c <= 'Z')
        return static_cast<char>(c + ('a' - 'A'));
    return c == '(' ? '[' : c == ')' ? ']' : c;
}

// The events of one element from one time to another.
class CStretchWalk final : public IElementWalk {
public:
    CStretchWalk(std::unique_ptr<IElementWalk> walk, const SSelection &selection)
        : m_walk(std::move(walk)), m_from(selection.from), m_until(selection.until),
          m_showsValueInForce(selection.showsValueInForce)
    {}

    bool Next(long long &time, std::uint64_t &value) override
    {
        if (!m_hasBegun)
            Begin();
        if (m_inForce) {
            time = *m_from;
            value = *std::exchange(m_inForce, std::nullopt);
            return true;
        }
        if (m_isPending) {
            m_isPending = false;
            time = m_time;
            value = m_value;
            return true;
        }
        m_isEnd = m_isEnd || !m_walk->Next(time, value) || (m_until && time > *m_until);
        return !m_isEnd;
    }

private:
    // Goes to the first event that is shown.
    void Begin()
    {
        m_hasBegun = true;
        while (!m_isEnd && !m_isPending) {
            m_isEnd = !m_walk->Next(m_time, m_value);
            m_isPending = !m_isEnd && (!m_from || m_time >= *m_from);
            if (!m_isEnd && !m_isPending && m_showsValueInForce)
                m_inForce = m_value;
        }
        if (m_isPending && m_from && m_time == *m_from)
            m_inForce.reset();
        if (m_isPending && m_until && m_time > *m_until) {
            m_isPending = false;
            m_isEnd = true;
        }
    }

    std::unique_ptr<IElementWalk> m_walk;
    std::optional<long long> m_from;
    std::optional<long long> m_until;
    bool m_showsValueInForce;
    bool m_hasBegun = false;
    bool m_isPending = false;  // the event below has not been told
    bool m_isEnd = false;
    long long m_time = 0;
    std::uint64_t m_value = 0;
    std::optional<std::uint64_t> m_inForce;  // where the stretch begins
};

// The changes of many signals from one time to another.
class CStretchChanges final : public IChangeWalk {
public:
    CStretchChanges(std::unique_ptr<IChangeWalk> walk, const SSelection &selection, std::size_t signals)
        : m_walk(std::move(walk)), m_stretch{selection.from, selection.until},
          m_showsValueInForce(selection.showsValueInForce), m_marked(signals)
    {}

    bool PeekTime(long long &time) override
    {
        if (!m_walk->PeekTime(time))
            return false;
        if (!m_hasBegun)
            time = std::max(time, m_stretch.from.value_or(time));
        return !m_stretch.until || time <= *m_stretch.until;
    }
    bool Next(long long &time, long long until) override
    {
        until = std::min(until, m_stretch.until.value_or(until));
        if (!std::exchange(m_hasBegun, true) && m_stretch.from && Begin()) {
            time = *m_stretch.from;
            return true;
        }
        const bool isChange = m_walk->Next(time, until);
        m_changed.assign(m_walk->GetChanged().begin(), m_walk->GetChanged().end());
        return isChange;
    }
    std::span<const std::uint32_t> GetChanged() const override { return m_changed; }
    const CElementValues &GetValues(std::size_t signal) override { return m_walk->GetValues(signal); }
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override { return m_walk->GetPositions(signal); }

private:
    // Goes to where the stretch begins. @return whether signals change there, or show what they have
    bool Begin()
    {
        const long long from = *m_stretch.from;
        long long time = 0;
        while (from > std::numeric_limits<long long>::min() && m_walk->Next(time, from - 1)) {
            if (m_showsValueInForce)
                Mark();
        }
        if (m_walk->Next(time, from))
            Mark();
        m_marked.Take(m_changed);
        return !m_changed.empty();
    }

    void Mark()
    {
        for (const std::uint32_t signal : m_walk->GetChanged())
            m_marked.Mark(signal);
    }

    std::unique_ptr<IChangeWalk> m_walk;
    SStretch m_stretch;
    bool m_showsValueInForce;
    bool m_hasBegun = false;
    CChangedSet m_marked;
    std::vector<std::uint32_t> m_changed;
};

class CSelectedFile final : public IWaveformFile {
public:
    CSelectedFile(std::unique_ptr<IWaveformFile> file, SSelection selection, std::vector<SFileSignal> signals)
        : m_file(std::move(file)), m_selection(std::move(selection)), m_signals(std::move(signals))
    {}

    long long GetResolution() override { return m_file->GetResolution(); }
    long long GetEndTime() override
    {
        const long long end = m_file->GetEndTime();
        return m_selection.until ? std::min(end, *m_selection.until) : end;
    }
    std::optional<long long> FindEndTime() override
    {
        const auto end = m_file->FindEndTime();
        return end && m_selection.until ? std::min(*end, *m_selection.until) : end;
    }
    std::optional<int> FindSignal(const char *name) override { return m_file->FindSignal(name); }
    long MakeSignal(int handle, bool whole, ISignal **signal) override
    {
        return m_file->MakeSignal(handle, whole, signal);
    }
    const std::vector<SFileSignal> &GetSignals() override { return m_signals; }
    long long IdentifyEvents(long long element) override { return m_file->IdentifyEvents(element); }
    std::unique_ptr<IElementWalk> Walk(long long element) override
    {
        std::unique_ptr<IElementWalk> walk = m_file->Walk(element);
        if (walk == nullptr || !IsStretch())
            return walk;
        return std::make_unique<CStretchWalk>(std::move(walk), m_selection);
    }
    std::unique_ptr<IElementsWalk> WalkTogether(long long first, std::size_t count, std::size_t all) override
    {
        return IsStretch() ? IWaveformFile::WalkTogether(first, count, all) : m_file->WalkTogether(first, count, all);
    }

    std::unique_ptr<IChangeWalk> WalkChanges(const std::vector<SFileSignal> &signals) override
    {
        std::unique_ptr<IChangeWalk> walk = m_file->WalkChanges(signals);
        if (walk == nullptr || !IsStretch())
            return walk;
        return std::make_unique<CStretchChanges>(std::move(walk), m_selection, signals.size());
    }
    std::optional<std::vector<SChangeCount>> CountChanges(const std::vector<SFileSignal> &signals,
                                                          const SStretch &stretch, const FProgress &progress) override
    {
        return m_file->CountChanges(signals, Both(stretch), progress);
    }
    long long EstimateEndTime() override
    {
        const long long end = m_file->EstimateEndTime();
        return m_selection.until ? std::min(end, *m_selection.until) : end;
    }

private:
    bool IsStretch() const { return m_selection.from || m_selection.until; }

    // What lies in a stretch and in the selection.
    SStretch Both(SStretch stretch) const
    {
        if (m_selection.from)
            stretch.from = std::max(*m_selection.from, stretch.from.value_or(*m_selection.from));
        if (m_selection.until)
            stretch.until = std::min(*m_selection.until, stretch.until.value_or(*m_selection.until));
        return stretch;
    }

    std::unique_ptr<IWaveformFile> m_file;
    SSelection m_selection;
    std::vector<SFileSignal> m_signals;
};

[[noreturn]] void RefuseGlob(const std::string &glob, const std::string &path, const std::vector<SFileSignal> &signals)
{
    std::vector<std::string> names;
    names.reserve(signals.size());
    for (const SFileSignal &signal : signals)
        names.push_back(signal.path);
    throw CRefusal(OneLine(path) + ": no signal is named " + Quote(glob) + DidYouMean(glob, names) +
                   "; \"tesk signals " + OneLine(path) + " --names\" lists them, and * stands for any letters");
}

}  // namespace

bool IsLikeGlob(std::string_view name, std::string_view glob)
{
    std::size_t n = 0;
    std::size_t g = 0;
    std::size_t star = glob.npos;  // the last "*" met, and where in the name what it stands for ends
    std::size_t resume = 0;
    while (n < name.size()) {
        if (g < glob.size() && glob[g] == '*') {
            star = g++;
            resume = n;
        } else if (g < glob.size() && (glob[g] == '?' || Folded(glob[g]) == Folded(name[n]))) {
            ++g;
            ++n;
        } else if (star != glob.npos) {
            g = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return glob.find_first_not_of('*', g) == glob.npos;
}

std::string FoldName(std::string_view name)
{
    std::string folded(name);
    std::ranges::transform(folded, folded.begin(), Folded);
    return folded;
}

std::unique_ptr<IWaveformFile> Select(std::unique_ptr<IWaveformFile> file, const std::string &path,
                                      const SSelection &selection)
{
    const std::vector<SFileSignal> &all = file->GetSignals();
    for (const std::string &glob : selection.globs) {
        if (std::ranges::none_of(all, [&](const SFileSignal &signal) { return IsLikeGlob(signal.path, glob); }))
            RefuseGlob(glob, path, all);
    }
    std::vector<SFileSignal> selected;
    std::ranges::copy_if(all, std::back_inserter(selected), [&](const SFileSignal &signal) {
        return selection.globs.empty() || std::ranges::any_of(selection.globs, [&](const std::string &glob) {
                   return IsLikeGlob(signal.path, glob);
               });
    });
    return std::make_unique<CSelectedFile>(std::move(file), selection, std::move(selected));
}

void ReadStretch(const std::string &from, const std::string &until, long long resolution, SSelection &selection)
{
    if (!from.empty())
        selection.from = ReadTimeOption("--from", from, resolution);
    if (!until.empty())
        selection.until = ReadTimeOption("--until", until, resolution);
    if (selection.from && selection.until && *selection.from > *selection.until)
        RefuseOption("--from", from, "later than --until " + until);
}

}  // namespace tesk
