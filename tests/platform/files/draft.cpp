#include "platform/files/draft.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using tesk::CDraft;

class Draft : public testing::Test {
protected:
    Draft()
    {
        char name[] = "/tmp/tesk-draft-XXXXXX";
        m_folder = mkdtemp(name);
    }
    ~Draft() override { fs::remove_all(m_folder); }

    std::string Path(const std::string &name) const { return (m_folder / name).string(); }

    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(m_folder))
            names.insert(entry.path().filename());
        return names;
    }

    static std::string Text(const std::string &path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void Put(const std::string &path, const std::string &text) { std::ofstream(path, std::ios::binary) << text; }

    fs::path m_folder;
};

TEST_F(Draft, IsAtItsPlaceOnceItIsPublished)
{
    CDraft draft(Path("a"));
    ASSERT_TRUE(draft.IsOpen());
    draft.Stream() << "text";
    EXPECT_FALSE(fs::exists(Path("a")));
    EXPECT_TRUE(draft.Publish());
    EXPECT_FALSE(draft.IsOpen());
    EXPECT_EQ(draft.Error(), 0);
    EXPECT_EQ(Text(Path("a")), "text");
    EXPECT_FALSE(draft.Publish());
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(Draft, GoesWithItsObject)
{
    Put(Path("a"), "old");
    {
        CDraft draft(Path("a"));
        draft.Stream() << "new" << std::flush;
        EXPECT_EQ(Names().size(), 2U);
    }
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
    EXPECT_EQ(Text(Path("a")), "old");
}

TEST_F(Draft, HasANameThatIsNotToldByThatOfThePlace)
{
    CDraft first(Path("a")), second(Path("a"));
    const std::set<std::string> names = Names();
    ASSERT_EQ(names.size(), 2U);
    for (const std::string &name : names) {
        EXPECT_EQ(name.substr(0, 6), "a.part");
        EXPECT_EQ(name.size(), 6U + 16U);
    }
}

TEST_F(Draft, IsOneOfSeveralOnAPlaceAndEachPublishesItsOwn)
{
    CDraft first(Path("a")), second(Path("a"));
    first.Stream() << std::string(100000, '1');
    second.Stream() << "2";
    EXPECT_TRUE(first.Publish());
    second.Stream() << "2";
    EXPECT_EQ(Text(Path("a")), std::string(100000, '1'));
    EXPECT_TRUE(second.Publish());
    EXPECT_EQ(Text(Path("a")), "22");
}

TEST_F(Draft, FitsBesideThePlaceOfTheLongestName)
{
    const std::string letters = std::string(200, 'x');
    for (const std::string &name : {letters + std::string(55, 'y'), letters + std::string(34, 'y'),
                                    "a" + letters + std::string(27, 'y') + std::string("\xC3\xB6\xC3\xB6") + "yy"}) {
        CDraft draft(Path(name));
        ASSERT_TRUE(draft.IsOpen()) << name.size();
        draft.Stream() << name;
        EXPECT_TRUE(draft.Publish());
        EXPECT_EQ(Text(Path(name)), name);
    }
    const CDraft tooLong(Path(std::string(256, 'x')) + "/a");
    EXPECT_EQ(tooLong.Error(), ENAMETOOLONG);
}

TEST_F(Draft, LeavesALinkAndReplacesTheFileBehindIt)
{
    fs::create_directory(m_folder / "there");
    Put(Path("there/file"), "old");
    fs::create_symlink("there/file", m_folder / "link");
    fs::create_symlink("link", m_folder / "outer");
    CDraft draft(Path("outer"));
    draft.Stream() << "new";
    EXPECT_TRUE(draft.Publish());
    EXPECT_TRUE(fs::is_symlink(m_folder / "outer"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
    EXPECT_EQ(Text(Path("there/file")), "new");
    fs::create_symlink("round", m_folder / "round");
    EXPECT_EQ(CDraft(Path("round")).Error(), ELOOP);
}

TEST_F(Draft, HasTheRightsOfTheFileThatItReplaces)
{
    const mode_t mask = umask(022);
    for (const auto rights : {fs::perms(0600), fs::perms(0666), fs::perms(0751)}) {
        Put(Path("a"), "old");
        fs::permissions(Path("a"), rights);
        CDraft draft(Path("a"));
        for (const std::string &name : Names())
            EXPECT_EQ(fs::status(m_folder / name).permissions(), rights) << name;
        EXPECT_TRUE(draft.Publish());
        EXPECT_EQ(fs::status(Path("a")).permissions(), rights);
    }
    CDraft draft(Path("new"));
    EXPECT_TRUE(draft.Publish());
    EXPECT_EQ(fs::status(Path("new")).permissions(), fs::perms(0644));
    umask(mask);
}

TEST_F(Draft, CanBeWrittenInAnyOrder)
{
    CDraft draft(Path("a"));
    draft.Stream() << "____" << std::string(200000, 'x');
    EXPECT_EQ(draft.Stream().tellp(), 200004);
    draft.Stream().seekp(0);
    draft.Stream() << "head";
    draft.Stream().seekp(0, std::ios::end);
    draft.Stream() << "tail";
    EXPECT_TRUE(draft.Publish());
    EXPECT_EQ(Text(Path("a")), "head" + std::string(200000, 'x') + "tail");
}

TEST_F(Draft, TellsWhyItCannotBeMadeOrMoved)
{
    CDraft nowhere(Path("none/a"));
    EXPECT_FALSE(nowhere.IsOpen());
    EXPECT_EQ(nowhere.Error(), ENOENT);
    EXPECT_FALSE(nowhere.Publish());
    nowhere.Stream() << "nothing";  // is harmless
    CDraft draft(Path("a"));
    fs::create_directory(m_folder / "a");
    EXPECT_FALSE(draft.Publish());
    EXPECT_EQ(draft.Error(), EISDIR);
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(Draft, IsRemovedWithAllOthersButNotByAnotherProcess)
{
    const CDraft first(Path("a")), second(Path("b"));
    const pid_t child = fork();
    if (child == 0) {
        tesk::RemoveDrafts();
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(Names().size(), 2U);
    tesk::RemoveDrafts();
    EXPECT_EQ(Names().size(), 0U);
}

TEST_F(Draft, BeyondTheSixtyFourthTakesNothingFromTheOthers)
{
    std::vector<std::unique_ptr<CDraft>> known;
    for (int i = 0; i < 64; ++i)
        known.push_back(std::make_unique<CDraft>(Path(std::to_string(i))));
    {
        CDraft other(Path("other"));
        EXPECT_TRUE(other.Publish());
    }
    EXPECT_EQ(Names().size(), 65U);
    tesk::RemoveDrafts();
    EXPECT_EQ(Names(), std::set<std::string>{"other"});
}

TEST_F(Draft, GoesAtTheEndOfTheProgram)
{
    const pid_t child = fork();
    if (child == 0) {
        new CDraft(Path("a"));
        std::exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(Names().size(), 0U);
}

}  // namespace
