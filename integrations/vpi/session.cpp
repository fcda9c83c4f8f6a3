#include "integrations/vpi/session.h"

#include <utility>

#include "integrations/vpi/design.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/examine/examination.h"
#include "tools/examine/findingtext.h"
#include "tools/quote.h"

namespace tesk::vpi {

namespace {

std::unique_ptr<CSession> s_session;

// Tells what is found in a formula. @throw CRefusal if what would be played is not what was asked for
void Examine(const CDesignSignal &signal, const SStimulation &asked)
{
    const SExamined examined{asked.formula, asked.description.empty() ? signal.Description() : asked.description,
                             Resolution(), asked.start};
    for (const SFinding &finding : ExamineFormula(examined)) {
        if (finding.isRefused)
            throw CRefusal("formula " + Quote(asked.formula) + ": " + FindingLine(finding));
        Tell(finding.severity, asked.place, signal.Name() + ": " + FindingLine(finding));
    }
}

}  // namespace

CSession &CSession::Current()
{
    if (s_session == nullptr)
        s_session.reset(new CSession);
    return *s_session;
}

void CSession::End()
{
    if (s_session == nullptr)
        return;
    for (const std::unique_ptr<IPart> &part : s_session->m_parts)
        part->End();
    s_session.reset();
}

void CSession::Stimulate(vpiHandle object, SStimulation asked)
{
    const CDesignSignal signal(object);
    Examine(signal, asked);
    const long long start = asked.start;
    auto stimulator = std::make_unique<CStimulator>(signal, std::move(asked));
    std::unique_ptr<CStimulator> &place = m_stimulators[signal.Name()];
    if (place != nullptr) {
        m_wakeUps.Forget(*place);
        stimulator->TakeOver(*place);
    }
    place = std::move(stimulator);
    const long long now = Now();
    const long long next = start > now ? start : place->Wake(now);
    place->GiveUpWhatWasTakenOver();
    if (next != -1)
        m_wakeUps.At(next, *place);
}

void CSession::Release(vpiHandle object)
{
    const std::string name = CDesignSignal(object).Name();
    const auto found = m_stimulators.find(name);
    if (found == m_stimulators.end())
        throw CRefusal(name + " has no stimulator");
    m_wakeUps.Forget(*found->second);
    found->second->Release();
    m_stimulators.erase(found);
}

}  // namespace tesk::vpi
