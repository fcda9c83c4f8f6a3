// What a host calls in the bundled libmat.
#include <gtest/gtest.h>

#include "platform/loader.h"
#include "platform/matlab/samplefiles.h"

struct MATFile;

namespace {

class BundledLibmat : public testing::Test {
protected:
    ~BundledLibmat() override
    {
        if (m_library != nullptr)
            FreeLibrary(m_library);
    }

    template <class TFunction>
    TFunction *Entry(const char *name) const
    {
        return reinterpret_cast<TFunction *>(GetProcAddress(m_library, name));
    }

    HMODULE m_library = LoadLibraryA("libmat.dll");
};

TEST_F(BundledLibmat, TellsOfTheVariablesThatAreThereAndOfNoOthers)
{
    auto *const open = Entry<MATFile *(const char *, const char *)>("matOpen");
    auto *const close = Entry<int(MATFile *)>("matClose");
    auto *const info = Entry<mxArray *(MATFile *, const char *)>("matGetVariableInfo");
    ASSERT_TRUE(open != nullptr && close != nullptr && info != nullptr);
    MATFile *const file = open(SamplePath("octave7.mat").c_str(), "r");
    ASSERT_NE(file, nullptr);
    const mxArray *const times = info(file, "times");
    EXPECT_NE(times, nullptr);
    EXPECT_EQ(Describe(times), "1x3 class 6");
    EXPECT_EQ(info(file, "none"), nullptr);
    EXPECT_EQ(info(file, nullptr), nullptr);
    EXPECT_EQ(info(nullptr, "times"), nullptr);
    EXPECT_EQ(close(file), 0);
}

}  // namespace
