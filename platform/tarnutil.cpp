#include "platform/tarnutil.h"

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/vcd/vcdreader.h"

namespace NTARN::NImport {

namespace {

void (*g_progress)(void *context, long long bytesRead, long long fileSize) = nullptr;
void *g_progressContext = nullptr;

}  // namespace

void SetProgress(void (*progress)(void *context, long long bytesRead, long long fileSize), void *context)
{
    g_progress = progress;
    g_progressContext = context;
}

void ReportProgress(long long bytesRead, long long fileSize)
{
    if (g_progress != nullptr)
        g_progress(g_progressContext, bytesRead, fileSize);
}

void KImport_VCD::vcdImport()
try {
    if (m_writer == nullptr)
        throw std::runtime_error(m_fileName + ": no writer is connected");
    auto reader = std::make_unique<CVcdReader>(m_fileName, *m_writer);
    reader->ReadHead();
    if (auto *const stepped = dynamic_cast<ISteppedEvents *>(m_writer))
        return stepped->takeSteps(std::move(reader));
    while (reader->Step()) {
    }
} catch (const std::bad_alloc &) {
    throw std::runtime_error(m_fileName + ": out of memory while the file is read");
}

}  // namespace NTARN::NImport
