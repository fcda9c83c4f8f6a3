#include "platform/input/packedinput.h"

#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <new>

#include "platform/input/openinput.h"

namespace tesk {

namespace {

constexpr std::size_t BufferSize = std::size_t{1} << 16;
constexpr unsigned char Magic[] = {0x1F, 0x8B};
constexpr int GzipOnly = 16 + MAX_WBITS;

}  // namespace

struct CPackedInput::SUnpacker {
    z_stream stream{};
    bool isInMember = true;

    SUnpacker()
    {
        if (inflateInit2(&stream, GzipOnly) != Z_OK)
            throw std::bad_alloc();
    }
    SUnpacker(const SUnpacker &) = delete;
    SUnpacker &operator=(const SUnpacker &) = delete;
    ~SUnpacker() { inflateEnd(&stream); }
};

CPackedInput::CPackedInput(const std::string &fileName) : m_file(OpenInput(fileName))
{
    if (!m_file.IsOpen())
        throw XInputFault("cannot open the file: " + InputErrorText(errno));
    struct stat status {};
    if (m_file.Status(status) && S_ISREG(status.st_mode))
        m_fileSize = status.st_size;
}

CPackedInput::~CPackedInput() = default;

std::size_t CPackedInput::Read(char *to, std::size_t room)
{
    if (!m_isRecognised)
        Recognise();
    if (m_unpacker != nullptr)
        return Unpack(to, room);
    return m_next < m_count ? HandOver(to, room) : ReadFile(to, room);
}

std::size_t CPackedInput::ReadFile(char *to, std::size_t room)
{
    const ssize_t count = m_file.Read(to, room);
    if (count < 0)
        throw XInputFault("cannot read the file: " + InputErrorText(errno));
    m_bytesRead += count;
    return static_cast<std::size_t>(count);
}

// Reads on behind what is not taken yet. @return false at the end of the file
bool CPackedInput::Fill()
{
    if (m_next == m_count)
        m_next = m_count = 0;
    const std::size_t count = ReadFile(m_buffer.data() + m_count, m_buffer.size() - m_count);
    m_count += count;
    return count > 0;
}

// A pipe may give a single byte at first.
void CPackedInput::Recognise()
{
    m_isRecognised = true;
    m_buffer.resize(BufferSize);
    while (m_count < sizeof Magic && Fill()) {
    }
    if (m_count >= sizeof Magic && std::memcmp(m_buffer.data(), Magic, sizeof Magic) == 0)
        m_unpacker = std::make_unique<SUnpacker>();
}

// What was read to see whether it is packed, and is not.
std::size_t CPackedInput::HandOver(char *to, std::size_t room)
{
    const std::size_t count = std::min(room, m_count - m_next);
    std::memcpy(to, m_buffer.data() + m_next, count);
    m_next += count;
    return count;
}

std::size_t CPackedInput::Unpack(char *to, std::size_t room)
{
    room = std::min<std::size_t>(room, std::numeric_limits<uInt>::max());
    for (;;) {
        if (m_next == m_count && !Fill()) {
            if (m_unpacker->isInMember)
                throw XUnpackFault("the file ends inside what gzip packed");
            return 0;
        }
        if (!m_unpacker->isInMember && !StartMember())
            return 0;
        if (const std::size_t count = Inflate(to, room); count > 0)
            return count;
    }
}

// Takes what stands behind a member for another one if it begins like that, and for padding if not, as gzip does.
bool CPackedInput::StartMember()
{
    if (static_cast<unsigned char>(m_buffer[m_next]) != Magic[0])
        return false;
    inflateReset(&m_unpacker->stream);
    m_unpacker->isInMember = true;
    return true;
}

// Unpacks some of what is read. What stands in front of damage is still given.
std::size_t CPackedInput::Inflate(char *to, std::size_t room)
{
    z_stream &stream = m_unpacker->stream;
    stream.next_out = reinterpret_cast<Bytef *>(to);
    stream.avail_out = static_cast<uInt>(room);
    stream.next_in = reinterpret_cast<Bytef *>(m_buffer.data() + m_next);
    stream.avail_in = static_cast<uInt>(m_count - m_next);
    const int result = inflate(&stream, Z_NO_FLUSH);
    const std::size_t count = room - stream.avail_out;
    m_next = m_count - stream.avail_in;
    m_unpacker->isInMember = result != Z_STREAM_END;
    if (result == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (count == 0 && result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
        throw XUnpackFault("what gzip packed is damaged");
    m_unpacked += static_cast<long long>(count);
    if (m_unpacked > UnpackedBase + UnpackedPerByte * std::max(m_fileSize, m_bytesRead))
        throw XUnpackFault("what gzip packed grows to more than " +
                           std::to_string(m_unpacked - static_cast<long long>(count)) +
                           " bytes, too many for a file of this size");
    return count;
}

}  // namespace tesk
