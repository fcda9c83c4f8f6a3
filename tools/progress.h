// How far long work is, told on a terminal.
#pragma once

#include <chrono>

namespace tesk {

/// A line on standard error, from the second second of the work on, and only where that is a terminal. It is wiped at the end.
class CProgressLine {
public:
    /// @param label  such as "Counting"; must outlive the line
    explicit CProgressLine(const char *label);
    CProgressLine(const CProgressLine &) = delete;
    CProgressLine &operator=(const CProgressLine &) = delete;
    ~CProgressLine();

    /// To be called as often as one likes.
    void Show(long long done, long long total);
    /// Work of which nobody knows how long it is; to be called a thousand times a second at most.
    void ShowBytes(long long done);
    /// As Show, to be called as often as that.
    void ShowNow(long long done, long long total);

private:
    bool IsLong() const;
    void Draw(int number, const char *unit);

    const char *m_label;
    bool m_isShown;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    unsigned m_calls = 0;
    int m_number = -1;  // that is shown
};

}  // namespace tesk
