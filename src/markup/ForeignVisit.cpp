#include "ForeignVisit.h"

#include <utility>

namespace XML {

namespace {

/// The innermost of this thread.
thread_local ForeignVisit *t_Visit = nullptr;

} // namespace

ForeignVisit::ForeignVisit(const Tag &node, Visitor visitor, long data)
    : m_Node(&node)
    , m_Visitor(visitor)
    , m_Data(data)
    , m_Outer(std::exchange(t_Visit, this))
{}

ForeignVisit::~ForeignVisit()
{
    t_Visit = m_Outer;
}

bool ForeignVisit::reaches(const Tag &node, Visitor visitor, long data)
{
    ForeignVisit *const visit = t_Visit;
    if (!visit || visit->m_Node != &node || visit->m_Visitor != visitor || visit->m_Data != data)
        return false;
    visit->m_Node = nullptr;
    return true;
}

} // namespace XML
