#include "platform/log.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void Collect(void *context, int level, const char *category, const char *text)
{
    *static_cast<std::string *>(context) += std::to_string(level) + "/" + category + "/" + text + "\n";
}

}  // namespace

TEST(Log, GoesToTheSinkUntilItIsTakenAway)
{
    std::string messages;
    Q71log_SetSink(Collect, &messages);
    Q71log_PrintFormattedString(1, "KERNEL", "", "100%s %n");  // never taken for a format
    Q71log_PrintFormattedString(2, nullptr, nullptr, nullptr);
    Q71log_SetSink(nullptr, nullptr);
    EXPECT_EQ(messages, "1/KERNEL/100%s %n\n2//\n");

    testing::internal::CaptureStderr();
    Q71log_PrintFormattedString(2, "VCD", "", "100%s");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "VCD: warning: 100%s\n");
    EXPECT_EQ(messages, "1/KERNEL/100%s %n\n2//\n");
}
