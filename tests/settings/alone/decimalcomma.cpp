// Texts of the library where the host's numbers have a decimal comma.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "settings/clock.h"
#include "settings/cstr.h"
#include "settings/random.h"

namespace {

namespace fs = std::filesystem;

// Makes the process one of a country with a decimal comma. The locale is compiled here, so that none need be installed.
class DecimalComma : public testing::Test {
protected:
    void SetUp() override
    {
        char name[] = "/tmp/tesk-locale-XXXXXX";
        m_folder = mkdtemp(name);
        std::ofstream(m_folder / "source") << "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \",\"\n"
                                              "thousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n";
        std::ofstream(m_folder / "charmap") << "<code_set_name> ASCII\n<comment_char> %\n<escape_char> /\nCHARMAP\n"
                                               "<U002C> /x2c COMMA\nEND CHARMAP\n";
        // It complains of the other categories, which are not taken from it.
        const std::string command =
            "cd '" + m_folder.string() + "' && localedef -c -i source -f ./charmap ./comma >/dev/null 2>&1";
        [[maybe_unused]] const int status = std::system(command.c_str());
        setenv("LOCPATH", m_folder.c_str(), 1);
        ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr) << "no locale made by localedef";
        char text[16];
        std::snprintf(text, sizeof text, "%.1f", 1.5);
        ASSERT_STREQ(text, "1,5");
    }
    void TearDown() override
    {
        std::setlocale(LC_NUMERIC, "C");
        fs::remove_all(m_folder);
    }

    fs::path m_folder;
};

TEST_F(DecimalComma, LeavesAComposedTextAlone)
{
    SimpleString::CStr text;
    text.Format("%f %.2f %g %e %8.1f", 1.5, 2.25, 0.5, 1.5, -3.5);
    EXPECT_STREQ(text, "1.500000 2.25 0.5 1.500000e+00     -3.5");
    char still[16];
    std::snprintf(still, sizeof still, "%.1f", 1.5);
    EXPECT_STREQ(still, "1,5") << "the host's own";
}

TEST_F(DecimalComma, LeavesTheFormulaOfARandomStimulusAlone)
{
    tesk::CRandomStimulusInfo info;
    ASSERT_TRUE(info.SetNormalParameters(5, 100, 15));
    info.SetPeriod(1.5, 2);
    SimpleString::CStr formula;
    ASSERT_TRUE(info.GenerateInternalFormula(formula));
    EXPECT_STREQ(formula, "\\RANDOM\\2\\5\\100\\15\\1.500000ns");
    tesk::CRandomStimulusInfo back;
    ASSERT_TRUE(back.InitializeFromInternalFormula(formula));
    int unit = -1;
    EXPECT_EQ(back.GetPeriod(unit), 1.5);
    EXPECT_EQ(unit, 2);
}

TEST_F(DecimalComma, LeavesASavedClockAlone)
{
    CClock clock;
    ASSERT_TRUE(clock.StreamIn("1.5;2;0;0;50;0"));
    SimpleString::CStr text;
    clock.StreamOut(text);
    EXPECT_STREQ(text, "1.500000;2;0;0;50;0");
    CClock back;
    ASSERT_TRUE(back.StreamIn(text));
    SimpleString::CStr again;
    back.StreamOut(again);
    EXPECT_STREQ(again, text);
}

}  // namespace
