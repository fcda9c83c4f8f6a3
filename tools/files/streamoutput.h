// The writer of an event stream, with a refusal for every fault.
#pragma once

#include <memory>
#include <string>

#include "platform/stream/streamwriter.h"

using StreamWriterPtr = std::unique_ptr<Morvel::IStreamWriter, Morvel::SEndStream>;

/// @throw CRefusal if nothing can be written there
StreamWriterPtr BeginEventStream(const std::string &path, long long resolution);
/// @throw CRefusal if it could not be written
void FinishEventStream(const std::string &path, Morvel::IStreamWriter &writer);
