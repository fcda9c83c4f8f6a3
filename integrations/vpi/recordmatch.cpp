#include "integrations/vpi/recordmatch.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "integrations/vpi/design.h"
#include "integrations/vpi/designsignal.h"
#include "integrations/vpi/hierarchicalname.h"
#include "tools/compare/signalpairs.h"
#include "tools/files/selectedfile.h"

namespace tesk::vpi {

namespace {

// The place of an index in a range, from the left.
std::optional<std::size_t> PlaceIn(long long left, long long right, long long index)
{
    if (index < std::min(left, right) || index > std::max(left, right))
        return std::nullopt;
    return static_cast<std::size_t>(left >= right ? left - index : index - left);
}

class CRecordMatching {
public:
    CRecordMatching(IWaveformFile &file, const std::function<void(const CRefusal &)> &refuse)
        : m_file(file), m_refuse(refuse)
    {}

    void Add(const SRecorded &recorded)
    {
        if (IsOfLevels(recorded) && AddBit(recorded))
            return;
        try {
            m_matches.push_back({FindObject(recorded.name), recorded.signal, {}});
        } catch (const CRefusal &refusal) {
            if (!IsOfLevels(recorded) || !AddElements(recorded))
                m_refuse(refusal);
        }
    }

    std::vector<SMatch> Take()
    {
        for (SMatch &match : m_matches)
            std::ranges::sort(match.bits, {}, &SMatchedBit::bit);
        return std::move(m_matches);
    }

private:
    struct SVector {
        std::size_t match = None;  // its place; none before the first bit was found
        vpiHandle object = nullptr;
        long long left = 0;
        long long right = 0;
    };
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    const SFileSignal &Signal(const SRecorded &recorded) const { return m_file.GetSignals()[recorded.signal]; }
    bool IsOfLevels(const SRecorded &recorded) const { return IsOfEnumeration(Signal(recorded)); }

    // A vector of the design by its name; without an object if there is none.
    SVector &Vector(const std::string &name)
    {
        const auto [known, isNew] = m_vectors.try_emplace(name);
        if (!isNew)
            return known->second;
        try {
            const vpiHandle object = FindObject(name);
            const CDesignSignal signal(object);
            if (signal.HasIndices())
                known->second = {None, object, signal.Left(), signal.Right()};
        } catch (const CRefusal &) {
            // then its bits have names of their own
        }
        return known->second;
    }

    // Takes what is recorded as "v[1]" for a bit of the vector "v".
    bool AddBit(const SRecorded &recorded)
    {
        const std::string plain = PlainName(recorded.name);
        const SIndexedName name = TakeIndex(plain);
        if (!name.index || Signal(recorded).elementCount != 1)
            return false;
        SVector &vector = Vector(std::string(name.base));
        const auto bit = vector.object != nullptr ? PlaceIn(vector.left, vector.right, *name.index) : std::nullopt;
        if (!bit)
            return false;
        if (vector.match == None) {
            vector.match = m_matches.size();
            m_matches.push_back({vector.object, recorded.signal, {}});
        }
        m_matches[vector.match].bits.push_back({recorded.signal, 0, *bit});
        return true;
    }

    // Takes the elements of the bus "v" for the signals "v[1]" and so on. @return whether there is any
    bool AddElements(const SRecorded &recorded)
    {
        const SFileSignal &signal = Signal(recorded);
        int left = 0;
        int right = 0;
        int direction = 0;
        if (signal.elementCount == 1 || !signal.type.GetArrayDimensionRanges(0, left, right, direction))
            return false;
        const std::size_t before = m_matches.size();
        for (std::size_t i = 0; i < static_cast<std::size_t>(signal.elementCount); ++i) {
            const auto step = static_cast<long long>(i);
            const long long index = direction == 0 ? left + step : left - step;
            try {
                const vpiHandle object = FindObject(recorded.name + '[' + std::to_string(index) + ']');
                m_matches.push_back({object, recorded.signal, {{recorded.signal, i, 0}}});
            } catch (const CRefusal &) {
                if (m_matches.size() == before)
                    return false;
            }
        }
        return true;
    }

    IWaveformFile &m_file;
    const std::function<void(const CRefusal &)> &m_refuse;
    std::map<std::string, SVector> m_vectors;
    std::vector<SMatch> m_matches;
};

}  // namespace

bool IsOfPort(std::string_view name, std::string_view port)
{
    const std::string plainName = PlainName(name);
    const std::string plainPort = PlainName(port);
    return IsSameName(plainName, plainPort) || IsSameName(TakeIndex(plainName).base, plainPort) ||
           IsSameName(plainName, TakeIndex(plainPort).base);
}

bool IsLikePattern(std::string_view name, std::string_view glob)
{
    const std::string plain = PlainName(name);
    return IsLikeGlob(name, glob) || IsLikeGlob(plain, glob) || IsLikeGlob(TakeIndex(plain).base, glob);
}

std::vector<SMatch> MatchRecord(IWaveformFile &file, const std::vector<SRecorded> &recorded,
                                const std::function<void(const CRefusal &)> &refuse)
{
    CRecordMatching matching(file, refuse);
    for (const SRecorded &each : recorded)
        matching.Add(each);
    return matching.Take();
}

}  // namespace tesk::vpi
