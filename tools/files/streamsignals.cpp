#include "tools/files/streamsignals.h"

#include "platform/stream/groupevents.h"

int CStreamSignals::AddScalar(int parent, const char *name, const char *type, long long identity)
{
    const auto [original, isNew] = m_originals.try_emplace(identity, -1);
    const int shared = isNew ? -1 : m_writer.AddSharedSignal(parent, name, type, original->second);
    if (shared >= 0)
        return shared;
    const int number = m_writer.AddSignal(parent, name, type);
    if (isNew)
        original->second = number;
    return number;
}

int CStreamSignals::Add(const std::string &path, const Kestrin::KTypeInfo &type, std::size_t elements,
                        const std::function<long long(std::size_t)> &identify)
{
    if (type.IsScalar())
        return AddScalar(-1, path.c_str(), type.GetTypeInfoString(), identify(0));
    const int bus = m_writer.AddSignal(-1, path.c_str(), type.GetTypeInfoString());
    long long index = 0;
    int left = 0;
    int right = 0;
    int direction = 0;
    type.GetArrayDimensionRanges(0, left, right, direction);
    index = left;
    for (std::size_t i = 0; i < elements; ++i, index += direction == 0 ? 1 : -1) {
        if ((elements - i) % Morvel::MaxGroup == 0)
            m_writer.EndGroup();
        const std::string name = '(' + std::to_string(index) + ')';
        AddScalar(bus, name.c_str(), type.GetArrayElementTypeInfo(), identify(i));
    }
    return bus + 1;
}
