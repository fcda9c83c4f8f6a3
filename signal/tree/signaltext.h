// The values of a signal as text, and back.
#pragma once

#include <cstddef>
#include <string>

#include "platform/kestrin.h"
#include "signal/signal.h"

namespace tesk {

/// What the text operations of a signal answer. A text lives until the next text operation on any signal.
class CSignalText {
public:
    /// @param type  of the signal, or what its parent's type tells; it outlives this object
    CSignalText(ISignal &signal, const Kestrin::KTypeInfo &type) : m_signal(signal), m_type(type) {}

    // Each gives null where there is no text.
    const char *OfValue(const void *value) const;
    const char *OfEvent(IEvent *event) const;
    const char *At(long long time, int mode) const;
    const char *OfFirst(bool flag) const;

    /// @return as `ISignal::ParseValue`
    long Parse(const char *text, void *buffer, unsigned size) const;

private:
    std::string TextOf(const void *value, std::size_t available, int radix, bool flag) const;
    bool AppendText(const void *value, std::size_t available, int radix, bool flag) const;
    bool AppendScalarAt(long long time, int mode) const;
    bool AppendVectorAt(long long time, int mode) const;
    bool AppendCompositeAt(long long time, int mode) const;
    bool AppendFirstScalar(bool flag) const;
    bool AppendFirstVector(bool flag) const;
    template <typename TextOfChild>
    bool AppendChildren(TextOfChild textOf) const;
    bool ReserveScratch() const;
    unsigned long long BytesOfChildren() const;

    ISignal &m_signal;
    const Kestrin::KTypeInfo &m_type;
};

}  // namespace tesk
