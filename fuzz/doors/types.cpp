// Any text as the type of a signal: a description, what is typed on the command line for one, and the values of what was read.
#include <algorithm>
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signal/tree/countsignals.h"
#include "tools/commandline.h"
#include "tools/play/typeargument.h"

namespace fuzz {

namespace {

constexpr int MostParts = 20;
constexpr long long MostSignals = 300;

// What a text shows of bytes, read, shows the same.
void UseValues(const Kestrin::KTypeInfo &type)
{
    unsigned char value[64] = {};
    if (type.GetSimpleSize_OldFormat() > sizeof value)
        return;
    for (const int byte : {0, 1, 0x41, 0xFF}) {
        std::ranges::fill(value, static_cast<unsigned char>(byte));
        const std::string shown = type.GetValueString_OldFormat(value, 2, 0, -1, false);
        if (type.GetBytes_OldFormat(shown.c_str(), value, sizeof value, 2, 0))
            Require(type.GetValueString_OldFormat(value, 2, 0, -1, false) == shown);
    }
}

void UseType(const Kestrin::KTypeInfo &type)
{
    type.GetTypeIdentifier();
    type.GetNbOfElements();
    int left = 0, right = 0, direction = 0;
    for (int i = -1; i <= std::min(type.GetNbOfDimensions(), MostParts); ++i)
        type.GetArrayDimensionRanges(i, left, right, direction);
    UseValues(type);
    if (const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo())
        UseType(*element);
    for (int i = 0; i < std::min(type.GetNbOfFields(), MostParts); ++i)
        UseType(*type.GetFieldKTypeInfo(i));
}

void UseSignal(const char *description)
{
    ISignal *made = nullptr;
    if (CreateSignal(description, nullptr, &made) < 0)
        return;
    const tesk::TReference<ISignal> signal(made);
    signal->SetName("s");
    signal->GetStdType();
    signal->GetInitialValueText(false);
    if (ISignalContainer *const children = signal->GetChildren()) {
        ISignal *child = nullptr;
        if (children->GetAt(children->GetCount() - 1, &child) >= 0)
            child->GetName();
    }
}

std::string ReadArgument(const std::string &text)
try {
    return ReadTypeArgument(text);
} catch (const CRefusal &) {
    return {};
}

}  // namespace

void Types(std::string_view input)
{
    const std::string text(input);
    const Kestrin::KTypeInfo type(text.c_str());
    Require(Kestrin::KTypeInfo::CheckTypeInfo(text.c_str()) == (type.GetKind() != 0));
    UseType(type);
    if (tesk::CountSignals(type) <= MostSignals)
        UseSignal(text.c_str());
    const std::string description = ReadArgument(text);
    Require(description.empty() || Kestrin::KTypeInfo::CheckTypeInfo(description.c_str()));
}

}  // namespace fuzz
