#include "tools/play/matadvice.h"

#include <string>
#include <vector>

#include "core/fileformulaargs.h"
#include "tools/examine/nearname.h"
#include "tools/files/matlibrary.h"
#include "tools/files/matlist.h"
#include "tools/quote.h"
#include "waveform/mat/matlane.h"
#include "waveform/mat/matlibraries.h"
#include "waveform/mat/matvariable.h"
#include "waveform/matimporter.h"

namespace {

using tesk::MatClassName;
using tesk::MatFilePtr;
using tesk::OpenMatFile;

// As the importer does, but for what it could not do anyway.
MatFilePtr OpenFileOf(const CFileFormulaArgs &args)
{
    const std::string path(args.m_file);
    MatFilePtr file = OpenMatFile(path);
    if (file == nullptr && tesk::MatReaderFault().empty())
        file = OpenMatFile(path + ".mat");
    return file;
}

// Whether MATLAB's double() makes numbers of a class.
bool HasNumbers(int classId)
{
    constexpr int Logical = 3, Char = 4, Single = 7, LastInteger = 15;
    return classId == Logical || classId == Char || (classId >= Single && classId <= LastInteger);
}

// A variable that is not there, and those that are.
std::string ExplainMissing(const std::string &name, MATFile *file)
{
    const auto list = tesk::ListMatVariables(file);
    if (!list || list->empty())
        return {};
    std::vector<std::string> names;
    for (const tesk::SMatListed &variable : *list)
        names.push_back(variable.name);
    return "the file has no variable " + Quote(name) + tesk::DidYouMean(name, names) + "; its variables are " +
           tesk::FirstNames(*list);
}

// Why a variable cannot be played; empty if it can.
std::string ExplainVariable(const std::string &name, const mxArray *array, MATFile *file)
{
    if (array == nullptr)
        return ExplainMissing(name, file);
    constexpr int Double = 6;
    const std::string quoted = "variable " + Quote(name);
    const int classId = tesk::MatLibraries().mxGetClassID(array);
    if (tesk::IsMatSparse(array))
        return quoted + " is sparse; save it as full(" + name + ")";
    if (HasNumbers(classId))
        return quoted + " is of class " + MatClassName(classId) + ", and doubles are played; save it as double(" +
               name + ")";
    if (classId != Double)
        return quoted + " is of class " + MatClassName(classId) + ", and a matrix of doubles is played";
    const int rank = tesk::MatLibraries().mxGetNumberOfDimensions(array);
    if (rank > 2)
        return quoted + " has " + std::to_string(rank) + " dimensions; save a matrix of two";
    return {};
}

std::string LossOf(const std::string &name, const mxArray *array, MATFile *)
{
    if (array == nullptr || !tesk::IsMatComplex(array))
        return {};
    return "variable " + Quote(name) + " is complex, and its imaginary part is not played; save real(" + name +
           ") or imag(" + name + ") to have the one that is meant";
}

// The first thing to be said of the variable of values, or that of times.
std::string FirstOfVariables(const CFileFormulaArgs &args, MATFile *file,
                             std::string (*say)(const std::string &name, const mxArray *array, MATFile *file))
{
    constexpr int TimePoints = 4;
    tesk::SMatTarget target;
    if (!target.Read(args.m_signal))
        return {};
    const bool hasTimes = (args.m_flags & TimePoints) == 0 && !args.m_timeSource.IsEmpty();
    for (const std::string &name : {std::string(target.name), hasTimes ? std::string(args.m_timeSource) : ""}) {
        const mxArray *array = name.empty() ? nullptr : tesk::FindMatVariable(name.c_str(), file);
        const std::string fault = array == nullptr ? tesk::MatReaderFault() : "";
        std::string words = fault.empty() && !name.empty() ? say(name, array, file) : fault;
        if (!words.empty())
            return words;
    }
    return {};
}

}  // namespace

std::string ExplainMatFormula(const CFileFormulaArgs &args)
{
    if (!LoadMatLibraries())
        return tesk::NoMatLibraries;
    const MatFilePtr file = OpenFileOf(args);
    if (file != nullptr)
        return FirstOfVariables(args, file.get(), ExplainVariable);
    return tesk::MatFileFault();
}

std::string FindMatLoss(const CFileFormulaArgs &args)
{
    const MatFilePtr file = LoadMatLibraries() ? OpenFileOf(args) : nullptr;
    return file != nullptr ? FirstOfVariables(args, file.get(), LossOf) : "";
}
