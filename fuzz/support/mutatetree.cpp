#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "fuzz/support/mutators.h"
#include "platform/files/bytereader.h"

namespace fuzz {

namespace {

constexpr std::size_t Most = 1 << 12;
constexpr int MostDepth = 50;
constexpr const char *Words[] = {"Stimulator",
                                 "VBus",
                                 "Handle",
                                 "MaxTime",
                                 "Name",
                                 "Display Mode",
                                 "Mode",
                                 "Color",
                                 "1",
                                 "-1",
                                 "100",
                                 "6",
                                 "",
                                 "FRM:FRM:Drive:1 0ns, 0 5ns:i:1:10ns",
                                 "KEY:KEY:Default:65/force:i:0:",
                                 "a(3).f"};

using CProperty = std::pair<CBytes, CBytes>;

// A signal as it is saved: its properties, and the signals in it.
struct SSavedSignal {
    std::vector<CProperty> properties;
    std::vector<SSavedSignal> children;
};
using CSavedSignals = std::vector<SSavedSignal>;

std::uint16_t TakeWord(tesk::CByteReader &bytes)
{
    return bytes.Little<std::uint16_t>();
}

CBytes TakeText(tesk::CByteReader &bytes)
{
    const auto text = bytes.Take(TakeWord(bytes));
    return {text.begin(), text.end()};
}

CSavedSignals TakeSignals(tesk::CByteReader &bytes, int depth)
{
    if (depth > MostDepth)
        throw tesk::XByteDamage();
    CSavedSignals signals;
    for (int left = TakeWord(bytes); left > 0; --left) {
        SSavedSignal &signal = signals.emplace_back();
        for (int properties = TakeWord(bytes); properties > 0; --properties) {
            CBytes key = TakeText(bytes);
            signal.properties.emplace_back(std::move(key), TakeText(bytes));
        }
        signal.children = TakeSignals(bytes, depth + 1);
    }
    return signals;
}

void PutWord(CBytes &bytes, std::size_t word)
{
    bytes.push_back(static_cast<std::uint8_t>(word));
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
}

void PutText(CBytes &bytes, const CBytes &text)
{
    PutWord(bytes, text.size());
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void PutSignals(CBytes &bytes, const CSavedSignals &signals)
{
    PutWord(bytes, signals.size());
    for (const SSavedSignal &signal : signals) {
        PutWord(bytes, signal.properties.size());
        for (const auto &[key, value] : signal.properties) {
            PutText(bytes, key);
            PutText(bytes, value);
        }
        PutSignals(bytes, signal.children);
    }
}

CBytes Word(std::mt19937 &random)
{
    const std::string word = Words[random() % std::size(Words)];
    return {word.begin(), word.end()};
}

void MutateText(CBytes &text, std::mt19937 &random)
{
    if (random() % 2 == 0)
        text = Word(random);
    else
        MutateBytes(text, Most);
}

// Any place in a list that is not empty.
template <class List>
auto Place(List &list, std::mt19937 &random)
{
    return list.begin() + static_cast<std::ptrdiff_t>(random() % list.size());
}

void MutateProperties(std::vector<CProperty> &properties, std::mt19937 &random)
{
    if (properties.empty() || random() % 4 == 0) {
        CBytes key = Word(random);
        properties.emplace_back(std::move(key), Word(random));
        return;
    }
    const auto place = Place(properties, random);
    switch (random() % 4) {
    case 0: properties.erase(place); break;
    case 1: return MutateText(place->first, random);
    default: return MutateText(place->second, random);
    }
}

void MutateSignals(CSavedSignals &signals, std::mt19937 &random)
{
    if (signals.empty()) {
        signals.emplace_back();
        return;
    }
    const auto place = Place(signals, random);
    switch (random() % 8) {
    case 0: signals.push_back(SSavedSignal(*place)); break;
    case 1: signals.erase(place); break;
    case 2:
    case 3:
    case 4: return MutateSignals(place->children, random);
    default: return MutateProperties(place->properties, random);
    }
}

}  // namespace

bool MutateTree(CBytes &file, std::mt19937 &random)
try {
    tesk::CByteReader bytes(file);
    CSavedSignals signals = TakeSignals(bytes, 0);
    MutateSignals(signals, random);
    file.clear();
    PutSignals(file, signals);
    return true;
} catch (const tesk::XByteDamage &) {
    return false;
}

}  // namespace fuzz
