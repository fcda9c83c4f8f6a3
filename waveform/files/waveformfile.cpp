#include "waveform/files/waveformfile.h"

#include <utility>

#include "waveform/files/elementswalk.h"

namespace tesk {

namespace {

// Elements that have a walk each.
class CWalks {
public:
    void Add(std::unique_ptr<IElementWalk> walk)
    {
        m_elements.push_back({std::move(walk), 0, 0, 0, true});
        Fetch(m_elements.back());
    }

    bool HasNext(std::size_t element) const { return m_elements[element].hasNext; }
    long long NextTime(std::size_t element) const { return m_elements[element].nextTime; }
    void Take(std::size_t element)
    {
        m_elements[element].value = m_elements[element].nextValue;
        Fetch(m_elements[element]);
    }
    std::uint64_t Value(std::size_t element) const { return m_elements[element].value; }

private:
    struct SElement {
        std::unique_ptr<IElementWalk> walk;
        long long nextTime;
        std::uint64_t nextValue;
        std::uint64_t value;
        bool hasNext;
    };

    static void Fetch(SElement &element) { element.hasNext = element.walk->Next(element.nextTime, element.nextValue); }

    std::vector<SElement> m_elements;
};

}  // namespace

bool IsOfEnumeration(const SFileSignal &signal)
{
    const Kestrin::KTypeInfo *const element = signal.type.GetArrayElementKTypeInfo();
    return KindOf(element != nullptr ? *element : signal.type) == Kestrin::ETypeKind::Enumeration;
}

std::vector<SElements> ElementsOf(const std::vector<SFileSignal> &signals)
{
    std::vector<SElements> elements;
    elements.reserve(signals.size());
    for (const SFileSignal &signal : signals)
        elements.push_back({signal.firstElement, signal.elementCount});
    return elements;
}

std::unique_ptr<IElementsWalk> IWaveformFile::WalkTogether(long long first, std::size_t count, std::size_t)
{
    CWalks walks;
    for (std::size_t i = 0; i < count; ++i) {
        std::unique_ptr<IElementWalk> walk = Walk(first + static_cast<long long>(i));
        if (walk == nullptr)
            return nullptr;
        walks.Add(std::move(walk));
    }
    return MakeElementsWalk(std::move(walks), count);
}

}  // namespace tesk
