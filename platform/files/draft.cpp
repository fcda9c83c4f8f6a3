#include "platform/files/draft.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/files/filecalls.h"
#include "platform/files/temporaryfile.h"

namespace tesk {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LongestName = 255;

// The drafts that there are, where a handler of a signal can read them: nothing in it is ever allocated or locked.
struct SSlot {
    enum EState { Free, Changing, Taken };

    std::atomic<int> state = Free;
    pid_t process = 0;  // a forked child has no drafts, only a copy of the list
    int folder = -1;
    std::array<char, LongestName + 1> name{};
};

std::array<SSlot, 64> g_slots;

// @return its place in the list; -1 if there is none left
int EnterDraft(int folder, const std::string &name)
{
    for (std::size_t i = 0; i < g_slots.size(); ++i) {
        SSlot &slot = g_slots[i];
        int expected = SSlot::Free;
        if (!slot.state.compare_exchange_strong(expected, SSlot::Changing))
            continue;
        slot.process = getpid();
        slot.folder = folder;
        slot.name.fill('\0');
        name.copy(slot.name.data(), LongestName);
        slot.state = SSlot::Taken;
        return static_cast<int>(i);
    }
    return -1;
}

void LeaveDraft(int slot)
{
    if (slot >= 0)
        g_slots[static_cast<std::size_t>(slot)].state = SSlot::Free;
}

// A program that ends without giving its writers up.
struct SEnd {
    ~SEnd() { RemoveDrafts(); }
} g_end;

// Where a file lies that a symbolic link names. It need not be there yet.
// @return the `errno` of a link that leads nowhere; 0 if none does
int FollowLinks(fs::path &path)
{
    constexpr int MostLinks = 40;  // as in the kernel
    std::error_code error;
    for (int links = 0; fs::is_symlink(path, error); ++links) {
        if (links == MostLinks)
            return ELOOP;
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            return error.value();
        path = path.parent_path() / target;
    }
    return 0;
}

// Cut in front where both together were too long, and between two letters of UTF-8.
std::string DraftName(const std::string &name, const std::string &suffix)
{
    std::size_t length = std::min(name.size(), LongestName - suffix.size());
    while (length > 0 && length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
        --length;
    return name.substr(0, length) + suffix;
}

}  // namespace

CDraft::CDraft(const std::string &path) : m_stream(nullptr)
{
    fs::path place = path;
    m_error = FollowLinks(place);
    if (m_error != 0)
        return;
    const fs::path folder = place.has_parent_path() ? place.parent_path() : fs::path(".");
    m_name = place.filename();
    m_folder = CFile::Open(folder, O_PATH | O_DIRECTORY);
    if (m_folder.IsOpen())
        Make(place);
    else
        m_error = errno;
}

CDraft::~CDraft()
{
    GiveUp();
}

void CDraft::Make(const std::string &place)
{
    constexpr mode_t Rights = 07777;
    constexpr mode_t NewRights = 0666;
    constexpr int MostTries = 100;  // where a file of the name is there: one is enough, but for ill luck
    struct stat replaced {};
    const bool isReplacing = stat(place.c_str(), &replaced) == 0 && S_ISREG(replaced.st_mode);
    const mode_t rights = isReplacing ? replaced.st_mode & Rights : NewRights;
    auto buffer = std::make_unique<CFileBuffer>();
    for (int tries = 0; tries < MostTries; ++tries) {
        const std::string digits = RandomDigits();
        if (digits.empty())
            break;
        m_draft = DraftName(m_name, ".part" + digits);
        m_slot = EnterDraft(m_folder.Descriptor(), m_draft);  // first: a signal may come in between
        CFile file =
            CFile::Open(m_draft, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, rights & 0777, m_folder.Descriptor());
        if (file.IsOpen()) {
            if (isReplacing)
                fchmod(file.Descriptor(), rights);
            m_error = 0;  // that of a name that was taken
            buffer->Attach(std::move(file));
            m_buffer = std::move(buffer);
            m_stream.rdbuf(m_buffer.get());
            return;
        }
        m_error = errno;
        LeaveDraft(m_slot);
        if (m_error != EEXIST)
            break;
    }
    if (m_error == 0)
        m_error = errno != 0 ? errno : EIO;
}

bool CDraft::IsOpen() const
{
    return m_buffer != nullptr;
}

int CDraft::Error() const
{
    return m_error != 0 || m_buffer == nullptr ? m_error : m_buffer->Error();
}

std::ostream &CDraft::Stream()
{
    return m_stream;
}

bool CDraft::Publish()
{
    if (!IsOpen())
        return false;
    const bool isWritten = !m_stream.flush().fail();
    m_buffer->Close();
    m_error = Error();
    if (m_error == 0 && !isWritten)
        m_error = EIO;
    if (m_error == 0 && FileCalls().Rename(m_folder.Descriptor(), m_draft.c_str(), m_name.c_str()) != 0)
        m_error = errno;
    if (m_error != 0) {
        GiveUp();
        return false;
    }
    LeaveDraft(m_slot);
    m_stream.rdbuf(nullptr);
    m_buffer.reset();
    return true;
}

void CDraft::GiveUp()
{
    if (!IsOpen())
        return;
    m_error = Error();
    m_stream.rdbuf(nullptr);
    m_buffer.reset();
    FileCalls().Remove(m_folder.Descriptor(), m_draft.c_str());
    LeaveDraft(m_slot);
}

void RemoveDrafts()
{
    const int error = errno;
    for (const SSlot &slot : g_slots) {
        if (slot.state == SSlot::Taken && slot.process == getpid())
            FileCalls().Remove(slot.folder, slot.name.data());
    }
    errno = error;
}

}  // namespace tesk
