#include <random>

#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

TEST(ArrayChildren, AreNamedByTheirIndexFromLeftToRight)
{
    const struct {
        const char *ranges;
        std::vector<std::string> names;
    } rows[] = {
        {"rict0 2", {"(0)", "(1)", "(2)"}},
        {"ricd2 0", {"(2)", "(1)", "(0)"}},
        {"rict-1 1", {"(-1)", "(0)", "(1)"}},
        {"ricd5 5", {"(5)"}},
        {"ricd0 2", {"(0)", "(1)", "(2)"}},  // the bounds count, not the direction
        {"rict2147483646 2147483647", {"(2147483646)", "(2147483647)"}},
        {"ricd-2147483647 -2147483648", {"(-2147483647)", "(-2147483648)"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(NamesIn(MakeSignal(ArrayType("a", 1, row.ranges, BitType))->GetChildren()), row.names) << row.ranges;
}

TEST(ArrayChildren, OfSeveralDimensionsRunThroughTheLastOneFastest)
{
    const TReference<ISignal> signal = MakeSignal(ArrayType("a", 2, "rict0 1 ricd3 2", BitType));
    EXPECT_THAT(NamesIn(signal->GetChildren()), ElementsAre("(0,3)", "(0,2)", "(1,3)", "(1,2)"));
    ISignal *child = ChildAt(signal->GetChildren(), 2);
    EXPECT_EQ(child->GetParent(), signal.get());
    EXPECT_STREQ(child->GetTypeInfo()->GetTypeInfoString(), BitType);
    EXPECT_EQ(child->GetValueSize(), 4U);
    EXPECT_EQ(ReferencesTo(*child), 1U);
}

TEST(RecordChildren, AreNamedByTheirFieldBehindADot)
{
    const TReference<ISignal> signal = MakeSignal(RecordType({{"valid", BitType}, {"data", VectorType(2)}}));
    EXPECT_THAT(NamesIn(signal->GetChildren()), ElementsAre(".valid", ".data"));
    EXPECT_THAT(NamesIn(ChildAt(signal->GetChildren(), 1)->GetChildren()), ElementsAre("(1)", "(0)"));
    EXPECT_EQ(ChildAt(signal->GetChildren(), 1)->GetStdType(), 7);
}

TEST(RecordChildren, MayBeNone)
{
    const TReference<ISignal> signal = MakeSignal("r#3#rec0 ");
    ASSERT_NE(signal, nullptr);
    EXPECT_EQ(signal->GetChildren()->GetCount(), 0U);
}

TEST(CompositeSignal, SharesOneHandleManagerDownTheTree)
{
    const TReference<ISignal> signal =
        MakeSignal(RecordType({{"a", ArrayType("m(0 to 1)", 1, "rict0 1", VectorType(2))}}));
    IHandleManager *top = nullptr, *below = nullptr;
    ISignal *array = ChildAt(signal->GetChildren(), 0);
    ISignal *vector = ChildAt(array->GetChildren(), 1);
    ASSERT_EQ(signal->GetChildren()->GetHandleManager(&top), S_OK);
    ASSERT_EQ(vector->GetChildren()->GetHandleManager(&below), S_OK);
    EXPECT_EQ(top, below);
    top->Release();
    below->Release();
}

TEST(CompositeSignal, OfTooManyElementsIsRefusedBeforeAnythingIsMade)
{
    const std::string row = ArrayType("v(1 to 65536)", 1, "rict1 65536", BitType);
    const std::string types[] = {
        ArrayType("a", 1, "rict0 16777216", BitType),  // one more than 2^24
        ArrayType("a", 1, "ricd0 16777216", BitType),  // length 0 as stated, but the walk goes upwards
        ArrayType("a", 1, "rict16777216 0", BitType),
        ArrayType("a", 1, "rict-2147483648 2147483647", BitType),
        ArrayType("a", 2, "rict1 65536 rict1 65536", BitType),
        ArrayType("a", 3, "rict0 2147483647 rict0 2147483647 rict0 2147483647", BitType),
        ArrayType("a", 1, "rict1 65536", row),
        RecordType({{"a", ArrayType("a", 1, "rict1 16777216", BitType)}, {"b", BitType}}),
        ArrayType("a", 1, "rict1 16777216", RecordType({{"b", BitType}})),
        ArrayType("a", 1, "rict1 1000000", RecordType({{std::string(8192, 'n'), BitType}})),  // memory for names
    };
    for (const std::string &type : types) {
        ISignal *signal = nullptr;
        EXPECT_EQ(CreateSignal(type.c_str(), nullptr, &signal), E_FAIL) << type.substr(0, 80);
        EXPECT_EQ(CreateSignal(Kestrin::KTypeInfo(type.c_str()), nullptr, &signal), E_FAIL) << type.substr(0, 80);
    }
}

TEST(CompositeSignal, WhoseElementNamesOutgrowTheirPlaceIsRefused)
{
    const auto ofDimensions = [](int dimensions) {
        std::string ranges;
        for (int i = 0; i < dimensions; ++i)
            ranges += ranges.empty() ? "rict0 0" : " rict0 0";
        return ArrayType("a", dimensions, ranges, BitType);
    };
    const TReference<ISignal> longest = MakeSignal(ofDimensions(127));
    ASSERT_NE(longest, nullptr);
    EXPECT_EQ(NamesIn(longest->GetChildren())[0].size(), 255U);
    EXPECT_EQ(MakeSignal(ofDimensions(128)), nullptr);
}

TEST(CompositeSignal, NestsAsDeepAsADescription)
{
    std::string type = BitType;
    for (int depth = 0; depth < 64; ++depth)
        type = ArrayType("a", 1, "rict0 0", type);
    const TReference<ISignal> signal = MakeSignal(type);
    ASSERT_NE(signal, nullptr);
    int depth = 0;
    for (ISignal *below = signal.get(); below->GetChildren() != nullptr; below = ChildAt(below->GetChildren(), 0))
        ++depth;
    EXPECT_EQ(depth, 64);
    EXPECT_EQ(MakeSignal(ArrayType("a", 1, "rict0 0", type)), nullptr);
}

// The names by recursion over the dimensions.
void CollectNames(const std::vector<std::pair<int, int>> &bounds, const std::string &name,
                  std::vector<std::string> &names)
{
    const std::size_t dimension = static_cast<std::size_t>(std::count(name.begin(), name.end(), ','));
    if (dimension == bounds.size()) {
        names.push_back(name.substr(0, name.size() - 1) + ")");
        return;
    }
    const auto [left, right] = bounds[dimension];
    for (int i = left; left <= right ? i <= right : i >= right; i += left <= right ? 1 : -1)
        CollectNames(bounds, name + std::to_string(i) + ",", names);
}

TEST(ArrayChildren, AgreeWithARecursiveWalk)  // differential
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> bound(-3, 3), dimensions(1, 3);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::pair<int, int>> bounds(static_cast<std::size_t>(dimensions(random)));
        std::string ranges;
        for (auto &[left, right] : bounds) {
            left = bound(random);
            right = bound(random);
            ranges += std::string(ranges.empty() ? "" : " ") + (left < right ? "rict" : "ricd") + std::to_string(left) +
                      " " + std::to_string(right);
        }
        std::vector<std::string> names;
        CollectNames(bounds, "(", names);
        const TReference<ISignal> signal = MakeSignal(ArrayType("a", static_cast<int>(bounds.size()), ranges, BitType));
        ASSERT_EQ(NamesIn(signal->GetChildren()), names) << ranges;
    }
}

}  // namespace
