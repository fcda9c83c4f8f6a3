// The signals of an event stream that is made of another file.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>

#include "platform/kestrin.h"
#include "platform/stream/streamwriter.h"

/// Adds signals to a stream: those at the top level, with full names, and the elements of buses as their children. Scalars
/// that share their events in the other file do so in the stream.
class CStreamSignals {
public:
    /// @param writer  outlives the object
    explicit CStreamSignals(Morvel::IStreamWriter &writer) : m_writer(writer) {}

    /// @param type      of a scalar, or a one-dimensional array of such
    /// @param elements  1 of a scalar
    /// @param identify  a number for each element, counted from 0, that is the same for those that share their events
    /// @return what the writer calls the first element; the others follow. Those that share events of an earlier one have
    ///         none of their own
    int Add(const std::string &path, const Kestrin::KTypeInfo &type, std::size_t elements,
            const std::function<long long(std::size_t)> &identify);

private:
    int AddScalar(int parent, const char *name, const char *type, long long identity);

    Morvel::IStreamWriter &m_writer;
    std::unordered_map<long long, int> m_originals;  // by what identifies their events
};
