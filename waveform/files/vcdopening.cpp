#include "waveform/files/vcdopening.h"

namespace tesk {

CVcdOpening::CVcdOpening(const std::string &path) : m_store(std::make_unique<WaveStore>())
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
