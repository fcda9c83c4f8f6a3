// Lets one who has looked at the events of a wave know that they are others now.
#pragma once

#include <memory>
#include <vector>

namespace tesk {

/// Set when the events of a watched wave change.
using CChangeMark = bool;

/// A wave's side. It costs a pointer as long as nobody watches.
class CEventWatchers {
public:
    void Add(const std::shared_ptr<CChangeMark> &mark)
    {
        if (m_marks == nullptr)
            m_marks = std::make_unique<std::vector<std::weak_ptr<CChangeMark>>>();
        std::erase_if(*m_marks, [](const auto &known) { return known.expired(); });
        m_marks->push_back(mark);
    }

    /// The watchers that are gone are forgotten; the others hear of the next change too.
    void Tell()
    {
        if (m_marks != nullptr)
            TellAll();
    }

private:
    void TellAll()
    {
        std::erase_if(*m_marks, [](const auto &known) {
            const std::shared_ptr<CChangeMark> mark = known.lock();
            if (mark != nullptr)
                *mark = true;
            return mark == nullptr;
        });
        if (m_marks->empty())
            m_marks.reset();
    }

    std::unique_ptr<std::vector<std::weak_ptr<CChangeMark>>> m_marks;
};

/// May be implemented by an iterator beside its interface.
class IWatchedEvents {
public:
    /// Has `mark` set from now on whenever the events change over which the iterator goes.
    virtual void Watch(const std::shared_ptr<CChangeMark> &mark) = 0;

protected:
    ~IWatchedEvents() = default;
};

}  // namespace tesk
