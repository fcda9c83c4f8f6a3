#include "tools/exchange/forcereader.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <utility>

#include "base/extendedid.h"
#include "tools/commandline.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

bool IsEarlier(const SImportedEvent &first, const SImportedEvent &second)
{
    return first.time < second.time;
}

}  // namespace

std::vector<std::string> BlankSeparated(const std::string &text)
{
    std::vector<std::string> words;
    std::size_t at = 0;
    while ((at = text.find_first_not_of(" \t\r\n", at)) != text.npos) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\n", at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

void CForceReader::Read(const std::string &script)
{
    ForEachTclCommand(script, [this](const STclCommand &command) { Read(command); });
}

long long CForceReader::Time(const std::string &text)
{
    const auto time = ReadImportedTime(text, m_options.unit);
    if (!time)
        throw CRefusal(Quote(text) + " is no time of 0 or later, such as 10ns");
    const bool hasUnit = text.find_first_not_of("0123456789. \t") != text.npos;
    if (!hasUnit && *time != 0 && !m_options.isUnitTold && !std::exchange(m_isUnitTold, true))
        m_imported.Warn(m_line, "a time without a unit counts " + TimeText(m_options.unit) + "; --unit tells another");
    return *time;
}

long long CForceReader::EventTime(const std::string &text)
{
    if (text.starts_with('@')) {
        const long long time = Time(text.substr(1));
        if (time < m_now)
            throw CRefusal(Quote(text) + " has passed when the command comes");
        return time;
    }
    return Later(Time(text));
}

void CForceReader::Run(std::vector<std::string> words)
{
    words.erase(words.begin());
    std::string time;
    for (const std::string &word : words)
        time += (time.empty() ? "" : " ") + word;
    if (time == "-all" || time == "all" || time.empty())
        return m_imported.Warn(m_line,
                               "a run without a time is left out; what comes behind it counts from where it began");
    m_now = Later(Time(time));
}

std::vector<std::string> CForceReader::TakeSwitches(const std::vector<std::string> &words, SForced &forced)
{
    std::vector<std::string> rest;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto meaning = FindSwitch(words[i]);
        if (!meaning) {
            rest.push_back(words[i]);
            continue;
        }
        const bool hasArgument =
            *meaning == ESwitch::Repeat || *meaning == ESwitch::Cancel || *meaning == ESwitch::Radix;
        if (hasArgument && i + 1 == words.size())
            throw CRefusal(Quote(words[i]) + " has nothing behind it");
        Switch(*meaning, hasArgument ? words[++i] : std::string(), forced);
    }
    return rest;
}

void CForceReader::Force(const SForced &forced)
{
    const std::string name = NameOfPath(forced.path);
    if (name.empty())
        throw CRefusal("it names no signal");
    if (forced.events.empty())
        throw CRefusal("it has no value");
    SImportedSignal &signal = m_imported.Signal(name);
    signal.line = m_line;
    SPending &pending = m_pending[name];
    if (!signal.events.empty())
        Join(signal, forced, pending);
    pending.commanded = m_now;
    signal.strength = forced.strength;
    signal.repeat = forced.repeat;
    signal.cancel = forced.cancel;
    signal.events.insert(signal.events.end(), forced.events.begin(), forced.events.end());
}

void CForceReader::Release(const std::string &path)
{
    const std::string name = NameOfPath(path);
    SImportedSignal *signal = m_imported.Find(name);
    if (signal == nullptr)
        return m_imported.Warn(m_line, Quote(path) + " is not forced");
    signal->line = m_line;
    SPending &pending = m_pending[name];
    Settle(*signal, pending);
    pending.commanded = m_now;
    signal->events.push_back({m_now, std::nullopt});
}

void CForceReader::AddEvent(const std::string &time, const std::string &value, SForced &forced)
{
    forced.events.push_back({EventTime(time), Value(value, forced.radix)});
    Hold(forced.events.back());
}

// A value as the events of a signal take it.
std::string CForceReader::Value(const std::string &text, const std::string &radix)
{
    std::string literal = text;
    constexpr std::string_view Numeric = "hex oct bin";
    if (!radix.empty() && Numeric.find(radix.substr(0, 3)) != Numeric.npos && text.find_first_of("#'\"") == text.npos)
        literal = (radix[0] == 'h' ? "16#" : radix[0] == 'o' ? "8#" : "2#") + text;
    if (const auto bits = LiteralBits(literal))
        return *bits;
    if (text.starts_with("10#"))
        return text.substr(3);
    return text;
}

void CForceReader::Read(const STclCommand &command)
try {
    m_line = command.line;
    if (command.words.empty())
        return;
    if (command.words[0].starts_with('#'))
        return ReadNote(command.words[0]);
    if (command.isOpen)
        throw CRefusal("braces or quotes are not closed");
    if (command.isComputed && IsForce(command.words[0]))
        throw CRefusal("variables, and commands in brackets, are not computed; put names with brackets in braces");
    if (ReadCommand(command.words))
        return;
    // A loop or a procedure might force what is not seen here.
    for (std::size_t i = 1; i < command.words.size(); ++i) {
        for (const std::string &word : BlankSeparated(command.words[i])) {
            if (IsForce(word))
                throw CRefusal("a " + word + " inside of " + Quote(command.words[0]) + " is not read");
        }
    }
    m_imported.Warn(m_line, Quote(command.words[0]) + " is left out");
} catch (const CRefusal &refusal) {
    m_imported.Refuse(m_line, refusal.what());
}

// What the export leaves for the way back.
void CForceReader::ReadNote(const std::string &comment)
{
    constexpr std::string_view Mark = "# tesk: ";
    if (!comment.starts_with(Mark))
        return;
    const std::string note = comment.substr(Mark.size());
    const std::size_t blank = note.find(' ');
    const std::string key = note.substr(0, blank);
    const std::string text = blank != note.npos ? note.substr(blank + 1) : "";
    if (key == "resolution" || key == "until") {
        const long long time = Time(text);
        if (key == "until")
            m_imported.until = time;
        else if (time > 0)
            m_imported.resolution = time;
        return;
    }
    if (key == "type")
        ReadType(text);
}

// PATH TYPE; an extended identifier of the path may hold blanks.
void CForceReader::ReadType(const std::string &text)
{
    std::size_t end = 0;
    while (end < text.size() && text[end] != ' ')
        end += std::max<std::size_t>(1, ExtendedLength(std::string_view(text).substr(end)));
    if (end >= text.size())
        throw CRefusal("a type stands behind its path");
    const std::string type = text.substr(end + 1);
    ReadTypeArgument(type);
    m_imported.Signal(NameOfPath(text.substr(0, end))).type = type;
}

// A word, or the beginning of one that is the only such.
std::optional<ESwitch> CForceReader::FindSwitch(const std::string &word) const
{
    const bool isSwitch = word.size() > 1 && word[0] == '-' && std::isalpha(static_cast<unsigned char>(word[1])) != 0;
    if (!isSwitch)
        return std::nullopt;
    const SSwitch *found = nullptr;
    for (const SSwitch &known : Switches()) {
        if (known.name == word)
            return known.meaning;
        if (!known.name.starts_with(word))
            continue;
        if (found != nullptr)
            throw CRefusal(Quote(word) + " may be " + std::string(found->name) + " or " + std::string(known.name));
        found = &known;
    }
    // A row of letters may begin with a dash, too.
    if (found == nullptr && LiteralBits(word))
        return std::nullopt;
    if (found == nullptr)
        throw CRefusal("no switch " + Quote(word) + " is known");
    return found->meaning;
}

void CForceReader::Switch(ESwitch meaning, const std::string &argument, SForced &forced)
{
    switch (meaning) {
    case ESwitch::Freeze: forced.strength = EStrength::Override; break;
    case ESwitch::Deposit: forced.strength = EStrength::Deposit; break;
    case ESwitch::Drive: forced.strength = EStrength::Drive; break;
    case ESwitch::Cancel: forced.cancel = EventTime(argument); break;
    case ESwitch::Radix: forced.radix = argument; break;
    case ESwitch::Nothing: break;
    case ESwitch::Repeat:
        forced.repeat = Time(argument);
        if (forced.repeat == 0)
            throw CRefusal("a period of 0");
        break;
    }
}

void CForceReader::Hold(const SImportedEvent &event)
{
    constexpr std::size_t MostBytes = 1 << 26;
    m_held += sizeof event + event.value.value_or("").size();
    if (m_held > MostBytes)
        throw CRefusal("there are more values than can be held");
}

// A force that is commanded later than others ends them, and takes the place of what they have from now on. Those commanded at
// one time are one, unless they repeat themselves or end.
void CForceReader::Join(SImportedSignal &signal, const SForced &forced, SPending &pending)
{
    const bool isLater = m_now > pending.commanded;
    if (!isLater && (signal.repeat != 0 || forced.repeat != 0 || signal.cancel))
        throw CRefusal("the signal is forced again while a force goes on that is repeated or cancelled");
    if (isLater)
        Settle(signal, pending);
    if (forced.repeat != 0 && !signal.events.empty())
        throw CRefusal("a repeated force behind other values cannot be said in a formula");
}

// What was commanded before, with all its rounds, up to now.
void CForceReader::Settle(SImportedSignal &signal, SPending &pending)
{
    const auto begin = [&] { return signal.events.begin() + static_cast<std::ptrdiff_t>(pending.settled); };
    std::stable_sort(begin(), signal.events.end(), IsEarlier);
    const long long end = std::min(signal.cancel.value_or(m_now), m_now);
    const std::vector<SImportedEvent> round(begin(), signal.events.end());
    std::vector<SImportedEvent> rounds;  // the signal stays as it is if they are too many
    const long long first = round.empty() ? end : round.front().time;
    for (long long offset = signal.repeat; offset > 0 && offset < end - first; offset += signal.repeat) {
        for (const SImportedEvent &event : round) {
            Hold(event);
            rounds.push_back({event.time + offset, event.value});
        }
        if (signal.repeat > end - first - offset)
            break;
    }
    signal.events.insert(signal.events.end(), rounds.begin(), rounds.end());
    std::stable_sort(begin(), signal.events.end(), IsEarlier);
    signal.events.erase(std::lower_bound(begin(), signal.events.end(), SImportedEvent{end, {}}, IsEarlier),
                        signal.events.end());
    if (signal.cancel && *signal.cancel <= m_now && !signal.events.empty())
        signal.events.push_back({*signal.cancel, std::nullopt});
    pending.settled = signal.events.size();
    signal.repeat = 0;
    signal.cancel.reset();
}

long long CForceReader::Later(long long time) const
{
    constexpr long long Latest = 9'200'000'000'000'000'000;
    if (time > Latest - m_now)
        throw CRefusal("a time beyond 9.2e18 fs, about 2.5 hr");
    return m_now + time;
}

}  // namespace tesk
