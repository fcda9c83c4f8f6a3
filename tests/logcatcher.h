// Collects what is logged, for tests.
#pragma once

#include <string>
#include <vector>

#include "platform/log.h"

// Collects the messages logged while it lives, as "level category text".
class CLogCatcher {
public:
    CLogCatcher() { Q71log_SetSink(Catch, &m_messages); }
    CLogCatcher(const CLogCatcher &) = delete;
    CLogCatcher &operator=(const CLogCatcher &) = delete;
    ~CLogCatcher() { Q71log_SetSink(nullptr, nullptr); }

    const std::vector<std::string> &Messages() const { return m_messages; }

private:
    static void Catch(void *messages, int level, const char *category, const char *text)
    {
        static_cast<std::vector<std::string> *>(messages)->push_back(std::to_string(level) + " " + category + " " +
                                                                     text);
    }

    std::vector<std::string> m_messages;
};
