// The form wavejson: what WaveDrom draws.
#include <algorithm>
#include <cstddef>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/exchange/forms.h"
#include "tools/exchange/simpath.h"
#include "tools/quote.h"
#include "tools/timetext.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

using CJson = nlohmann::ordered_json;

// More bricks than a picture can show.
constexpr long long MostBricks = 20000;

// A clock that is drawn as one: half a period of each level from 0 to the end.
struct SDrawnClock {
    bool beginsHigh;
    long long period;  // ticks
};

std::optional<SDrawnClock> FindClock(const SCourse &course, const SCourses &courses)
{
    const std::vector<SChange> &changes = course.changes;
    const bool isBit = course.shape == EShape::Bits && !course.isVector;
    if (!isBit || !courses.until || changes.size() < 4 || changes[0].ticks != 0)
        return std::nullopt;
    const long long half = changes[1].ticks;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const std::string level = changes[i].value.value_or("");
        const bool isOther = level == (changes[0].value == "1" ? "0" : "1");
        const bool isLevel = i % 2 == 0 ? level == changes[0].value : isOther;
        if (!isLevel || changes[i].ticks != half * static_cast<long long>(i))
            return std::nullopt;
    }
    const bool isLevel = changes[0].value == "1" || changes[0].value == "0";
    if (!isLevel || changes.back().ticks + half <= *courses.until)
        return std::nullopt;
    return SDrawnClock{changes[0].value == "1", 2 * half};
}

// The distance of times at which something changes.
long long FindStep(const SCourses &courses)
{
    long long step = 0;
    for (const SCourse &course : courses.signals) {
        if (const auto clock = FindClock(course, courses)) {
            step = std::gcd(step, clock->period);
            continue;
        }
        for (const SChange &change : course.changes)
            step = std::gcd(step, change.ticks);
    }
    return step != 0 ? step : std::max(courses.end, 1LL);
}

class CLaneWriter {
public:
    CLaneWriter(const SCourses &courses, long long step, CLosses &losses)
        : m_courses(courses), m_step(step), m_bricks(courses.end / step + 1), m_losses(losses)
    {}

    CJson Lane(const SCourse &course, const std::string &name) const
    {
        CJson lane = {{"name", name}};
        CJson more = CJson::object();
        if (const auto clock = FindClock(course, m_courses))
            WriteClock(*clock, lane);
        else
            WriteBricks(course, lane, more);
        if (!course.typeName.empty())
            more["type"] = course.typeName;
        if (course.strength != EStrength::Override)
            more["strength"] = course.strength == EStrength::Deposit ? "deposit" : "drive";
        if (!more.empty())
            lane["tesk"] = more;
        return lane;
    }

private:
    void WriteClock(const SDrawnClock &clock, CJson &lane) const
    {
        const auto bricks = static_cast<std::size_t>(m_courses.end / clock.period);
        lane["wave"] = (clock.beginsHigh ? "p" : "n") + std::string(bricks, '.');
        if (clock.period != m_step)
            lane["period"] = clock.period / m_step;
    }

    void WriteBricks(const SCourse &course, CJson &lane, CJson &more) const
    {
        const bool isUndriven = IsUndriven(course);
        std::string wave(static_cast<std::size_t>(m_bricks), '.');
        wave[0] = 'z';
        CJson data = CJson::array();
        bool isHexadecimal = false;
        std::optional<std::string> before;
        for (std::size_t i = 0; i < course.changes.size(); ++i) {
            const SChange &change = course.changes[i];
            const bool isReplaced = i + 1 < course.changes.size() && course.changes[i + 1].ticks == change.ticks;
            if (isReplaced || (change.value == before && change.ticks > 0))
                continue;
            before = change.value;
            char &brick = wave[static_cast<std::size_t>(change.ticks / m_step)];
            brick = Brick(course, change);
            if (brick == '=')
                data.push_back(Label(course, *change.value, isHexadecimal));
        }
        lane["wave"] = wave;
        if (!data.empty())
            lane["data"] = data;
        if (isHexadecimal)
            more["radix"] = "hex";
        if (isUndriven)
            more["undriven"] = true;
    }

    static bool IsBit(const SCourse &course) { return course.shape == EShape::Bits && !course.isVector; }

    // Whether "z" stands for no value. A bit that is Z, too, has one letter for both.
    bool IsUndriven(const SCourse &course) const
    {
        const SChange *none = nullptr;
        const SChange begin{0, std::nullopt};
        bool hasZ = false;
        if (course.changes.empty() || course.changes[0].ticks > 0)
            none = &begin;
        for (const SChange &change : course.changes) {
            if (!change.value && none == nullptr)
                none = &change;
            hasZ = hasZ || (IsBit(course) && (change.value == "Z" || change.value == "z"));
        }
        if (none != nullptr && hasZ)
            m_losses.Weaken(course.name, "no value beside Z", TickText(none->ticks, m_courses.resolution), "z");
        return none != nullptr && !hasZ;
    }

    char Brick(const SCourse &course, const SChange &change) const
    {
        if (!change.value)
            return 'z';
        if (!IsBit(course))
            return '=';
        constexpr std::string_view Letters = "01XZLH";
        constexpr std::string_view Bricks = "01xzdu";
        const std::string letter = FullBits(course, *change.value);
        const std::size_t known = Letters.find(letter);
        if (letter.size() == 1 && known != Letters.npos)
            return Bricks[known];
        m_losses.Weaken(course.name, letter, TickText(change.ticks, m_courses.resolution), "x");
        return 'x';
    }

    static std::string Label(const SCourse &course, const std::string &value, bool &isHexadecimal)
    {
        if (course.shape != EShape::Bits)
            return value;
        std::string bits = FullBits(course, value);
        const bool isKnown = bits.find_first_not_of("01") == bits.npos;
        if (!isKnown || bits.size() <= 4)
            return bits;
        isHexadecimal = true;
        return BitsInRadix(bits, ERadix::Hexadecimal);
    }

    const SCourses &m_courses;
    long long m_step;
    long long m_bricks;
    CLosses &m_losses;
};

// Lanes of a scope stand in a group of its name, one in another.
class CGroups {
public:
    explicit CGroups(CJson &lanes) : m_open({&lanes}) {}

    void Add(const std::vector<std::string> &scopes, const CJson &lane)
    {
        std::size_t kept = 0;
        while (kept < scopes.size() && kept < m_scopes.size() && scopes[kept] == m_scopes[kept])
            ++kept;
        m_open.resize(kept + 1);
        for (std::size_t i = kept; i < scopes.size(); ++i) {
            m_open.back()->push_back(CJson::array({scopes[i]}));
            m_open.push_back(&m_open.back()->back());
        }
        m_scopes = scopes;
        m_open.back()->push_back(lane);
    }

private:
    std::vector<CJson *> m_open;  // the list of all lanes, and the groups that are open
    std::vector<std::string> m_scopes;
};

// One lane on a line, for a reader.
void WriteLanes(std::ostream &out, const CJson &lanes, std::size_t depth)
{
    for (std::size_t i = 0; i < lanes.size(); ++i) {
        const std::string margin(2 * depth, ' ');
        out << (i == 0 ? "\n" : ",\n") << margin;
        if (!lanes[i].is_array()) {
            out << lanes[i].dump(-1, ' ', false, CJson::error_handler_t::replace);
            continue;
        }
        out << '[';
        WriteLanes(out, lanes[i], depth + 1);
        out << '\n' << margin << ']';
    }
}

}  // namespace

void WriteWaveJson(std::ostream &out, const SCourses &courses, const SFormOptions &, CLosses &losses)
{
    const long long step = FindStep(courses);
    if (courses.end / step >= MostBricks) {
        losses.Refuse("", "the picture would be " + std::to_string(courses.end / step + 1) +
                              " bricks wide, since changes are " + TickText(step, courses.resolution) +
                              " apart; give an earlier --until");
        return;
    }
    const CLaneWriter writer(courses, step, losses);
    CJson lanes = CJson::array();
    CGroups groups(lanes);
    for (const SCourse &course : courses.signals) {
        std::vector<std::string> parts = NameParts(course.name);
        const std::string name = parts.back();
        parts.pop_back();
        groups.Add(parts, writer.Lane(course, name));
    }
    CJson more = {{"resolution", TickText(1, courses.resolution)}, {"step", TickText(step, courses.resolution)}};
    if (courses.until)
        more["until"] = TickText(*courses.until, courses.resolution);
    out << "{\n\"tesk\": " << more.dump() << ",\n\"signal\": [";
    WriteLanes(out, lanes, 1);
    out << "\n]\n}\n";
}

}  // namespace tesk
