#pragma once

namespace Tool {

/// The server's notices for one scope: changes of queues and hits of searches go to the library, a logout is noted. One
/// at a time, on the main thread, while the session is signed on.
class Notices
{
public:
    Notices();
    ~Notices();
    Notices(const Notices &) = delete;
    Notices &operator=(const Notices &) = delete;

    /// The server has ended the session.
    bool isLoggedOut() const;
};

} // namespace Tool
