#include "integrations/vpi/replay.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "integrations/vpi/design.h"
#include "integrations/vpi/hierarchicalname.h"
#include "integrations/vpi/recordedclocks.h"
#include "integrations/vpi/recordedports.h"
#include "integrations/vpi/recordmatch.h"
#include "integrations/vpi/runcomparison.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/compare/scopemap.h"
#include "tools/examine/nearname.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "waveform/files/filewalk.h"

namespace tesk::vpi {

namespace {

using Kestrin::ETypeKind;

// The positions of an enumeration as bits of the simulator.
struct SBitLiterals {
    std::array<char, 256> letters = {};          // 0 for none
    std::array<std::uint8_t, 256> unknown = {};  // 1 for what is neither 0 nor 1
    bool isWhole = false;                        // all literals are letters of bits
};

SBitLiterals ReadLiterals(const Kestrin::KTypeInfo &type)
{
    constexpr int MostLiterals = 16;
    SBitLiterals literals;
    literals.unknown.fill(1);
    for (int position = 0; position < MostLiterals; ++position) {
        const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(position), 0};
        const std::string literal = type.GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
        const char letter = literal.size() == 1 ? SimulatorLetter(literal[0]) : '\0';
        literals.isWhole = letter == 0 && literal.empty() && position > 0;
        if (letter == 0)
            break;
        literals.letters[static_cast<std::size_t>(position)] = letter;
        literals.unknown[static_cast<std::size_t>(position)] = letter == '0' || letter == '1' ? 0 : 1;
    }
    return literals;
}

// Of a type; signals share what there is to know of it, so that a thousand of them stay near each other in memory.
const SBitLiterals &LiteralsOf(const Kestrin::KTypeInfo &type)
{
    static std::map<std::string, SBitLiterals> s_literals;
    const auto [place, isNew] = s_literals.try_emplace(type.GetTypeInfoString());
    if (isNew)
        place->second = ReadLiterals(type);
    return place->second;
}

// A signal of the design that follows one of the file.
class CFollower {
public:
    // @param isWhole  whether the one is the other; else bits of it are, each by itself
    // @throw CRefusal if it cannot
    CFollower(const SFileSignal &recorded, vpiHandle object, bool isWhole)
        : m_signal(object), m_kind(KindOf(recorded.type)),
          m_strength(Simulator().hasForce ? EStrength::Override : EStrength::Deposit)
    {
        m_signal.CheckStrength(m_strength);
        const Kestrin::KTypeInfo *element = recorded.type.GetArrayElementKTypeInfo();
        const Kestrin::KTypeInfo &scalar = element != nullptr ? *element : recorded.type;
        m_kind = KindOf(scalar);
        m_literals = &LiteralsOf(scalar);
        m_takesNumber = isWhole && recorded.elementCount <= MostBits && Simulator().takesNumbers;
        const bool isReal = m_signal.Contents() == EContents::Real;
        const bool hasBits = m_kind == ETypeKind::Enumeration && m_literals->isWhole;
        const long long bits = isWhole ? recorded.elementCount : BitsOf(m_signal);
        m_value.resize(static_cast<std::size_t>(bits));
        const bool fits =
            hasBits ? !isReal && bits == BitsOf(m_signal)
                    : element == nullptr && m_kind != ETypeKind::Enumeration && isReal == (m_kind == ETypeKind::Real);
        if (!fits)
            throw CRefusal(m_signal.Name() + " is of the type " + Quote(recorded.type.GetTypeIdentifier()) +
                           " in the file, which does not fit the signal of the design");
    }

    // Notes the value that the walk has come to.
    void Take(const CFileWalk &walk)
    {
        const std::span<const std::uint8_t> positions = walk.GetPositions();
        m_isNumber = m_kind != ETypeKind::Enumeration || TakeNumber(positions);
        if (m_kind != ETypeKind::Enumeration)
            m_number = walk.GetValues().front().value_or(0);
        else if (m_isNumber)
            return;
        else if (!positions.empty())
            std::ranges::transform(positions, m_value.begin(),
                                   [this](std::uint8_t position) { return m_literals->letters[position]; });
        else
            TakeValues(walk.GetValues());
    }

    // The same of one bit. @return whether it is another one than before
    bool TakeBit(const CFileWalk &walk, std::size_t element, std::size_t bit)
    {
        const std::uint64_t position = walk.GetValues()[element].value_or(m_literals->letters.size());
        const char letter =
            position < m_literals->letters.size() ? m_literals->letters[static_cast<std::size_t>(position)] : '\0';
        return std::exchange(m_value[bit], letter) != letter;
    }

    void Put()
    {
        if (m_kind == ETypeKind::Real)
            return m_signal.PutReal(std::bit_cast<double>(m_number), m_strength);
        if (m_isNumber)
            return m_signal.PutInteger(static_cast<std::int32_t>(m_number), m_strength);
        if (m_value.find('\0') == std::string::npos)
            return m_signal.PutLetters(m_value, m_strength);
        const std::string shown = m_signal.Read();
        std::string letters = m_value;
        for (std::size_t i = 0; i < letters.size(); ++i)
            letters[i] = letters[i] != 0 ? letters[i] : shown[i];
        m_signal.PutLetters(letters, m_strength);
    }

private:
    static constexpr long long MostBits = 32;  // of a number

    static long long BitsOf(const CDesignSignal &signal)
    {
        constexpr long long IntegerBits = 32;
        return signal.Contents() == EContents::Integer ? IntegerBits : signal.Width();
    }

    // What is nothing but 0 and 1 is a number, which is put quicker. @return false for any other value
    bool TakeNumber(std::span<const std::uint8_t> positions)
    {
        if (positions.empty() || !m_takesNumber)
            return false;
        std::uint32_t bits = 0, unknown = 0;
        for (const std::uint8_t position : positions) {
            bits = bits << 1 | (static_cast<std::uint32_t>(m_literals->letters[position]) & 1U);
            unknown |= m_literals->unknown[position];
        }
        m_number = bits;
        return unknown == 0;
    }

    void TakeValues(const CElementValues &values)
    {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::uint64_t position = values[i].value_or(m_literals->letters.size());
            const bool isLiteral = position < m_literals->letters.size();
            m_value[i] = isLiteral ? m_literals->letters[static_cast<std::size_t>(position)] : '\0';
        }
    }

    CDesignSignal m_signal;
    ETypeKind m_kind;
    EStrength m_strength;
    const SBitLiterals *m_literals = nullptr;
    bool m_takesNumber = false;
    std::string m_value;         // letters, 0 for none
    std::uint64_t m_number = 0;  // bits that are all known, or the raw value of any other scalar
    bool m_isNumber = false;
};

// What changes in the design with a signal of the walk.
struct SFollowing {
    std::size_t follower;
    bool isWhole;
    std::size_t element = 0;  // of the recorded signal, if it is not followed as a whole
    std::size_t bit = 0;      // of the design's
};

// What is played: recorded signals, what follows each of them, and those signals of the design.
struct SPlayed {
    std::vector<SFileSignal> signals;
    std::vector<std::vector<SFollowing>> followings;
    std::vector<CFollower> followers;
};

// Walks the file along with the simulation.
class CReplay : public IPart, public IWoken {
public:
    CReplay(std::shared_ptr<IWaveformFile> file, SPlayed played, std::string place)
        : m_place(std::move(place)), m_file(std::move(file)), m_isClock(FindClocks(*m_file, played.signals)),
          m_followings(std::move(played.followings)), m_followers(std::move(played.followers)),
          m_isLate(m_followers.size()), m_walk(*m_file, played.signals), m_resolution(m_file->GetResolution()),
          m_begin(Now())
    {
        m_hasClocks = std::ranges::find(m_isClock, true) != m_isClock.end();
        GoOn();
    }
    CReplay(const CReplay &) = delete;

    // Clocks are put first. What was launched by their edges when the file was recorded changes when the design has seen them,
    // as it did then.
    long long Wake(long long now) override
    {
        bool hasClock = false;
        while (m_hasChange && m_next <= now) {
            const std::size_t signal = m_walk.GetSignal();
            for (const SFollowing &following : m_followings[signal])
                Follow(following, m_isClock[signal] || !m_hasClocks);
            hasClock = hasClock || m_isClock[signal];
            GoOn();
        }
        if (!hasClock || m_late.empty() || CallAfterReaction(Reacted, this) == nullptr)
            PutLate();
        return m_hasChange ? m_next : -1;
    }

private:
    static PLI_INT32 Reacted(t_cb_data *data)
    {
        reinterpret_cast<CReplay *>(data->user_data)->PutLate();
        return 0;
    }

    // A vector whose bits are recorded one by one is put when all that change now are known.
    void Follow(const SFollowing &following, bool isAtOnce)
    {
        CFollower &follower = m_followers[following.follower];
        if (following.isWhole)
            follower.Take(m_walk);
        else if (!follower.TakeBit(m_walk, following.element, following.bit))
            return;
        if (isAtOnce && following.isWhole) {
            follower.Put();
        } else if (!m_isLate[following.follower]) {
            m_isLate[following.follower] = true;
            m_late.push_back(following.follower);
        }
    }

    void PutLate()
    {
        for (const std::size_t follower : m_late) {
            m_isLate[follower] = false;
            m_followers[follower].Put();
        }
        m_late.clear();
    }

    // The simulator knows no exceptions: a file that cannot be read any further is at its end.
    bool HasNext()
    {
        try {
            return m_walk.Next();
        } catch (const std::exception &fault) {
            Tell(ESeverity::Error, m_place, fault.what() + std::string("; nothing of it is replayed any more"));
            FailAtExit();
            return false;
        }
    }

    void GoOn()
    {
        const long long before = m_hasChange ? m_walk.GetTime() : -1;
        m_hasChange = HasNext();
        if (!m_hasChange || m_walk.GetTime() == before)
            return;
        const long long ticks = TicksOf(m_walk.GetTime(), m_resolution);
        constexpr long long Largest = std::numeric_limits<long long>::max();
        m_next = ticks > Largest - m_begin ? Largest : m_begin + ticks;
    }

    std::string m_place;  // in the bench
    std::shared_ptr<IWaveformFile> m_file;
    std::vector<bool> m_isClock;                        // of each signal of the walk
    std::vector<std::vector<SFollowing>> m_followings;  // the same
    std::vector<CFollower> m_followers;
    std::vector<bool> m_isLate;  // of each follower
    CFileWalk m_walk;
    bool m_hasClocks = false;
    long long m_resolution;           // femtoseconds per tick of the file
    long long m_begin;                // ticks; where the file begins
    long long m_next = -1;            // ticks; of the change at which the walk stands
    bool m_hasChange = false;         // the walk stands at one that is not put
    std::vector<std::size_t> m_late;  // followers whose values are still to be put
};

// The names below the scope that are to be driven: of patterns, else of the inputs of the scope.
class CChoice {
public:
    CChoice(IWaveformFile &file, const SBenchReplay &replay) : m_globs(replay.drive)
    {
        if (m_globs.empty())
            m_inputs = PortsBelow(file, replay.scope, ESignalDirection::In);
        if (!m_globs.empty() || !m_inputs.empty())
            return;
        for (const std::string &input : InputsOf(replay.to))
            m_inputs.push_back(input.substr(replay.to.size() + 1));
        if (m_inputs.empty() && replay.compare.empty())
            throw CRefusal(Quote(replay.to) +
                           " has no inputs that the simulator tells of; write drive = [\"clk\", \"din*\"]");
    }

    bool Has(const std::string &name)
    {
        if (m_globs.empty())
            return std::ranges::any_of(m_inputs, [&](const std::string &input) { return IsOfPort(name, input); });
        const auto glob =
            std::ranges::find_if(m_globs, [&](const std::string &each) { return IsLikePattern(name, each); });
        if (glob == m_globs.end())
            return false;
        return true;
    }

    // Tells the patterns of no signal.
    void TellUnused(const std::vector<std::string> &names, const std::string &place) const
    {
        for (const std::string &glob : m_globs) {
            const bool isUsed =
                std::ranges::any_of(names, [&](const std::string &name) { return IsLikePattern(name, glob); });
            if (!isUsed)
                Tell(ESeverity::Error, place,
                     "the file has no signal " + Quote(glob) + " to drive" + DidYouMean(glob, names));
        }
    }

private:
    std::vector<std::string> m_globs;
    std::vector<std::string> m_inputs;
};

// Of a file that counts more finely than the simulation does.
void TellRounding(IWaveformFile &file, const SBenchReplay &replay, const std::string &place)
{
    if (file.GetResolution() % Resolution() != 0)
        Tell(ESeverity::Warning, place,
             replay.file + " counts in " + TickText(1, file.GetResolution()) + ", the simulation in " +
                 TickText(1, Resolution()) + ": its times are rounded down");
}

// The followers of matches, but of signals for which a formula of the bench stands in.
SPlayed FollowersOf(IWaveformFile &file, const std::vector<SMatch> &matches,
                    const std::function<void(const CRefusal &)> &refuse)
{
    SPlayed played;
    std::map<std::size_t, std::size_t> places;  // of recorded signals, in the walk
    const auto follow = [&](std::size_t signal, const SFollowing &following) {
        const auto [place, isNew] = places.try_emplace(signal, played.signals.size());
        if (isNew) {
            played.signals.push_back(file.GetSignals()[signal]);
            played.followings.emplace_back();
        }
        played.followings[place->second].push_back(following);
    };
    for (const SMatch &match : matches) {
        try {
            if (CSession::Current().IsStimulated(FullName(match.object)))
                continue;
            const std::size_t follower = played.followers.size();
            played.followers.emplace_back(file.GetSignals()[match.signal], match.object, match.bits.empty());
            if (match.bits.empty())
                follow(match.signal, {follower, true});
            for (const SMatchedBit &bit : match.bits)
                follow(bit.signal, {follower, false, bit.element, bit.bit});
        } catch (const CRefusal &refusal) {
            refuse(refusal);
        }
    }
    return played;
}

}  // namespace

void StartReplay(const SBenchReplay &replay, const SReplayTimes &times, const std::string &place)
{
    const std::shared_ptr<IWaveformFile> file = OpenWaveFile(replay.file);
    CChoice choice(*file, replay);
    std::vector<SRecorded> recorded;
    std::vector<std::string> names, driven;
    const std::vector<SFileSignal> &all = file->GetSignals();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto below = NameBelow(all[i].path, replay.scope);
        if (!below || below->empty())
            continue;
        names.emplace_back(*below);
        if (choice.Has(names.back()))
            recorded.push_back({i, JoinName(replay.to, *below)});
    }
    if (names.empty())
        throw CRefusal(replay.file + ": there is nothing below " + Quote(replay.scope) +
                       " in the file; \"tesk signals " + replay.file + "\" lists its signals");
    const auto refuse = [&](const CRefusal &refusal) { Tell(ESeverity::Error, place, refusal.what()); };
    SPlayed played = FollowersOf(*file, MatchRecord(*file, recorded, refuse), refuse);
    for (const SFileSignal &signal : played.signals)
        driven.emplace_back(*NameBelow(signal.path, replay.scope));
    choice.TellUnused(names, place);
    TellRounding(*file, replay, place);
    const bool isCompared = StartRunComparison(file, {replay, place, times.tolerance, times.from, times.until, driven});
    if (played.signals.empty() && !isCompared)
        throw CRefusal(replay.file + ": there is nothing to drive, and nothing to compare");
    if (played.signals.empty())
        return;
    auto player = std::make_unique<CReplay>(file, std::move(played), place);
    CSession &session = CSession::Current();
    session.WakeUps().At(Now(), *player);
    session.Add(std::move(player));
}

}  // namespace tesk::vpi
