#pragma once

/// \file
/// Keeps walks over many siblings of a host's class from going deeper with each of them.

#include <quire/markup/Tag.h>

namespace XML {

/// A walk's call of ForEachTag or ClearAllSkip on a node of a host's class; on the stack of the walk.
///
/// Both operations of Tag go on to the following siblings. Were each of these to go on from there, the calls would lie
/// one in the other. So when the operation of Tag is reached through a walk's call, with the arguments of that, it does
/// the node and its subtree and leaves the siblings to the walk. An override that does not get there passes them over.
class ForeignVisit
{
public:
    using Visitor = void (*)(Tag *, long);

    ForeignVisit(const Tag &node, Visitor visitor, long data);
    ~ForeignVisit();
    ForeignVisit(const ForeignVisit &) = delete;
    ForeignVisit &operator=(const ForeignVisit &) = delete;

    /// For Tag's own operation: whether it is the one that a walk of this thread means. True once for each call.
    static bool reaches(const Tag &node, Visitor visitor, long data);

    /// Whether Tag's own operation was reached.
    bool isReached() const { return !m_Node; }

private:
    const Tag *m_Node; // null once reached
    Visitor m_Visitor;
    long m_Data;
    ForeignVisit *m_Outer;
};

} // namespace XML
