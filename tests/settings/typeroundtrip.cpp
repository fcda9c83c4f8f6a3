// Everything that the writers of type descriptions write reads back to the same structure.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "platform/kestrin.h"
#include "settings/typewriters.h"

using Kestrin::KTypeInfo;

namespace {

struct SModel {
    int kind = 1;
    std::string name;
    std::vector<std::string> literals;
    std::vector<TArrayRange> ranges;
    std::vector<std::string> fieldNames;
    std::vector<SModel> inner;  // the element, or the types of the fields
};

std::string RandomName(std::mt19937 &random)
{
    std::string name;
    for (auto size = random() % 9; size > 0; --size)
        name += static_cast<char>(1 + random() % 255);
    return name;
}

std::string RandomWord(std::mt19937 &random)
{
    const std::string letters = "abcXYZ0189_#,()";
    std::string word;
    for (auto size = 1 + random() % 5; size > 0; --size)
        word += letters[random() % letters.size()];
    return word;
}

SModel RandomEnumeration(std::mt19937 &random)
{
    SModel model;
    const bool areWords = random() % 2 != 0;
    for (auto count = random() % 12; count > 0; --count) {
        std::string literal = areWords ? RandomWord(random) : std::string(1, static_cast<char>(1 + random() % 255));
        if (areWords && random() % 4 == 0)
            literal = std::string("'") + static_cast<char>(1 + random() % 255);
        if (std::ranges::find(model.literals, literal) == model.literals.end())
            model.literals.push_back(literal);
    }
    return model;
}

SModel RandomType(std::mt19937 &random, int depth)
{
    SModel model = RandomEnumeration(random);
    const auto choice = random() % 4;
    if (depth > 0 && choice == 0) {
        model = {};
        model.kind = 4;
        for (auto count = random() % 4; count > 0; --count)
            model.ranges.push_back({static_cast<int>(random() % 20) - 10, static_cast<int>(random() % 20) - 10});
        model.inner.push_back(RandomType(random, depth - 1));
    } else if (depth > 0 && choice == 1) {
        model = {};
        model.kind = 5;
        for (auto count = random() % 4; count > 0; --count) {
            model.fieldNames.push_back(RandomWord(random));
            model.inner.push_back(RandomType(random, depth - 1));
        }
    }
    model.name = RandomName(random);
    return model;
}

std::string Write(const SModel &model)
{
    if (model.kind == 4)
        return ArrayText(model.name, model.ranges, Write(model.inner[0]));
    if (model.kind == 1)
        return EnumText(model.name, model.literals);
    std::vector<SField> fields;
    for (std::size_t i = 0; i < model.inner.size(); ++i)
        fields.push_back({model.fieldNames[i], Write(model.inner[i])});
    return RecordText(model.name, fields);
}

void ExpectSame(const KTypeInfo &type, const SModel &model);

void ExpectSameEnumeration(const KTypeInfo &type, const SModel &model)
{
    EXPECT_EQ(type.GetTypeIdentifier(), model.name);
    for (std::size_t i = 0; i <= model.literals.size(); ++i) {
        const auto byte = static_cast<unsigned char>(i);
        EXPECT_EQ(type.GetValueString_OldFormat(&byte, 10, 0, -1, false),
                  i < model.literals.size() ? model.literals[i] : "");
    }
}

void ExpectSameArray(const KTypeInfo &type, const SModel &model)
{
    EXPECT_EQ(std::string(type.GetTypeIdentifier()).substr(0, model.name.size() + 1), model.name + "(");
    ASSERT_EQ(type.GetNbOfDimensions(), static_cast<int>(model.ranges.size()));
    long long elements = 1;
    for (int i = 0; i < type.GetNbOfDimensions(); ++i) {
        const TArrayRange range = model.ranges[static_cast<std::size_t>(i)];
        int left = 0;
        int right = 0;
        int direction = 0;
        EXPECT_TRUE(type.GetArrayDimensionRanges(i, left, right, direction));
        EXPECT_EQ(left, range.left);
        EXPECT_EQ(right, range.right);
        EXPECT_EQ(direction, range.left < range.right ? 0 : 1);
        elements *= std::abs(range.left - range.right) + 1;
    }
    EXPECT_EQ(type.GetNbOfElements(), elements);
    ExpectSame(*type.GetArrayElementKTypeInfo(), model.inner[0]);
}

void ExpectSameRecord(const KTypeInfo &type, const SModel &model)
{
    EXPECT_EQ(type.GetTypeIdentifier(), model.name);
    ASSERT_EQ(type.GetNbOfFields(), static_cast<int>(model.inner.size()));
    for (int i = 0; i < type.GetNbOfFields(); ++i) {
        EXPECT_EQ(type.GetFieldName(i), model.fieldNames[static_cast<std::size_t>(i)]);
        ExpectSame(*type.GetFieldKTypeInfo(i), model.inner[static_cast<std::size_t>(i)]);
    }
}

void ExpectSame(const KTypeInfo &type, const SModel &model)
{
    ASSERT_EQ(type.GetKind(), model.kind);
    EXPECT_EQ(type.GetTypeInfoString(), Write(model));
    if (model.kind == 4)
        ExpectSameArray(type, model);
    else if (model.kind == 5)
        ExpectSameRecord(type, model);
    else
        ExpectSameEnumeration(type, model);
}

}  // namespace

TEST(TypeText, ReadsBackToTheSameStructure)
{
    std::mt19937 random(1);
    for (int round = 0; round < 1500; ++round) {
        const SModel model = RandomType(random, 4);
        const std::string text = Write(model);
        ASSERT_TRUE(KTypeInfo::CheckTypeInfo(text.c_str())) << text;
        ExpectSame(KTypeInfo(text.c_str()), model);
        ASSERT_FALSE(HasFailure()) << text;
    }
}
