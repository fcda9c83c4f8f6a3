#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/wrap.h"
#include "settings/random.h"
#include "settings/text/formulafields.h"
#include "settings/timeunits.h"

namespace tesk {

namespace {

constexpr std::size_t MostFields = 5;  // kind, seed, two parameters, period

// The text behind the keyword, without the quotes around it all; empty if there is no keyword.
std::string_view BehindKeyword(const char *text)
{
    constexpr std::string_view Keyword = "\\RANDOM\\";
    const std::string_view formula = Unquote(text != nullptr ? text : "");
    const std::size_t at = formula.find(Keyword);
    return at != std::string_view::npos ? formula.substr(at + Keyword.size()) : std::string_view();
}

}  // namespace

/// The fields that a kind has, in the order of the text form; null for none.
struct CRandomStimulusInfo::SParameters {
    int CRandomStimulusInfo::*first;
    int CRandomStimulusInfo::*second;
};

const CRandomStimulusInfo::SParameters &CRandomStimulusInfo::ParametersOf(ERandomStimulusKind kind)
{
    using CInfo = CRandomStimulusInfo;
    static constexpr SParameters ByKind[] = {
        {nullptr, nullptr},           {&CInfo::m_low, &CInfo::m_high},   {&CInfo::m_mean, &CInfo::m_deviation},
        {&CInfo::m_mean, nullptr},    {&CInfo::m_mean, nullptr},         {&CInfo::m_degrees, nullptr},
        {&CInfo::m_degrees, nullptr}, {&CInfo::m_mean, &CInfo::m_order}, {nullptr, nullptr},
    };
    return ByKind[kind];
}

double CRandomStimulusInfo::GetPeriod(int &unit) const
{
    unit = m_periodUnit;
    return m_period;
}

void CRandomStimulusInfo::SetPeriod(double period, int unit)
{
    m_period = period;
    m_periodUnit = unit;
}

bool CRandomStimulusInfo::Store(ERandomStimulusKind kind, int seed, int first, int second)
{
    m_kind = kind;
    m_seed = seed;
    const SParameters &parameters = ParametersOf(kind);
    if (parameters.first != nullptr)
        this->*parameters.first = first;
    if (parameters.second != nullptr)
        this->*parameters.second = second;
    return ValidateStimulatorSettings();
}

bool CRandomStimulusInfo::SetUniformParameters(int seed, int low, int high)
{
    return Store(KindUniform, seed, low, high);
}

bool CRandomStimulusInfo::SetNormalParameters(int seed, int mean, int deviation)
{
    return Store(KindNormal, seed, mean, deviation);
}

bool CRandomStimulusInfo::SetExpotentialParameters(int seed, int mean)
{
    return Store(KindExpotential, seed, mean);
}

bool CRandomStimulusInfo::SetPoissonParameters(int seed, int mean)
{
    return Store(KindPoisson, seed, mean);
}

bool CRandomStimulusInfo::SetChiSquareParameters(int seed, int degrees)
{
    return Store(KindChiSquare, seed, degrees);
}

bool CRandomStimulusInfo::SetTParameters(int seed, int degrees)
{
    return Store(KindT, seed, degrees);
}

bool CRandomStimulusInfo::SetErlangParameters(int seed, int mean, int order)
{
    return Store(KindErlang, seed, mean, order);
}

bool CRandomStimulusInfo::SetRandomParameters(int seed)
{
    return Store(KindRandom, seed);
}

bool CRandomStimulusInfo::Load(ERandomStimulusKind kind, int &seed, int *first, int *second) const
{
    if (m_errorStatus != 0)
        return false;
    seed = m_seed;
    const SParameters &parameters = ParametersOf(kind);
    if (first != nullptr)
        *first = this->*parameters.first;
    if (second != nullptr)
        *second = this->*parameters.second;
    return true;
}

bool CRandomStimulusInfo::GetUniformParameters(int &seed, int &low, int &high) const
{
    return Load(KindUniform, seed, &low, &high);
}

bool CRandomStimulusInfo::GetNormalParameters(int &seed, int &mean, int &deviation) const
{
    return Load(KindNormal, seed, &mean, &deviation);
}

bool CRandomStimulusInfo::GetExpotentialParameters(int &seed, int &mean) const
{
    return Load(KindExpotential, seed, &mean);
}

bool CRandomStimulusInfo::GetPoissonParameters(int &seed, int &mean) const
{
    return Load(KindPoisson, seed, &mean);
}

bool CRandomStimulusInfo::GetChiSquareParameters(int &seed, int &degrees) const
{
    return Load(KindChiSquare, seed, &degrees);
}

bool CRandomStimulusInfo::GetTParameters(int &seed, int &degrees) const
{
    return Load(KindT, seed, &degrees);
}

bool CRandomStimulusInfo::GetErlangParameters(int &seed, int &mean, int &order) const
{
    return Load(KindErlang, seed, &mean, &order);
}

bool CRandomStimulusInfo::GetRandomParameters(int &seed) const
{
    return Load(KindRandom, seed);
}

bool CRandomStimulusInfo::ValidateStimulatorSettings()
{
    const bool hasMean = m_kind == KindExpotential || m_kind == KindPoisson;
    const bool hasDegrees = m_kind == KindChiSquare || m_kind == KindT;
    m_errorStatus = 0;
    if (hasMean && m_mean < 1)
        m_errorStatus = BadMean;
    if (hasDegrees && m_degrees < 1)
        m_errorStatus = BadDegrees;
    if (m_kind == KindErlang && m_order < 1)
        m_errorStatus = BadOrder;
    return m_errorStatus == 0;
}

bool CRandomStimulusInfo::GenerateInternalFormula(SimpleString::CStr &text) const
{
    if (m_errorStatus != 0)
        return false;
    const SParameters &parameters = ParametersOf(m_kind);
    SimpleString::CStr formula;
    formula.Format("\\RANDOM\\%d\\%d\\", static_cast<int>(m_kind), m_seed);
    SimpleString::CStr part;
    for (const auto field : {parameters.first, parameters.second}) {
        if (field == nullptr)
            continue;
        part.Format("%d\\", this->*field);
        formula += part;
    }
    const char *unit = UnitNameFromID(static_cast<unsigned>(m_periodUnit));
    part.Format("%f%s", m_period, unit != nullptr ? unit : "");
    text = formula + part;
    return true;
}

bool CRandomStimulusInfo::InitializeFromInternalFormula(const char *text)
{
    m_errorStatus = BadText;
    const std::string_view body = BehindKeyword(text);
    std::vector<std::string> fields = FormulaFields(body);
    const int kind = fields.empty() ? KindNone : ReadInt(fields[0].c_str());
    if (kind < KindUniform || kind > KindRandom)
        return false;
    const ERandomStimulusKind knownKind = static_cast<ERandomStimulusKind>(kind);
    const SParameters &parameters = ParametersOf(knownKind);
    const std::size_t period = 2U + (parameters.first != nullptr) + (parameters.second != nullptr);
    if (std::ranges::count(body, '\\') < static_cast<std::ptrdiff_t>(period))
        return false;

    fields.resize(std::max(fields.size(), MostFields));  // a run of backslashes counts as many, but separates as one
    const bool isGood =
        Store(knownKind, ReadInt(fields[1].c_str()), ReadInt(fields[2].c_str()), ReadInt(fields[3].c_str()));
    SetPeriod(0.0, 0);
    return isGood && TextToTime(fields[period].c_str(), &m_period, &m_periodUnit) && m_periodUnit >= 0;
}

}  // namespace tesk
