#include "signal/signal.h"

#include <new>
#include <utility>

#include "settings/typetext.h"
#include "signal/tree/signalimp.h"

using namespace tesk;

namespace {

// Room for the description of every predefined type.
constexpr unsigned StdTypeRoom = 2048;

// Gives `signal` to the caller if its type could be applied.
long HandOutTyped(TReference<CSignalImp> signal, long typed, ISignal **out)
{
    if (typed == E_OUTOFMEMORY)
        return E_OUTOFMEMORY;
    if (typed < 0)
        return E_FAIL;
    *out = signal.release();
    return S_OK;
}

}  // namespace

long CreateEmptySignal(ISignal **signal)
{
    return HandOutNew<CSignalImp>(signal, nullptr);
}

long CreateSignal(const Kestrin::KTypeInfo &type, ISignal *parent, ISignal **signal)
try {
    if (signal == nullptr)
        return E_INVALIDARG;
    TReference<CSignalImp> made = NewSignal(parent);
    const long typed = made->SetTypeInfo(type);
    return HandOutTyped(std::move(made), typed, signal);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CreateSignal(const char *type, ISignal *parent, ISignal **signal)
try {
    if (signal == nullptr)
        return E_INVALIDARG;
    TReference<CSignalImp> made = NewSignal(parent);
    const long typed = type != nullptr && *type != 0 ? made->SetTypeInfoString(type) : S_OK;
    return HandOutTyped(std::move(made), typed, signal);
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
}

long CreateStdSignal(unsigned type, ISignal *parent, ISignal **signal)
{
    char text[StdTypeRoom];
    unsigned size = StdTypeRoom;
    if (CreateStdTypeInfo(static_cast<int>(type), text, &size) != 0)
        return E_INVALIDARG;
    return CreateSignal(text, parent, signal);
}
