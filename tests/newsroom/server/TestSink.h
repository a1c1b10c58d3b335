#pragma once

/// \file
/// A client's event sink that notes what it is told.

#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include <quire/orvex/Orvex.h>

namespace Newsroom {

/// Notes every event as a line: "logout", "queue 12", "search 3: A, B (2 of 5) more" or "... end". A hook, set before
/// the sink is advised, runs inside each event. Counts its references; any thread.
class TestSink final : public Orvex::_IAnNotifyFast2
{
public:
    /// Which interfaces the sink has beside IUnknown.
    enum class Has { Both, FastOnly, Neither };

    explicit TestSink(Has has = Has::Both);

    STDMETHODIMP QueryInterface(REFIID iid, void **object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT *) override { return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **) override { return S_OK; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return S_OK; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return S_OK;
    }
    STDMETHODIMP raw_OnNotifyLogout() override;
    STDMETHODIMP raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished) override;
    STDMETHODIMP raw_OnNotifySpecial(LONG queueId) override;

    /// The lines so far, which are then forgotten.
    QStringList take();

    /// Waits for that many lines, generously, and takes them all.
    QStringList waitFor(int lines);

    ULONG references() const { return m_references; }
    std::thread::id lastThread() const;

    std::function<void()> hook;
    std::function<void(SAFEARRAY *)> onResults; ///< also looks at the hits of a search event

    /// Sinks alive in the process.
    static int alive();

private:
    Q_DISABLE_COPY(TestSink)

    ~TestSink();

    HRESULT note(const QString &line);

    const Has m_has;
    std::atomic<ULONG> m_references{1};
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QStringList m_lines;
    std::thread::id m_thread;
};

using TestSinkPtr = std::unique_ptr<TestSink, void (*)(TestSink *)>;

/// A sink with one reference, given back at the end of the scope.
TestSinkPtr makeSink(TestSink::Has has = TestSink::Has::Both);

/// Advises at the connection point of that event interface; the cookie, 0 when refused.
DWORD advise(const Orvex::ISignon4Ptr &signon, REFIID events, IUnknown *sink);
HRESULT unadvise(const Orvex::ISignon4Ptr &signon, REFIID events, DWORD cookie);

} // namespace Newsroom
