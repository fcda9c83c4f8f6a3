#include "waveform/openfiles.h"

#include <string_view>

#include "platform/tarn.h"
#include "waveform/wavestore.h"

std::map<SimpleString::CStr, SOpenWaveformFile, SByteOrder> g_OpenWaveformFiles;

bool IsNamedLike(const char *fileName, const char *part)
{
    const std::size_t at = std::string_view(fileName).find(part);
    return at != 0 && at != std::string_view::npos;
}

bool IsVcdFileName(const char *fileName)
{
    return IsNamedLike(fileName, ".vcd");
}

void RenameBrackets(SimpleString::CStr &signalName)
{
    for (int i = 0; i < signalName.GetLength(); ++i) {
        if (signalName[i] == '(')
            signalName.SetAt(i, '[');
        else if (signalName[i] == ')')
            signalName.SetAt(i, ']');
    }
}

void CloseOpenWaveformFiles()
{
    for (const auto &[name, file] : g_OpenWaveformFiles) {
        if (IsVcdFileName(name))
            delete static_cast<WaveStore *>(file.m_reader);
        else
            delete static_cast<NTARN::IDatabaseReader *>(file.m_reader);
    }
    g_OpenWaveformFiles.clear();
}
