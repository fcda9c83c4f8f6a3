// A formula examined by the command that uses it.
#pragma once

#include <string>

#include "tools/commandline.h"
#include "tools/examine/examination.h"
#include "tools/examine/findingtext.h"
#include "tools/quote.h"

namespace tesk {

/// What is found in a formula that a command is going to use.
class CExamined {
public:
    /// @throw CRefusal if what would be shown is not what was asked for
    explicit CExamined(const SExamined &examined) : m_formula(examined.formula), m_findings(ExamineFormula(examined))
    {
        for (const SFinding &finding : m_findings) {
            if (finding.isRefused)
                Refuse(finding);
        }
    }

    const CFindings &Findings() const { return m_findings; }
    bool HasError() const { return tesk::HasError(m_findings); }

    /// Makes something of the formula. Where that is refused, the first error found tells why.
    template <class Make>
    auto Explain(const Make &make) const
    try {
        return make();
    } catch (const CRefusal &) {
        for (const SFinding &finding : m_findings) {
            if (finding.severity == ESeverity::Error)
                Refuse(finding);
        }
        throw;
    }

    /// Tells the findings on standard error.
    void Tell() const { WriteFindings(m_findings, m_formula); }

private:
    [[noreturn]] void Refuse(const SFinding &finding) const
    {
        throw CRefusal("formula " + Quote(m_formula) + ": " + FindingLine(finding));
    }

    std::string m_formula;
    CFindings m_findings;
};

}  // namespace tesk
