#include "tools/exchange/losses.h"

#include <cstdio>

#include "tools/commandline.h"
#include "tools/quote.h"

namespace tesk {

void CLosses::Add(bool isError, const std::string &line)
{
    m_hasError = m_hasError || isError;
    m_lines.push_back((isError ? "error: " : "warning: ") + line);
}

void CLosses::Weaken(const std::string &signal, const std::string &thing, const std::string &time,
                     const std::string &instead)
{
    if (!m_known.emplace(signal, thing).second)
        return;
    m_couldWeaken = true;
    Add(!m_mayWeaken, "signal " + Quote(signal) + ": " + thing + (time.empty() ? "" : ", first at " + time + ",") +
                          " has no place in " + m_form + (m_mayWeaken ? ", and is written as " : "; --weaken writes ") +
                          instead + (m_mayWeaken ? "" : " instead"));
}

void CLosses::Refuse(const std::string &signal, const std::string &why)
{
    if (m_known.emplace(signal, why).second)
        Add(true, (signal.empty() ? "" : "signal " + Quote(signal) + ": ") + why);
}

void CLosses::Fault(const std::string &line)
{
    m_hasError = true;
    if (m_known.emplace("", line).second)
        m_lines.push_back(line);
}

void CLosses::Note(const std::string &signal, const std::string &what)
{
    if (m_known.emplace(signal, what).second)
        Add(false, (signal.empty() ? "" : "signal " + Quote(signal) + ": ") + what);
}

void CLosses::Tell() const
{
    for (const std::string &line : m_lines)
        std::fprintf(stderr, "tesk: %s\n", MessageLine(line).c_str());
    if (m_hasError)
        throw CRefusal("nothing is written: " + m_form + " cannot say all of the bench" +
                       (m_couldWeaken ? "; --weaken writes the nearest there is" : ""));
}

}  // namespace tesk
