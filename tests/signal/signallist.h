// The list of signals for tests.
#pragma once

#include "signal/fakesignal.h"
#include "signal/tree/signalsprovider.h"

/// A list as a container has it: cleared before it ends.
class CList : public tesk::CSignalsProvider {
public:
    explicit CList(IHandleManager *manager = nullptr) { SetHandleManager(manager); }
    ~CList() override { Clear(); }
};
