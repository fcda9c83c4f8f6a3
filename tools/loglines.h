// The library's log, as the tool shows it.
#pragma once

#include <string>

/// While it lives, warnings go to standard error in the tool's form, and errors are kept: they are the reason why a
/// formula is refused.
class CLogLines {
public:
    enum class EWarnings { Shown, Dropped };

    explicit CLogLines(EWarnings warnings = EWarnings::Shown);
    CLogLines(const CLogLines &) = delete;
    ~CLogLines();

    /// The last error; empty if there was none.
    const std::string &LastError() const { return m_lastError; }

private:
    static void Take(void *context, int level, const char *category, const char *text);

    EWarnings m_warnings;
    std::string m_lastError;
};
