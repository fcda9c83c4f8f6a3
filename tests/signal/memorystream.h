// A stream in memory, for tests, benchmarks and fuzz harnesses of saved signals.
#pragma once

#include <string>
#include <utility>

#include "signal/signal.h"

/// A stream over bytes in memory. Reads fail at the end, writes from `writesLeft` on.
class CMemoryStream final : public ISignalStream {
public:
    CMemoryStream() = default;
    explicit CMemoryStream(std::string content) : bytes(std::move(content)) {}

    long Read(void *buffer, unsigned size) override
    {
        ++reads;
        if (size > bytes.size() - position)
            return E_FAIL;
        bytes.copy(static_cast<char *>(buffer), size, position);
        position += size;
        return S_OK;
    }

    long Write(const void *buffer, unsigned size) override
    {
        if (writesLeft == 0)
            return E_FAIL;
        --writesLeft;
        bytes.append(static_cast<const char *>(buffer), size);
        return S_OK;
    }

    std::string bytes;
    std::size_t position = 0;
    long long reads = 0;
    long long writesLeft = 1LL << 40;
};
