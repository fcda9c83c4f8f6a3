#include "tools/play/matadvice.h"

#include <iterator>
#include <memory>

#include "core/fileformulaargs.h"
#include "platform/loader.h"
#include "tools/quote.h"
#include "waveform/mat/matlane.h"
#include "waveform/mat/matlibraries.h"
#include "waveform/mat/matvariable.h"
#include "waveform/matimporter.h"

namespace {

struct SModuleEnder {
    using pointer = HMODULE;
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using ModulePtr = std::unique_ptr<void, SModuleEnder>;

struct SMatFileEnder {
    void operator()(MATFile *file) const { tesk::MatLibraries().matClose(file); }
};
using MatFilePtr = std::unique_ptr<MATFile, SMatFileEnder>;

// Entry points that an importer does without. A library may lack them.
bool Is(const char *entry, const mxArray *array)
{
    const ModulePtr libmx(LoadLibraryA("libmx.dll"));
    const auto test = reinterpret_cast<bool (*)(const mxArray *)>(GetProcAddress(libmx.get(), entry));
    return test != nullptr && test(array);
}

// What is wrong with the program that reads the files for the library; empty for nothing.
std::string ReaderFault()
{
    const ModulePtr libmat(LoadLibraryA("libmat.dll"));
    const auto fault = reinterpret_cast<const char *(*)()>(GetProcAddress(libmat.get(), "matTeskFault"));
    return fault != nullptr ? fault() : "";
}

// As the importer does, but for what it could not do anyway.
MatFilePtr OpenFile(const CFileFormulaArgs &args)
{
    const std::string path(args.m_file);
    MatFilePtr file(tesk::MatLibraries().matOpen(path.c_str(), "r"));
    if (file == nullptr && ReaderFault().empty())
        file.reset(tesk::MatLibraries().matOpen((path + ".mat").c_str(), "r"));
    return file;
}

constexpr const char *ClassNames[] = {"unknown", "cell",   "struct", "logical", "char",           "void",
                                      "double",  "single", "int8",   "uint8",   "int16",          "uint16",
                                      "int32",   "uint32", "int64",  "uint64",  "function_handle"};

std::string ClassName(int classId)
{
    return classId >= 0 && classId < static_cast<int>(std::size(ClassNames)) ? ClassNames[classId] : "object";
}

// Whether MATLAB's double() makes numbers of a class.
bool HasNumbers(int classId)
{
    constexpr int Logical = 3, Char = 4, Single = 7, LastInteger = 15;
    return classId == Logical || classId == Char || (classId >= Single && classId <= LastInteger);
}

// Why a variable cannot be played; empty if it can.
std::string ExplainVariable(const std::string &name, const mxArray *array)
{
    constexpr int Double = 6;
    const std::string quoted = "variable " + Quote(name);
    const int classId = tesk::MatLibraries().mxGetClassID(array);
    if (Is("mxIsSparse", array))
        return quoted + " is sparse; save it as full(" + name + ")";
    if (HasNumbers(classId))
        return quoted + " is of class " + ClassName(classId) + ", and doubles are played; save it as double(" + name +
               ")";
    if (classId != Double)
        return quoted + " is of class " + ClassName(classId) + ", and a matrix of doubles is played";
    const int rank = tesk::MatLibraries().mxGetNumberOfDimensions(array);
    if (rank > 2)
        return quoted + " has " + std::to_string(rank) + " dimensions; save a matrix of two";
    return {};
}

std::string LossOf(const std::string &name, const mxArray *array)
{
    if (!Is("mxIsComplex", array))
        return {};
    return "variable " + Quote(name) + " is complex, and its imaginary part is not played; save real(" + name +
           ") or imag(" + name + ") to have the one that is meant";
}

// The first thing to be said of the variable of values, or that of times.
std::string FirstOfVariables(const CFileFormulaArgs &args, MATFile *file,
                             std::string (*say)(const std::string &name, const mxArray *array))
{
    constexpr int TimePoints = 4;
    tesk::SMatTarget target;
    if (!target.Read(args.m_signal))
        return {};
    const bool hasTimes = (args.m_flags & TimePoints) == 0 && !args.m_timeSource.IsEmpty();
    for (const std::string &name : {std::string(target.name), hasTimes ? std::string(args.m_timeSource) : ""}) {
        const mxArray *array = name.empty() ? nullptr : tesk::FindMatVariable(name.c_str(), file);
        const std::string words = array != nullptr ? say(name, array) : ReaderFault();
        if (!words.empty())
            return words;
    }
    return {};
}

}  // namespace

std::string ExplainMatFormula(const CFileFormulaArgs &args)
{
    if (!LoadMatLibraries())
        return "neither an installed MATLAB nor the libraries that come with tesk can be loaded; these lie in "
               "../lib/tesk beside the folder of the tool";
    const MatFilePtr file = OpenFile(args);
    if (file != nullptr)
        return FirstOfVariables(args, file.get(), ExplainVariable);
    const std::string fault = ReaderFault();
    return fault.empty() ? "the file is no MAT-file, or it is damaged" : "the file cannot be read: " + fault;
}

std::string FindMatLoss(const CFileFormulaArgs &args)
{
    const MatFilePtr file = LoadMatLibraries() ? OpenFile(args) : nullptr;
    return file != nullptr ? FirstOfVariables(args, file.get(), LossOf) : "";
}
