#include "newsroom/server/TestSink.h"

#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

namespace Newsroom {

namespace {

std::atomic<int> sinksAlive{0};

} // namespace

TestSink::TestSink(Has has)
    : m_has(has)
{
    ++sinksAlive;
}

TestSink::~TestSink()
{
    --sinksAlive;
}

int TestSink::alive()
{
    return sinksAlive;
}

STDMETHODIMP TestSink::QueryInterface(REFIID iid, void **object)
{
    const bool fast = iid == __uuidof(Orvex::_IAnNotifyFast) && m_has != Has::Neither;
    const bool fast2 = iid == __uuidof(Orvex::_IAnNotifyFast2) && m_has == Has::Both;
    *object = fast || fast2 || iid == IID_IUnknown ? static_cast<Orvex::_IAnNotifyFast2 *>(this) : nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) TestSink::Release()
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

STDMETHODIMP TestSink::raw_OnNotifyLogout()
{
    return note(QStringLiteral("logout"));
}

STDMETHODIMP TestSink::raw_OnNotifySearchResults(LONG searchId, SAFEARRAY *results, LONG totalHits, LONG finished)
{
    if (onResults)
        onResults(results);
    const Platform::SafeArrayAccess access(results);
    QStringList names;
    for (ULONG i = 0; i < access.size(); ++i)
        names << Platform::toQString(access.as<Orvex::SearchHit>()[i].name);
    return note(QStringLiteral("search %1: %2 (%3 of %4) %5")
                    .arg(searchId)
                    .arg(names.join(QLatin1String(", ")))
                    .arg(names.size())
                    .arg(totalHits)
                    .arg(finished ? QLatin1String("end") : QLatin1String("more")));
}

STDMETHODIMP TestSink::raw_OnNotifySpecial(LONG queueId)
{
    return note(QStringLiteral("queue %1").arg(queueId));
}

QStringList TestSink::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QStringList lines;
    lines.swap(m_lines);
    return lines;
}

QStringList TestSink::waitFor(int lines)
{
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_lines.size() >= lines; });
    }
    return take();
}

std::thread::id TestSink::lastThread() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_thread;
}

HRESULT TestSink::note(const QString &line)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_lines << line;
        m_thread = std::this_thread::get_id();
        m_changed.notify_all();
    }
    if (hook)
        hook();
    return S_OK;
}

TestSinkPtr makeSink(TestSink::Has has)
{
    return TestSinkPtr(new TestSink(has), [](TestSink *sink) { sink->Release(); });
}

DWORD advise(const Orvex::ISignon4Ptr &signon, REFIID events, IUnknown *sink)
{
    const IConnectionPointContainerPtr container = signon;
    IConnectionPointPtr point;
    EXPECT_EQ(S_OK, container->FindConnectionPoint(events, &point));
    DWORD cookie = 0;
    point->Advise(sink, &cookie);
    return cookie;
}

HRESULT unadvise(const Orvex::ISignon4Ptr &signon, REFIID events, DWORD cookie)
{
    const IConnectionPointContainerPtr container = signon;
    IConnectionPointPtr point;
    EXPECT_EQ(S_OK, container->FindConnectionPoint(events, &point));
    return point->Unadvise(cookie);
}

} // namespace Newsroom
