// How a formula uses the file that it names.
#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "waveform/files/waveformfile.h"
#include "waveform/openfiles.h"

namespace tesk {

/// Opens one file. It is closed again unless it is kept.
class IFileUse {
public:
    virtual ~IFileUse() = default;
    /// Finds the file where files are shared, or opens it.
    /// @return what belongs to the use; null if the file cannot be opened; may raise
    virtual IWaveformFile *Find(const SimpleString::CStr &fileName) = 0;
    /// As `Find`; a file that is open already counts one use more.
    virtual IWaveformFile *Use(const SimpleString::CStr &fileName) = 0;
    /// Leaves the file open for others, where files are shared.
    virtual void KeepOpen() = 0;
    /// Keeps what is needed to replay a signal. @return false if there is nothing
    virtual bool KeepSignal(int handle) = 0;
};

/// The use of a file of a kind that is shared: a reader out of the table of open files, or a new one.
template <typename TFile>
class TSharedUse final : public IFileUse {
public:
    using Reader = typename TFile::Reader;

    IWaveformFile *Find(const SimpleString::CStr &fileName) override
    {
        m_entry = g_OpenWaveformFiles.find(fileName);
        m_fileName = fileName;
        if (!IsShared())
            m_new.reset(TFile::OpenReader(fileName));
        m_reader = IsShared() ? static_cast<Reader *>(m_entry->second.m_reader) : m_new.get();
        return m_reader != nullptr ? &m_file.emplace(*m_reader) : nullptr;
    }

    IWaveformFile *Use(const SimpleString::CStr &fileName) override
    {
        IWaveformFile *file = Find(fileName);
        if (IsShared())
            ++m_entry->second.m_useCount;
        return file;
    }

    void KeepOpen() override
    {
        if (m_new == nullptr)
            return;
        m_entry = g_OpenWaveformFiles.try_emplace(m_fileName, SOpenWaveformFile{m_new.get(), 1}).first;
        m_new.release();
    }

    bool KeepSignal(int) override
    {
        KeepOpen();
        return true;
    }

    /// Once it is kept, the reader lives as long as its entry in the table.
    Reader *GetReader() const { return m_reader; }
    /// The text of that entry's key.
    const char *GetFileName() const { return m_entry->first; }

private:
    bool IsShared() const { return m_entry != g_OpenWaveformFiles.end(); }

    decltype(g_OpenWaveformFiles)::iterator m_entry = g_OpenWaveformFiles.end();
    SimpleString::CStr m_fileName;
    std::unique_ptr<Reader> m_new;
    Reader *m_reader = nullptr;
    std::optional<TFile> m_file;
};

/// Opens a file for its caller alone.
template <typename TFile>
std::unique_ptr<IWaveformFile> OpenFile(const char *fileName)
{
    std::unique_ptr<typename TFile::Reader> reader(TFile::OpenReader(fileName));
    return reader != nullptr ? std::make_unique<TFile>(std::move(reader)) : nullptr;
}

}  // namespace tesk
