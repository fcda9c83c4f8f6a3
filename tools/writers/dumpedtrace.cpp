#include "tools/writers/dumpedtrace.h"

#include <algorithm>

#include "platform/kestrin.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

SVcdName NameOf(const STrace &trace)
{
    SVcdName name = SplitVcdName(trace.NameInFile());
    if (name.scopes.empty())
        name.scopes.push_back("tesk");
    return name;
}

// The bounds behind the name of a vector, those of its type where it is known.
std::string RangeOf(const STrace &trace, const SValueKind &form)
{
    if (form.kind != EValueKind::Bits)
        return {};
    const Kestrin::KTypeInfo type(trace.type.c_str());
    int left = 0;
    int right = 0;
    int direction = 0;
    if (type.GetArrayDimensionRanges(0, left, right, direction))
        return "[" + std::to_string(left) + ':' + std::to_string(right) + ']';
    return form.width > 1 ? "[" + std::to_string(form.width - 1) + ":0]" : "";
}

}  // namespace

std::vector<SDumpedTrace> DumpedTraces(const SWaveform &waveform)
{
    std::vector<SDumpedTrace> dumped;
    bool isInVector = false;
    for (const STrace &trace : waveform.traces) {
        if (!trace.IsElement())
            isInVector = IsBitVectorType(trace.type);
        else if (isInVector)
            continue;
        const SValueKind form = KindOfValues(trace);
        dumped.push_back({&trace, form, NameOf(trace), RangeOf(trace, form)});
    }
    return dumped;
}

std::vector<SDumpedChange> ChangesByTime(const std::vector<SDumpedTrace> &traces)
{
    std::vector<SDumpedChange> changes;
    for (std::size_t i = 0; i < traces.size(); ++i) {
        for (std::size_t k = 0; k < traces[i].trace->changes.size(); ++k)
            changes.push_back({static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(k)});
    }
    std::ranges::stable_sort(changes, {}, [&](const SDumpedChange &change) {
        return traces[change.trace].trace->changes[change.change].ticks;
    });
    return changes;
}

}  // namespace tesk
