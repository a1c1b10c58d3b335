#pragma once

#include <QString>

#include <array>
#include <atomic>

namespace Newsroom {

/// What kinds of things a server hands out to its clients and counts.
enum class ObjectKind {
    Signon,       ///< sign-on objects, with their connection points
    Directory,    ///< directory objects
    Queue,        ///< queue objects
    Story,        ///< story objects
    Enumerator,   ///< enumerators of connections and of connection points
    RecordInfo,   ///< descriptions of records; arrays of records hold them
    ClassFactory, ///< class factories handed out, and locks set with LockServer
    Stranger,     ///< objects of no known interface, made by an injected fault
    Connection,   ///< advised sinks that were not unadvised
};

/// Counts the live objects of one server, so that a test can assert that nothing was leaked.
///
/// Owned by the server; any thread may call any operation. The numbers stay right after the Server object itself is
/// gone, for as long as somebody holds it (Server::census() shares the ownership).
class Census
{
public:
    Census();

    /// One more; said by the server.
    void born(ObjectKind kind) noexcept;
    /// One less; said by the server.
    void gone(ObjectKind kind) noexcept;

    /// Live objects of one kind.
    int live(ObjectKind kind) const noexcept;

    /// Live objects of all kinds.
    int live() const noexcept;

    /// What is live, for messages: "Signon 1, Story 3"; "nothing" when there is nothing.
    QString text() const;

    /// BSTRs and SAFEARRAYs live in the whole process, as the native automation layer counts them; -1 on Windows.
    static qint64 liveTexts();
    /// See liveTexts().
    static qint64 liveArrays();

private:
    static constexpr std::size_t Kinds = 9;

    std::array<std::atomic<int>, Kinds> m_live;
};

} // namespace Newsroom
