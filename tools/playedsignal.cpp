#include "tools/playedsignal.h"

#include <map>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/quote.h"
#include "tools/typeargument.h"

namespace {

constexpr int ArrayKind = 4;
constexpr int RecordKind = 5;
constexpr int EnumerationKind = 1;
constexpr long long MostElements = 1 << 20;

std::vector<std::string> WireNames(long long left, long long count, int step)
{
    std::vector<std::string> names;
    for (long long i = 0; i < count; ++i)
        names.push_back("[" + std::to_string(left + i * step) + "]");
    return names;
}

std::vector<std::string> ElementNames(const Kestrin::KTypeInfo &type)
{
    std::vector<std::string> names;
    if (type.GetKind() == RecordKind) {
        for (int i = 0; i < type.GetNbOfFields(); ++i)
            names.push_back(std::string(".") + type.GetFieldName(i));
    } else if (type.GetKind() == ArrayKind && type.GetNbOfDimensions() == 1) {
        int left = 0;
        int right = 0;
        int direction = 0;
        type.GetArrayDimensionRanges(0, left, right, direction);
        names = WireNames(left, type.GetNbOfElements(), direction == 1 ? -1 : 1);
    }
    return names;
}

// Whether a value is written as characters in a row: an array of an enumeration.
bool IsBitVector(const Kestrin::KTypeInfo &type)
{
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    return type.GetKind() == ArrayKind && element != nullptr && element->GetKind() == EnumerationKind;
}

// The value of the bus where its elements have these.
std::optional<std::string> Join(const std::vector<std::optional<std::string>> &values, bool isBitVector)
{
    std::string joined;
    bool isDriven = false;
    for (const auto &value : values) {
        if (!isBitVector)
            joined += joined.empty() ? "(" : ",";
        joined += value.value_or(isBitVector ? "Z" : "");
        isDriven = isDriven || value.has_value();
    }
    if (!isDriven)
        return std::nullopt;
    return isBitVector ? joined : joined + ")";
}

}  // namespace

SPlayedSignal DescribeSignal(const std::string &type, long long count)
{
    SPlayedSignal signal;
    if (type.empty()) {
        signal.names = WireNames(count - 1, count, -1);
        signal.isBitVector = true;
        return signal;
    }
    signal.description = ReadTypeArgument(type);
    const Kestrin::KTypeInfo info(signal.description.c_str());
    if (info.GetNbOfElements() > MostElements)
        throw CRefusal("type " + Quote(type) + ": too many elements to play; give a range of " +
                       std::to_string(MostElements) + " elements at most, such as std_logic_vector(7 downto 0)");
    signal.names = ElementNames(info);
    signal.isBitVector = IsBitVector(info);
    return signal;
}

STrace MergeElements(const std::vector<STrace> &elements, bool isBitVector)
{
    std::map<long long, std::vector<std::pair<std::size_t, const SChange *>>> changesByTime;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (const SChange &change : elements[i].changes)
            changesByTime[change.ticks].emplace_back(i, &change);
    }
    STrace bus;
    std::vector<std::optional<std::string>> values(elements.size());
    for (const auto &[ticks, changes] : changesByTime) {
        for (const auto &[element, change] : changes)
            values[element] = change->value;
        bus.changes.push_back({ticks, Join(values, isBitVector)});
    }
    return bus;
}
