#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <vector>

#include <quire/platform/Automation.h>

namespace Newsroom {

/// One recorded call of a server's object.
struct Call
{
    QString interfaceName;  ///< the widest interface of the object: "IQueue2" also for what IQueue declares
    QString operation;      ///< "GetList"
    QStringList arguments;  ///< the in-arguments as text; a password is "***"
    DWORD threadId = 0;     ///< the caller's thread
    HRESULT hresult = S_OK; ///< what was answered; for a raised exception its code
    qint64 durationUs = 0;  ///< how long it took, in microseconds
    bool finished = false;  ///< false while the call runs; hresult and durationUs are not known then

    /// "Interface::Operation".
    QString name() const;

    /// One line for assertions: `IQueue2::GetList(0, 20)`, with ` = 0x8004040b` after it when the call failed.
    QString text() const;
};

/// Records the calls of a server's objects while it is on, in the order in which they began.
///
/// Owned by the server; any thread may call any operation. Off at first; while off a call costs one atomic read.
class CallRecorder
{
public:
    /// Forgets what was recorded and starts to record.
    void start();

    /// Stops recording; what was recorded stays until start() or take().
    void stop();

    /// Whether calls are recorded.
    bool isOn() const { return m_on; }

    /// The calls recorded so far, which are then forgotten. Recording goes on if it was on.
    std::vector<Call> take();

    /// As take(), the one-line texts only.
    QStringList takeTexts();

    // ---- for the server's objects

    /// Notes that a call began and answers its number, above 0, for end(). To be called only while isOn().
    quint64 begin(const char *interfaceName, const char *operation, const QStringList &arguments);

    /// Notes how the call of that number ended; nothing when it is 0 or was taken meanwhile.
    void end(quint64 number, HRESULT hresult);

private:
    using Clock = std::chrono::steady_clock;

    struct Entry
    {
        Call call;
        Clock::time_point began;
    };

    std::atomic<bool> m_on{false};
    std::mutex m_mutex; // guards what follows; a leaf
    quint64 m_first = 1;
    std::deque<Entry> m_entries; // numbered from m_first
};

} // namespace Newsroom
