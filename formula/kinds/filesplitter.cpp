#include "formula/kinds/filesplitter.h"

#include <exception>
#include <string_view>
#include <utility>

#include "core/fileformulaargs.h"
#include "formula/kinds/keywords.h"
#include "formula/kinds/tableformula.h"
#include "signal/signal.h"

namespace {

using CElements = std::vector<SimpleString::CStr>;

bool SplitCustom(CFileFormulaArgs &args, CElements &elements, int count, long long)
{
    return SplitCustomFormula(args, elements, count);
}

bool SplitTxt(CFileFormulaArgs &args, CElements &elements, int count, long long startTime)
{
    return SplitTableFormula(TxtTables, std::string(TxtKeyword), args, elements, count, startTime);
}

bool SplitMat(CFileFormulaArgs &args, CElements &elements, int count, long long startTime)
{
    return SplitTableFormula(MatTables, std::string(MatKeyword), args, elements, count, startTime);
}

// In the order in which the keywords are looked for.
struct SFileKind {
    std::string_view keyword;
    bool (*parseArguments)(const char *text, CFileFormulaArgs &args);
    bool (*split)(CFileFormulaArgs &args, CElements &elements, int count, long long startTime);
};

constexpr SFileKind FileKinds[] = {
    {CustomKeyword, ParseCustomArgs, SplitCustom},
    {TxtKeyword, ParseTxtArgs, SplitTxt},
    {MatKeyword, ParseMatArgs, SplitMat},
};

int Split(const SFileKind &kind, const CKeywordSearch &search, CElements &elements, int count, long long startTime)
try {
    CFileFormulaArgs args;
    if (!kind.parseArguments(ArgumentsOf(search.Formula(), search.Behind(kind.keyword)), args))
        return 0;
    elements.clear();
    return kind.split(args, elements, count, startTime) ? 1 : 0;
} catch (const std::exception &) {  // from the reader of a file; nothing throws out of the library
    return 0;
}

}  // namespace

int SplitFileFormula(const CKeywordSearch &search, CElements &elements, int count, long long startTime)
{
    for (const SFileKind &kind : FileKinds)
        if (search.Has(kind.keyword))
            return Split(kind, search, elements, count, startTime);
    return 0;
}

TReference<ISignalIterator> WalkElements(ISignal &signal)
{
    ISignalIterator *elements = nullptr;
    return TReference<ISignalIterator>(signal.CreateSignalIterator(&elements) >= 0 ? elements : nullptr);
}

bool AppendElements(ISignal &signal, const std::string &head, const std::string &tail, CElements &elements, int count)
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
        elements.emplace_back((head + name + tail).c_str());
    }
    return std::cmp_equal(elements.size(), count);
}
