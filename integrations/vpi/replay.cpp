#include "integrations/vpi/replay.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "integrations/vpi/design.h"
#include "integrations/vpi/hierarchicalname.h"
#include "integrations/vpi/recordedclocks.h"
#include "integrations/vpi/session.h"
#include "integrations/vpi/simulator.h"
#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/quote.h"
#include "waveform/files/filewalk.h"

namespace tesk::vpi {

namespace {

using Kestrin::ETypeKind;
using CRawValues = std::vector<std::optional<std::uint64_t>>;

// A signal of the design that follows one of the file.
class CFollower {
public:
    // @throw CRefusal if it cannot
    CFollower(const SFileSignal &recorded, vpiHandle object) : m_signal(object), m_kind(KindOf(recorded.type))
    {
        m_signal.CheckStrength(Strength());
        const Kestrin::KTypeInfo *element = recorded.type.GetArrayElementKTypeInfo();
        const Kestrin::KTypeInfo &scalar = element != nullptr ? *element : recorded.type;
        m_kind = KindOf(scalar);
        if (m_kind == ETypeKind::Enumeration)
            NoteLetters(scalar);
        const bool isReal = m_signal.Contents() == EContents::Real;
        const bool hasBits = m_kind == ETypeKind::Enumeration && !m_letters.empty();
        const bool fits = hasBits ? !isReal && recorded.elementCount == BitsOf(m_signal)
                                  : element == nullptr && isReal == (m_kind == ETypeKind::Real);
        if (!fits)
            throw CRefusal(m_signal.Name() + " is of the type " + Quote(recorded.type.GetTypeIdentifier()) +
                           " in the file, which does not fit the signal of the design");
    }

    void Put(const CRawValues &values)
    {
        if (m_kind == ETypeKind::Enumeration)
            PutLetters(values);
        else if (m_kind == ETypeKind::Real)
            m_signal.PutReal(std::bit_cast<double>(values.front().value_or(0)), Strength());
        else
            m_signal.PutInteger(static_cast<std::int32_t>(values.front().value_or(0)), Strength());
    }

private:
    static EStrength Strength() { return Simulator().hasForce ? EStrength::Override : EStrength::Deposit; }

    static long long BitsOf(const CDesignSignal &signal)
    {
        constexpr long long IntegerBits = 32;
        return signal.Contents() == EContents::Integer ? IntegerBits : signal.Width();
    }

    // The letter at each position; none if a literal is no letter.
    void NoteLetters(const Kestrin::KTypeInfo &type)
    {
        constexpr int MostLiterals = 16;
        for (int position = 0; position < MostLiterals; ++position) {
            const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(position), 0};
            const std::string literal = type.GetValueString_OldFormat(bytes.data(), 0, 0, 0, false);
            if (literal.size() > 1)
                return m_letters.clear();
            m_letters += literal;
        }
    }

    void PutLetters(const CRawValues &values)
    {
        std::string letters(values.size(), 'x');
        bool isWhole = true;
        for (std::size_t i = 0; i < values.size(); ++i) {
            isWhole = isWhole && values[i].has_value();
            if (values[i] && *values[i] < m_letters.size())
                letters[i] = m_letters[static_cast<std::size_t>(*values[i])];
        }
        if (!isWhole && m_signal.Contents() == EContents::Letters) {
            const std::string shown = m_signal.Read();
            for (std::size_t i = 0; i < values.size(); ++i)
                letters[i] = values[i] ? letters[i] : shown[i];
        }
        m_signal.PutLetters(std::move(letters), Strength());
    }

    CDesignSignal m_signal;
    ETypeKind m_kind;
    std::string m_letters;
};

// Walks the file along with the simulation.
class CReplay : public IPart, public IWoken {
public:
    CReplay(std::unique_ptr<IWaveformFile> file, const std::vector<SFileSignal> &signals,
            std::vector<CFollower> followers)
        : m_file(std::move(file)), m_isClock(FindClocks(*m_file, signals)), m_followers(std::move(followers)),
          m_walk(*m_file, signals), m_resolution(m_file->GetResolution()), m_begin(Now())
    {
        m_hasChange = m_walk.Next();
    }
    CReplay(const CReplay &) = delete;

    // Clocks are put first. What was launched by their edges when the file was recorded changes when the design has seen them,
    // as it did then.
    long long Wake(long long now) override
    {
        bool hasClock = false;
        for (; m_hasChange && NextTime() <= now; m_hasChange = m_walk.Next()) {
            const std::size_t signal = m_walk.GetSignal();
            if (m_isClock[signal])
                m_followers[signal].Put(m_walk.GetValues());
            else
                m_late.emplace_back(signal, m_walk.GetValues());
            hasClock = hasClock || m_isClock[signal];
        }
        if (!hasClock || m_late.empty() || CallAfterReaction(Reacted, this) == nullptr)
            PutLate();
        return m_hasChange ? NextTime() : -1;
    }

private:
    static PLI_INT32 Reacted(t_cb_data *data)
    {
        reinterpret_cast<CReplay *>(data->user_data)->PutLate();
        return 0;
    }

    void PutLate()
    {
        for (const auto &[signal, values] : m_late)
            m_followers[signal].Put(values);
        m_late.clear();
    }

    long long NextTime() const
    {
        const long long ticks = TicksOf(m_walk.GetTime(), m_resolution);
        return ticks > std::numeric_limits<long long>::max() - m_begin ? std::numeric_limits<long long>::max()
                                                                       : m_begin + ticks;
    }

    std::unique_ptr<IWaveformFile> m_file;
    std::vector<bool> m_isClock;  // by the places of the signals in the walk; so the next
    std::vector<CFollower> m_followers;
    CFileWalk m_walk;
    long long m_resolution;    // femtoseconds per tick of the file
    long long m_begin;         // ticks; where the file begins
    bool m_hasChange = false;  // the walk stands at one that is not put
    std::vector<std::pair<std::size_t, CRawValues>> m_late;
};

// What a signal of the file is called below the scope; empty if it is not there.
std::string NameBelow(const std::string &scope, const std::string &path)
{
    if (scope.empty())
        return path;
    const bool isBelow =
        path.size() > scope.size() + 1 && path[scope.size()] == '.' && IsLikeGlob(path.substr(0, scope.size()), scope);
    return isBelow ? path.substr(scope.size() + 1) : "";
}

std::string Below(const std::string &scope, const std::string &name)
{
    return scope.empty() ? name : scope + "." + name;
}

// The names below the scope that are to be driven: of patterns, else of the inputs that the scope has in the design.
class CChoice {
public:
    explicit CChoice(const SBenchReplay &replay) : m_globs(replay.drive)
    {
        if (!m_globs.empty())
            return;
        for (const std::string &input : InputsOf(replay.to))
            m_inputs.push_back(input.substr(replay.to.size() + 1));
        if (m_inputs.empty())
            throw CRefusal(Quote(replay.to) +
                           " has no inputs that the simulator tells of; write drive = [\"clk\", \"din*\"]");
    }

    bool Has(const std::string &name)
    {
        if (m_globs.empty())
            return std::ranges::any_of(m_inputs, [&](const std::string &input) { return IsSameName(input, name); });
        const auto glob =
            std::ranges::find_if(m_globs, [&](const std::string &each) { return IsLikeGlob(name, each); });
        if (glob == m_globs.end())
            return false;
        return true;
    }

    // Tells the patterns of no signal.
    void TellUnused(const std::vector<std::string> &names, const std::string &place) const
    {
        for (const std::string &glob : m_globs) {
            const bool isUsed =
                std::ranges::any_of(names, [&](const std::string &name) { return IsLikeGlob(name, glob); });
            if (!isUsed)
                Tell(ESeverity::Error, place,
                     "the file has no signal " + Quote(glob) + " to drive" + DidYouMean(glob, names));
        }
    }

private:
    std::vector<std::string> m_globs;
    std::vector<std::string> m_inputs;
};

}  // namespace

void StartReplay(const SBenchReplay &replay, const std::string &place)
{
    std::unique_ptr<IWaveformFile> file = OpenWaveFile(replay.file);
    CChoice choice(replay);
    std::vector<SFileSignal> signals;
    std::vector<CFollower> followers;
    std::vector<std::string> names;
    for (const SFileSignal &recorded : file->GetSignals()) {
        const std::string name = NameBelow(replay.scope, recorded.path);
        if (name.empty())
            continue;
        names.push_back(name);
        if (!choice.Has(name))
            continue;
        const std::string target = Below(replay.to, name);
        try {
            followers.emplace_back(recorded, FindObject(target));
            signals.push_back(recorded);
        } catch (const CRefusal &refusal) {
            Tell(ESeverity::Error, place, refusal.what());
        }
    }
    if (names.empty())
        throw CRefusal(replay.file + ": there is nothing below " + Quote(replay.scope) +
                       " in the file; \"tesk signals " + replay.file + "\" lists its signals");
    choice.TellUnused(names, place);
    if (!replay.compare.empty())
        Tell(ESeverity::Warning, place,
             "nothing is compared in the simulation; compare its dump with that file by \"tesk diff\"");
    if (signals.empty())
        throw CRefusal(replay.file + ": there is nothing to drive");
    auto player = std::make_unique<CReplay>(std::move(file), signals, std::move(followers));
    CSession &session = CSession::Current();
    session.WakeUps().At(Now(), *player);
    session.Add(std::move(player));
}

}  // namespace tesk::vpi
