// The form wavejson read.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/exchange/importforms.h"
#include "tools/exchange/jsvalue.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

using EKind = SJsValue::EKind;

constexpr std::size_t MostEvents = 1 << 21;  // of all lanes

const SJsValue *FindText(const SJsValue &object, std::string_view name)
{
    const SJsValue *value = object.Find(name);
    return value != nullptr && value->Is(EKind::Text) ? value : nullptr;
}

// The labels of bricks: a list, or one text with blanks between.
std::vector<std::string> Labels(const SJsValue &lane)
{
    std::vector<std::string> labels;
    const SJsValue *data = lane.Find("data");
    if (data == nullptr)
        return labels;
    for (const SJsValue &label : data->elements)
        labels.push_back(label.text);
    if (!data->Is(EKind::Text))
        return labels;
    for (std::size_t at = 0; (at = data->text.find_first_not_of(' ', at)) != data->text.npos;) {
        const std::size_t end = std::min(data->text.find(' ', at), data->text.size());
        labels.push_back(data->text.substr(at, end - at));
        at = end;
    }
    return labels;
}

bool IsClockBrick(char brick)
{
    return std::string_view("pPnN").find(brick) != std::string_view::npos;
}

bool IsHeld(char brick)
{
    return brick == '.' || brick == '|';
}

// Reads one lane.
class CLaneReader {
public:
    /// @param step   femtoseconds of a brick
    /// @param count  of the events of all lanes
    CLaneReader(const SJsValue &lane, long long step, SImportedSignal &signal, std::size_t &count)
        : m_lane(lane), m_step(step), m_labels(Labels(lane)), m_signal(signal), m_count(count)
    {}

    /// @return femtoseconds; where the lane ends
    long long Read(const std::string &wave)
    {
        ReadMore();
        m_width = Length("period", 1);
        if (m_width <= 0)
            throw CRefusal("a period has to be above 0");
        m_phase = Length("phase", 0);
        const long long end = BrickTime(wave.size());
        if (IsClockBrick(wave[0]) && std::ranges::all_of(wave.substr(1), IsHeld))
            ReadClock(wave[0]);
        else
            ReadBricks(wave);
        DropBeforeBegin();
        return end;
    }

private:
    // What the export leaves for the way back.
    void ReadMore()
    {
        const SJsValue *more = m_lane.Find("tesk");
        if (more == nullptr)
            return;
        if (const SJsValue *type = FindText(*more, "type")) {
            ReadTypeArgument(type->text);
            m_signal.type = type->text;
        }
        if (const SJsValue *strength = FindText(*more, "strength"))
            m_signal.strength = strength->text == "deposit" ? EStrength::Deposit
                                : strength->text == "drive" ? EStrength::Drive
                                                            : EStrength::Override;
        const SJsValue *radix = FindText(*more, "radix");
        m_isHexadecimal = radix != nullptr && radix->text == "hex";
        const SJsValue *undriven = more->Find("undriven");
        m_isUndriven = undriven != nullptr && undriven->number != 0;
    }

    // A member that counts bricks, in femtoseconds.
    long long Length(std::string_view name, double absent) const
    {
        const SJsValue *value = m_lane.Find(name);
        const double bricks = value != nullptr ? value->number : absent;
        const double length = bricks * static_cast<double>(m_step);
        if (value != nullptr && !value->Is(EKind::Number))
            throw CRefusal(std::string(name) + " is a number");
        if (!(std::fabs(length) < 1e17))
            throw CRefusal(std::string(name) + " is too long");
        return std::llround(length);
    }

    long long BrickTime(std::size_t brick) const
    {
        const double time = static_cast<double>(m_width) * static_cast<double>(brick);
        if (time > 9e18)
            throw CRefusal("the wave is too long");
        return m_width * static_cast<long long>(brick) - m_phase;
    }

    void Add(long long time, std::optional<std::string> value)
    {
        if (++m_count > MostEvents)
            throw CRefusal("the waves have more changes than can be held");
        m_signal.events.push_back({time, std::move(value)});
    }

    void AddCycle(char brick, long long time)
    {
        const bool beginsHigh = brick == 'p' || brick == 'P';
        Add(time, beginsHigh ? "1" : "0");
        Add(time + m_width / 2, beginsHigh ? "0" : "1");
    }

    // A whole lane of a clock goes on for ever.
    void ReadClock(char brick)
    {
        if (m_phase != 0)
            throw CRefusal("a clock with a phase has no equivalent; draw its levels");
        AddCycle(brick, 0);
        m_signal.repeat = m_width;
    }

    void ReadBricks(const std::string &wave)
    {
        char clock = 0;  // the one that goes on
        for (std::size_t i = 0; i < wave.size(); ++i) {
            const char brick = wave[i];
            if (!IsHeld(brick))
                clock = IsClockBrick(brick) ? brick : '\0';
            if (clock != 0)
                AddCycle(clock, BrickTime(i));
            else if (!IsHeld(brick))
                Add(BrickTime(i), Value(brick, i));
            else if (i == 0)
                throw CRefusal("the wave begins with nothing that it could hold");
        }
    }

    std::optional<std::string> Value(char brick, std::size_t index)
    {
        constexpr std::string_view Bricks = "01lLhHxud";
        constexpr std::string_view Values = "010011XHL";
        if (brick == 'z')
            return m_isUndriven ? std::nullopt : std::optional<std::string>("Z");
        if (brick == '=' || (brick >= '2' && brick <= '9'))
            return Label(index);
        const std::size_t known = Bricks.find(brick);
        if (known == Bricks.npos)
            throw CRefusal("brick " + std::to_string(index + 1) + " of the wave, " + Quote(std::string(1, brick)) +
                           ", has no equivalent");
        return std::string(1, Values[known]);
    }

    std::string Label(std::size_t index)
    {
        if (m_nextLabel == m_labels.size())
            throw CRefusal("brick " + std::to_string(index + 1) + " of the wave has no label in its data");
        const std::string &label = m_labels[m_nextLabel++];
        if (label.empty())
            throw CRefusal("label " + std::to_string(m_nextLabel) + " of the data is no text and no number");
        const std::size_t width = Width();
        if (!m_isHexadecimal || label.size() == width)
            return label;
        const auto bits = LiteralBits("16#" + label);
        if (!bits)
            return label;
        if (width == 0 || bits->size() < width)
            return *bits;
        return bits->substr(bits->size() - width);
    }

    // Bits of the type; 0 if it has none.
    std::size_t Width() const
    {
        if (m_signal.type.empty())
            return 0;
        const Kestrin::KTypeInfo type(ReadTypeArgument(m_signal.type).c_str());
        return static_cast<std::size_t>(std::max(type.GetNbOfElements(), 0LL));
    }

    // A phase moves changes in front of the beginning, where the last of them holds.
    void DropBeforeBegin()
    {
        std::vector<SImportedEvent> &events = m_signal.events;
        const auto first = std::ranges::find_if(events, [](const SImportedEvent &event) { return event.time > 0; });
        if (first == events.begin())
            return;
        events.erase(events.begin(), first - 1);
        events.front().time = 0;
    }

    const SJsValue &m_lane;
    long long m_step;
    std::vector<std::string> m_labels;
    SImportedSignal &m_signal;
    std::size_t &m_count;
    std::size_t m_nextLabel = 0;
    long long m_width = 0;  // femtoseconds of a brick of this lane
    long long m_phase = 0;
    bool m_isHexadecimal = false, m_isUndriven = false;
};

class CWaveReader {
public:
    CWaveReader(const SImportOptions &options, CImported &imported)
        : m_options(options), m_imported(imported), m_step(options.unit)
    {}

    void Read(const SJsValue &root)
    {
        const SJsValue *signal = root.Find("signal");
        if (signal == nullptr || !signal->Is(EKind::Array))
            return m_imported.Refuse(root.line, "it has no list \"signal\"");
        if (const SJsValue *more = root.Find("tesk"); more != nullptr && !ReadMore(*more))
            return;
        if (m_step <= 0)
            return m_imported.Refuse(root.line, "a brick has to take longer than 0");
        ReadLanes(*signal, 0, "");
        if (!m_imported.until && m_end > 0)
            m_imported.until = m_end;
    }

private:
    bool ReadMore(const SJsValue &more)
    {
        for (const auto &[name, value] : more.members) {
            const auto time = ReadImportedTime(value.text, 1);
            if (!time) {
                m_imported.Refuse(value.line, Quote(name) + " is no time, such as \"10ns\"");
                return false;
            }
            if (name == "step") {
                m_step = *time;
                m_isStepTold = true;
            }
            if (name == "until")
                m_imported.until = *time;
            if (name == "resolution" && *time > 0)
                m_imported.resolution = *time;
        }
        return true;
    }

    // A group is a list that begins with its name.
    void ReadLanes(const SJsValue &list, std::size_t first, const std::string &scope)
    {
        for (std::size_t i = first; i < list.elements.size(); ++i) {
            const SJsValue &lane = list.elements[i];
            if (lane.Is(EKind::Array))
                ReadGroup(lane, scope);
            else if (lane.Is(EKind::Object))
                ReadLane(lane, scope);
            else
                m_imported.Refuse(lane.line, "neither a lane nor a group");
        }
    }

    void ReadGroup(const SJsValue &group, const std::string &scope)
    {
        const bool isNamed = !group.elements.empty() && group.elements[0].Is(EKind::Text);
        ReadLanes(group, isNamed ? 1 : 0, isNamed ? Join(scope, group.elements[0].text) : scope);
    }

    static std::string Join(const std::string &scope, const std::string &name)
    {
        return scope.empty() ? name : scope + "." + name;
    }

    // Lanes without a wave are gaps in the picture.
    void ReadLane(const SJsValue &lane, const std::string &scope)
    try {
        const SJsValue *wave = FindText(lane, "wave");
        const SJsValue *name = FindText(lane, "name");
        if (wave == nullptr || wave->text.empty())
            return;
        if (name == nullptr || name->text.empty())
            throw CRefusal("the lane has no name");
        const std::string full = Join(scope, name->text);
        if (m_imported.Find(full) != nullptr)
            throw CRefusal("the lane " + Quote(full) + " stands twice");
        TellStep(lane.line);
        SImportedSignal read{full, {}, EStrength::Override, {}, 0, std::nullopt, lane.line};
        m_end = std::max(m_end, CLaneReader(lane, m_step, read, m_count).Read(wave->text));
        m_imported.Signal(full) = read;
    } catch (const CRefusal &refusal) {
        m_imported.Refuse(lane.line, refusal.what());
    }

    void TellStep(int line)
    {
        if (!m_isStepTold && !m_options.isUnitTold)
            m_imported.Warn(line, "a brick counts " + TimeText(m_step) + "; --unit tells another");
        m_isStepTold = true;
    }

    const SImportOptions &m_options;
    CImported &m_imported;
    long long m_step;  // femtoseconds of a brick
    bool m_isStepTold = false;
    std::size_t m_count = 0;
    long long m_end = 0;  // femtoseconds
};

}  // namespace

void ImportWaveJson(const std::string &text, const SImportOptions &options, CImported &imported)
{
    SJsValue root;
    const SJsFault fault = ReadJsValue(text, root);
    if (fault.line != 0)
        return imported.Refuse(fault.line, fault.why);
    CWaveReader(options, imported).Read(root);
}

}  // namespace tesk
