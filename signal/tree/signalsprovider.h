// The list of signals inside a container.
#pragma once

#include <map>
#include <vector>

#include "settings/cstr.h"
#include "signal/signal.h"

namespace tesk {

/// A name as it was when its signal was entered; a null name stays null.
class CNameKey {
public:
    explicit CNameKey(const char *name) : m_text(name), m_isNull(name == nullptr) {}

    operator const char *() const { return m_isNull ? nullptr : static_cast<const char *>(m_text); }

private:
    SimpleString::CStr m_text;
    bool m_isNull;
};

/// The order of names: that of the design hierarchy, looked up at each comparison. Null is not less than anything.
struct SNameLess {
    using is_transparent = void;

    bool operator()(const char *left, const char *right) const;
};

/// An ordered list of signals with one reference on each, an index by name, and the bookkeeping with a handle manager
/// on every change. A container holds one by value, and runs `Clear` before it ends.
class CSignalsProvider {
public:
    CSignalsProvider() = default;
    CSignalsProvider(const CSignalsProvider &) = delete;
    CSignalsProvider &operator=(const CSignalsProvider &) = delete;
    virtual ~CSignalsProvider() = default;

    // What these do stands at `ISignalContainer`.
    long InsertBefore(ISignal *signal, ISignal *before);
    long Add(ISignal *signal);
    long Remove(ISignal *signal);
    long Replace(ISignal *oldSignal, ISignal *newSignal);
    unsigned GetCount() const { return static_cast<unsigned>(m_signals.size()); }
    long GetAt(unsigned index, ISignal **out) const;
    long Save(ISignalStream *stream) const;
    long Export(ISignalListWriter *writer) const;

    /// Releases all signals. A manager that has no other owner than the container is cleared too; a shared one keeps
    /// its entries.
    void Clear();

    /// Finds the first signal of that name, no path. @return S_OK; E_FAIL, with `out` untouched
    long FindByName(const char *name, ISignal **out) const;

    /// Takes the signal, which ends, out of every index that still leads to it.
    static void Forget(const ISignal *signal);

    /// Stores the pointer; the container holds the reference.
    void SetHandleManager(IHandleManager *manager) { m_handleManager = manager; }
    /// Gives `manager` to the children of every signal in the list. @return S_OK
    long PassHandleManager(IHandleManager *manager) const;

private:
    using CNames = std::multimap<CNameKey, ISignal *, SNameLess>;

    std::vector<ISignal *>::iterator Place(ISignal *signal);
    CNames::const_iterator FirstNamed(const char *name) const;
    void EnterManager(ISignal &signal);
    void LeaveManager(ISignal &signal);
    void GiveUp(ISignal &signal, bool isNamed);
    void ForgetName(const ISignal *signal);

    std::vector<ISignal *> m_signals;           // one reference each
    CNames m_names;                             // no references
    std::vector<const ISignal *> m_departed;    // left the list while m_names may lead to them; for comparison only
    IHandleManager *m_handleManager = nullptr;  // no reference
};

}  // namespace tesk
