// How far long work is, on a terminal and only there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tools/progress.h"

TEST(ProgressLine, IsNotWrittenIntoAPipe)
{
    testing::internal::CaptureStderr();
    {
        tesk::CProgressLine line("Counting");
        std::this_thread::sleep_for(std::chrono::milliseconds(1050));
        for (int i = 0; i < 5000; ++i)
            line.Show(i, 5000);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
