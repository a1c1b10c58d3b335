#pragma once

#include <chrono>
#include <memory>
#include <mutex>

#include <QFile>
#include <QString>

#include <quire/platform/Automation.h>

namespace Tool {

/// The record that --trace keeps of the calls to the server: a line for each as it ends, so that a program that hangs
/// or is killed has written what went before.
///
/// A line is one JSON object: `operation` ("IStory2::Save"), `label` (under what name the library holds the server
/// access lock meanwhile; empty when the calling thread does not hold it), `microseconds`, and `hresult`
/// ("0x80040405"). A call that raised instead of answering has `raised`: true, and the HRESULT of what it raised.
/// Arguments are not written: passwords and stories are nobody else's business.
///
/// While one lives the library keeps the labels of its locks (QuireCOMMutex::sMutexDebugging). Made and destroyed on
/// the main thread while nobody else uses the library; calls are recorded from any thread.
class CallTrace
{
public:
    /// Creates the file, in place of what is there. Failure Failed when that cannot be done.
    explicit CallTrace(const QString &fileName);
    ~CallTrace();
    CallTrace(const CallTrace &) = delete;
    CallTrace &operator=(const CallTrace &) = delete;

    /// Makes the call that \a body is, and records it as \a operation. Answers what it answers, raises what it raises.
    template<class Body>
    HRESULT record(const char *operation, const Body &body)
    {
        const Clock::time_point begin = Clock::now();
        try {
            const HRESULT result = body();
            write({operation, Clock::now() - begin, result, false});
            return result;
        } catch (const _com_error &error) {
            write({operation, Clock::now() - begin, error.Error(), true});
            throw;
        } catch (...) {
            write({operation, Clock::now() - begin, E_UNEXPECTED, true});
            throw;
        }
    }

    /// Failure Failed when a line could not be written.
    void finish();

private:
    using Clock = std::chrono::steady_clock;

    struct Call
    {
        const char *operation;
        Clock::duration duration;
        HRESULT result;
        bool raised;
    };

    void write(const Call &call) noexcept;

    std::mutex m_mutex; // a leaf; guards what follows
    QFile m_file;
    bool m_failed = false;
};

using CallTracePtr = std::shared_ptr<CallTrace>;

} // namespace Tool
