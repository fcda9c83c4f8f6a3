#include "waveform/files/vcdopening.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/log.h"

namespace tesk {

CVcdOpening::CVcdOpening(const std::string &path) : m_path(path), m_store(std::make_unique<WaveStore>())
{
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(this);
    importer.setVcdFileName(path);
    importer.vcdImport();
    m_declaredSignals = m_store->GetSignalCount();
    m_declaredWords = m_words.size();
}

void CVcdOpening::Begin(IVcdEvents &events)
{
    m_events = &events;
    m_isBegun = true;
}

void CVcdOpening::ReadAll()
{
    m_isBegun = true;
    while (Step()) {
    }
}

void CVcdOpening::SkipAll()
{
    Begin(m_nobody);
    while (Step()) {
    }
}

bool CVcdOpening::IsLike(CVcdOpening &other)
{
    const auto isLike = [&](std::size_t i) {
        const SStoredSignal one = m_store->GetSignal(i);
        const SStoredSignal two = other.m_store->GetSignal(i);
        return std::string_view(one.name) == two.name && one.firstHandle == two.firstHandle &&
               one.lastHandle == two.lastHandle &&
               m_store->GetOriginal(one.firstHandle) == other.m_store->GetOriginal(two.firstHandle) &&
               std::string_view(one.type->GetTypeInfoString()) == two.type->GetTypeInfoString();
    };
    if (m_declaredSignals != other.m_declaredSignals || m_declaredWords != other.m_declaredWords ||
        m_store->GetResolution() != other.m_store->GetResolution() ||
        !std::equal(m_words.begin(), m_words.begin() + static_cast<std::ptrdiff_t>(m_declaredWords),
                    other.m_words.begin()))
        return false;
    for (std::size_t i = 0; i < m_declaredSignals; ++i) {
        if (!isLike(i))
            return false;
    }
    return true;
}

// Who listens knows the signals already.
void CVcdOpening::addSignal(const char *name, const char *typeInfo, std::intptr_t mode, std::intptr_t language,
                            std::intptr_t flags, std::intptr_t parent, std::intptr_t reserved)
{
    m_store->addSignal(name, typeInfo, mode, language, flags, parent, reserved);
    if (m_events == nullptr || std::exchange(m_hasWarned, true))
        return;
    const std::string text = m_path + ": variables that are declared among the values are left out";
    Q71log_PrintFormattedString(2, "VCD", "", text.c_str());
}

void CVcdOpening::endEvents()
{
    m_store->endEvents();
    m_isRead = true;
}

void CVcdOpening::addWord(const long long *last, std::intptr_t count)
{
    m_words.push_back({*last, static_cast<unsigned>(count)});
    m_store->addWord(last, count);
}

}  // namespace tesk
