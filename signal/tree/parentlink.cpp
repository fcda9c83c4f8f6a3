#include "signal/tree/parentlink.h"

namespace tesk {

CParentLink::~CParentLink()
{
    Leave();
    while (m_firstChild != nullptr)
        m_firstChild->Leave();
}

void CParentLink::Set(ISignal *parent, CParentLink *parentLink)
{
    Leave();
    m_parent = parent;
    m_parentLink = parentLink;
    if (m_parentLink == nullptr)
        return;
    m_next = m_parentLink->m_firstChild;
    if (m_next != nullptr)
        m_next->m_previous = this;
    m_parentLink->m_firstChild = this;
}

void CParentLink::Leave()
{
    if (m_next != nullptr)
        m_next->m_previous = m_previous;
    if (m_previous != nullptr)
        m_previous->m_next = m_next;
    else if (m_parentLink != nullptr)
        m_parentLink->m_firstChild = m_next;
    m_parent = nullptr;
    m_parentLink = m_next = m_previous = nullptr;
}

}  // namespace tesk
