#include "platform/matlab/mathdf.h"

#include <hdf5.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "platform/matlab/hdfobject.h"
#include "platform/matlab/matput.h"
#include "platform/matlab/matstream.h"
#include "platform/matlab/mxarray.h"

namespace {

using CSizes = std::vector<std::uint64_t>;

struct SClassName {
    std::string_view name;
    int classId;
};

constexpr SClassName ClassNames[] = {
    {"cell", 1},   {"struct", 2},  {"logical", 3}, {"char", 4},    {"double", 6},
    {"single", 7}, {"int8", 8},    {"uint8", 9},   {"int16", 10},  {"uint16", 11},
    {"int32", 12}, {"uint32", 13}, {"int64", 14},  {"uint64", 15}, {"function_handle", 16},
};

int IntegerClass(hid_t type)
{
    const int first = H5Tget_sign(type) == H5T_SGN_NONE ? 9 : 8;
    switch (H5Tget_size(type)) {
    case 1: return first;
    case 2: return first + 2;
    case 4: return first + 4;
    case 8: return first + 6;
    default: return MatClassUnknown;
    }
}

// The class of what a writer that knows nothing of MATLAB has left.
int ClassOfType(hid_t type)
{
    switch (H5Tget_class(type)) {
    case H5T_FLOAT: return H5Tget_size(type) == sizeof(float) ? MatClassSingle : MatClassDouble;
    case H5T_COMPOUND: return H5Tget_member_index(type, "real") >= 0 ? MatClassDouble : MatClassUnknown;
    case H5T_INTEGER: return IntegerClass(type);
    case H5T_ENUM: return MatClassLogical;
    case H5T_STRING: return MatClassChar;
    case H5T_REFERENCE: return MatClassCell;
    default: return MatClassUnknown;
    }
}

// @param otherwise  of an object without a class
int ClassOf(const std::string &name, int otherwise)
{
    if (name.empty())
        return otherwise;
    const auto found = std::ranges::find(ClassNames, name, &SClassName::name);
    return found != std::end(ClassNames) ? found->classId : MatClassObject;
}

// The sizes as MATLAB counts them: the other way round, and two at least.
CSizes SizesOf(hid_t dataset)
{
    const CId space(H5Dget_space(dataset), H5Sclose);
    if (H5Sget_simple_extent_type(space) == H5S_NULL)
        return {0, 0};
    hsize_t sizes[H5S_MAX_RANK] = {};
    const int rank = H5Sget_simple_extent_dims(space, sizes, nullptr);
    if (rank < 0)
        GiveUp();
    CSizes turned(sizes, sizes + rank);
    std::ranges::reverse(turned);
    while (turned.size() < 2)
        turned.push_back(1);
    return turned;
}

// Whether the values are in this file. Others are none of its business.
bool IsStoredHere(hid_t dataset)
{
    const CId list(H5Dget_create_plist(dataset), H5Pclose);
    return H5Pget_layout(list) != H5D_VIRTUAL && H5Pget_external_count(list) <= 0;
}

template <typename T>
std::unique_ptr<T[]> ReadAll(hid_t dataset, hid_t type, std::size_t count)
{
    std::unique_ptr<T[]> values(new (std::nothrow) T[count]);
    if (values == nullptr || !IsStoredHere(dataset) ||
        H5Dread(dataset, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.get()) < 0)
        GiveUp();
    return values;
}

std::size_t CountOfDataset(hid_t dataset)
{
    const CId space(H5Dget_space(dataset), H5Sclose);
    return CountOf(space);
}

// Of an array without elements the dataset holds the sizes.
CSizes SizesOfEmpty(hid_t dataset)
{
    const std::size_t rank = CountOfDataset(dataset);
    if (rank > MaximumRank)
        GiveUp();
    const auto sizes = ReadAll<std::uint64_t>(dataset, H5T_NATIVE_UINT64, rank);
    CSizes result(sizes.get(), sizes.get() + rank);
    if (std::ranges::find(result, 0U) == result.end())
        GiveUp();
    return result;
}

// Complex numbers are pairs of "real" and "imag".
bool IsComplex(hid_t type)
{
    return H5Tget_class(type) == H5T_COMPOUND && H5Tget_member_index(type, "real") >= 0;
}

void PutDoubles(hid_t dataset, hid_t type, std::size_t elements)
{
    Put(static_cast<std::uint64_t>(elements));
    if (elements == 0)
        return;
    const H5T_class_t kind = H5Tget_class(type);
    if (CountOfDataset(dataset) != elements || (kind != H5T_FLOAT && kind != H5T_INTEGER && !IsComplex(type)))
        GiveUp();
    const CId parts(H5Tcreate(H5T_COMPOUND, sizeof(double)), H5Tclose);
    if (H5Tinsert(parts, "real", 0, H5T_NATIVE_DOUBLE) < 0)
        GiveUp();
    const auto values = ReadAll<double>(dataset, IsComplex(type) ? hid_t(parts) : H5T_NATIVE_DOUBLE, elements);
    Put(values.get(), elements * sizeof(double));
}

// What hangs directly in a group and nowhere else.
bool IsHardLink(hid_t group, const char *name)
{
    H5L_info_t link = {};
    return H5Lget_info(group, name, &link, H5P_DEFAULT) >= 0 && link.type == H5L_TYPE_HARD;
}

herr_t AddName(hid_t group, const char *name, const H5L_info_t *, void *names)
{
    auto &list = *static_cast<std::vector<std::string> *>(names);
    if (list.size() == MaximumFields)
        GiveUp();
    if (IsHardLink(group, name))
        list.emplace_back(name);
    return 0;
}

std::vector<std::string> NamesIn(hid_t group)
{
    std::vector<std::string> names;
    hsize_t at = 0;
    if (H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, &at, AddName, &names) < 0)
        GiveUp();
    return names;
}

std::vector<std::string> FieldsOf(hid_t group)
{
    std::vector<std::string> names = ReadFieldOrder(group);
    const auto isThere = [&](const std::string &name) {
        return !name.empty() && name.find('/') == std::string::npos && IsHardLink(group, name.c_str());
    };
    return !names.empty() && std::ranges::all_of(names, isThere) ? names : NamesIn(group);
}

void PutNames(const std::vector<std::string> &names)
{
    Put(static_cast<std::uint32_t>(names.size()));
    for (const std::string &name : names)
        PutName(name);
}

void PutObject(hid_t object, EDetail detail, int depth);

// Whether a field is one of an array of structures: references to the values of its elements.
bool IsOfArray(hid_t field)
{
    if (H5Iget_type(field) != H5I_DATASET || !ReadText(field, "MATLAB_class").empty())
        return false;
    const CId type(H5Dget_type(field), H5Tclose);
    return H5Tequal(type, H5T_STD_REF_OBJ) > 0;
}

void PutArrayOfStructures(hid_t group, const std::vector<std::string> &fields, const CSizes &sizes, EDetail detail,
                          int depth)
{
    const std::size_t elements = PutBegin(MatClassStruct, sizes);
    PutNames(fields);
    std::vector<std::unique_ptr<hobj_ref_t[]>> references;
    for (const std::string &name : fields) {
        const CId field(H5Oopen(group, name.c_str(), H5P_DEFAULT), H5Oclose);
        if (!IsOfArray(field) || SizesOf(field) != sizes)
            GiveUp();
        references.push_back(ReadAll<hobj_ref_t>(field, H5T_STD_REF_OBJ, elements));
    }
    const std::size_t told = detail == EDetail::Values ? elements : std::min<std::size_t>(elements, 1);
    for (std::size_t i = 0; i < told; ++i) {
        for (const auto &field : references) {
            if (field[i] == 0) {
                PutNothing();
                continue;
            }
            const CId value(H5Rdereference2(group, H5P_DEFAULT, H5R_OBJECT, &field[i]), H5Oclose);
            PutObject(value, detail, depth + 1);
        }
    }
}

void PutStructure(hid_t group, EDetail detail, int depth)
{
    const std::vector<std::string> fields = FieldsOf(group);
    if (!fields.empty()) {
        const CId first(H5Oopen(group, fields.front().c_str(), H5P_DEFAULT), H5Oclose);
        if (IsOfArray(first)) {
            PutArrayOfStructures(group, fields, SizesOf(first), detail, depth);
            return;
        }
    }
    PutBegin(MatClassStruct, {1, 1});
    PutNames(fields);
    for (const std::string &name : fields) {
        const CId field(H5Oopen(group, name.c_str(), H5P_DEFAULT), H5Oclose);
        PutObject(field, detail, depth + 1);
    }
}

// Columns that are mostly zeros: the number of rows is told, that of columns is one less than that of their beginnings.
void PutSparse(hid_t group, int classId)
{
    std::uint64_t columns = 0;
    if (IsHardLink(group, "jc")) {
        const CId begins(H5Dopen2(group, "jc", H5P_DEFAULT), H5Dclose);
        columns = std::max<std::uint64_t>(CountOfDataset(begins), 1) - 1;
    }
    PutBegin((classId == MatClassLogical ? MatClassLogical : MatClassUnknown) | MarkSparse,
             {ReadNumber(group, "MATLAB_sparse"), columns});
}

void PutGroup(hid_t group, EDetail detail, int depth)
{
    const int classId = ClassOf(ReadText(group, "MATLAB_class"), MatClassStruct);
    if (H5Aexists(group, "MATLAB_sparse") > 0)
        PutSparse(group, classId);
    else if (classId == MatClassStruct)
        PutStructure(group, detail, depth);
    else
        PutBegin(MatClassObject, {1, 1});
}

void PutDataset(hid_t dataset, EDetail detail)
{
    const CId type(H5Dget_type(dataset), H5Tclose);
    const bool isEmpty = ReadNumber(dataset, "MATLAB_empty") != 0;
    const int classId = ClassOf(ReadText(dataset, "MATLAB_class"), ClassOfType(type));
    const std::size_t elements =
        PutBegin(IsComplex(type) ? classId | MarkComplex : classId, isEmpty ? SizesOfEmpty(dataset) : SizesOf(dataset));
    if (classId == MatClassDouble && detail == EDetail::Headers)
        return;
    if (classId == MatClassDouble)
        PutDoubles(dataset, type, elements);
    else if (classId == MatClassStruct && elements == 0)
        PutNames(ReadFieldOrder(dataset));
    else if (classId == MatClassStruct)
        GiveUp();
}

void PutObject(hid_t object, EDetail detail, int depth)
{
    const H5I_type_t kind = depth <= MaximumDepth ? H5Iget_type(object) : H5I_BADID;
    if (kind == H5I_GROUP)
        PutGroup(object, detail, depth);
    else if (kind == H5I_DATASET)
        PutDataset(object, detail);
    else
        PutNothing();
}

// What begins with '#' belongs to the format.
bool IsVariable(hid_t file, const char *name)
{
    return *name != '\0' && *name != '#' && *name != '.' && std::strchr(name, '/') == nullptr && IsHardLink(file, name);
}

herr_t PassVariable(hid_t file, const char *name, const H5L_info_t *, void *)
{
    if (!IsVariable(file, name))
        return 0;
    const CId object(H5Oopen(file, name, H5P_DEFAULT), H5Oclose);
    ReadText(object, "MATLAB_class");
    if (H5Iget_type(object) == H5I_DATASET)
        SizesOf(object);
    return 0;
}

herr_t ListVariable(hid_t file, const char *name, const H5L_info_t *, void *)
{
    if (!IsVariable(file, name))
        return 0;
    const CId object(H5Oopen(file, name, H5P_DEFAULT), H5Oclose);
    Put(std::uint8_t{1});
    PutName(name);
    PutObject(object, EDetail::Headers, 0);
    return 0;
}

void ForEachLink(const char *path, H5L_iterate_t act)
{
    const CId file(OpenHdf(path), H5Fclose);
    hsize_t at = 0;
    if (H5Literate(file, H5_INDEX_NAME, H5_ITER_INC, &at, act, nullptr) < 0)
        GiveUp();
}

}  // namespace

bool IsHdfFile(const char *path)
{
    return IsHdf(path);
}

void PutHdfVariable(const char *path, const char *name)
{
    const CId file(OpenHdf(path), H5Fclose);
    if (!IsVariable(file, name)) {
        PutNothing();
        return;
    }
    const CId object(H5Oopen(file, name, H5P_DEFAULT), H5Oclose);
    PutObject(object, EDetail::Values, 0);
}

void PassHdfVariables(const char *path)
{
    ForEachLink(path, PassVariable);
}

void PutHdfList(const char *path)
{
    ForEachLink(path, ListVariable);
    Put(std::uint8_t{0});
}
