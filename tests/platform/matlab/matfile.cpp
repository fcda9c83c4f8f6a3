#include "platform/matlab/matfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <span>

#include "platform/matlab/matstream.h"
#include "platform/matlab/processes.h"
#include "platform/matlab/samplefiles.h"
#include "testpaths.h"

namespace {

using testing::AnyOf;

// Tests in a folder of their own.
class MatFile : public CCleanTest {
protected:
    MatFile() : m_folder(std::filesystem::temp_directory_path() / ("matfile." + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_folder);
    }
    ~MatFile() override { std::filesystem::remove_all(m_folder); }

    std::string Write(const std::string &name, const std::string &bytes) const
    {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
        return (m_folder / name).string();
    }

    // A reader that writes these bytes, whatever it is asked.
    std::string Reader(const std::string &bytes) const
    {
        const std::string path = Write("reader", "#!/bin/sh\n[ $# != 3 ] && exec cat '" + Write("answer", bytes) +
                                                     "'\nprintf TESKMAT1TESKEND1\n");
        chmod(path.c_str(), 0700);
        return path;
    }

    std::string DescribeAnswer(const std::string &node) const
    {
        CMatFile file(Reader(std::string(StreamBegin, 8) + node + std::string(StreamEnd, 8)),
                      SamplePath("octave6.mat"));
        EXPECT_TRUE(file.Check());
        return Describe(file.ReadVariable("v"));
    }

    std::string DescribeListAnswer(const std::string &list) const;

    const std::filesystem::path m_folder;
};

std::string VariableOf(const std::string &path, const char *name)
{
    CMatFile file(TESK_MATREAD, path);
    return file.Check() ? Describe(file.ReadVariable(name)) : "no file";
}

// "m 3x4 class 6; times 1x3 class 6"; "no list" if there is none.
std::string DescribeList(CMatFile &file)
{
    const std::vector<std::string> *names = file.ReadNames();
    if (names == nullptr)
        return "no list";
    std::string text;
    for (const std::string &name : *names)
        text += (text.empty() ? "" : "; ") + name + ' ' + Describe(file.ReadInfo(name.c_str()));
    return text;
}

std::string ListOf(const std::string &path)
{
    CMatFile file(TESK_MATREAD, path);
    return file.Check() ? DescribeList(file) : "no file";
}

std::string MatFile::DescribeListAnswer(const std::string &list) const
{
    CMatFile file(Reader(std::string(StreamBegin, 8) + list + std::string(StreamEnd, 8)), SamplePath("octave6.mat"));
    return DescribeList(file);
}

template <typename T>
std::string Bytes(T value)
{
    return std::string(reinterpret_cast<const char *>(&value), sizeof value);
}

std::string Header(int classId, std::initializer_list<std::uint64_t> sizes)
{
    std::string bytes = '\1' + Bytes<std::int32_t>(classId) + Bytes(static_cast<std::uint32_t>(sizes.size()));
    for (const std::uint64_t size : sizes)
        bytes += Bytes(size);
    return bytes;
}

std::string Names(std::initializer_list<const char *> names)
{
    std::string bytes = Bytes(static_cast<std::uint32_t>(names.size()));
    for (const std::string name : names)
        bytes += Bytes(static_cast<std::uint32_t>(name.size())) + name;
    return bytes;
}

TEST_F(MatFile, HoldsNumbersInEveryVersion)
{
    for (const auto &files : {std::span<const char *const>(SmallFiles), std::span<const char *const>(LargeFiles)}) {
        for (const char *name : files) {
            const std::string path = SamplePath(name);
            EXPECT_EQ(VariableOf(path, "m"), "3x4 class 6 10 20 30 1 4 7 2 5 8 3 6 9") << name;
            EXPECT_EQ(VariableOf(path, "times"), "1x3 class 6 1 2 4") << name;
            EXPECT_EQ(VariableOf(path, "values"), "3x1 class 6 5 -3 300") << name;
            EXPECT_THAT(VariableOf(path, "odd"), testing::MatchesRegex("5x1 class 6 0 -?nan inf -inf 1.25")) << name;
            EXPECT_EQ(VariableOf(path, "cx"), "2x1 class 6 1 3") << name << ": of complex numbers the real parts";
            EXPECT_EQ(VariableOf(path, "none"), "null") << name;
            EXPECT_EQ(VariableOf(path, ""), "null") << name;
        }
    }
}

TEST_F(MatFile, HoldsStructuresAndOtherClasses)
{
    for (const char *name : LargeFiles) {
        const std::string path = SamplePath(name);
        EXPECT_EQ(VariableOf(path, "s"), "1x1 {f=3x4 class 6 10 20 30 1 4 7 2 5 8 3 6 9} {t=1x1 {v=1x1 class 6 7}}")
            << name;
        EXPECT_EQ(VariableOf(path, "sa"),
                  "2x2 {v=1x1 class 6 11} {v=1x1 class 6 21} {v=1x1 class 6 12} {v=1x1 class 6 22}")
            << name;
        EXPECT_EQ(VariableOf(path, "n3"), "2x2x2 class 6 1 2 3 4 5 6 7 8") << name;
        EXPECT_EQ(VariableOf(path, "e"), "0x3 class 6") << name;
        EXPECT_EQ(VariableOf(path, "ce"), "1x2 class 1") << name;
        EXPECT_EQ(VariableOf(path, "txt"), "1x4 class 4") << name;
        EXPECT_EQ(VariableOf(path, "lg"), "1x2 class 3") << name;
        EXPECT_EQ(VariableOf(path, "sg"), "1x1 class 7") << name;
        EXPECT_EQ(VariableOf(path, "i8"), "1x2 class 8") << name;
        EXPECT_EQ(VariableOf(path, "u64"), "1x1 class 15") << name;
    }
}

TEST_F(MatFile, ShowsNoSparseNumbers)
{
    for (const char *name : {"octave6.mat", "octave7.mat", "scipy5.mat"})
        EXPECT_EQ(VariableOf(SamplePath(name), "sp"), "2x2 class 0") << name;
}

TEST_F(MatFile, KeepsItsVariablesUntilItIsClosed)
{
    CMatFile file(TESK_MATREAD, SamplePath("octave7.mat"));
    const mxArray *first = file.ReadVariable("times");
    const mxArray *second = file.ReadVariable("values");
    EXPECT_EQ(Describe(first), "1x3 class 6 1 2 4");
    EXPECT_EQ(Describe(second), "3x1 class 6 5 -3 300");
}

TEST_F(MatFile, IsAFileOfThatKind)
{
    EXPECT_EQ(mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    const std::string paths[] = {"/no/such/file",    "",
                                 m_folder.string(),  "/dev/zero",
                                 "/dev/null",        (m_folder / "pipe").string(),
                                 Write("empty", ""), Write("text", "time,value\n1,2\n")};
    for (const std::string &path : paths)
        EXPECT_FALSE(CMatFile(TESK_MATREAD, path).Check()) << path;
}

TEST_F(MatFile, HasNoMoreElementsThanItsBytesCanHold)
{
    CMatFile file(TESK_MATREAD,
                  TESK_SOURCE_DIR "/fuzz/seeds/matfile/manyelements");  // 21 million structures in 579 bytes
    EXPECT_TRUE(file.Check());
    EXPECT_EQ(file.ReadVariable("v"), nullptr);
}

TEST_F(MatFile, NeedsItsReader)
{
    CMatFile file("/no/such/program", SamplePath("octave7.mat"));
    EXPECT_FALSE(file.Check());
    EXPECT_EQ(file.ReadVariable("m"), nullptr);
}

TEST_F(MatFile, MayHaveAnyName)
{
    for (const char *name : {"-r", "a b.mat", "$(true)'\".mat"})
        EXPECT_EQ(VariableOf(Write(name, BytesOf(SamplePath("octave6.mat"))), "times"), "1x3 class 6 1 2 4") << name;
}

TEST_F(MatFile, ListsItsVariablesWithoutTheirValues)
{
    const std::string numbers = "m 3x4 class 6; times 1x3 class 6; values 3x1 class 6; odd 5x1 class 6; cx 2x1 class 6";
    for (const char *name : SmallFiles)
        EXPECT_EQ(ListOf(SamplePath(name)), numbers) << name;
    for (const char *name : {"octave6.mat", "octave7.mat", "scipy5.mat"})
        EXPECT_EQ(ListOf(SamplePath(name)),
                  numbers +
                      "; s 1x1 {f=3x4 class 6} {t=1x1 {v=1x1 class 6}}; sa 2x2 {v=1x1 class 6}; n3 2x2x2 class 6; "
                      "e 0x3 class 6; i8 1x2 class 8; u64 1x1 class 15; sg 1x1 class 7; txt 1x4 class 4; "
                      "lg 1x2 class 3; sp 2x2 class 0; ce 1x2 class 1")
            << name;
    EXPECT_EQ(
        ListOf(SamplePath("matio73.mat")),
        "ce 1x2 class 1; cx 2x1 class 6; e 0x3 class 6; i8 1x2 class 8; lg 1x2 class 3; m 3x4 class 6; "
        "n3 2x2x2 class 6; odd 5x1 class 6; s 1x1 {f=3x4 class 6} {t=1x1 {v=1x1 class 6}}; sa 2x2 {v=1x1 class 6}; "
        "sg 1x1 class 7; times 1x3 class 6; txt 1x4 class 4; u64 1x1 class 15; values 3x1 class 6");
    CMatFile file(TESK_MATREAD, SamplePath("octave7.mat"));
    EXPECT_EQ(file.ReadInfo("none"), nullptr);
    EXPECT_EQ(file.ReadInfo("times")->real, nullptr);
}

TEST_F(MatFile, IsNotListedWhereItWasCutOff)
{
    for (const char *name : {"octave4.mat", "octave6.mat", "scipy4.mat", "scipy5.mat", "matio73.mat"}) {
        const std::string bytes = BytesOf(SamplePath(name));
        const std::string whole = ListOf(SamplePath(name));
        const std::string lastPart = ListOf(Write("cut.mat", bytes.substr(0, bytes.size() - 1)));
        EXPECT_THAT(lastPart, AnyOf("no file", "no list")) << name;
        for (std::size_t size = 0; size < bytes.size(); size += bytes.size() / 8 + 1) {
            const std::string list = ListOf(Write("cut.mat", bytes.substr(0, size)));
            // Between two variables nothing shows that there were more.
            EXPECT_TRUE(list == "no file" || list == "no list" || whole.starts_with(list)) << name << size << list;
        }
    }
}

TEST_F(MatFile, ListsDamagedVariablesWithoutHarm)
{
    std::mt19937 random(5);
    for (const char *name : {"octave6.mat", "scipy5.mat", "matio73.mat"}) {
        const std::string bytes = BytesOf(SamplePath(name));
        for (int round = 0; round < 16; ++round) {
            std::string damaged = bytes;
            for (int i = 0; i < 4; ++i)
                damaged[random() % damaged.size()] = static_cast<char>(random());
            ListOf(Write("damaged.mat", damaged));
        }
    }
}

TEST_F(MatFile, TakesListsAsTheyShouldBe)
{
    const std::string name = '\1' + Bytes<std::uint32_t>(1) + "a";
    EXPECT_EQ(DescribeListAnswer(std::string(1, '\0')), "");
    EXPECT_EQ(DescribeListAnswer(name + '\0' + '\0'), "a null");
    EXPECT_EQ(DescribeListAnswer(name + Header(6, {1, 7}) + '\0'), "a 1x7 class 6");
    const std::string many = Header(2, {std::uint64_t(1) << 60, 1}) + Names({"f"}) + '\0';
    EXPECT_EQ(DescribeListAnswer(name + many + '\0'), "a 1152921504606846976x1 {f=null}");
    for (const std::string &list : {std::string(), name, name + Header(6, {1, 7}), '\2' + name + '\0' + '\0',
                                    name + '\2' + '\0', '\1' + Bytes<std::uint32_t>(1U << 31) + '\0'})
        EXPECT_EQ(DescribeListAnswer(list), "no list") << list;
}

TEST_F(MatFile, CutAnywhereIsRefusedOrReadInPart)
{
    for (const char *name : {"octave4.mat", "octave6.mat", "scipy4.mat", "scipy5.mat", "matio73.mat"}) {
        const std::string bytes = BytesOf(SamplePath(name));
        const std::size_t step = bytes.size() / 12 + 1;
        for (std::size_t size = 0; size < bytes.size(); size += step) {
            const std::string path = Write("cut.mat", bytes.substr(0, size));
            EXPECT_THAT(VariableOf(path, "m"), AnyOf("no file", "null", "3x4 class 6 10 20 30 1 4 7 2 5 8 3 6 9"))
                << name << " cut at " << size;
            EXPECT_THAT(VariableOf(path, "values"), AnyOf("no file", "null", "3x1 class 6 5 -3 300"))
                << name << " cut at " << size;
        }
    }
}

TEST_F(MatFile, DamagedAnywhereHarmsNobody)
{
    std::mt19937 random(3);
    for (const char *name : {"octave6.mat", "scipy5.mat", "matio73.mat"}) {
        const std::string bytes = BytesOf(SamplePath(name));
        for (int round = 0; round < 16; ++round) {
            std::string damaged = bytes;
            for (int i = 0; i < 4; ++i)
                damaged[random() % damaged.size()] = static_cast<char>(random());
            VariableOf(Write("damaged.mat", damaged), round % 2 == 0 ? "m" : "s");
        }
    }
}

TEST_F(MatFile, LeavesNoFileBehind)
{
    const std::string bytes = BytesOf(SamplePath("matio73.mat"));
    VariableOf(Write("cut.mat", bytes.substr(0, bytes.size() / 2)), "m");
    const std::filesystem::directory_iterator files(m_folder);
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST_F(MatFile, TakesAnswersAsTheyShouldBe)
{
    const std::string number = Header(6, {1, 1}) + Bytes<std::uint64_t>(1) + Bytes(2.5);
    EXPECT_EQ(DescribeAnswer(std::string(1, '\0')), "null");
    EXPECT_EQ(DescribeAnswer(number), "1x1 class 6 2.5");
    EXPECT_EQ(DescribeAnswer(Header(9, {1, 7})), "1x7 class 9");
    EXPECT_EQ(DescribeAnswer(Header(2, {1, 1}) + Names({"a", "b"}) + number + '\0'),
              "1x1 {a=1x1 class 6 2.5} {b=null}");
}

TEST_F(MatFile, RefusesAnswersThatMakeNoSense)
{
    const std::uint64_t huge = std::uint64_t(1) << 40;
    const std::string number = Header(6, {1, 1}) + Bytes<std::uint64_t>(1) + Bytes(2.5);
    const struct {
        const char *what;
        std::string node;
    } rows[] = {
        {"nothing", ""},
        {"neither there nor not", "\2"},
        {"something behind", number + "x"},
        {"a rank beyond reason", '\1' + Bytes<std::int32_t>(6) + Bytes<std::uint32_t>(1U << 31)},
        {"sizes whose product overflows", Header(9, {huge, huge})},
        {"another number of elements", Header(6, {2, 2}) + Bytes<std::uint64_t>(1) + Bytes(2.5)},
        {"more elements than may come", Header(6, {huge, 1}) + Bytes(huge)},
        {"less than said", Header(6, {1000, 1}) + Bytes<std::uint64_t>(1000) + Bytes(2.5)},
        {"fields beyond reason", Header(2, {1, 1}) + Bytes<std::uint32_t>(1U << 31)},
        {"a name beyond reason", Header(2, {1, 1}) + Bytes<std::uint32_t>(1) + Bytes<std::uint32_t>(1U << 31)},
        {"more fields than may come", Header(2, {huge, huge >> 20}) + Names({"a"})},
    };
    for (const auto &row : rows)
        EXPECT_EQ(DescribeAnswer(row.node), "null") << row.what;
}

TEST_F(MatFile, RefusesStructuresThatAreTooDeep)
{
    const std::string level = Header(2, {1, 1}) + Names({"a"});
    const auto nested = [&](int levels) {
        std::string node;
        for (int i = 0; i < levels; ++i)
            node += level;
        return DescribeAnswer(node + '\0');
    };
    EXPECT_NE(nested(MaximumDepth), "null");
    EXPECT_EQ(nested(MaximumDepth + 1), "null");
    EXPECT_EQ(nested(1000), "null");
}

TEST_F(MatFile, RefusesAnAnswerWithoutItsBeginningOrEnd)
{
    for (const char *answer : {"", "TESKMAT1", "TESKMAT2", "TESKMAT1TESKEND", "no such program"}) {
        const std::string reader = Write("reader", "#!/bin/sh\nprintf '" + std::string(answer) + "'\n");
        chmod(reader.c_str(), 0700);
        CMatFile file(reader, SamplePath("octave6.mat"));
        EXPECT_FALSE(file.Check()) << answer;
        EXPECT_EQ(file.ReadVariable("m"), nullptr) << answer;
    }
}

}  // namespace
