// The library's log, as the tool shows it.
#pragma once

#include <string>

/// While it lives, warnings go to standard error in the tool's form, each once, and errors are kept: they are the reason why a
/// formula is refused. One may live inside another, which then hears nothing. The outermost lives as long as the tool and
/// shows errors too, since what is logged while values are read is nobody's reason.
class CLogLines {
public:
    enum class EWarnings { Shown, Dropped };
    enum class EErrors { Kept, Shown };

    explicit CLogLines(EWarnings warnings = EWarnings::Shown, EErrors errors = EErrors::Kept);
    CLogLines(const CLogLines &) = delete;
    ~CLogLines();

    /// The last error; empty if there was none.
    const std::string &LastError() const { return m_lastError; }

private:
    static void Take(void *context, int level, const char *category, const char *text);

    EWarnings m_warnings;
    EErrors m_errors;
    CLogLines *m_outer;  // null for the outermost
    std::string m_lastError;
};
