#include "platform/files/filebuffer.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>

namespace tesk {

namespace {

constexpr std::size_t BufferSize = 65536;

}  // namespace

CFileBuffer::CFileBuffer(CFile file) : m_file(std::move(file)), m_bytes(BufferSize)
{
    Empty();
}

CFileBuffer::int_type CFileBuffer::overflow(int_type byte)
{
    if (sync() != 0)
        return traits_type::eof();
    if (traits_type::eq_int_type(byte, traits_type::eof()))
        return traits_type::not_eof(byte);
    *pptr() = traits_type::to_char_type(byte);
    pbump(1);
    return byte;
}

int CFileBuffer::sync()
{
    if (m_error == 0 && !m_file.Write(pbase(), static_cast<std::size_t>(pptr() - pbase())))
        Keep(errno);
    Empty();
    return m_error == 0 ? 0 : -1;
}

CFileBuffer::pos_type CFileBuffer::seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode)
{
    const pos_type Nowhere = pos_type(off_type(-1));
    if (sync() != 0)
        return Nowhere;
    const int origin = from == std::ios_base::beg ? SEEK_SET : from == std::ios_base::cur ? SEEK_CUR : SEEK_END;
    const off_t position = m_file.Seek(offset, origin);
    if (position < 0)
        Keep(errno);
    return pos_type(position);
}

CFileBuffer::pos_type CFileBuffer::seekpos(pos_type position, std::ios_base::openmode mode)
{
    return seekoff(off_type(position), std::ios_base::beg, mode);
}

}  // namespace tesk
