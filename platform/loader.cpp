#include "platform/loader.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/auxv.h>

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

// @param folder  there is none in one that is not absolute
HMODULE OpenIn(const SLibrary &library, const fs::path &folder)
{
    const fs::path path = folder / library.fileName;
    std::error_code error;
    return path.is_absolute() && fs::is_regular_file(path, error) ? Open(library, path.string()) : nullptr;
}

// The folders of a list such as PATH, as they are written; empty ones stand for the current folder.
std::vector<std::string_view> FoldersIn(const char *variable, const char *separators)
{
    const char *list = std::getenv(variable);
    std::string_view rest = list != nullptr ? list : "";
    std::vector<std::string_view> folders;
    if (rest.empty())
        return folders;
    std::size_t end = 0;
    while ((end = rest.find_first_of(separators)) != std::string_view::npos) {
        folders.push_back(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    folders.push_back(rest);
    return folders;
}

// A folder that is not absolute depends on the one that the host happens to be in, and whoever can write there would
// choose what is loaded.
bool IsAbsolute(std::string_view folder)
{
    return folder.starts_with('/');
}

// The folder of libraries of the MATLAB whose program a shell would start, or one that LD_LIBRARY_PATH names.
HMODULE OpenInstalled(const SLibrary &library)
{
    for (const std::string_view folder : FoldersIn("PATH", ":")) {
        std::error_code error;
        const fs::path program = fs::canonical(fs::path(folder) / "matlab", error);  // often a link
        if (!IsAbsolute(folder) || error || !fs::is_regular_file(program, error))
            continue;
        if (HMODULE module = OpenIn(library, program.parent_path() / "glnxa64"))
            return module;
    }
    for (const std::string_view folder : FoldersIn("LD_LIBRARY_PATH", ":;")) {
        HMODULE module = IsAbsolute(folder) ? OpenIn(library, folder) : nullptr;
        if (module != nullptr)
            return module;
    }
    return nullptr;
}

fs::path FolderOfProgram()
{
    std::error_code error;
    const fs::path program = fs::canonical("/proc/self/exe", error);
    if (!error)
        return program.parent_path();
    const auto *name = reinterpret_cast<const char *>(getauxval(AT_EXECFN));  // where there is no /proc
    const fs::path started = name != nullptr ? name : "";
    return started.is_absolute() ? started.parent_path() : fs::path();
}

// The folder of the library, or of the program, that some code is in. Deliberate: a program is never looked for under the
// name it was started by, which is a word on the command line and may be that of another file in the current folder.
fs::path FolderOf(const void *code)
{
    Dl_info place = {};
    void *extra = nullptr;
    if (dladdr1(code, &place, &extra, RTLD_DL_LINKMAP) == 0 || extra == nullptr)
        return {};
    const char *name = static_cast<const link_map *>(extra)->l_name;
    if (name == nullptr || std::string_view(name).find('/') == std::string_view::npos)  // the program has none
        return FolderOfProgram();
    std::error_code error;
    return fs::canonical(name, error).parent_path();
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

// What the system's loader finds by the name alone, last. It would look in the folders of LD_LIBRARY_PATH that are not
// absolute, too: with one in the list it is not asked.
HMODULE OpenOfSystem(const SLibrary &library)
{
    if (!std::ranges::all_of(FoldersIn("LD_LIBRARY_PATH", ":;"), IsAbsolute))
        return nullptr;
    return Open(library, library.fileName);
}

HMODULE OpenAnywhere(const SLibrary &library)
{
    if (HMODULE module = OpenInstalled(library))
        return module;
    if (HMODULE module = OpenBundled(library))
        return module;
    return OpenOfSystem(library);
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
