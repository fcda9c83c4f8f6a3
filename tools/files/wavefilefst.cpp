// FST files for the tool.
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/tarn.h"
#include "tools/files/wavefile.h"

namespace {

class CFstWalk final : public IElementWalk {
public:
    CFstWalk(NTARN::IDatabaseReader &reader, int handle)
        : m_next(reader.EventsFrom(handle, 0)), m_end(reader.EventsEnd(handle))
    {}

    bool Next(long long &time, std::uint64_t &value) override
    {
        if (m_next == m_end)
            return false;
        time = *m_next;
        for (; !(m_next == m_end) && *m_next == time; ++m_next)
            value = std::uint64_t{m_next.extValue()} << 32 | m_next.value();
        return true;
    }

private:
    NTARN::KEventIterator m_next;
    NTARN::KEventIterator m_end;
};

class CFstFile final : public IWaveFile {
public:
    explicit CFstFile(std::unique_ptr<NTARN::IDatabaseReader> reader) : m_reader(std::move(reader))
    {
        for (const int *handle = m_reader->RootHandlesBegin(); handle != m_reader->RootHandlesEnd(); ++handle) {
            const NTARN::HSignalRange children = m_reader->GetChildRange(*handle);
            const bool isBus = children.first >= 0;
            m_signals.push_back({m_reader->GetFullName(*handle, false), m_reader->GetType(*handle),
                                 isBus ? children.first : *handle, isBus ? children.last - children.first + 1 : 1});
        }
    }

    long long GetResolution() override { return m_reader->GetResolution(); }
    long long GetEndTime() override { return m_reader->GetEndTime(); }
    const std::vector<SFileSignal> &GetSignals() override { return m_signals; }
    long long IdentifyEvents(long long element) override
    {
        const NTARN::SFileEvent *event = m_reader->EventsFrom(static_cast<int>(element), 0).event();
        return event != nullptr ? static_cast<long long>(reinterpret_cast<std::intptr_t>(event)) : -element;
    }

    std::unique_ptr<IElementWalk> Walk(long long element) override
    {
        return std::make_unique<CFstWalk>(*m_reader, static_cast<int>(element));
    }

private:
    std::unique_ptr<NTARN::IDatabaseReader> m_reader;
    std::vector<SFileSignal> m_signals;
};

}  // namespace

std::unique_ptr<IWaveFile> OpenFstFile(const std::string &path)
{
    std::unique_ptr<NTARN::IDatabaseReader> reader(NTARN::IDatabaseReader::create(path.c_str(), false));
    return reader != nullptr ? std::make_unique<CFstFile>(std::move(reader)) : nullptr;
}
