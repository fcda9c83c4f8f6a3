#include "integrations/vpi/runcomparison.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <exception>
#include <limits>
#include <utility>

#include "base/saturate.h"
#include "integrations/vpi/design.h"
#include "integrations/vpi/designsignal.h"
#include "integrations/vpi/hierarchicalname.h"
#include "integrations/vpi/recordedports.h"
#include "integrations/vpi/recordmatch.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/compare/comparison.h"
#include "tools/compare/scopemap.h"
#include "tools/compare/sidewalk.h"
#include "tools/examine/nearname.h"
#include "tools/files/selectedfile.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk::vpi {

namespace {

constexpr std::size_t MostTold = 20;  // signals of which the first difference is told

std::string TimeOf(long long ticks)
{
    return TickText(ticks, Resolution());
}

class CRunComparison;

// A signal of the design, in the form that its like in the file has.
class CObserved {
public:
    // @param bits  that are recorded each by itself, by their places from the left; empty if all are, together
    // @throw CRefusal if it has no such form
    CObserved(CRunComparison &owner, std::size_t pair, vpiHandle object, const SComparedForm &recorded,
              std::vector<std::size_t> bits)
        : m_owner(owner), m_pair(pair), m_object(object), m_signal(object), m_form(recorded), m_bits(std::move(bits))
    {
        if (m_bits.empty())
            FindForm(recorded);
        else if (m_signal.Contents() != EContents::Letters || recorded.kind != EComparedKind::Levels)
            Refuse();
    }

    const std::string &Name() const { return m_signal.Name(); }
    const SComparedForm &Form() const { return m_form; }
    vpiHandle Object() const { return m_object; }
    CRunComparison &Owner() const { return m_owner; }
    std::size_t Pair() const { return m_pair; }

    // Writes what the design shows.
    void Write(const SComparePolicy &policy, char *row) const
    {
        switch (m_form.kind) {
        case EComparedKind::Real: return WriteReal(m_signal.ReadReal(), row);
        case EComparedKind::Integer: return WriteInteger(m_signal.ReadInteger(), row);
        default: break;
        }
        std::string letters = m_signal.Read();
        letters.resize(std::max<std::size_t>(m_form.width, static_cast<std::size_t>(m_signal.Width())), 'x');
        for (std::size_t i = 0; i < m_form.width; ++i) {
            const char level = ComparedLevel(letters[m_bits.empty() ? i : m_bits[i]], policy);
            *row++ = level != '\0' ? level : ComparedLevel('X', policy);
        }
    }

private:
    static constexpr std::size_t IntegerBits = 32;
    static constexpr std::size_t WidestInteger = 64;

    void FindForm(const SComparedForm &recorded)
    {
        const EContents contents = m_signal.Contents();
        const std::size_t bits =
            contents == EContents::Integer ? IntegerBits : static_cast<std::size_t>(m_signal.Width());
        const bool isInteger = recorded == SComparedForm{EComparedKind::Integer, 1};
        bool fits = recorded == SComparedForm{EComparedKind::Levels, bits};
        if (contents == EContents::Real) {
            fits = recorded == SComparedForm{EComparedKind::Real, 1};
        } else if (contents == EContents::Letters && isInteger && bits > 1 && bits <= WidestInteger) {
            m_form = {EComparedKind::Levels, bits};
            fits = true;
        } else if (contents == EContents::Integer && isInteger) {
            fits = true;
        }
        if (!fits)
            Refuse();
    }

    [[noreturn]] void Refuse() const
    {
        throw CRefusal(m_signal.Name() + ": its values cannot be compared with those in the file");
    }

    CRunComparison &m_owner;
    std::size_t m_pair;
    vpiHandle m_object;
    CDesignSignal m_signal;
    SComparedForm m_form;
    std::vector<std::size_t> m_bits;
};

// The record is walked along with the simulation; what the design shows is told where it changes.
class CRunComparison : public IPart {
public:
    CRunComparison(std::shared_ptr<IWaveformFile> file, SRunComparison asked)
        : m_file(std::move(file)), m_asked(std::move(asked)), m_begin(Now()), m_comparison(Policy()),
          m_forms(*m_file, m_comparison.Policy(), m_literals),
          m_expected(*m_file, ECompareSide::Expected, {m_file->GetResolution(), Resolution(), m_begin}, m_forms)
    {
        m_comparison.OnFirstDifference([this](std::size_t pair) { m_found.push_back(pair); });
        FindRecordEnd();
    }
    CRunComparison(const CRunComparison &) = delete;

    // @throw CRefusal if the two have no values in common
    void Add(const SMatch &match)
    {
        const auto all = static_cast<std::size_t>(m_file->GetSignals()[match.signal].elementCount);
        const std::size_t width = match.bits.empty() ? all : match.bits.size();
        std::vector<std::size_t> bits;
        for (const SMatchedBit &bit : match.bits)
            bits.push_back(bit.bit);
        m_observed.emplace_back(*this, m_comparison.PairCount(), match.object,
                                SComparedForm{m_forms.Of(match.signal).Kind(), width}, std::move(bits));
        const SComparedForm &form = m_observed.back().Form();
        const std::size_t pair = m_comparison.AddPair(form);
        if (match.bits.empty())
            m_expected.Feed(pair, form, {match.signal, 0, 0, all});
        for (std::size_t slot = 0; slot < match.bits.size(); ++slot)
            m_expected.Feed(pair, form, {match.bits[slot].signal, match.bits[slot].element, slot, 1});
    }

    std::size_t CountSignals() const { return m_observed.size(); }

    // What the design shows now is its first value.
    void Begin()
    {
        for (CObserved &observed : m_observed) {
            Take(observed);
            if (Simulator().tellsChanges && !Watch(observed))
                Tell(ESeverity::Error, m_asked.place,
                     observed.Name() + ": this simulator does not tell when it changes");
        }
        if (!Simulator().tellsChanges)
            CallWhenSettled(Settled, this);
    }

    void End() override
    {
        if (IsStopped())
            return;
        try {
            if (!m_hasFailed)
                Conclude();
        } catch (const std::exception &fault) {
            Fail(fault);
        }
        if (m_hasFailed || m_endsEarly || !m_found.empty())
            FailAtExit();
    }

private:
    SComparePolicy Policy() const
    {
        SComparePolicy policy;
        policy.ignoresUnknown = !m_asked.replay.matchesUnknown;
        policy.tolerance = m_asked.tolerance;
        policy.realTolerance = m_asked.replay.realTolerance;
        policy.from = std::max(m_begin, m_asked.from);
        policy.until = m_asked.until;
        return policy;
    }

    static PLI_INT32 Changed(t_cb_data *data)
    {
        auto &observed = *reinterpret_cast<CObserved *>(data->user_data);
        observed.Owner().Take(observed);
        return 0;
    }

    static bool Watch(CObserved &observed)
    {
        static s_vpi_time s_time = {vpiSuppressTime, 0, 0, 0};
        static s_vpi_value s_value = {vpiSuppressVal, {}};
        s_cb_data callback = {};
        callback.reason = cbValueChange;
        callback.cb_rtn = Changed;
        callback.obj = observed.Object();
        callback.time = &s_time;
        callback.value = &s_value;
        callback.user_data = reinterpret_cast<PLI_BYTE8 *>(&observed);
        return vpi_register_cb(&callback) != nullptr;
    }

    // Where changes are not told, all signals are looked at whenever a tick is over.
    static PLI_INT32 Settled(t_cb_data *data)
    {
        auto &comparison = *reinterpret_cast<CRunComparison *>(data->user_data);
        for (CObserved &observed : comparison.m_observed)
            comparison.Take(observed);
        CallWhenSettled(Settled, &comparison);
        return 0;
    }

    void Take(CObserved &observed)
    {
        if (m_hasFailed)
            return;
        try {
            const long long now = Now();
            Feed(now);
            observed.Write(m_comparison.Policy(), m_comparison.Change(ECompareSide::Got, observed.Pair(), now));
            TellFound();
        } catch (const std::exception &fault) {
            Fail(fault);
        }
    }

    // Tells the comparison what is recorded up to a tick.
    void Feed(long long now)
    {
        for (auto next = m_expected.NextTime(); next && *next <= now; next = m_expected.NextTime()) {
            m_expected.Step();
            m_expected.Tell(m_comparison);
        }
        FindRecordEnd();
    }

    // That of a VCD is known when it has been read.
    void FindRecordEnd()
    {
        const auto end = m_recordEnd ? std::nullopt : m_file->FindEndTime();
        if (!end)
            return;
        m_recordEnd = AddSaturating(m_begin, TicksOf(*end, m_file->GetResolution()));
        m_comparison.EndAt(*m_recordEnd);
    }

    void TellFound()
    {
        for (; m_told < m_found.size(); ++m_told) {
            if (m_told >= MostTold)
                continue;
            const std::size_t pair = m_found[m_told];
            const SFirstDifference &first = *m_comparison.Verdict(pair).first;
            const SComparedForm &form = m_comparison.Form(pair);
            Tell(ESeverity::Error, m_asked.place,
                 m_observed[pair].Name() + " differs at " + TimeOf(first.time) + ": got " +
                     RowText(form, first.got, m_literals) + ", expected " + RowText(form, first.expected, m_literals));
        }
    }

    void Conclude()
    {
        const long long end = Now();
        Feed(AddSaturating(end, m_asked.tolerance));
        const long long until = m_comparison.Policy().until.value_or(std::numeric_limits<long long>::max());
        m_comparison.Finish(end);
        TellFound();
        if (end < until)
            TellEarlyEnd(end, until);
        else if (m_recordEnd && *m_recordEnd < end)
            Say(m_asked.place, m_asked.replay.file + " ends at " + TimeOf(*m_recordEnd - m_begin) +
                                   "; what the simulation does behind that is not compared");
        Sum(std::min(end, until));
    }

    // The simulation ends before the record, which is a difference if that goes on changing.
    void TellEarlyEnd(long long end, long long until)
    {
        for (auto next = m_expected.NextTime(); next && *next <= until; next = m_expected.NextTime()) {
            m_expected.Step();
            const auto pair = m_expected.FindChange(m_comparison);
            if (!pair)
                continue;
            m_endsEarly = true;
            return Tell(ESeverity::Error, m_asked.place,
                        "the simulation ends at " + TimeOf(end) + "; in " + m_asked.replay.file + ' ' +
                            m_observed[*pair].Name() + " changes at " + TimeOf(*next));
        }
    }

    void Sum(long long last)
    {
        const std::string all = std::to_string(m_observed.size()) + (m_observed.size() == 1 ? " signal" : " signals");
        const std::string stretch = " from " + TimeOf(m_comparison.Policy().from) + " to " + TimeOf(last);
        if (m_found.empty() && !m_endsEarly)
            return Say(m_asked.place, all + " as in " + m_asked.replay.file + stretch);
        std::string text =
            std::to_string(m_found.size()) + " of " + all + " not as in " + m_asked.replay.file + stretch;
        if (!m_found.empty()) {
            const auto first = std::ranges::min_element(
                m_found, {}, [&](std::size_t pair) { return m_comparison.Verdict(pair).first->time; });
            text += ", first " + m_observed[*first].Name() + " at " + TimeOf(m_comparison.Verdict(*first).first->time);
        }
        Tell(ESeverity::Error, m_asked.place, text);
    }

    void Fail(const std::exception &fault)
    {
        m_hasFailed = true;
        Tell(ESeverity::Error, m_asked.place, fault.what() + std::string("; nothing is compared any more"));
    }

    std::shared_ptr<IWaveformFile> m_file;
    SRunComparison m_asked;
    long long m_begin;                     // ticks; where the file begins
    std::optional<long long> m_recordEnd;  // ticks, once it is known
    CLiteralTexts m_literals;
    CComparison m_comparison;
    CSideForms m_forms;
    CSideWalk m_expected;
    std::deque<CObserved> m_observed;  // by the numbers of the pairs; they stay where they are
    std::vector<std::size_t> m_found;  // pairs that differ, in the order in which that was found
    std::size_t m_told = 0;            // of them
    bool m_endsEarly = false;          // the simulation
    bool m_hasFailed = false;          // the file cannot be read on
};

// The names below the scope that are to be compared.
class CComparedNames {
public:
    CComparedNames(IWaveformFile &file, const SRunComparison &asked) : m_asked(asked)
    {
        if (!asked.replay.compare.empty())
            return;
        m_outputs = PortsBelow(file, asked.replay.scope, ESignalDirection::Out);
        if (!m_outputs.empty())
            return;
        for (const std::string &output : OutputsOf(asked.replay.to))
            m_outputs.emplace_back(*NameBelow(output, asked.replay.to));
    }

    bool Has(const std::string &name) const
    {
        if (std::ranges::any_of(m_asked.driven, [&](const std::string &other) { return IsSameName(other, name); }))
            return false;
        if (m_asked.replay.compare.empty())
            return std::ranges::any_of(m_outputs, [&](const std::string &output) { return IsOfPort(name, output); });
        return std::ranges::any_of(m_asked.replay.compare,
                                   [&](const std::string &glob) { return IsLikePattern(name, glob); });
    }

    // Tells the patterns of no signal of the file.
    void TellUnused(const std::vector<std::string> &names) const
    {
        for (const std::string &glob : m_asked.replay.compare) {
            if (std::ranges::none_of(names, [&](const std::string &name) { return IsLikePattern(name, glob); }))
                Tell(ESeverity::Error, m_asked.place,
                     "the file has no signal " + Quote(glob) + " to compare" + DidYouMean(glob, names));
        }
    }

private:
    const SRunComparison &m_asked;
    std::vector<std::string> m_outputs;  // below the scope
};

}  // namespace

bool StartRunComparison(const std::shared_ptr<IWaveformFile> &file, const SRunComparison &asked)
{
    const CComparedNames compared(*file, asked);
    const std::vector<SFileSignal> &signals = file->GetSignals();
    auto comparison = std::make_unique<CRunComparison>(file, asked);
    std::vector<std::string> names;
    std::vector<SRecorded> recorded;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        const auto name = NameBelow(signals[i].path, asked.replay.scope);
        if (!name)
            continue;
        names.emplace_back(*name);
        if (compared.Has(names.back()))
            recorded.push_back({i, JoinName(asked.replay.to, *name)});
    }
    const auto refuse = [&](const CRefusal &refusal) { Tell(ESeverity::Error, asked.place, refusal.what()); };
    for (const SMatch &match : MatchRecord(*file, recorded, refuse)) {
        try {
            comparison->Add(match);
        } catch (const CRefusal &refusal) {
            refuse(refusal);
        }
    }
    compared.TellUnused(names);
    if (comparison->CountSignals() == 0)
        return false;
    comparison->Begin();
    CSession::Current().Add(std::move(comparison));
    return true;
}

}  // namespace tesk::vpi
