#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/wrap.h"
#include "platform/crt.h"
#include "settings/random.h"
#include "settings/random/randomstate.h"
#include "settings/text/formulafields.h"

namespace tesk {

namespace {

// A per-wire formula, "\random\wire\<wire>\<handle>", whose first character is of no interest.
struct SWireForm {
    int wire;
    int handle;
};

bool ReadWireForm(std::string_view formula, SWireForm &form)
{
    const std::vector<std::string> fields = FormulaFields(formula.substr(std::min<std::size_t>(1, formula.size())));
    if (fields.size() < 4 || _stricmp(fields[1].c_str(), "wire") != 0)
        return false;
    form = {ReadInt(fields[2].c_str()), ReadInt(fields[3].c_str())};
    return true;
}

}  // namespace

CRandomStimulus::~CRandomStimulus()
{
    if (m_state != nullptr)
        m_state->Release();
}

bool CRandomStimulus::Initialize(const char *formula, long long startTime, long long simRes,
                                 const CSimpleScalarInfo *scalarInfo)
{
    if (formula == nullptr)
        return false;
    SWireForm form{0, -1};
    if (!ReadWireForm(formula, form)) {
        std::vector<SimpleString::CStr> wires;
        form.handle = CreateRandomWires(formula, 1, simRes, wires, true, scalarInfo, startTime);
    }
    const auto found = RandomRegistry().find(form.handle);
    if (found == RandomRegistry().end())
        return false;
    m_wire = form.wire;
    m_state = found->second;
    m_state->AddReference();
    return true;
}

void CRandomStimulus::Destroy()
{
    delete this;
}

bool CRandomStimulus::GetValue(long long time, SimpleString::CStr &value)
{
    return m_state != nullptr && m_state->GetValue(m_wire, time, value);
}

long long CRandomStimulus::GetNextEventTime(long long time)
{
    return m_state != nullptr ? m_state->GetNextEventTime(time) : -1;
}

void CRandomStimulus::GetFormula(SimpleString::CStr &formula)
{
    formula.Empty();
    if (m_state == nullptr)
        return;
    if (m_wire == 0)
        m_state->GetSettings().GenerateInternalFormula(formula);
    else
        formula.Format("\\RANDOM\\wire\\%d\\%d", m_wire, m_state->GetHandle());
}

bool CRandomStimulus::IsFinishedAt(long long)
{
    return false;
}

int CRandomStimulus::CheckSettings(long long *)
{
    return 0;
}

}  // namespace tesk
