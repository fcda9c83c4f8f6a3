// The handle manager.
#pragma once

#include <map>
#include <vector>

#include "signal/signal.h"
#include "signal/tree/component.h"

namespace tesk {

class CHandleManager final : public TComponent<IHandleManager, IID_IHandleManager> {
public:
    CHandleManager() : m_handleCursor(m_signals.end()) {}
    ~CHandleManager() override { CHandleManager::Clear(); }

    int GetFirstHandle() override;
    int GetNextHandle() override;
    ISignal *GetFirstSignal(int handle) override;
    ISignal *GetNextSignal() override;
    long Add(ISignal *signal) override;
    long Remove(ISignal *signal) override;
    long RemoveHandle(int handle) override;
    void Clear() override;

    /// Makes every manager forget a signal that is about to end. Its entries stay but lead nowhere; a walk skips them.
    static void Forget(ISignal *signal);

private:
    using CSignals = std::vector<ISignal *>;  // no references, in the order of arrival; null for a forgotten signal
    using CIndex = std::map<int, CSignals>;

    void EndWalkOver(const CSignals &signals);
    void DropEntries(CIndex::iterator entry);
    void Erase(CIndex::iterator entry);

    CIndex m_signals;
    // What is left of the walk over signals. A change of the walked vector ends the walk.
    ISignal *const *m_signalCursor = nullptr;
    ISignal *const *m_signalFirst = nullptr;
    ISignal *const *m_signalEnd = nullptr;
    CIndex::iterator m_handleCursor;  // the handle that GetNextHandle answers
};

}  // namespace tesk
