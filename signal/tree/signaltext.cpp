#include "signal/tree/signaltext.h"

#include <cstring>
#include <vector>

#include "signal/tree/component.h"
#include "signal/tree/valuescratch.h"

namespace tesk {

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
std::string CSignalText::TextOf(const void *value, std::size_t available, int radix, bool flag) const
{
    constexpr int WithOption = 2;
    if (value == nullptr || m_type.GetSimpleSize_OldFormat() > available)
        return std::string();
    return m_type.GetValueString_OldFormat(value, radix, m_signal.GetValueTextOption() ? WithOption : 0, -1, flag);
}

bool CSignalText::AppendText(const void *value, std::size_t available, int radix, bool flag) const
{
    const std::string text = TextOf(value, available, radix, flag);
    ValueScratch().Append(text);
    return !text.empty();
}

const char *CSignalText::OfValue(const void *value) const
{
    const std::string text = TextOf(value, m_type.GetSimpleSize_OldFormat(), Decimal, false);
    return !text.empty() ? ValueScratch().Put(text) : nullptr;
}

const char *CSignalText::OfEvent(IEvent *event) const
{
    if (m_signal.GetWave() == nullptr || event == nullptr)
        return nullptr;
    const std::string text = TextOf(event->GetValuePtr(), event->GetValueSize(), Decimal, false);
    return !text.empty() ? ValueScratch().Put(text) : nullptr;
}

// @return false if there are more children than any signal has
bool CSignalText::ReserveScratch() const
{
    return ValueScratch().ReserveBoth(BytesOfChildren());
}

// Room for the values of the children, taken to be as wide as the first one's, and one more.
unsigned long long CSignalText::BytesOfChildren() const
{
    ISignalContainer *children = m_signal.GetChildren();
    ISignal *first = nullptr;
    if (children == nullptr || children->GetAt(0, &first) < 0)
        return 0;
    return (children->GetCount() + 1ULL) * first->GetValueSize();
}

const char *CSignalText::At(long long time, int mode) const
{
    if (!ReserveScratch())
        return nullptr;
    CTextLevel level;
    bool made = false;
    if (m_type.IsScalar())
        made = AppendScalarAt(time, mode);
    else if (m_type.IsSimple())
        made = AppendVectorAt(time, mode);
    else
        made = AppendCompositeAt(time, mode);
    return made ? level.Text() : level.NoText();
}

bool CSignalText::AppendScalarAt(long long time, int mode) const
{
    ISignalWave *wave = m_signal.GetWave();
    IEvent *event = nullptr;
    if (wave == nullptr || wave->FindEvent(time, mode, &event) < 0 || !CarriesValue(*event))
        return false;
    return AppendText(event->GetValuePtr(), event->GetValueSize(), Decimal, false);
}

bool CSignalText::AppendVectorAt(long long time, int mode) const
{
    IBusEventIterator *made = nullptr;
    if (!ValueScratch().ReserveValue(BytesOfChildren()) || m_signal.CreateBusEventIterator(&made) < 0)
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
    return AppendText(buffer, used, Binary, false);
}

bool CSignalText::AppendCompositeAt(long long time, int mode) const
{
    if (m_signal.GetChildren() == nullptr)
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
bool CSignalText::AppendChildren(TextOfChild textOf) const
{
    CValueScratch &scratch = ValueScratch();
    ISignalContainer &children = *m_signal.GetChildren();
    const unsigned count = children.GetCount();
    scratch.Append("(");
    for (unsigned i = 0; i < count; ++i) {
        ISignal *child = nullptr;
        if (children.GetAt(i, &child) < 0)
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

const char *CSignalText::OfFirst(bool flag) const
{
    if (!ReserveScratch())
        return nullptr;
    CTextLevel level;
    bool made = true;
    if (m_type.IsScalar())
        made = AppendFirstScalar(flag);
    else if (m_signal.GetChildren() == nullptr)
        return level.Abandon();
    else if (m_type.IsSimple())
        made = AppendFirstVector(flag);
    else if (!AppendChildren([flag](ISignal &child) { return child.GetInitialValueText(flag); }))
        return level.Abandon();
    return made ? level.Text() : level.NoText();
}

bool CSignalText::AppendFirstScalar(bool flag) const
{
    CValueScratch &scratch = ValueScratch();
    ISignalWave *wave = m_signal.GetWave();
    if (wave == nullptr || wave->GetEventValue(0, scratch.Value(), static_cast<unsigned>(scratch.ValueSize())) < 0)
        return false;
    return AppendText(scratch.Value(), wave->GetValueWidth(), Decimal, flag);
}

bool CSignalText::AppendFirstVector(bool flag) const
{
    CValueScratch &scratch = ValueScratch();
    std::size_t used = 0;
    if (!CopyFirstValues(m_signal, scratch.Value(), scratch.ValueSize(), used))
        return false;
    return AppendText(scratch.Value(), used, Binary, flag);
}

long CSignalText::Parse(const char *text, void *buffer, unsigned size) const
{
    if (!m_type.IsScalar() || text == nullptr)
        return E_FAIL;
    std::vector<unsigned char> value(m_type.GetSimpleSize_OldFormat());
    const unsigned needed = static_cast<unsigned>(value.size());
    if (!m_type.GetBytes_OldFormat(text, value.data(), needed, Binary, 0))
        return E_FAIL;
    if (needed > size || buffer == nullptr)
        return E_INVALIDARG;
    std::memcpy(buffer, value.data(), needed);
    return S_OK;
}

}  // namespace tesk
