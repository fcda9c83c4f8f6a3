// Files of version 7.3, byte for byte as this or that program writes them.
#pragma once

#include <gtest/gtest.h>
#include <hdf5.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

/// How a writer stores a text.
enum class EText { NullEnded, NullPadded, BlankPadded, OwnLength };

/// A file that is being written. What a call makes it closes.
class CHdfWriter {
public:
    /// @param hasHeader  512 bytes in front, as MATLAB writes them
    CHdfWriter(std::string path, bool hasHeader) : m_path(std::move(path)), m_hasHeader(hasHeader)
    {
        const hid_t list = H5Pcreate(H5P_FILE_CREATE);
        if (hasHeader)
            H5Pset_userblock(list, 512);
        m_file = H5Fcreate(m_path.c_str(), H5F_ACC_TRUNC, list, H5P_DEFAULT);
        H5Pclose(list);
        EXPECT_GE(m_file, 0);
    }
    CHdfWriter(const CHdfWriter &) = delete;
    CHdfWriter &operator=(const CHdfWriter &) = delete;
    ~CHdfWriter()
    {
        H5Fclose(m_file);
        if (!m_hasHeader)
            return;
        std::string header =
            "MATLAB 7.3 MAT-file, Platform: GLNXA64, Created on: Mon Jan  1 00:00:00 2024 HDF5 schema 1.00 .";
        header.resize(116, ' ');
        header += std::string(8, '\0') + std::string("\0\2IM", 4);
        std::fstream(m_path, std::ios::in | std::ios::out | std::ios::binary) << header;
    }

    /// The sizes as MATLAB counts them; the values in any type that HDF5 turns into the stored one.
    template <typename T>
    void Add(const std::string &name, const std::vector<hsize_t> &sizes, const std::vector<T> &values, hid_t memory,
             hid_t stored, const std::string &className, EText text = EText::NullEnded, bool isPacked = false)
    {
        const std::vector<hsize_t> turned(sizes.rbegin(), sizes.rend());
        const hid_t space = sizes.empty() ? H5Screate(H5S_SCALAR)
                                          : H5Screate_simple(static_cast<int>(turned.size()), turned.data(), nullptr);
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE);
        if (isPacked) {
            const std::vector<hsize_t> chunk(turned.size(), 2);
            H5Pset_chunk(list, static_cast<int>(chunk.size()), chunk.data());
            H5Pset_shuffle(list);
            H5Pset_deflate(list, 6);
        }
        const hid_t set = H5Dcreate2(m_file, name.c_str(), stored, space, H5P_DEFAULT, list, H5P_DEFAULT);
        EXPECT_GE(H5Dwrite(set, memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()), 0) << name;
        if (!className.empty())
            AddText(set, "MATLAB_class", className, text);
        H5Dclose(set);
        H5Pclose(list);
        H5Sclose(space);
    }

    void AddDoubles(const std::string &name, const std::vector<hsize_t> &sizes, const std::vector<double> &values,
                    EText text = EText::NullEnded, bool isPacked = false)
    {
        Add(name, sizes, values, H5T_NATIVE_DOUBLE, H5T_IEEE_F64LE, "double", text, isPacked);
    }

    /// As MATLAB writes an array without elements: its sizes, marked.
    void AddEmpty(const std::string &name, const std::vector<std::uint64_t> &sizes, const std::string &className)
    {
        Add(name, {sizes.size()}, sizes, H5T_NATIVE_UINT64, H5T_STD_U64LE, className);
        AddNumber(name, "MATLAB_empty", 1);
    }

    void AddComplex(const std::string &name, const std::vector<hsize_t> &sizes, const std::vector<double> &pairs)
    {
        const hid_t type = H5Tcreate(H5T_COMPOUND, 16);
        H5Tinsert(type, "real", 0, H5T_IEEE_F64LE);
        H5Tinsert(type, "imag", 8, H5T_IEEE_F64LE);
        Add(name, sizes, pairs, type, type, "double");
        H5Tclose(type);
    }

    void AddGroup(const std::string &name, const std::string &className)
    {
        const hid_t group = H5Gcreate2(m_file, name.c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
        EXPECT_GE(group, 0) << name;
        if (!className.empty())
            AddText(group, "MATLAB_class", className, EText::NullEnded);
        H5Gclose(group);
    }

    /// References to objects: a field of an array of structures, or with a class an array of cells.
    void AddReferences(const std::string &name, const std::vector<hsize_t> &sizes, const std::vector<std::string> &to,
                       const std::string &className = "")
    {
        std::vector<hobj_ref_t> references(to.size());
        for (std::size_t i = 0; i < to.size(); ++i)
            EXPECT_GE(H5Rcreate(&references[i], m_file, to[i].c_str(), H5R_OBJECT, -1), 0) << to[i];
        Add(name, sizes, references, H5T_STD_REF_OBJ, H5T_STD_REF_OBJ, className);
    }

    /// The order of the fields, each a sequence of characters.
    void AddFields(const std::string &group, std::vector<std::string> names)
    {
        const hid_t character = H5Tcopy(H5T_C_S1), type = H5Tvlen_create(character);
        std::vector<hvl_t> texts;
        for (std::string &name : names)
            texts.push_back({name.size(), name.data()});
        const hsize_t count = texts.size();
        const hid_t space = H5Screate_simple(1, &count, nullptr);
        Attach(group, "MATLAB_fields", type, space, texts.data());
        H5Sclose(space);
        H5Tclose(type);
        H5Tclose(character);
    }

    void AddNumber(const std::string &object, const char *name, std::uint8_t number)
    {
        const hid_t space = H5Screate(H5S_SCALAR);
        Attach(object, name, H5T_NATIVE_UINT8, space, &number);
        H5Sclose(space);
    }

    hid_t File() const { return m_file; }

private:
    void Attach(const std::string &path, const char *name, hid_t type, hid_t space, const void *value)
    {
        const hid_t object = H5Oopen(m_file, path.c_str(), H5P_DEFAULT);
        const hid_t attribute = H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
        EXPECT_GE(H5Awrite(attribute, type, value), 0) << name;
        H5Aclose(attribute);
        H5Oclose(object);
    }

    static void AddText(hid_t object, const char *name, const std::string &value, EText text)
    {
        const hid_t type = H5Tcopy(H5T_C_S1), space = H5Screate(H5S_SCALAR);
        std::string bytes = value;
        const char *first = value.c_str();
        const void *data = &first;
        if (text == EText::OwnLength) {
            H5Tset_size(type, H5T_VARIABLE);
        } else {
            bytes.resize(value.size() + (text == EText::NullEnded     ? 1
                                         : text == EText::BlankPadded ? 3
                                                                      : 0),
                         text == EText::BlankPadded ? ' ' : '\0');
            H5Tset_size(type, bytes.size());
            H5Tset_strpad(type, text == EText::NullEnded    ? H5T_STR_NULLTERM
                                : text == EText::NullPadded ? H5T_STR_NULLPAD
                                                            : H5T_STR_SPACEPAD);
            data = bytes.data();
        }
        const hid_t attribute = H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
        EXPECT_GE(H5Awrite(attribute, type, data), 0) << name;
        H5Aclose(attribute);
        H5Sclose(space);
        H5Tclose(type);
    }

    std::string m_path;
    bool m_hasHeader;
    hid_t m_file;
};
