#include "settings/cstr.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

using SimpleString::CStr;

namespace {

struct SWords {
    std::int32_t length;
    std::int32_t references;
    std::int32_t capacity;
};

// The three words in front of the text are part of the binary interface.
SWords Words(const CStr &text)
{
    SWords words;
    std::memcpy(&words, static_cast<const char *>(text) - sizeof words, sizeof words);
    return words;
}

const char *Pointer(const CStr &text)
{
    return text;
}

std::string Text(const CStr &text)
{
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

// A string with text in a block of its own and room to spare.
CStr Roomy(const char *text, int capacity)
{
    CStr result(text);
    result.Reserve(capacity - 1);
    EXPECT_EQ(Words(result).capacity, capacity);
    return result;
}

}  // namespace

TEST(EmptyBlock, IsSharedByAllEmptyStrings)
{
    const CStr first;
    const CStr second;
    EXPECT_EQ(Pointer(first), Pointer(second));
    for (const CStr &empty : {CStr(nullptr), CStr("", 0), CStr("abc", 0), CStr(""), CStr('x', 0), CStr('x', -1),
                              CStr(0, "a", 0, "b"), CStr("abc").Left(0), CStr("abc").Mid(3)})
        EXPECT_EQ(Pointer(empty), Pointer(first));
}

TEST(EmptyBlock, HasLengthOneAndCapacityOneAndKeepsAReferenceOfItsOwn)
{
    const CStr first;
    EXPECT_EQ(Words(first).length, 1);
    EXPECT_EQ(Words(first).capacity, 1);
    const int references = Words(first).references;
    EXPECT_GE(references, 2);
    const CStr second;
    EXPECT_EQ(Words(first).references, references + 1);
}

TEST(Construction, FromTextCountsTheZero)
{
    const CStr text("hello");
    EXPECT_EQ(Words(text).length, 6);
    EXPECT_EQ(Words(text).references, 1);
    EXPECT_EQ(Words(text).capacity, 6);
    EXPECT_STREQ(text, "hello");
}

TEST(Construction, WithACountCopiesZerosToo)
{
    const CStr text("a\0b", 3);
    EXPECT_EQ(Text(text), std::string("a\0b", 3));
    EXPECT_EQ(Words(text).length, 4);
    EXPECT_EQ(Words(text).capacity, 4);
}

TEST(Construction, WithFillRepeatsIt)
{
    EXPECT_STREQ(CStr('x', 3), "xxx");
    EXPECT_EQ(Words(CStr('x', 3)).capacity, 4);
}

TEST(Construction, FromTwoPiecesJoinsThem)
{
    const CStr joined(2, "abc", 1, "xyz");
    EXPECT_STREQ(joined, "abx");
    EXPECT_EQ(Words(joined).capacity, 4);
}

TEST(Copying, SharesTheBlock)
{
    const CStr text("shared");
    {
        const CStr copy(text);
        EXPECT_EQ(Pointer(copy), Pointer(text));
        EXPECT_EQ(Words(text).references, 2);
    }
    EXPECT_EQ(Words(text).references, 1);
}

TEST(Copying, ByAssignmentGivesBackTheOwnReference)
{
    const CStr text("shared");
    CStr first("other");
    const CStr second(first);
    first = text;
    EXPECT_EQ(Words(text).references, 2);
    EXPECT_EQ(Words(second).references, 1);
    first = *&first;
    EXPECT_EQ(Words(text).references, 2);
    EXPECT_STREQ(first, "shared");
}

TEST(Copying, IsUndoneByAChange)
{
    const CStr text("one");
    CStr copy(text);
    copy += "two";
    EXPECT_STREQ(text, "one");
    EXPECT_STREQ(copy, "onetwo");
    EXPECT_EQ(Words(text).references, 1);
}

TEST(AssignmentOfText, ReusesAPrivateBlockThatIsLargeEnough)
{
    CStr text = Roomy("long enough", 20);
    const char *before = text;
    text = "short";
    EXPECT_EQ(Pointer(text), before);
    EXPECT_EQ(Words(text).length, 6);
    EXPECT_EQ(Words(text).capacity, 20);
}

TEST(AssignmentOfText, WidensABlockThatIsTooSmall)
{
    CStr text("ab");
    text = "abcdef";
    EXPECT_STREQ(text, "abcdef");
    EXPECT_GE(Words(text).capacity, 7);
}

TEST(AssignmentOfText, LeavesAnotherOwnerAlone)
{
    const CStr text("ab");
    CStr copy(text);
    copy = "c";
    EXPECT_STREQ(text, "ab");
    EXPECT_STREQ(copy, "c");
    EXPECT_EQ(Words(copy).references, 1);
}

TEST(AssignmentOfText, SharesTheEmptyBlockForNoText)
{
    for (const char *nothing : {"", static_cast<const char *>(nullptr)}) {
        CStr text("text");
        text = nothing;
        EXPECT_EQ(Pointer(text), Pointer(CStr()));
    }
}

TEST(AssignmentOfText, TakesAPartOfItself)
{
    CStr text("abcdef");
    text = static_cast<const char *>(text) + 2;
    EXPECT_STREQ(text, "cdef");
}

TEST(Appending, NothingChangesNothing)
{
    CStr text("abc");
    const char *before = text;
    text += "";
    text += static_cast<const char *>(nullptr);
    text += CStr();
    EXPECT_EQ(Pointer(text), before);
    EXPECT_STREQ(text, "abc");
}

TEST(Appending, ReservesTheNewLength)
{
    CStr text("abc");
    text += "de";
    EXPECT_STREQ(text, "abcde");
    EXPECT_EQ(Words(text).length, 6);
    EXPECT_EQ(Words(text).capacity, 7);  // what was asked for, and one
    CStr other("abc");
    other += CStr("de");
    EXPECT_EQ(Words(other).capacity, 7);
}

TEST(Appending, FitsIntoRoomThatIsThere)
{
    CStr text = Roomy("abc", 20);
    const char *before = text;
    text += "defg";
    EXPECT_EQ(Pointer(text), before);
    EXPECT_EQ(Words(text).capacity, 20);
}

TEST(Appending, ACharacterWidensByExactlyOneByte)
{
    CStr text("abc");
    text += 'd';
    EXPECT_STREQ(text, "abcd");
    EXPECT_EQ(Words(text).capacity, 5);
    CStr empty;
    empty += 'x';
    EXPECT_STREQ(empty, "x");
    EXPECT_STREQ(CStr(), "");
}

TEST(Appending, ItselfDoublesTheText)
{
    CStr text("ab");
    text += text;
    EXPECT_STREQ(text, "abab");
    text += static_cast<const char *>(text) + 2;
    EXPECT_STREQ(text, "ababab");
    CStr roomy = Roomy("ab", 20);
    const char *before = roomy;
    roomy += roomy;
    roomy = static_cast<const char *>(roomy) + 1;
    EXPECT_STREQ(roomy, "bab");
    EXPECT_EQ(Pointer(roomy), before);  // there was room
}

TEST(Reserve, LeavesAPrivateBlockWithRoomAlone)
{
    CStr text = Roomy("abc", 20);
    const char *before = text;
    text.Reserve(10);
    text.Reserve(20);
    EXPECT_EQ(Pointer(text), before);
    EXPECT_EQ(Words(text).capacity, 20);
    text.Reserve(21);
    EXPECT_EQ(Words(text).capacity, 22);
}

TEST(Reserve, OnASharedBlockKeepsTheCapacity)
{
    const CStr text = Roomy("abc", 20);
    CStr copy(text);
    copy.Reserve(10);
    EXPECT_NE(Pointer(copy), Pointer(text));
    EXPECT_EQ(Words(copy).capacity, 20);
    EXPECT_EQ(Words(copy).references, 1);
    EXPECT_EQ(Words(text).references, 1);
    EXPECT_STREQ(copy, "abc");
}

TEST(Reserve, OfMinusOneOnlyUnshares)
{
    const CStr text("abc");
    CStr copy(text);
    copy.Reserve(-1);
    EXPECT_NE(Pointer(copy), Pointer(text));
    EXPECT_EQ(Words(copy).capacity, 4);
}

TEST(Trimming, TakesWhiteSpaceOfTheEnds)
{
    CStr text(" \t\n\v\f\ra b \t\n\v\f\r");
    text.TrimLeft();
    EXPECT_STREQ(text, "a b \t\n\v\f\r");
    text.TrimRight();
    EXPECT_STREQ(text, "a b");
    EXPECT_EQ(Words(text).length, 4);
}

TEST(Trimming, OfWhiteSpaceAloneLeavesAPrivateEmptyText)
{
    CStr right("   ");
    right.TrimRight();
    CStr left("   ");
    left.TrimLeft();
    for (const CStr *text : {&right, &left}) {
        EXPECT_EQ(Words(*text).length, 1);
        EXPECT_EQ(Words(*text).references, 1);
        EXPECT_EQ(Words(*text).capacity, 4);
        EXPECT_NE(Pointer(*text), Pointer(CStr()));
    }
}

TEST(Trimming, LeavesASharedBlockAlone)
{
    const CStr text(" a ");
    CStr copy(text);
    copy.TrimLeft();
    copy.TrimRight();
    EXPECT_STREQ(text, " a ");
    EXPECT_STREQ(copy, "a");
    CStr untouched(text);
    untouched = CStr("a");
    CStr same(untouched);
    same.TrimLeft();
    same.TrimRight();
    EXPECT_EQ(Pointer(same), Pointer(untouched));  // nothing to trim, nothing unshared
}

TEST(Trimming, DoesNotTakeBytesAbove127)
{
    CStr text("\xA0x\x85");
    text.TrimLeft();
    text.TrimRight();
    EXPECT_STREQ(text, "\xA0x\x85");
}

TEST(Empty, SharesTheEmptyBlockUnlessThereIsNoText)
{
    CStr text("abc");
    text.Empty();
    EXPECT_EQ(Pointer(text), Pointer(CStr()));
    CStr blank("  ");
    blank.TrimLeft();
    const char *before = blank;
    blank.Empty();
    EXPECT_EQ(Pointer(blank), before);
}

TEST(Parts, AreCutAtTheEnds)
{
    const CStr text("abcdef");
    const struct {
        CStr part;
        const char *expected;
    } rows[] = {
        {text.Left(2), "ab"},
        {text.Left(-1), ""},
        {text.Left(6), "abcdef"},
        {text.Left(7), "abcdef"},
        {text.Right(2), "ef"},
        {text.Right(-1), ""},
        {text.Right(7), "abcdef"},
        {text.Mid(2), "cdef"},
        {text.Mid(0), "abcdef"},
        {text.Mid(-3), "abcdef"},
        {text.Mid(6), ""},
        {text.Mid(99), ""},
        {text.Mid(1, 2), "bc"},
        {text.Mid(-1, 2), "ab"},
        {text.Mid(4, 99), "ef"},
        {text.Mid(9, 1), ""},
        {text.Mid(2, -1), ""},
        {text.Mid(0, 6), "abcdef"},
        {text.Mid(INT_MIN, INT_MAX), "abcdef"},
    };
    for (const auto &row : rows)
        EXPECT_STREQ(row.part, row.expected);
}

TEST(Parts, OfMoreThanAllShareTheBlock)
{
    const CStr text("abc");
    for (const CStr &part : {text.Left(4), text.Right(4), text.Mid(0), text.Mid(-1), text.Mid(0, 3), text.Mid(-5, 9)})
        EXPECT_EQ(Pointer(part), Pointer(text));
    EXPECT_EQ(Pointer(text.Mid(3)), Pointer(CStr()));
}

TEST(Find, GivesTheFirstPlace)
{
    EXPECT_EQ(CStr("banana").Find("an"), 1);
    EXPECT_EQ(CStr("banana").Find("x"), -1);
    EXPECT_EQ(CStr("banana").Find(nullptr), -1);
    EXPECT_EQ(CStr().Find("a"), -1);
    EXPECT_EQ(CStr().Find(""), -1);
}

TEST(Compare, IsByUnsignedBytes)
{
    EXPECT_EQ(CStr("a").Compare("b"), -1);
    EXPECT_EQ(CStr("b").Compare("a"), 1);
    EXPECT_EQ(CStr("a").Compare("a"), 0);
    EXPECT_EQ(CStr("ab").Compare("a"), 1);
    EXPECT_EQ(CStr("\xFF").Compare("a"), 1);
    EXPECT_EQ(CStr("a").Compare(nullptr), 1);
    EXPECT_EQ(CStr().Compare(nullptr), 0);
    EXPECT_EQ(CStr().Compare(""), 0);
}

TEST(SetAt, UnsharesOnlyForAChange)
{
    const CStr text("abc");
    CStr copy(text);
    copy.SetAt(1, 'b');
    EXPECT_EQ(Pointer(copy), Pointer(text));
    copy.SetAt(1, 'x');
    EXPECT_STREQ(copy, "axc");
    EXPECT_STREQ(text, "abc");
    copy.SetAt(3, 'y');
    copy.SetAt(-1, 'y');
    EXPECT_STREQ(copy, "axc");
}

TEST(GetBuffer, MakesRoomInAPrivateBlock)
{
    const CStr text("abc");
    CStr copy(text);
    char *buffer = copy.GetBuffer(10);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_GE(Words(copy).capacity, 11);
    std::strcpy(buffer, "0123456789");
    copy.ReleaseBuffer();
    EXPECT_STREQ(copy, "0123456789");
    EXPECT_EQ(Words(copy).length, 11);
    EXPECT_STREQ(text, "abc");
}

TEST(GetBuffer, OfNothingJustGivesTheText)
{
    const CStr text("abc");
    CStr copy(text);
    EXPECT_EQ(copy.GetBuffer(0), Pointer(text));
    EXPECT_EQ(copy.GetBuffer(-5), Pointer(text));
}

TEST(ReleaseBuffer, SetsTheLengthAndTheZero)
{
    CStr text("abcdef");
    text.ReleaseBuffer(2);
    EXPECT_STREQ(text, "ab");
    EXPECT_EQ(Words(text).length, 3);
    text.ReleaseBuffer(100);  // no more than there is room for
    EXPECT_EQ(Words(text).length, 7);
    CStr empty;
    empty.ReleaseBuffer(5);
    EXPECT_EQ(Words(empty).length, 1);
    EXPECT_EQ(Words(empty).references, 1);
}

TEST(Concatenation, MakesANewString)
{
    const CStr left("ab");
    const CStr right("cd");
    EXPECT_STREQ(left + right, "abcd");
    EXPECT_STREQ("x" + right, "xcd");
    EXPECT_STREQ(left + "y", "aby");
    EXPECT_EQ(Pointer(CStr() + CStr()), Pointer(CStr()));
    EXPECT_EQ(Words(left + right).capacity, 5);
}

TEST(String, AgreesWithAModelOverRandomOperations)
{
    std::mt19937 random(1);
    const auto number = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int round = 0; round < 2000; ++round) {
        CStr text;
        std::string model;
        std::vector<std::pair<CStr, std::string>> copies;
        for (int step = 0; step < 20; ++step) {
            const std::string piece(static_cast<std::size_t>(number(6)), static_cast<char>(number(3) != 0 ? 'a' : ' '));
            switch (number(9)) {
            case 0: text += piece.c_str(), model += piece; break;
            case 1: text += CStr(piece.c_str()), model += piece; break;
            case 2: text += 'c', model += 'c'; break;
            case 3: text = piece.c_str(), model = piece; break;
            case 4: text.TrimLeft(), model.erase(0, model.find_first_not_of(' ')); break;
            case 5: text.TrimRight(), model.erase(model.find_last_not_of(' ') + 1); break;
            case 6: text.Reserve(number(40)); break;
            case 7: copies.emplace_back(text, model); break;
            case 8:
                if (!model.empty()) {
                    const int at = number(static_cast<int>(model.size()));
                    text.SetAt(at, 'x');
                    model[static_cast<std::size_t>(at)] = 'x';
                }
                break;
            }
            ASSERT_EQ(Text(text), model);
            ASSERT_LE(Words(text).length, Words(text).capacity);
            for (const auto &[copy, expected] : copies)
                ASSERT_EQ(Text(copy), expected);
        }
    }
}
