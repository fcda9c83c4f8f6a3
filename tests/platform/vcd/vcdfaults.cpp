// What is wrong with a VCD file, how it is told, and what is read all the same.
#include "tests/platform/vcd/vcdsupport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(VcdFault, InTheDeclarationsEndsTheImportAndNamesFileAndLine)
{
    const struct {
        const char *text, *error;
    } rows[] = {
        {"", "F: the file is empty"},
        {" \n\n", "F: the file is empty"},
        {"\n\nhello", "F:3: not a VCD file: it does not begin with a declaration"},
        {"$foo bar", "F:1: the file ends inside \"$foo\""},
        {"$foo bar $end", "F:1: not a VCD file: it has no declarations"},
        {"$foo $end\nbar", "F:2: not a VCD file: \"bar\" stands where a declaration is expected"},
        {"$date x $end\nbar", "F:2: \"bar\" stands where a declaration is expected"},
        {"$date x $end\n#x", "F:2: \"#x\" stands where a declaration is expected"},
        {"$date x $end\n1!", "F:2: \"1!\" stands where a declaration is expected"},
        {"$date x $end\n", "F:2: the file ends inside its declarations"},
        {"$date\n\nx", "F:3: the file ends inside \"$date\""},
        {"$timescale 1 parsec $end", "F:1: unknown timescale \"1parsec\"; use 1, 10 or 100 of s, ms, us, ns, ps or fs"},
        {"\n$var wire x ! a $end", "F:2: a variable has the width \"x\", which is no number up to 2147483647"},
        {"$var wire 1 ! $end", "F:1: a variable without a name"},
        {"$var wire 1 $end", "F:1: a variable without a width or an identifier code"},
        {"$var wire 2147483648 ! a $end", "F:1: a variable is wider than 2147483647 bits"},
        {"$var wire 2147483647 ! a $end", "F:1: the variables up to here have more than 262376 elements, too many for "
                                          "a file of this size"},
    };
    for (const auto &row : rows) {
        const SImport import(row.text);
        EXPECT_EQ(import.error, row.error) << row.text;
        EXPECT_THAT(import.messages, IsEmpty()) << row.text;
    }
}

std::string ErrorOf(const std::string &fileName)
{
    CRecorder writer;
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(fileName);
    try {
        importer.vcdImport();
    } catch (const std::runtime_error &raised) {
        return raised.what();
    }
    return "";
}

// The superuser, whom no permission stops, is somebody else while it lives.
class COrdinaryUser {
public:
    COrdinaryUser() { EXPECT_EQ(seteuid(m_user == 0 ? Nobody : m_user), 0); }
    COrdinaryUser(const COrdinaryUser &) = delete;
    ~COrdinaryUser() { EXPECT_EQ(seteuid(m_user), 0); }

private:
    static constexpr uid_t Nobody = 65534;

    uid_t m_user = geteuid();
};

TEST(VcdFault, IsAFileThatCannotBeRead)
{
    EXPECT_EQ(ErrorOf("/nowhere/dump.vcd"), "/nowhere/dump.vcd: cannot open the file: No such file or directory");
    EXPECT_EQ(ErrorOf("/"), "/: cannot read the file: Is a directory");
    const CTextFile file("$enddefinitions $end");
    std::filesystem::permissions(file.Name(), std::filesystem::perms::none);
    const COrdinaryUser user;
    EXPECT_EQ(ErrorOf(file.Name()), file.Name() + ": cannot open the file: Permission denied");
}

TEST(VcdFault, IsAMissingWriter)
{
    NTARN::NImport::KImport_VCD importer;
    importer.setVcdFileName("x.vcd");
    EXPECT_THROW(importer.vcdImport(), std::runtime_error);
}

TEST(VcdFault, AmongTheValuesIsAWarningWithTheLastTime)
{
    const struct {
        const char *values, *warning;
    } rows[] = {
        {"#120\n1!\n#1x\n", "2 VCD F:8: \"#1x\" is no time; the file is read up to 120 ns"},
        {"#120\n1!\n#-1\n", "2 VCD F:8: \"#-1\" is no time; the file is read up to 120 ns"},
        {"#120\n1!\n#9223372036854775808",
         "2 VCD F:8: \"#9223372036854775808\" is no time; the file is read up to 120 ns"},
        {"#120\n1!\nb01", "2 VCD F:8: the file ends inside a value; the file is read up to 120 ns"},
        {"#120\n1!\n#13\n",
         "2 VCD F:8: the time goes back from 120 to 13; it stays where it was until it is reached again"},
        {"#120\n1!\n#13", "2 VCD F:8: the file ends inside a time; the file is read up to 120 ns"},
        {"#120\n1!\nqq", "2 VCD F:8: \"qq\" is no value change; the file is read up to 120 ns"},
        {"#120\n1!\n0", "2 VCD F:8: the file ends inside a value; the file is read up to 120 ns"},
        {"#120\n1!\n0&", "2 VCD F:8: the file ends inside a value; the file is read up to 120 ns"},
        {"#120\n1!\n$dumpall 1\"", "2 VCD F:8: the file ends inside \"$dumpall\"; the file is read up to 120 ns"},
        {"#120\n1!\n$comment", "2 VCD F:8: the file ends inside \"$comment\"; the file is read up to 120 ns"},
        {"#120\n1!\n$var wire 1 ' ", "2 VCD F:8: the file ends inside \"$var\"; the file is read up to 120 ns"},
        {"#120\n1!\n$var x y z $end", "2 VCD F:8: a variable has the width \"y\", which is no number up to 2147483647; "
                                      "the file is read up to 120 ns"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_THAT(import.messages, ElementsAre(row.warning)) << row.values;
        EXPECT_EQ(import.writer.Events("a"), "120=1") << row.values;
        EXPECT_EQ(import.writer.endTime, 120) << row.values;
        EXPECT_EQ(import.error, "") << row.values;
    }
}

TEST(VcdWarning, ComesOnceForEachKindOfOddity)
{
    const struct {
        const char *values, *warning, *events;
    } rows[] = {
        {"#1 1! 0& 1&\n1'\n", "2 VCD F:6: no variable has the identifier code \"&\"; values without one are left out",
         "1=1"},
        {"#1 1! b1 #\n1#\n",
         "2 VCD F:6: a value that does not fit the kind of the variable \"#\" is left out, as are others like it",
         "1=1"},
        {"#1 1! r1 !\nr1 \"\n",
         "2 VCD F:6: a value that does not fit the kind of the variable \"!\" is left out, as are others like it",
         "1=1"},
        {"#5 1!\n#3 0!\n#1\n#7 1!\n",
         "2 VCD F:7: the time goes back from 5 to 3; it stays where it was until it is reached again", "5=1 5=0 7=1"},
        {"$var string 1 + s $end\n#1 shello world +\n1!\ns +\n0!\n", "2 VCD F:6: variables of kind string are left out",
         "1=1 1=0"},
        {"#1 1!\nstext !\n", "2 VCD F:7: values of kind string are left out", "1=1"},
        {"$var wire 0 + s $end\n$var wire 0 , s $end\n#1 b0 +\n1!\n", "2 VCD F:6: variables of width 0 are left out",
         "1=1"},
    };
    for (const auto &row : rows) {
        const SImport import(VcdHead + row.values);
        EXPECT_THAT(import.messages, ElementsAre(row.warning)) << row.values;
        EXPECT_EQ(import.writer.Events("a"), row.events) << row.values;
        EXPECT_TRUE(import.writer.flag);
    }
}

const std::string SmallDump = VcdHead + "#0\n$dumpvars\n0!\nbx \"\nr0 #\n$end\n#10\n1!\nb101 \"\n#25\nr2.5 #\n0!\n"
                                        "$dumpoff\nx!\nbx \"\n$end\n#30\n$dumpon\n1!\nb0 \"\n$end\n#120\n0!\n";

bool IsPrefix(const std::string &prefix, const std::string &text)
{
    return text.starts_with(prefix);
}

TEST(VcdCut, AnywhereBehindTheDeclarationsGivesAPieceOfTheEvents)
{
    const SImport whole(SmallDump);
    ASSERT_THAT(whole.messages, IsEmpty());
    for (std::size_t size = VcdHead.size(); size < SmallDump.size(); ++size) {
        const SImport cut(SmallDump.substr(0, size));
        EXPECT_EQ(cut.error, "") << size;
        EXPECT_LE(cut.messages.size(), 1u) << size;
        EXPECT_LE(cut.writer.endTime, whole.writer.endTime) << size;
        EXPECT_EQ(cut.writer.signals.size(), 3u);
        EXPECT_TRUE(cut.writer.isInOrder);
        for (const auto &[handle, events] : cut.writer.events)
            EXPECT_TRUE(IsPrefix(events, whole.writer.events.at(handle))) << size << ": " << events;
        for (const std::string &message : cut.messages)
            EXPECT_THAT(message, HasSubstr("; the file is read up to ")) << size;
    }
}

TEST(VcdCut, InsideTheDeclarationsIsAnError)
{
    const std::string text = VcdHead.substr(0, VcdHead.size() - 1);
    for (std::size_t size = 0; size < text.size(); ++size) {
        const SImport cut(text.substr(0, size));
        EXPECT_THAT(cut.error, StartsWith("F:")) << size;
        EXPECT_THAT(cut.messages, IsEmpty()) << size;
    }
}

TEST(VcdDamage, OfAnyByteIsReadOrRefusedButNeverBreaksTheOrder)
{
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        std::string text = SmallDump;
        for (unsigned flips = 1 + static_cast<unsigned>(random() % 3); flips > 0; --flips)
            text[random() % text.size()] = static_cast<char>(random());
        const SImport import(text);
        EXPECT_TRUE(import.writer.isInOrder) << text;
        EXPECT_LE(import.messages.size(), 6u);
    }
}

TEST(VcdClaim, OfElementsIsHeldAgainstTheSizeOfTheFile)
{
    const auto text = [](long long width) {
        return "$var wire " + std::to_string(width) + " ! a $end $enddefinitions $end #0";
    };
    const auto bound = static_cast<long long>((1 << 18) + 8 * text(262144).size());
    EXPECT_EQ(SImport(text(bound)).error, "");
    EXPECT_THAT(SImport(text(bound + 1)).error, HasSubstr("too many for a file of this size"));
}

// Two bytes of value for 200,000 events.
std::string DumpOfTooManyEvents()
{
    std::string text = "$var wire 200000 ! a $end $enddefinitions $end";
    for (int i = 0; i < 100; ++i)
        text += "\n#" + std::to_string(i) + " bx ! bz !";
    return text;
}

void ExpectTooManyEvents(NTARN::IDatabaseStreamWriter &writer, const std::string &text)
{
    const CTextFile file(text);
    const CLogCatcher log;
    NTARN::NImport::KImport_VCD importer;
    importer.connectTarnWriter(&writer);
    importer.setVcdFileName(file.Name());
    importer.vcdImport();
    EXPECT_THAT(log.Messages(),
                ElementsAre(HasSubstr(
                    "changes of single bits, too many for a file of this size; the file is read up to 83 ns")));
}

class CEventCounter : public CRecorder {
public:
    void addEvent(const long long *, const WaveEvent *) override { ++count; }
    long long count = 0;
};

TEST(VcdClaim, OfEventsIsHeldAgainstTheSizeOfTheFile)
{
    const std::string text = DumpOfTooManyEvents();
    CEventCounter counter;
    ExpectTooManyEvents(counter, text);
    EXPECT_EQ(counter.count, static_cast<long long>((1 << 25) + 16 * text.size()));
}

TEST(VcdClaim, OfEventsIsHeldAgainstTheSizeOfTheFileForAWriterOfWordsToo)
{
    class CWordCounter : public CEventCounter, public NTARN::IWordEvents {
    public:
        void shareEvents(const long long *, const long long *) override {}
        void addWord(const long long *, std::intptr_t elements) override { wordSizes.push_back(elements); }
        void addWordEvents(std::size_t word, const long long *, const WaveWord *, const WaveWord *) override
        {
            words += wordSizes[word];
        }
        std::vector<std::intptr_t> wordSizes;
        long long words = 0;  // elements in the words sent: all of them change each time
    } counter;
    const std::string text = DumpOfTooManyEvents();
    ExpectTooManyEvents(counter, text);
    const auto limit = static_cast<long long>((1 << 25) + 16 * text.size());
    EXPECT_EQ(counter.count, 0);
    EXPECT_EQ(counter.words, limit / 64 * 64) << "the last word that fits";
}

TEST(VcdClaim, OfNamesIsHeldAgainstTheSizeOfTheFile)
{
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "$scope module " + std::string(50, 'n') + " $end ";
    for (int i = 0; i < 2000; ++i)
        text += "$var wire 1 ! a $end ";
    EXPECT_THAT(SImport(text + "$enddefinitions $end").error, HasSubstr("the names up to here have more than"));
}

TEST(VcdClaim, OfWidthsIsBoundedForOneCode)
{
    std::string text;
    for (int width = 1; width <= 16; ++width)
        text += "$var wire " + std::to_string(width) + " ! a $end ";
    EXPECT_EQ(SImport(text + "$enddefinitions $end").error, "");
    EXPECT_EQ(SImport(text + "$var wire 17 ! a $end $enddefinitions $end").error,
              "F:1: variables of more than 16 different widths have the identifier code \"!\"");
}

TEST(VcdScopes, MayNestAsDeepAsTheFileIsLong)
{
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += "$scope begin $end ";
    text += "$scope begin s $end $var wire 1 ! a $end $enddefinitions $end";
    EXPECT_EQ(SImport(text).writer.signals.at(0).name, "s.a");
}

}  // namespace
