// A shared file from which a stimulus is filled.
#pragma once

#include <optional>

#include "signal/signal.h"
#include "waveform/replay/fileuse.h"
#include "waveform/replay/waveformfile.h"

/// What databases and VCD files do alike. The stimulus gets the reader and the file name once they are kept.
template <typename TReader>
class TSharedFile : public IWaveformFile {
public:
    TSharedFile(TReader *&reader, const char *&fileName) : m_reader(reader), m_fileName(fileName) {}

    bool Open(const SimpleString::CStr &fileName) override
    {
        m_open = m_use.Use(fileName, OpenNew);
        return m_open != nullptr;
    }

    long long GetResolution() override { return m_open->GetResolution(); }
    long long GetEndTime() override { return m_open->GetEndTime(); }
    std::optional<int> FindSignal(const char *name) override;

    long MakeSignal(int handle, ISignal **signal) override
    {
        const Kestrin::KTypeInfo *type = TypeOf(handle);
        return type != nullptr ? CreateSignal(*type, nullptr, signal) : E_FAIL;
    }

    bool Keep(int) override
    {
        m_fileName = m_use.Keep();
        m_reader = m_open;
        return true;
    }

private:
    static TReader *OpenNew(const char *fileName);
    const Kestrin::KTypeInfo *TypeOf(int handle) const;

    TReader *&m_reader;
    const char *&m_fileName;
    TFileUse<TReader> m_use;
    TReader *m_open = nullptr;
};
