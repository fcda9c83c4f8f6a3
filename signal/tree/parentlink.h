// What leads a signal to its parent.
#pragma once

class ISignal;

namespace tesk {

/// A signal's pointer to its parent, which holds no reference. A parent of this library knows all signals that name it,
/// whether or not they still are among its children, so that none of them leads to it when it has ended.
class CParentLink {
public:
    CParentLink() = default;
    CParentLink(const CParentLink &) = delete;
    CParentLink &operator=(const CParentLink &) = delete;
    /// The signals that name this one as their parent have none from here on.
    ~CParentLink();

    ISignal *Get() const { return m_parent; }
    /// @param parentLink  of a parent of this library; null for none and for one of another
    void Set(ISignal *parent, CParentLink *parentLink);

private:
    void Leave();

    ISignal *m_parent = nullptr;
    CParentLink *m_parentLink = nullptr;  // of a parent of this library
    CParentLink *m_firstChild = nullptr;  // of those that name this one
    CParentLink *m_next = nullptr;        // of those that name the same parent
    CParentLink *m_previous = nullptr;
};

}  // namespace tesk
