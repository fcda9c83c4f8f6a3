// The use of one shared waveform file.
#pragma once

#include <memory>

#include "waveform/openfiles.h"

/// A reader out of the table of open files, or a new one, which is closed again unless it is kept.
template <typename TReader>
class TFileUse {
public:
    /// Finds the file in the table, or opens it.
    /// @param open  opens a file by its name; may raise
    /// @return the reader; null if the file cannot be opened
    template <typename Open>
    TReader *Find(const SimpleString::CStr &fileName, Open open)
    {
        m_entry = g_OpenWaveformFiles.find(fileName);
        if (m_entry != g_OpenWaveformFiles.end())
            return static_cast<TReader *>(m_entry->second.m_reader);
        m_fileName = fileName;
        m_new.reset(open(static_cast<const char *>(fileName)));
        return m_new.get();
    }

    /// As `Find`; a file in the table counts one use more.
    template <typename Open>
    TReader *Use(const SimpleString::CStr &fileName, Open open)
    {
        TReader *reader = Find(fileName, open);
        if (m_entry != g_OpenWaveformFiles.end())
            ++m_entry->second.m_useCount;
        return reader;
    }

    /// Puts a new reader into the table. @return the text of its key, which lives as long as the entry
    const char *Keep()
    {
        if (m_new != nullptr) {
            m_entry = g_OpenWaveformFiles.try_emplace(m_fileName, SOpenWaveformFile{m_new.get(), 1}).first;
            m_new.release();
        }
        return m_entry->first;
    }

private:
    decltype(g_OpenWaveformFiles)::iterator m_entry = g_OpenWaveformFiles.end();
    SimpleString::CStr m_fileName;
    std::unique_ptr<TReader> m_new;
};
