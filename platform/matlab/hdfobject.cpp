#include "platform/matlab/hdfobject.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/matlab/matstream.h"

namespace {

// The library takes code and drivers to load from the environment, which has nothing to do with the file.
void PrepareLibrary()
{
    for (const char *name : {"HDF5_PLUGIN_PATH", "HDF5_DRIVER", "HDF5_VOL_CONNECTOR"})
        unsetenv(name);
    setenv("HDF5_PLUGIN_PRELOAD", "::", 1);        // none
    setenv("HDF5_USE_FILE_LOCKING", "FALSE", 1);   // a file that is only read may lie where there are no locks
    setenv("HDF5_DISABLE_VERSION_CHECK", "2", 1);  // says nothing
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    H5PLset_loading_state(0);
}

// Whether a path leads to a file that has no name any more: the library follows links and opens what they lead to by name.
bool IsNameless(const char *path)
{
    struct stat link = {}, file = {};
    return lstat(path, &link) == 0 && S_ISLNK(link.st_mode) && stat(path, &file) == 0 && S_ISREG(file.st_mode) &&
           file.st_nlink == 0;
}

hid_t OpenImage(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const CId access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
    constexpr std::size_t Increment = 65536;
    if (!file || H5Pset_fapl_core(access, Increment, 0) < 0 ||
        H5Pset_file_image(access, bytes.data(), bytes.size()) < 0)
        GiveUp();
    return H5Fopen("image", H5F_ACC_RDONLY, access);
}

}  // namespace

bool IsHdf(const char *path)
{
    PrepareLibrary();
    return H5Fis_hdf5(path) > 0;
}

hid_t OpenHdf(const char *path)
{
    PrepareLibrary();
    if (IsNameless(path))
        return OpenImage(path);
    return H5Fopen(path, H5F_ACC_RDONLY, H5P_DEFAULT);
}

std::size_t CountOf(hid_t space)
{
    const hssize_t count = H5Sget_simple_extent_npoints(space);
    if (count < 0)
        GiveUp();
    return static_cast<std::size_t>(count);
}

std::string ReadText(hid_t object, const char *name)
{
    if (H5Aexists(object, name) <= 0)
        return {};
    const CId attribute(H5Aopen(object, name, H5P_DEFAULT), H5Aclose);
    const CId type(H5Aget_type(attribute), H5Tclose), space(H5Aget_space(attribute), H5Sclose);
    if (H5Tget_class(type) != H5T_STRING || CountOf(space) != 1)
        return {};
    std::string text;
    if (H5Tis_variable_str(type) > 0) {
        char *found = nullptr;
        if (H5Aread(attribute, type, &found) < 0)
            GiveUp();
        text = found != nullptr ? std::string(found, strnlen(found, MaximumNameLength)) : "";
        H5free_memory(found);
    } else {
        text.resize(H5Tget_size(type));
        if (text.size() > MaximumNameLength || H5Aread(attribute, type, text.data()) < 0)
            GiveUp();
    }
    text.resize(std::min(text.size(), text.find('\0')));
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

std::uint64_t ReadNumber(hid_t object, const char *name)
{
    if (H5Aexists(object, name) <= 0)
        return 0;
    const CId attribute(H5Aopen(object, name, H5P_DEFAULT), H5Aclose);
    const CId space(H5Aget_space(attribute), H5Sclose);
    std::uint64_t number = 0;
    if (CountOf(space) != 1 || H5Aread(attribute, H5T_NATIVE_UINT64, &number) < 0)
        GiveUp();
    return number;
}

// Each name is a sequence of single characters.
std::vector<std::string> ReadFieldOrder(hid_t object)
{
    constexpr const char *Name = "MATLAB_fields";
    std::vector<std::string> names;
    if (H5Aexists(object, Name) <= 0)
        return names;
    const CId attribute(H5Aopen(object, Name, H5P_DEFAULT), H5Aclose);
    const CId type(H5Aget_type(attribute), H5Tclose), space(H5Aget_space(attribute), H5Sclose);
    const std::size_t count = CountOf(space);
    if (H5Tget_class(type) != H5T_VLEN || count > MaximumFields)
        return names;
    const CId character(H5Tget_super(type), H5Tclose);
    std::vector<hvl_t> texts(count);
    if (H5Tget_size(character) != 1 || H5Aread(attribute, type, texts.data()) < 0)
        GiveUp();
    for (const hvl_t &text : texts) {
        if (text.len > MaximumNameLength || (text.len > 0 && text.p == nullptr))
            GiveUp();
        names.emplace_back(static_cast<const char *>(text.p), text.len);
    }
    return names;
}
