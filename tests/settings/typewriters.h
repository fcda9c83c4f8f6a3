// The writers of type descriptions, called as their callers do.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "settings/typetext.h"

inline constexpr long InvalidArgument = -2147024809;  // 0x80070057

using Writer = std::function<long(char *buffer, unsigned *size)>;

// The text that a writer writes, or "refused". Checks the rule of the buffer on the way.
inline std::string Text(const Writer &write)
{
    unsigned size = 7777;
    if (const long result = write(nullptr, &size); result != 0) {
        EXPECT_EQ(result, InvalidArgument);
        EXPECT_EQ(size, 7777U);
        return "refused";
    }
    std::string buffer(size + 8, '\x5A');
    unsigned room = size - 1;
    EXPECT_EQ(write(buffer.data(), &room), InvalidArgument);
    EXPECT_EQ(room, size - 1);
    EXPECT_EQ(buffer, std::string(size + 8, '\x5A')) << "something was written into a buffer that is too small";
    room = size;
    EXPECT_EQ(write(buffer.data(), &room), 0);
    EXPECT_EQ(room, size);
    EXPECT_EQ(buffer.substr(size - 1), std::string(1, '\0') + std::string(8, '\x5A'));
    return buffer.substr(0, size - 1);
}

inline std::string StdText(int index)
{
    return Text([=](char *buffer, unsigned *size) { return CreateStdTypeInfo(index, buffer, size); });
}

inline std::string ArrayText(const std::string &name, std::vector<TArrayRange> ranges, const std::string &element)
{
    const auto count = static_cast<unsigned>(ranges.size());
    ranges.push_back({0, 0});  // the pointer may not be null
    return Text([&](char *buffer, unsigned *size) {
        return CreateArrayTypeInfo(name.c_str(), ranges.data(), count, element.c_str(), buffer, size);
    });
}

struct SField {
    std::string name, type;
};

inline std::string RecordText(const std::string &name, const std::vector<SField> &fields)
{
    std::vector<TRecordField> values(fields.size() + 1);
    for (std::size_t i = 0; i < fields.size(); ++i)
        values[i].SetBoth(fields[i].name.c_str(), fields[i].type.c_str());
    return Text([&](char *buffer, unsigned *size) {
        return CreateRecordTypeInfo(name.c_str(), values.data(), static_cast<unsigned>(fields.size()), buffer, size);
    });
}

inline std::string EnumText(const std::string &name, const std::vector<std::string> &literals)
{
    std::vector<TEnumValue> values(literals.size() + 1);
    for (std::size_t i = 0; i < literals.size(); ++i)
        values[i].Set(literals[i].c_str());
    return Text([&](char *buffer, unsigned *size) {
        return CreateEnumTypeInfo(name.c_str(), values.data(), static_cast<unsigned>(literals.size()), buffer, size);
    });
}
