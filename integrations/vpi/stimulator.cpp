#include "integrations/vpi/stimulator.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"

namespace tesk::vpi {

namespace {

constexpr std::size_t MostSteps = 10'000'000;  // without a later time, one after the other
constexpr int MostPast = 10'000'000;           // changes before the beginning that are gone through one by one

}  // namespace

CStimulator::CStimulator(const CDesignSignal &signal, SStimulation asked)
    : m_asked(std::move(asked)), m_signal(signal), m_name(signal.Name()),
      m_value(m_signal, m_asked.description.empty() ? m_signal.Description() : m_asked.description)
{
    m_signal.CheckStrength(m_asked.strength);
    MakeStimuli();
}

CStimulator::~CStimulator()
{
    if (g_SignalName == m_name.c_str())
        g_SignalName = nullptr;
}

void CStimulator::MakeStimuli()
{
    const std::string description = m_asked.description.empty() ? m_signal.Description() : m_asked.description;
    IStimulus::SetupAdditionalInfo(m_name.c_str(), description.c_str());
    if (m_value.CountElements() == 0)
        return AddStimulus(m_asked.formula);
    for (const SimpleString::CStr &formula :
         SplitFormula(m_asked.formula, static_cast<long long>(m_value.CountElements()), m_value.IsBitVector(),
                      m_asked.start, Resolution()))
        AddStimulus(std::string(formula));
}

void CStimulator::AddStimulus(const std::string &formula)
{
    if (m_value.CountElements() != 0 && IsFileFormula(formula))
        IStimulus::SetupAdditionalInfo(nullptr, m_value.ElementDescription().c_str());
    m_stimuli.push_back(CreateStimulus(formula, m_asked.start, Resolution()));
    m_next.emplace_back();
}

// The next change later than `time`. Where the stimulus answers with a time that is not later, which a file finer than the
// simulation's tick can bring about, time goes on by one tick.
CStimulator::SNext CStimulator::NextTime(std::size_t element, long long time)
{
    const long long next = m_stimuli[element]->GetNextEventTime(time);
    if (next == -1 || next > time) {
        m_ownSteps = 0;
        return {next};
    }
    if (++m_ownSteps > MostSteps) {
        Tell(ESeverity::Warning, m_asked.place, m_name + ": the stimulus names no later time, and is left alone");
        return {};
    }
    return {time + 1, true};
}

void CStimulator::Take(std::size_t element, long long time)
{
    SimpleString::CStr value;
    const bool hasValue = m_stimuli[element]->GetValue(time, value);
    m_value.Set(element,
                hasValue ? std::string_view(value, static_cast<std::size_t>(value.GetLength())) : std::string_view());
}

// The elements of a counter share one state, so they are asked in step, change by change, and for the beginning only where
// nothing happens there.
long long CStimulator::Begin(long long now)
{
    m_isBegun = true;
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        m_next[i] = NextTime(i, -1);
        if (m_next[i].time == -1 || m_next[i].time > now)
            Take(i, now);
    }
    for (int passed = 0; passed < MostPast; ++passed) {
        const long long time = Earliest();
        if (time == -1 || time >= now)
            break;
        for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
            if (m_next[i].time == time)
                Take(i, time);
        }
        for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
            if (m_next[i].time == time)
                m_next[i] = NextTime(i, time);
        }
    }
    const long long earliest = Earliest();
    if (earliest != -1 && earliest <= now) {
        for (SNext &next : m_next)
            next.time = next.time != -1 ? std::max(next.time, now) : -1;
        return Wake(now);
    }
    Put();
    return earliest;
}

long long CStimulator::Earliest() const
{
    long long earliest = -1;
    for (const SNext &next : m_next) {
        if (next.time != -1 && (earliest == -1 || next.time < earliest))
            earliest = next.time;
    }
    return earliest;
}

bool CStimulator::IsFinished(long long time) const
{
    return std::ranges::all_of(m_stimuli, [&](const StimulusPtr &stimulus) { return stimulus->IsFinishedAt(time); });
}

void CStimulator::Put()
{
    if (!m_value.HasAny()) {
        if (m_asked.strength == EStrength::Drive)
            m_signal.Release();
        return;
    }
    m_hasPut = true;
    const std::string fault = m_value.Put(m_asked.strength);
    if (fault.empty() || m_hasTold)
        return;
    m_hasTold = true;
    Tell(ESeverity::Warning, m_asked.place, m_name + ": " + fault);
}

long long CStimulator::Wake(long long now)
{
    if (!m_isBegun)
        return Begin(now);
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        if (m_next[i].time == now)
            Take(i, now);
    }
    for (std::size_t i = 0; i < m_stimuli.size(); ++i) {
        if (m_next[i].time == now)
            m_next[i] = NextTime(i, now);
    }
    if (IsFinished(now)) {
        Release();
        return -1;
    }
    Put();
    return Earliest();
}

void CStimulator::TakeOver(CStimulator &other)
{
    m_signal.TakeOver(other.m_signal);
}

void CStimulator::GiveUpWhatWasTakenOver()
{
    if (!m_hasPut || m_asked.strength == EStrength::Deposit)
        m_signal.Release();
}

void CStimulator::Release()
{
    m_stimuli.clear();
    m_next.clear();
    m_signal.Release();
}

}  // namespace tesk::vpi
