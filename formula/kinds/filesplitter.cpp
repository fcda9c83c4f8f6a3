#include "formula/kinds/filesplitter.h"

#include <exception>
#include <utility>

#include "core/fileformulaargs.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "signal/signal.h"

namespace tesk {

int SplitFileFormula(const SFormulaKind &kind, const SSplitting &splitting,
                     const std::function<bool(CFileFormulaArgs &args)> &splitArguments)
try {
    CFileFormulaArgs args;
    if (!kind.parseArguments(ArgumentsOf(splitting.formula, splitting.behindKeyword), args))
        return 0;
    splitting.elements.clear();
    return splitArguments(args) ? 1 : 0;
} catch (const std::exception &) {  // from the reader of a file; nothing throws out of the library
    return 0;
}

TReference<ISignalIterator> WalkElements(ISignal &signal)
{
    ISignalIterator *elements = nullptr;
    return TReference<ISignalIterator>(signal.CreateSignalIterator(&elements) >= 0 ? elements : nullptr);
}

bool AppendElements(ISignal &signal, const std::string &head, const std::string &tail, const SSplitting &splitting)
{
    constexpr unsigned NameSize = 260;
    const TReference<ISignalIterator> walk = WalkElements(signal);
    if (walk == nullptr)
        return false;
    ISignal *element = nullptr;
    while (walk->Next(1, &element, nullptr) == S_OK) {
        char name[NameSize];
        if (element->GetFullName(name, NameSize) < 0)
            return false;
        splitting.elements.emplace_back((head + name + tail).c_str());
    }
    return std::cmp_equal(splitting.elements.size(), splitting.count);
}

}  // namespace tesk
