#include "platform/loader.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/crt.h"

namespace {

namespace fs = std::filesystem;

// What can be loaded, and entry points by which a library of that name shows that it is not somebody else's. Deliberate:
// one is enough, so that an incomplete MATLAB is used and found incomplete.
struct SLibrary {
    const char *suiteName;
    const char *fileName;
    std::initializer_list<const char *> marks;
};

const SLibrary Libraries[] = {
    {"libmat.dll", "libmat.so", {"matOpen", "matClose", "matGetVariable"}},
    {"libmx.dll", "libmx.so", {"mxGetClassID", "mxGetPr", "mxGetNumberOfElements", "mxGetField"}},
};
const SLibrary &Libmat = Libraries[0];

// A library in use, once for each time that it was loaded.
struct SLoaded {
    HMODULE module;
    const SLibrary *library;
};

std::vector<SLoaded> &Loaded()
{
    static std::vector<SLoaded> s_loaded;
    return s_loaded;
}

const SLibrary *FindLibrary(const char *name)
{
    if (name == nullptr)
        return nullptr;
    for (const SLibrary &library : Libraries) {
        if (_stricmp(name, library.suiteName) == 0)
            return &library;
    }
    return nullptr;
}

bool IsLoaded(HMODULE module)
{
    return std::ranges::find(Loaded(), module, &SLoaded::module) != Loaded().end();
}

HMODULE Open(const SLibrary &library, const std::string &path)
{
    HMODULE module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr)
        return nullptr;
    for (const char *mark : library.marks) {
        if (dlsym(module, mark) != nullptr)
            return module;
    }
    dlclose(module);
    return nullptr;
}

HMODULE OpenIn(const SLibrary &library, const fs::path &folder)
{
    const fs::path path = folder / library.fileName;
    std::error_code error;
    return fs::is_regular_file(path, error) ? Open(library, path.string()) : nullptr;
}

// The folder of libraries of the MATLAB whose program a shell would start.
HMODULE OpenInstalled(const SLibrary &library)
{
    const char *list = std::getenv("PATH");
    std::string_view rest = list != nullptr ? list : "";
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        std::error_code error;
        const fs::path program = fs::canonical(fs::path(folder) / "matlab", error);  // often a link
        if (folder.empty() || error || !fs::is_regular_file(program, error))
            continue;
        if (HMODULE module = OpenIn(library, program.parent_path() / "glnxa64"))
            return module;
    }
    return nullptr;
}

fs::path FolderOf(const void *code)
{
    Dl_info place = {};
    std::error_code error;
    if (dladdr(code, &place) == 0 || place.dli_fname == nullptr)
        return {};
    fs::path file = fs::canonical(place.dli_fname, error);
    if (error)  // a program that was started by its name alone
        file = fs::canonical("/proc/self/exe", error);
    return file.parent_path();
}

// The bundled libraries have a folder of their own near the library, or the program, that this code is in.
HMODULE OpenBundled(const SLibrary &library)
{
    const fs::path folder = FolderOf(reinterpret_cast<const void *>(&OpenBundled));
    for (const char *place : {"tesk", "../tesk", "../lib/tesk", "../" TESK_LIBDIR "/tesk"}) {
        if (HMODULE module = OpenIn(library, folder / place))
            return module;
    }
    return OpenIn(library, TESK_MATLAB_FOLDER);
}

// libmx knows the arrays of its own libmat only, so it comes from where that came from.
HMODULE OpenBesideLibmat(const SLibrary &library, HMODULE libmat)
{
    for (const char *mark : Libmat.marks) {
        if (const void *code = dlsym(libmat, mark))
            return OpenIn(library, FolderOf(code));
    }
    return nullptr;
}

HMODULE OpenAnywhere(const SLibrary &library)
{
    if (HMODULE module = OpenInstalled(library))
        return module;
    if (HMODULE module = Open(library, library.fileName))
        return module;
    return OpenBundled(library);
}

}  // namespace

HMODULE LoadLibraryA(const char *name)
try {
    const SLibrary *library = FindLibrary(name);
    if (library == nullptr)
        return nullptr;
    Loaded().reserve(Loaded().size() + 1);
    const auto libmat = std::ranges::find(Loaded(), &Libmat, &SLoaded::library);
    const bool hasNeighbour = library != &Libmat && libmat != Loaded().end();
    HMODULE module = hasNeighbour ? OpenBesideLibmat(*library, libmat->module) : OpenAnywhere(*library);
    if (module != nullptr)
        Loaded().push_back({module, library});
    return module;
} catch (const std::bad_alloc &) {
    return nullptr;
} catch (const fs::filesystem_error &) {
    return nullptr;
}

void *GetProcAddress(HMODULE library, const char *name)
{
    return name != nullptr && IsLoaded(library) ? dlsym(library, name) : nullptr;
}

int FreeLibrary(HMODULE library)
{
    const auto loaded = std::ranges::find(Loaded(), library, &SLoaded::module);
    if (loaded == Loaded().end())
        return 0;
    Loaded().erase(loaded);
    dlclose(library);
    return 1;
}
