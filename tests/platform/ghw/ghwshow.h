// Signals of a waveform file as texts.
#pragma once

#include <string>

#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "tests/platform/fst/fsttools.h"
#include "waveform/tarnstimulus.h"

namespace ghwtest {

inline int Find(NTARN::IDatabaseReader &reader, const std::string &path)
{
    return FindTarnSignalHandle(&reader, path.c_str(), -1, nullptr, {-1, -1});
}

inline std::string TypeOf(NTARN::IDatabaseReader &reader, const std::string &path)
{
    return reader.GetType(Find(reader, path)).GetTypeInfoString();
}

/// The events of a scalar, "0:idle 10:run", with times in the unit given.
inline std::string Events(NTARN::IDatabaseReader &reader, const std::string &path, long long unit = 1)
{
    const int handle = Find(reader, path);
    std::string text;
    for (const fsttest::SEvent &event : fsttest::AllEvents(reader, handle)) {
        text += text.empty() ? "" : " ";
        text += std::to_string(event.time / unit) + ":" +
                reader.GetType(handle).GetValueString_OldFormat(&event.value, 0, 0, 0, false);
    }
    return text;
}

}  // namespace ghwtest
