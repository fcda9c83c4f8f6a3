// The commands of a VCD file, among its declarations and its values.
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/felvarbase.h"
#include "platform/names/signalname.h"
#include "platform/vcd/vcdreader.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

namespace {

constexpr std::size_t LongestBody = std::size_t{1} << 24;

}  // namespace

void CVcdReader::ReadCommand(std::string_view word)
{
    const SVcdCommand *const known = FindVcdCommand(word);
    if (known == nullptr)
        return SkipBody(std::string(word));
    m_hasCommands |= known->command != EVcdCommand::End;
    switch (known->command) {
    case EVcdCommand::Skip: return SkipBody(known->name);
    case EVcdCommand::Timescale: return SetTimescale(ReadBody(known->name));
    case EVcdCommand::Scope: return OpenScope(ReadBody(known->name));
    case EVcdCommand::Upscope: return CloseScope(ReadBody(known->name));
    case EVcdCommand::Variable: return Declare(ReadBody(known->name));
    case EVcdCommand::EndDefinitions: m_areValues = true; return SkipBody(known->name);
    case EVcdCommand::Section: m_openSection = known->name; return;
    case EVcdCommand::End: m_openSection = {}; return;
    case EVcdCommand::Close: return ReadTime(ReadBody(known->name));
    }
}

// @param command  not from the buffer, which moves
void CVcdReader::SkipBody(std::string_view command)
{
    std::string_view word;
    while (m_text.NextWord(word)) {
        if (word == "$end")
            return;
    }
    throw SVcdFault{"the file ends inside " + QuoteVcdWord(command)};
}

// @return the words up to "$end", with a blank behind each
std::string_view CVcdReader::ReadBody(std::string_view command)
{
    m_body.clear();
    std::string_view word;
    while (m_text.NextWord(word)) {
        if (word == "$end")
            return m_body;
        m_body.append(word).append(" ");
        if (m_body.size() > LongestBody)
            throw SVcdFault{QuoteVcdWord(command) + " has more than " + std::to_string(LongestBody) + " bytes"};
    }
    throw SVcdFault{"the file ends inside " + QuoteVcdWord(command)};
}

// Among the values it comes too late.
void CVcdReader::SetTimescale(std::string_view body)
{
    if (!m_areValues)
        m_resolution = ReadVcdTimescale(body);
}

// A scope's type, then its name. A scope without a name is no level of the path.
void CVcdReader::OpenScope(std::string_view body)
{
    m_scopeEnds.push_back(m_scope.size());
    TakeVcdWord(body);
    std::string_view name = TakeVcdWord(body);
    if (name.empty())
        return;
    std::string words;
    for (; !name.empty(); name = TakeVcdWord(body))
        words.append(words.empty() ? "" : " ").append(name);
    m_scope.append(SpellSignalName(words)).append(1, GetVHDLHierarchySeparator());
}

// One that is not open is not missed.
void CVcdReader::CloseScope(std::string_view)
{
    if (m_scopeEnds.empty())
        return;
    m_scope.resize(m_scopeEnds.back());
    m_scopeEnds.pop_back();
}

void CVcdReader::Declare(std::string_view body)
{
    const SVcdVariable variable = ReadVcdVariable(body);
    if (++m_variables > m_mostVariables)
        throw SVcdFault{"there are more than " + std::to_string(m_mostVariables) +
                        " variables, too many for a file of this size"};
    m_nameBytes += static_cast<long long>(m_scope.size() + variable.name.size());
    if (m_nameBytes > m_mostNameBytes)
        throw SVcdFault{"the names up to here have more than " + std::to_string(m_mostNameBytes) +
                        " bytes, too many for a file of this size"};
    m_values.Declare(variable, m_scope + variable.name);
    if (variable.kind == EVcdKind::String && IsFirst(EOddity::Strings))
        Warn("variables of kind string are left out");
    if (variable.kind == EVcdKind::Empty && IsFirst(EOddity::Empty))
        Warn("variables of width 0 are left out");
}

}  // namespace NTARN::NImport
