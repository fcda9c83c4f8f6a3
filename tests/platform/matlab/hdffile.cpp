// Files of version 7.3, of every writer.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "platform/matlab/hdfwriter.h"
#include "platform/matlab/matfile.h"
#include "platform/matlab/processes.h"
#include "platform/matlab/samplefiles.h"
#include "testpaths.h"

namespace {

const std::vector<double> Six = {1, 2, 3, 4, 5, 6};

class HdfMatFile : public CCleanTest {
protected:
    HdfMatFile() : m_folder(std::filesystem::temp_directory_path() / ("hdffile." + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_folder);
    }
    ~HdfMatFile() override { std::filesystem::remove_all(m_folder); }

    std::string Path(const std::string &name = "a.mat") const { return (m_folder / name).string(); }

    std::string VariableOf(const std::string &name, const std::string &file = "a.mat") const
    {
        CMatFile matFile(TESK_MATREAD, Path(file));
        return matFile.Check() ? Describe(matFile.ReadVariable(name.c_str())) : "no file";
    }

    // What a variable is beside its class. @return such as "class 6 complex"
    std::string KindOf(const std::string &name) const
    {
        CMatFile matFile(TESK_MATREAD, Path());
        const mxArray *array = matFile.ReadVariable(name.c_str());
        if (array == nullptr)
            return "null";
        return "class " + std::to_string(array->classId) + (array->isComplex ? " complex" : "") +
               (array->isSparse ? " sparse" : "");
    }

    const std::filesystem::path m_folder;
};

TEST_F(HdfMatFile, TellsTheClassHoweverItsNameIsStored)
{
    for (const bool hasHeader : {true, false}) {
        for (const EText text : {EText::NullEnded, EText::NullPadded, EText::BlankPadded, EText::OwnLength}) {
            CHdfWriter(Path(), hasHeader).AddDoubles("v", {2, 3}, Six, text);
            EXPECT_EQ(VariableOf("v"), "2x3 class 6 1 2 3 4 5 6") << hasHeader << static_cast<int>(text);
        }
    }
}

TEST_F(HdfMatFile, HoldsNumbersThatArePackedInPieces)
{
    CHdfWriter(Path(), true).AddDoubles("v", {3, 2}, Six, EText::NullEnded, true);
    EXPECT_EQ(VariableOf("v"), "3x2 class 6 1 2 3 4 5 6");
}

TEST_F(HdfMatFile, HoldsDoublesStoredInOtherTypes)
{
    {
        CHdfWriter file(Path(), true);
        file.Add("big", {1, 2}, std::vector<double>{1.5, -2}, H5T_NATIVE_DOUBLE, H5T_IEEE_F64BE, "double");
        file.Add("small", {1, 2}, std::vector<double>{1.5, -2}, H5T_NATIVE_DOUBLE, H5T_IEEE_F32LE, "double");
        file.Add("whole", {1, 2}, std::vector<double>{1, -2}, H5T_NATIVE_DOUBLE, H5T_STD_I8LE, "double");
    }
    EXPECT_EQ(VariableOf("big"), "1x2 class 6 1.5 -2");
    EXPECT_EQ(VariableOf("small"), "1x2 class 6 1.5 -2");
    EXPECT_EQ(VariableOf("whole"), "1x2 class 6 1 -2");
}

TEST_F(HdfMatFile, TakesWhatHasNoClassByItsType)
{
    {
        CHdfWriter file(Path(), false);
        file.Add("scalar", {}, std::vector<double>{2.5}, H5T_NATIVE_DOUBLE, H5T_IEEE_F64LE, "");
        file.Add("column", {3}, std::vector<double>{1, 2, 3}, H5T_NATIVE_DOUBLE, H5T_IEEE_F64LE, "");
        file.Add("single", {3}, std::vector<float>{1, 2, 3}, H5T_NATIVE_FLOAT, H5T_IEEE_F32LE, "");
        file.Add("int16", {3}, std::vector<int>{1, 2, 3}, H5T_NATIVE_INT, H5T_STD_I16LE, "");
        file.Add("uint64", {3}, std::vector<int>{1, 2, 3}, H5T_NATIVE_INT, H5T_STD_U64LE, "");
        file.AddGroup("group", "");
        file.AddDoubles("group/f", {1, 1}, {4});
    }
    EXPECT_EQ(VariableOf("scalar"), "1x1 class 6 2.5");
    EXPECT_EQ(VariableOf("column"), "3x1 class 6 1 2 3");
    EXPECT_EQ(VariableOf("single"), "3x1 class 7");
    EXPECT_EQ(VariableOf("int16"), "3x1 class 10");
    EXPECT_EQ(VariableOf("uint64"), "3x1 class 15");
    EXPECT_EQ(VariableOf("group"), "1x1 {f=1x1 class 6 4}");
}

TEST_F(HdfMatFile, KnowsTheOtherClasses)
{
    {
        CHdfWriter file(Path(), true);
        const std::vector<std::uint8_t> bytes = {1, 0};
        const struct {
            const char *name;
            hid_t stored;
        } rows[] = {{"logical", H5T_STD_U8LE}, {"char", H5T_STD_U16LE}, {"single", H5T_IEEE_F32LE},
                    {"int8", H5T_STD_I8LE},    {"uint8", H5T_STD_U8LE}, {"int32", H5T_STD_I32LE},
                    {"table", H5T_STD_U32LE}};
        for (const auto &row : rows)
            file.Add(row.name, {1, 2}, bytes, H5T_NATIVE_UINT8, row.stored, row.name);
        file.AddReferences("cell", {1, 2}, {"/char", "/int8"}, "cell");
        file.AddComplex("complex", {1, 2}, {1, 10, 2, 20});
        file.AddGroup("sparse", "double");
        file.AddNumber("sparse", "MATLAB_sparse", 5);
        file.Add("sparse/jc", {4}, std::vector<int>{0, 0, 0, 0}, H5T_NATIVE_INT, H5T_STD_U64LE, "");
        file.AddGroup("object", "containers.Map");
    }
    for (const char *row : {"logical 3", "char 4", "single 7", "int8 8", "uint8 9", "int32 12", "table 18", "cell 1"}) {
        const std::string text = row, name = text.substr(0, text.find(' '));
        EXPECT_EQ(VariableOf(name), "1x2 class" + text.substr(name.size()));
        EXPECT_EQ(KindOf(name), "class" + text.substr(name.size()));
    }
    EXPECT_EQ(VariableOf("complex"), "1x2 class 6 1 2");
    EXPECT_EQ(KindOf("complex"), "class 6 complex");
    EXPECT_EQ(VariableOf("sparse"), "5x3 class 0");
    EXPECT_EQ(KindOf("sparse"), "class 0 sparse");
    EXPECT_EQ(VariableOf("object"), "1x1 class 18");
}

TEST_F(HdfMatFile, HoldsArraysWithoutElements)
{
    {
        CHdfWriter file(Path(), true);
        file.AddEmpty("e", {0, 3}, "double");
        file.AddEmpty("s", {0, 0}, "struct");
        file.AddEmpty("liar", {2, 3}, "double");
        file.AddFields("s", {"b", "a"});
    }
    EXPECT_EQ(VariableOf("e"), "0x3 class 6");
    EXPECT_EQ(VariableOf("s"), "0x0");
    EXPECT_EQ(VariableOf("liar"), "null");
}

TEST_F(HdfMatFile, HoldsStructuresInTheOrderOfTheirFields)
{
    {
        CHdfWriter file(Path(), true);
        file.AddGroup("s", "struct");
        file.AddDoubles("s/a", {1, 2}, {1, 2});
        file.AddGroup("s/z", "struct");
        file.AddDoubles("s/z/x", {1, 1}, {3});
        file.AddFields("s", {"z", "a"});
        file.AddGroup("#refs#", "");
        for (const char *name : {"#refs#/a", "#refs#/b"})
            file.AddDoubles(name, {1, 1}, {name[7] == 'a' ? 11.0 : 12.0});
        file.AddGroup("sa", "struct");
        file.AddReferences("sa/v", {1, 2}, {"#refs#/a", "#refs#/b"});
    }
    EXPECT_EQ(VariableOf("s"), "1x1 {z=1x1 {x=1x1 class 6 3}} {a=1x2 class 6 1 2}");
    EXPECT_EQ(VariableOf("sa"), "1x2 {v=1x1 class 6 11} {v=1x1 class 6 12}");
    for (const char *name : {"#refs#", "#refs#/a", "s/a", ".", "/", "/s", ""})
        EXPECT_EQ(VariableOf(name), "null") << name;
}

TEST_F(HdfMatFile, ShowsNothingOfOtherFiles)
{
    CHdfWriter(Path("other.mat"), false).AddDoubles("v", {1, 1}, {7});
    std::ofstream(Path("raw"), std::ios::binary) << std::string(8, '\x40');
    {
        CHdfWriter file(Path(), false);
        H5Lcreate_external(Path("other.mat").c_str(), "/v", file.File(), "link", H5P_DEFAULT, H5P_DEFAULT);
        const hsize_t one = 1;
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE), space = H5Screate_simple(1, &one, nullptr);
        H5Pset_external(list, Path("raw").c_str(), 0, 8);
        H5Dclose(H5Dcreate2(file.File(), "raw", H5T_IEEE_F64LE, space, H5P_DEFAULT, list, H5P_DEFAULT));
        H5Sclose(space);
        H5Pclose(list);
    }
    EXPECT_EQ(VariableOf("link"), "null");
    EXPECT_EQ(VariableOf("raw"), "null");
}

TEST_F(HdfMatFile, DoesNotGoRoundInCircles)
{
    {
        CHdfWriter file(Path(), true);
        file.AddGroup("s", "struct");
        H5Lcreate_hard(file.File(), "s", file.File(), "s/again", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_hard(file.File(), "s", file.File(), "s/once_more", H5P_DEFAULT, H5P_DEFAULT);
    }
    EXPECT_EQ(VariableOf("s"), "null");
}

TEST_F(HdfMatFile, TakesNoMoreMemoryThanItMay)
{
    {
        CHdfWriter file(Path(), true);
        const hsize_t sizes[] = {1 << 20, 1 << 20}, chunk[] = {64, 64};
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE), space = H5Screate_simple(2, sizes, nullptr);
        H5Pset_chunk(list, 2, chunk);
        H5Dclose(H5Dcreate2(file.File(), "huge", H5T_IEEE_F64LE, space, H5P_DEFAULT, list, H5P_DEFAULT));
        H5Sclose(space);
        H5Pclose(list);
        file.AddDoubles("v", {1, 1}, {7});
    }
    EXPECT_EQ(VariableOf("huge"), "null");
    EXPECT_EQ(VariableOf("v"), "1x1 class 6 7");
}

TEST_F(HdfMatFile, DamagedAnywhereHarmsNobody)
{
    {
        CHdfWriter file(Path(), true);
        file.AddDoubles("v", {2, 3}, Six, EText::NullPadded, true);
        file.AddGroup("s", "struct");
        file.AddDoubles("s/a", {1, 2}, {1, 2});
        file.AddFields("s", {"a"});
    }
    const std::string bytes = BytesOf(Path());
    std::mt19937 random(4);
    for (int round = 0; round < 24; ++round) {
        std::string damaged = bytes.substr(0, round % 3 == 0 ? random() % bytes.size() : bytes.size());
        for (int i = 0; i < 6 && damaged.size() > 512; ++i)
            damaged[512 + random() % (damaged.size() - 512)] = static_cast<char>(random());
        std::ofstream(Path("damaged.mat"), std::ios::binary) << damaged;
        VariableOf(round % 2 == 0 ? "v" : "s", "damaged.mat");
    }
}

}  // namespace
