#include "waveform/mat/matlibraries.h"

#include "platform/loader.h"
#include "waveform/matimporter.h"

using namespace tesk;

namespace {

struct SBinding {
    bool tried = false;
    bool loaded = false;
    HMODULE libmat = nullptr;
    HMODULE libmx = nullptr;
    SMatLibraries entries = {};
};

SBinding g_matBinding;

template <typename Function>
bool Bind(HMODULE library, const char *name, Function *&entry)
{
    entry = reinterpret_cast<Function *>(GetProcAddress(library, name));
    return entry != nullptr;
}

bool BindLibmat(HMODULE library, SMatLibraries &entries)
{
    return Bind(library, "matOpen", entries.matOpen) && Bind(library, "matClose", entries.matClose) &&
           Bind(library, "matGetVariable", entries.matGetVariable);
}

// Deliberate: what is not called must be there too.
bool BindLibmx(HMODULE library, SMatLibraries &entries)
{
    return Bind(library, "mxGetClassID", entries.mxGetClassID) &&
           Bind(library, "mxGetNumberOfDimensions", entries.mxGetNumberOfDimensions) &&
           Bind(library, "mxGetNumberOfElements", entries.mxGetNumberOfElements) &&
           Bind(library, "mxGetNumberOfFields", entries.mxGetNumberOfFields) &&
           Bind(library, "mxGetDimensions", entries.mxGetDimensions) && Bind(library, "mxGetPr", entries.mxGetPr) &&
           Bind(library, "mxGetNaN", entries.mxGetNaN) && Bind(library, "mxIsNaN", entries.mxIsNaN) &&
           Bind(library, "mxIsStruct", entries.mxIsStruct) &&
           Bind(library, "mxGetFieldNumber", entries.mxGetFieldNumber) &&
           Bind(library, "mxGetFieldNameByNumber", entries.mxGetFieldNameByNumber) &&
           Bind(library, "mxGetField", entries.mxGetField);
}

void Release(SBinding &binding)
{
    if (binding.libmx != nullptr)
        FreeLibrary(binding.libmx);
    if (binding.libmat != nullptr)
        FreeLibrary(binding.libmat);
    binding = SBinding();
}

}  // namespace

bool LoadMatLibraries()
{
    SBinding &binding = g_matBinding;
    if (binding.tried)
        return binding.loaded;
    binding.libmat = LoadLibraryA("libmat.dll");
    binding.libmx = LoadLibraryA("libmx.dll");
    const bool loaded = BindLibmat(binding.libmat, binding.entries) && BindLibmx(binding.libmx, binding.entries);
    if (!loaded)
        Release(binding);
    binding.loaded = loaded;
    binding.tried = true;
    return loaded;
}

void ReleaseMatLibraries()
{
    Release(g_matBinding);
}

const SMatLibraries &tesk::MatLibraries()
{
    return g_matBinding.entries;
}
