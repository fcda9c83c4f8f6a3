#include "tools/play/playedsignal.h"

#include <map>
#include <utility>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"

namespace {

using Kestrin::ETypeKind;
constexpr long long MostElements = 1 << 20;

std::string WireName(long long index)
{
    return "[" + std::to_string(index) + "]";
}

std::vector<SPlayedSignal> Fields(const std::string &name, const Kestrin::KTypeInfo &record)
{
    std::vector<SPlayedSignal> fields;
    for (int i = 0; i < record.GetNbOfFields(); ++i)
        fields.push_back({name + "." + record.GetFieldName(i), record.GetFieldTypeInfo(i), {}});
    return fields;
}

std::vector<SPlayedSignal> ArrayElements(const std::string &name, const Kestrin::KTypeInfo &array)
{
    int left = 0;
    int right = 0;
    int direction = 0;
    array.GetArrayDimensionRanges(0, left, right, direction);
    const int step = direction == 1 ? -1 : 1;
    std::vector<SPlayedSignal> elements;
    for (long long i = 0; i < array.GetNbOfElements(); ++i)
        elements.push_back({name + WireName(left + i * step), array.GetArrayElementTypeInfo(), {}});
    return elements;
}

// Whether a value is written as characters in a row: an array of an enumeration.
bool IsBitVector(const Kestrin::KTypeInfo &type)
{
    const Kestrin::KTypeInfo *element = type.GetArrayElementKTypeInfo();
    return KindOf(type) == ETypeKind::Array && KindOf(element) == ETypeKind::Enumeration;
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
    if (type.empty() && count == 0)
        return signal;
    const std::string vector = "std_logic_vector(" + std::to_string(count - 1) + " downto 0)";
    signal.description = ReadTypeArgument(type.empty() ? vector : type);
    DescribeElements(signal);
    return signal;
}

void DescribeElements(SPlayedSignal &signal)
{
    const Kestrin::KTypeInfo type(signal.description.c_str());
    if (type.GetNbOfElements() > MostElements)
        throw CRefusal("type " + Quote(signal.description) + ": too many elements to play; give a range of " +
                       std::to_string(MostElements) + " elements at most, such as std_logic_vector(7 downto 0)");
    if (KindOf(type) == ETypeKind::Record)
        signal.elements = Fields(signal.name, type);
    else if (KindOf(type) == ETypeKind::Array && type.GetNbOfDimensions() == 1)
        signal.elements = ArrayElements(signal.name, type);
    signal.isBitVector = IsBitVector(type);
}

STrace MergeElements(const std::vector<const STrace *> &elements, bool isBitVector)
{
    std::map<long long, std::vector<std::pair<std::size_t, const SChange *>>> changesByTime;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (const SChange &change : elements[i]->changes)
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
