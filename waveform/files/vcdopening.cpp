#include "waveform/files/vcdopening.h"

#include "platform/log.h"

namespace tesk {

CVcdOpening::CVcdOpening(const std::string &path) : m_path(path), m_store(std::make_unique<WaveStore>())
{
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(this);
    importer.setVcdFileName(path);
    importer.vcdImport();
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
