#include "signal/tree/parentlink.h"

#include "signal/tree/signalimp.h"

CParentLink::~CParentLink()
{
    Leave();
    while (m_firstChild != nullptr)
        m_firstChild->Leave();
}

void CParentLink::Set(ISignal *parent)
{
    Leave();
    m_parent = parent;
    auto *known = dynamic_cast<CSignalImp *>(parent);
    if (known == nullptr)
        return;
    m_parentLink = &known->m_parent;
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
