#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "base/wrap.h"
#include "settings/brel.h"

void CBrelSequence::Append(std::unique_ptr<IBrelFormula> child)
{
    m_childrenDuration = tesk::WrapAdd(m_childrenDuration, child->GetDuration());
    m_children.push_back(std::move(child));
}

int CBrelSequence::GetTextLength(long long &time)
{
    long long length = 0;
    for (const auto &child : m_children)
        length += child->GetTextLength(time) + 1LL;
    return static_cast<int>(std::min<long long>(length, INT_MAX));
}

bool CBrelSequence::WriteFormula(char *text, long long &time, int room)
{
    char *end = text;
    *end = 0;
    for (const auto &child : m_children) {
        if (!child->WriteFormula(end, time, room - static_cast<int>(end - text)))
            return false;
        end += std::strlen(end);
        *end++ = ',';
        *end = 0;
        if (end - text > room)
            return false;
    }
    if (end != text)
        *--end = 0;  // the last comma
    return true;
}

bool CBrelSequence::GetSource(SimpleString::CStr &text)
{
    std::string source;  // the shared string reallocates with every piece
    for (const auto &child : m_children) {
        child->GetSource(text);
        source += text;
    }
    if (m_repeat > 1)
        source = "(" + source + ")" + std::to_string(m_repeat);
    text = source.c_str();
    return true;
}

long long CBrelSequence::GetDuration()
{
    return m_repeat != 0 ? tesk::WrapMultiply(m_childrenDuration, m_repeat) : m_childrenDuration;
}

// 0 if there are no passes.
long long CBrelSequence::PassDuration()
{
    return m_repeat != 0 ? tesk::WrapDivide(GetDuration(), m_repeat) : 0;
}

bool CBrelSequence::GetValue(long long time, SimpleString::CStr &value)
{
    const long long pass = PassDuration();
    if (pass == 0)
        return false;
    long long offset = tesk::WrapModulo(time, pass);
    for (const auto &child : m_children) {
        const long long duration = child->GetDuration();
        if (offset < duration)
            return child->GetValue(offset, value);
        offset = tesk::WrapSubtract(offset, duration);
    }
    return false;
}

long long CBrelSequence::GetNextEvent(long long time)
{
    const long long pass = PassDuration();
    if (pass == 0 || time >= GetDuration())
        return -1;
    long long start = tesk::WrapMultiply(tesk::WrapDivide(time, pass), pass);
    long long offset = tesk::WrapSubtract(time, start);
    for (const auto &child : m_children) {
        const long long duration = child->GetDuration();
        if (offset < duration) {
            const long long next = child->GetNextEvent(offset);
            return next != -1 ? tesk::WrapAdd(start, next) : -1;
        }
        start = tesk::WrapAdd(start, duration);
        offset = tesk::WrapSubtract(offset, duration);
    }
    return -1;
}

bool CBrelSequence::CheckRepeat(int maximum)
{
    return m_repeat <= maximum &&
           std::ranges::all_of(m_children, [maximum](const auto &child) { return child->CheckRepeat(maximum); });
}

bool CBrelSequence::HasRepeat()
{
    return (!m_children.empty() && m_repeat > 1) ||
           std::ranges::any_of(m_children, [](const auto &child) { return child->HasRepeat(); });
}
