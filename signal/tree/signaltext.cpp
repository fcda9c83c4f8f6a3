// The values of a signal as text, and back.
#include <cstring>
#include <string>
#include <vector>

#include "signal/tree/signalimp.h"
#include "signal/tree/valuescratch.h"

namespace {

constexpr int Decimal = 10;
constexpr int Binary = 2;  // vectors

// Deliberate: a vector has a text only if the waves of its elements are no wider together than this, which is to say
// if it has one element.
constexpr unsigned VectorRoom = 4;

// A marked event that lies over no ordinary one carries no value.
bool CarriesValue(IEvent &event)
{
    constexpr unsigned Marked = 1, Both = 3;
    return (event.GetFlags() & Both) != Marked;
}

// Appends the text that a child has made, unless it is one of this library and made it in place.
void AppendForeign(CValueScratch &scratch, const char *text, std::size_t cursorBefore)
{
    if (text != nullptr && scratch.Cursor() == cursorBefore)
        scratch.Append(std::string(text));
}

// Copies the first values of all waves from `signal` down, depth first, one behind the other.
// @return false if one has no first value, or if they do not fit
bool CopyFirstValues(ISignal &signal, unsigned char *buffer, std::size_t size, std::size_t &used)
{
    if (ISignalWave *wave = signal.GetWave(); wave != nullptr) {
        const unsigned width = wave->GetValueWidth();
        if (width > size - used || wave->GetEventValue(0, buffer + used, width) < 0)
            return false;
        used += width;
        return true;
    }
    ISignalContainer *children = signal.GetChildren();
    const unsigned count = children != nullptr ? children->GetCount() : 0;
    for (unsigned i = 0; i < count; ++i) {
        ISignal *child = nullptr;
        if (children->GetAt(i, &child) < 0 || !CopyFirstValues(*child, buffer, size, used))
            return false;
    }
    return true;
}

}  // namespace

// @return the text of a value of which `available` bytes are there; empty if there is none
std::string CSignalImp::TextOf(const Kestrin::KTypeInfo &type, const void *value, std::size_t available, int radix,
                               bool flag)
{
    constexpr int WithOption = 2;
    if (value == nullptr || type.GetSimpleSize_OldFormat() > available)
        return std::string();
    return type.GetValueString_OldFormat(value, radix, GetValueTextOption() ? WithOption : 0, -1, flag);
}

bool CSignalImp::AppendText(const Kestrin::KTypeInfo &type, const void *value, std::size_t available, int radix,
                            bool flag)
{
    const std::string text = TextOf(type, value, available, radix, flag);
    ValueScratch().Append(text);
    return !text.empty();
}

const char *CSignalImp::GetValueText(const void *value)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (type == nullptr)
        return nullptr;
    const std::string text = TextOf(*type, value, type->GetSimpleSize_OldFormat(), Decimal, false);
    return !text.empty() ? ValueScratch().Put(text) : nullptr;
}

const char *CSignalImp::GetEventText(IEvent *event)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (type == nullptr || m_wave == nullptr || event == nullptr)
        return nullptr;
    const std::string text = TextOf(*type, event->GetValuePtr(), event->GetValueSize(), Decimal, false);
    return !text.empty() ? ValueScratch().Put(text) : nullptr;
}

// @return false if there are more children than any signal has
bool CSignalImp::ReserveScratch()
{
    return ValueScratch().ReserveBoth(BytesOfChildren());
}

// Room for the values of the children, taken to be as wide as the first one's, and one more.
unsigned long long CSignalImp::BytesOfChildren()
{
    ISignal *first = nullptr;
    if (m_children == nullptr || m_children->GetAt(0, &first) < 0)
        return 0;
    return (m_children->GetCount() + 1ULL) * first->GetValueSize();
}

const char *CSignalImp::GetValueTextAt(long long time, int mode)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (type == nullptr || !ReserveScratch())
        return nullptr;
    CTextLevel level;
    bool made = false;
    if (type->IsScalar())
        made = AppendScalarAt(*type, time, mode);
    else if (type->IsSimple())
        made = AppendVectorAt(*type, time, mode);
    else
        made = AppendCompositeAt(time, mode);
    return made ? level.Text() : level.NoText();
}

bool CSignalImp::AppendScalarAt(const Kestrin::KTypeInfo &type, long long time, int mode)
{
    IEvent *event = nullptr;
    if (m_wave == nullptr || m_wave->FindEvent(time, mode, &event) < 0 || !CarriesValue(*event))
        return false;
    return AppendText(type, event->GetValuePtr(), event->GetValueSize(), Decimal, false);
}

bool CSignalImp::AppendVectorAt(const Kestrin::KTypeInfo &type, long long time, int mode)
{
    IBusEventIterator *made = nullptr;
    if (!ValueScratch().ReserveValue(BytesOfChildren()) || CreateBusEventIterator(&made) < 0)
        return false;
    const TReference<IBusEventIterator> iterator(made);
    if (iterator->Seek(time, mode) < 0 || iterator->GetTotalValueSize() > VectorRoom)
        return false;
    IBusEvent &event = *iterator->GetEvent();
    unsigned char *buffer = ValueScratch().Value();
    unsigned used = 0;
    for (unsigned i = 0; i < event.GetElementCount(); ++i) {
        const unsigned size = event.GetElementValue(i, buffer + used, VectorRoom - used);
        if (size == 0 || size > VectorRoom - used)
            return false;
        used += size;
    }
    return AppendText(type, buffer, used, Binary, false);
}

bool CSignalImp::AppendCompositeAt(long long time, int mode)
{
    if (m_children == nullptr)
        return false;
    bool any = false;
    const bool complete = AppendChildren([&](ISignal &child) {
        const char *text = child.GetValueTextAt(time, mode);
        any = any || text != nullptr;
        return text;
    });
    constexpr int Exact = 0;
    return complete && (any || mode != Exact);
}

// Appends the texts of all children in parentheses; a child without one leaves its place empty.
// @param textOf  makes the text of a child
// @return false if a child could not be got
template <typename TextOfChild>
bool CSignalImp::AppendChildren(TextOfChild textOf)
{
    CValueScratch &scratch = ValueScratch();
    const unsigned count = m_children->GetCount();
    scratch.Append("(");
    for (unsigned i = 0; i < count; ++i) {
        ISignal *child = nullptr;
        if (m_children->GetAt(i, &child) < 0)
            return false;
        const std::size_t cursor = scratch.Cursor();
        AppendForeign(scratch, textOf(*child), cursor);
        scratch.Append(",");
    }
    if (count > 0)
        scratch.DropLast();
    scratch.Append(")");
    return true;
}

const char *CSignalImp::GetInitialValueText(bool flag)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (type == nullptr || !ReserveScratch())
        return nullptr;
    CTextLevel level;
    bool made = true;
    if (type->IsScalar())
        made = AppendFirstScalar(*type, flag);
    else if (m_children == nullptr)
        return level.Abandon();
    else if (type->IsSimple())
        made = AppendFirstVector(*type, flag);
    else if (!AppendChildren([flag](ISignal &child) { return child.GetInitialValueText(flag); }))
        return level.Abandon();
    return made ? level.Text() : level.NoText();
}

bool CSignalImp::AppendFirstScalar(const Kestrin::KTypeInfo &type, bool flag)
{
    CValueScratch &scratch = ValueScratch();
    if (m_wave == nullptr || m_wave->GetEventValue(0, scratch.Value(), static_cast<unsigned>(scratch.ValueSize())) < 0)
        return false;
    return AppendText(type, scratch.Value(), m_wave->GetValueWidth(), Decimal, flag);
}

bool CSignalImp::AppendFirstVector(const Kestrin::KTypeInfo &type, bool flag)
{
    CValueScratch &scratch = ValueScratch();
    std::size_t used = 0;
    if (!CopyFirstValues(*this, scratch.Value(), scratch.ValueSize(), used))
        return false;
    return AppendText(type, scratch.Value(), used, Binary, flag);
}

long CSignalImp::ParseValue(const char *text, void *buffer, unsigned size)
{
    const Kestrin::KTypeInfo *type = EffectiveType();
    if (type == nullptr || !type->IsScalar() || text == nullptr)
        return E_FAIL;
    std::vector<unsigned char> value(type->GetSimpleSize_OldFormat());
    const unsigned needed = static_cast<unsigned>(value.size());
    if (!type->GetBytes_OldFormat(text, value.data(), needed, Binary, 0))
        return E_FAIL;
    if (needed > size || buffer == nullptr)
        return E_INVALIDARG;
    std::memcpy(buffer, value.data(), needed);
    return S_OK;
}
