#include "platform/loader.h"

#include <dlfcn.h>

#include <filesystem>

#include "testpaths.h"
#include "waveform/fakematlab/installed.h"

namespace {

// A loaded library that is given up at the end.
class CLibrary {
public:
    explicit CLibrary(const char *name) : m_library(LoadLibraryA(name)) {}
    CLibrary(const CLibrary &) = delete;
    CLibrary &operator=(const CLibrary &) = delete;
    ~CLibrary()
    {
        if (m_library != nullptr)
            FreeLibrary(m_library);
    }

    bool IsThere() const { return m_library != nullptr; }
    bool Has(const char *name) const { return GetProcAddress(m_library, name) != nullptr; }

    std::string FolderOf(const char *name) const
    {
        Dl_info place = {};
        if (dladdr(GetProcAddress(m_library, name), &place) == 0)
            return "";
        return std::filesystem::canonical(place.dli_fname).parent_path().string();
    }

private:
    HMODULE m_library;
};

TEST(Loader, FindsTheBundledLibrariesWhereThereIsNoMatlab)
{
    const CLibrary libmat("libmat.dll"), libmx("libmx.dll");
    ASSERT_TRUE(libmat.IsThere());
    ASSERT_TRUE(libmx.IsThere());
    for (const char *name : {"matOpen", "matClose", "matGetVariable"})
        EXPECT_TRUE(libmat.Has(name)) << name;
    for (const char *name :
         {"mxGetClassID", "mxGetNumberOfDimensions", "mxGetNumberOfElements", "mxGetNumberOfFields", "mxGetDimensions",
          "mxGetPr", "mxGetNaN", "mxIsNaN", "mxIsStruct", "mxGetFieldNumber", "mxGetFieldNameByNumber", "mxGetField"})
        EXPECT_TRUE(libmx.Has(name)) << name;
}

TEST(Loader, KnowsLibrariesInAnyLetterCase)
{
    EXPECT_TRUE(CLibrary("LibMat.DLL").IsThere());
}

TEST(Loader, LoadsNothingElse)
{
    for (const char *name : {"", "libmat", "libmat.so", "libc.so.6", "../libmat.dll", "kernel32.dll"})
        EXPECT_EQ(LoadLibraryA(name), nullptr) << name;
    EXPECT_EQ(LoadLibraryA(nullptr), nullptr);
}

TEST(Loader, PrefersAnInstalledMatlab)
{
    const CInstalledMatlab installed(TESK_FAKE_MATLAB);
    const CLibrary libmat("libmat.dll"), libmx("libmx.dll");
    const std::string folder = std::filesystem::canonical(TESK_FAKE_MATLAB "/bin/glnxa64").string();
    EXPECT_EQ(libmat.FolderOf("matOpen"), folder);
    EXPECT_EQ(libmx.FolderOf("mxGetPr"), folder);
}

TEST(Loader, FollowsALinkToTheProgramOfMatlab)
{
    const CMatlabCopy other;
    std::filesystem::create_directories(other.Root() + "/links/bin");
    std::filesystem::create_symlink(TESK_FAKE_MATLAB "/bin/matlab", other.Root() + "/links/bin/matlab");
    const CInstalledMatlab installed(other.Root() + "/links");
    EXPECT_EQ(CLibrary("libmat.dll").FolderOf("matOpen"),
              std::filesystem::canonical(TESK_FAKE_MATLAB "/bin/glnxa64").string());
}

TEST(Loader, GoesOnLookingPastAFolderWithoutLibraries)
{
    const CMatlabCopy empty;
    std::filesystem::remove_all(empty.Root() + "/bin/glnxa64");
    const CInstalledMatlab installed(empty.Root());
    EXPECT_TRUE(CLibrary("libmat.dll").Has("matOpen"));
}

TEST(Loader, DoesNotTakeSomebodyElsesLibraryOfThatName)
{
    const CMatlabCopy other;
    for (const char *entry : {"matOpen", "matClose", "matGetVariable"})
        other.Rename("libmat.so", entry);
    const CInstalledMatlab installed(other.Root());
    const CLibrary libmat("libmat.dll");
    EXPECT_TRUE(libmat.Has("matOpen"));
    EXPECT_EQ(libmat.FolderOf("matOpen").find(other.Root()), std::string::npos);
}

TEST(Loader, DoesNotTakeAFileThatIsNoLibrary)
{
    const CMatlabCopy other;
    std::ofstream(other.Library("libmat.so")) << "text";
    const CInstalledMatlab installed(other.Root());
    EXPECT_TRUE(CLibrary("libmat.dll").Has("matOpen"));
}

TEST(Loader, TakesBothLibrariesFromOnePlace)
{
    const CMatlabCopy half;
    std::filesystem::remove(half.Library("libmx.so"));
    const CInstalledMatlab installed(half.Root());
    const CLibrary libmat("libmat.dll");
    EXPECT_TRUE(libmat.IsThere());
    EXPECT_FALSE(CLibrary("libmx.dll").IsThere());
}

TEST(Loader, GivesNothingOfALibraryThatIsNotLoaded)
{
    int other = 0;
    EXPECT_EQ(GetProcAddress(nullptr, "malloc"), nullptr);
    EXPECT_EQ(GetProcAddress(&other, "malloc"), nullptr);
    const HMODULE libmat = LoadLibraryA("libmat.dll");
    EXPECT_EQ(GetProcAddress(libmat, nullptr), nullptr);
    EXPECT_EQ(GetProcAddress(libmat, "matPutVariable"), nullptr);
    EXPECT_NE(FreeLibrary(libmat), 0);
    EXPECT_EQ(GetProcAddress(libmat, "matOpen"), nullptr);
}

TEST(Loader, FreesALibraryAsOftenAsItWasLoaded)
{
    const HMODULE first = LoadLibraryA("libmx.dll"), second = LoadLibraryA("libmx.dll");
    EXPECT_EQ(first, second);
    EXPECT_NE(FreeLibrary(first), 0);
    EXPECT_NE(GetProcAddress(second, "mxGetPr"), nullptr);
    EXPECT_NE(FreeLibrary(second), 0);
    EXPECT_EQ(FreeLibrary(second), 0);
    EXPECT_EQ(FreeLibrary(nullptr), 0);
    int other = 0;
    EXPECT_EQ(FreeLibrary(&other), 0);
}

}  // namespace
