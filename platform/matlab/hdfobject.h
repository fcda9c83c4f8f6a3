// What HDF5 tells of a file and of its objects in their attributes.
#pragma once

#include <hdf5.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/matlab/matput.h"

/// An identifier of HDF5 that is closed at the end. Without one there is nothing to be done.
class CId {
public:
    CId(hid_t id, herr_t (*close)(hid_t)) : m_id(id), m_close(close)
    {
        if (id < 0)
            GiveUp();
    }
    CId(const CId &) = delete;
    CId &operator=(const CId &) = delete;
    ~CId() { m_close(m_id); }

    operator hid_t() const { return m_id; }

private:
    hid_t m_id;
    herr_t (*m_close)(hid_t);
};

/// Whether a file is an HDF5 file.
bool IsHdf(const char *path);

/// Opens one to be read.
hid_t OpenHdf(const char *path);

/// The number of elements of a space.
std::size_t CountOf(hid_t space);

/// The text of an attribute, however it is stored: ended by a null or by none, filled up with nulls or blanks, or of a length
/// of its own. @return empty if there is none
std::string ReadText(hid_t object, const char *name);

/// An attribute of one number. @return 0 if there is none
std::uint64_t ReadNumber(hid_t object, const char *name);

/// The names of the fields of a structure in their order, where the file tells it.
std::vector<std::string> ReadFieldOrder(hid_t object);
