// Signals at random, and the files that hold them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tools/compare/memoryfile.h"

namespace randomside {

// What an element shows at a tick: a letter, or a number as text; empty for no value yet.
using CShown = std::string;

struct SRandomSignal {
    std::string name;
    enum EKind { Levels, Integer, Real } kind = Levels;
    std::vector<std::map<long long, CShown>> elements = {};  // by time in units that both files have
};

struct SRandomSide {
    std::vector<SRandomSignal> signals;
    long long end = 0;
};

class CDice {
public:
    explicit CDice(unsigned seed) : m_random(seed) {}
    long long To(long long last)
    {
        return static_cast<long long>(m_random() % static_cast<unsigned long long>(last + 1));
    }
    bool OneIn(long long count) { return To(count - 1) == 0; }
    template <class TItem>
    const TItem &Of(const std::vector<TItem> &items)
    {
        return items[static_cast<std::size_t>(To(std::ssize(items) - 1))];
    }

private:
    std::mt19937 m_random;
};

inline constexpr long long Times = 40;

inline CShown RandomValue(CDice &dice, const SRandomSignal &signal)
{
    static const std::string Letters = "UX01ZWLH-0101010101";
    if (signal.kind == SRandomSignal::Levels)
        return std::string(1, Letters[static_cast<std::size_t>(dice.To(std::ssize(Letters) - 1))]);
    return std::to_string(dice.To(6) - 2);
}

inline SRandomSide RandomSide(CDice &dice)
{
    SRandomSide side;
    const long long count = 1 + dice.To(3);
    for (long long i = 0; i < count; ++i) {
        SRandomSignal signal{"tb.s" + std::to_string(i),
                             dice.Of<SRandomSignal::EKind>({SRandomSignal::Levels, SRandomSignal::Levels,
                                                            SRandomSignal::Integer, SRandomSignal::Real})};
        signal.elements.resize(signal.kind == SRandomSignal::Levels ? static_cast<std::size_t>(1 + dice.To(3)) : 1);
        for (auto &events : signal.elements) {
            for (long long changes = dice.To(8); changes > 0; --changes)
                events[dice.To(Times)] = RandomValue(dice, signal);
            if (!dice.OneIn(3))
                events.try_emplace(0, RandomValue(dice, signal));
        }
        side.signals.push_back(signal);
    }
    side.end = Times + dice.To(2);
    return side;
}

// Plants differences: a change moves, comes too often, does not come, or has another value.
inline void Spoil(CDice &dice, SRandomSide &side)
{
    for (long long count = dice.To(3); count > 0; --count) {
        SRandomSignal &signal = side.signals[static_cast<std::size_t>(dice.To(std::ssize(side.signals) - 1))];
        auto &events = signal.elements[static_cast<std::size_t>(dice.To(std::ssize(signal.elements) - 1))];
        const auto event = std::next(events.begin(), events.empty() ? 0 : dice.To(std::ssize(events) - 1));
        const long long what = dice.To(3);
        if (what == 0 || events.empty()) {
            events[dice.To(Times)] = RandomValue(dice, signal);
        } else if (what == 1) {
            events.erase(event);
        } else if (what == 2) {
            event->second = RandomValue(dice, signal);
        } else {
            const CShown value = event->second;
            const long long time = std::clamp(event->first + dice.To(6) - 3, 0LL, Times);
            events.erase(event);
            events[time] = value;
        }
    }
    if (dice.OneIn(4))
        side.end -= dice.To(12);
    for (SRandomSignal &signal : side.signals) {
        for (auto &events : signal.elements)
            events.erase(events.upper_bound(side.end), events.end());
    }
}

// The letter that a type of four states has for one of nine.
inline char InFourStates(char letter)
{
    switch (letter) {
    case '0':
    case 'L': return '0';
    case '1':
    case 'H': return '1';
    case 'Z': return 'Z';
    default: return 'X';
    }
}

inline CElementEvents EventsOf(const SRandomSignal &signal, std::size_t element, const std::string &letters,
                               long long unit)
{
    CElementEvents events;
    for (const auto &[time, shown] : signal.elements[element]) {
        std::uint64_t value = 0;
        if (signal.kind == SRandomSignal::Levels)
            value = letters.find(letters.size() == 4 ? InFourStates(shown[0]) : shown[0]);
        else if (signal.kind == SRandomSignal::Integer)
            value = static_cast<std::uint32_t>(std::stoi(shown));
        else
            value = std::bit_cast<std::uint64_t>(std::stod(shown));
        events.emplace_back(time * unit, value);
    }
    return events;
}

// Writes a side in one of the ways in which it can be written: buses or bits, in any order, with aliases.
inline CMemoryFile FileOf(CDice &dice, SRandomSide &side, long long unit, long long resolution)
{
    CMemoryFile file(resolution, side.end * unit);
    std::vector<std::size_t> order(side.signals.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::rotate(order.begin(), order.begin() + dice.To(std::ssize(order) - 1), order.end());
    for (const std::size_t i : order) {
        SRandomSignal &signal = side.signals[i];
        const bool isFour = dice.OneIn(2);
        const std::string letters = isFour ? "01ZX" : "UX01ZWLH-";
        const std::string type = signal.kind == SRandomSignal::Integer ? Integers
                                 : signal.kind == SRandomSignal::Real  ? Reals
                                 : isFour                              ? FourStates
                                                                       : NineStates;
        std::vector<CElementEvents> elements;
        for (std::size_t element = 0; element < signal.elements.size(); ++element)
            elements.push_back(EventsOf(signal, element, letters, unit));
        if (isFour) {  // what the file has is what is compared
            for (auto &events : signal.elements) {
                for (auto &[time, shown] : events) {
                    if (signal.kind == SRandomSignal::Levels)
                        shown[0] = InFourStates(shown[0]);
                }
            }
        }
        const auto width = static_cast<int>(elements.size());
        if (width == 1) {
            file.Add(signal.name, type, elements);
        } else if (dice.OneIn(2)) {
            file.Add(signal.name, VectorType(width - 1, 0, type), elements);
        } else {
            for (int bit = 0; bit < width; ++bit)
                file.Add(signal.name + '[' + std::to_string(bit) + ']', type,
                         {elements[static_cast<std::size_t>(width - 1 - bit)]});
        }
        if (width == 1 && signal.kind != SRandomSignal::Levels)
            file.AddAlias(signal.name + "_alias", file.GetSignals().size() - 1);
    }
    return file;
}

inline CShown ShownAt(const std::map<long long, CShown> &events, long long time)
{
    const auto behind = events.upper_bound(time);
    return behind == events.begin() ? "" : std::prev(behind)->second;
}

}  // namespace randomside
