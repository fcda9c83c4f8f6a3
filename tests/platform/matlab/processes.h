// What a test leaves behind: descriptors and processes.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

inline std::ptrdiff_t CountDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

/// Tests after which there must be no descriptor and no process that was not there before.
class CCleanTest : public testing::Test {
protected:
    CCleanTest() : m_descriptors(CountDescriptors()) {}
    ~CCleanTest() override
    {
        EXPECT_EQ(CountDescriptors(), m_descriptors);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

private:
    const std::ptrdiff_t m_descriptors;
};
