// The packers that files are written with.
#pragma once

#include <cstdint>
#include <string_view>
#include <zlib.h>

#include "platform/fst/fstbytes.h"

namespace NTARN {

/// Packed with zlib; `bytes` itself where that would not be shorter, which a reader tells by its length.
CFstBuffer FstDeflateIfShorter(SFstSpan bytes);

/// Packs with LZ4. @return false if that would not be shorter; `packed` then holds nothing of use
bool FstPackLz4(SFstSpan bytes, CFstBuffer &packed);

/// Packs with gzip what comes piece by piece.
class CFstGzip {
public:
    /// @throw std::bad_alloc
    CFstGzip();
    CFstGzip(const CFstGzip &) = delete;
    CFstGzip &operator=(const CFstGzip &) = delete;
    ~CFstGzip();

    void Add(SFstSpan bytes) { Run(bytes, Z_NO_FLUSH); }
    /// Once. @return what was added, packed
    const CFstBuffer &Finish();
    /// Bytes that were added.
    std::uint64_t Size() const { return m_size; }

private:
    void Run(SFstSpan bytes, int flush);

    z_stream m_stream = {};
    CFstBuffer m_packed;
    std::uint64_t m_size = 0;
};

}  // namespace NTARN
