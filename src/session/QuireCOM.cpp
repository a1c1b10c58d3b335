#include <quire/session/QuireCOM.h>

#include <QFile>
#include <QProcess>
#include <QStringList>

#include <new>

#include <quire/platform/Bstr.h>
#include <quire/platform/Secret.h>
#include <quire/session/DispatchCache.h>
#include <quire/session/QuireCOMMutex.h>

// Loading the server, the one instance, signing on and off. The tables of handles are in QuireCOMCache.cpp, system
// values, blobs and searches in QuireCOMValues.cpp.

namespace Quire {

QuireCOM *QuireCOM::TheQuireCOM = nullptr;
bool QuireCOM::sUseUnicodeInterface = true;
QMutex QuireCOM::m_ComMutex;
QAtomicInteger<quint32> QuireCOM::m_LockThreadID;
QString QuireCOM::m_LockStr;

namespace {

std::atomic<quint32> signOns{0};

} // namespace

// ---- the one session ------------------------------------------------------------------------------------------------

QuireCOM *QuireCOM::GetQuireCOM(bool recreate)
{
    if (recreate)
        UnloadCOM();
    if (TheQuireCOM)
        return TheQuireCOM;
    try {
        return new (std::nothrow) QuireCOM;
    } catch (const std::bad_alloc &) {
        return nullptr; // the session itself found memory, what it owns did not
    }
}

void QuireCOM::UnloadCOM()
{
    if (TheQuireCOM)
        Destroy();
}

// In two steps because the class has a virtual operation and, by design, no virtual destructor.
void QuireCOM::Destroy()
{
    QuireCOM *session = TheQuireCOM;
    session->QuireCOM::~QuireCOM();
    ::operator delete(session);
}

QuireCOM::QuireCOM()
    : m_sysReadRate(-1)
    , m_sysWordLength(-1)
    , m_comError(E_POINTER)
{
    m_comError = m_signon.CreateInstance(__uuidof(Orvex::Signon), nullptr, CLSCTX_ALL);
    if (m_comError == S_OK)
        m_cache = std::make_shared<DispatchCache>();
    const QuireCOMMutex lock; // see the destructor
    TheQuireCOM = this;
}

QuireCOM::~QuireCOM()
{
    try {
        Disconnect();
    } catch (...) {
        // A server that raises while signing off is as good as gone.
    }
    SetConnectInfo(QString(), QString(), QString()); // also when the server has ended the connection by itself
    {
        // A call of a queue that is gone may have hung until now, and its worker look for the session under this lock.
        const QuireCOMMutex lock;
        m_cache.reset();
        TheQuireCOM = nullptr;
    }
    m_signon = nullptr;
}

QuireCOM::QuireCOM(const QuireCOM &other)
    : m_sysReadRate(other.m_sysReadRate.load())
    , m_sysWordLength(other.m_sysWordLength.load())
    , m_comError(other.m_comError)
    , m_signon(other.m_signon)
    , m_cache(other.m_cache)
{
    const MutexLocker guard(other.m_connectInfoMutex);
    m_server = other.m_server; // NOLINT(cppcoreguidelines-prefer-member-initializer): read under the lock
    m_user = other.m_user;     // NOLINT(cppcoreguidelines-prefer-member-initializer): read under the lock
    m_password = Platform::copyOfSecret(other.m_password);
}

QuireCOM &QuireCOM::operator=(const QuireCOM &other)
{
    if (this == &other)
        return *this;
    m_sysReadRate = other.m_sysReadRate.load();
    m_sysWordLength = other.m_sysWordLength.load();
    m_comError = other.m_comError;
    m_signon = other.m_signon;
    m_cache = other.m_cache;
    QString server;
    QString user;
    QString password;
    other.CopyConnectInfo(server, user, password);
    SetConnectInfo(server, user, password);
    return *this;
}

// ---- the server's library -------------------------------------------------------------------------------------------

QString QuireCOM::GetDLLName()
{
    return sUseUnicodeInterface ? QStringLiteral("OrvexCOMU_64.dll") : QStringLiteral("OrvexCOM.dll");
}

bool QuireCOM::IsUnicode()
{
    return sUseUnicodeInterface;
}

void QuireCOM::SetUnicode(bool unicode)
{
    sUseUnicodeInterface = unicode;
}

bool QuireCOM::registerCOM(QString folder) // NOLINT(performance-unnecessary-value-param): hosts are built for this form
{
    const QString path = folder + QLatin1Char('/') + GetDLLName();
    if (!QFile::exists(path))
        return true; // nothing to register counts as done

    const QString quotedPath = QStringLiteral("\"%1\"").arg(path);
    QProcess registration;
    registration.setProgram(QStringLiteral("regsvr32"));
#ifdef Q_OS_WIN
    // As an ordinary argument the quotes would arrive escaped, and regsvr32 would look for a file with quotes in its
    // name.
    registration.setNativeArguments(QStringLiteral("/s ") + quotedPath);
#else
    registration.setArguments({QStringLiteral("/s"), quotedPath});
#endif
    registration.start();
    registration.waitForFinished(1000);
    if (registration.state() == QProcess::NotRunning)
        return true;
    registration.kill();
    registration.waitForFinished();
    return false;
}

// ---- signing on -----------------------------------------------------------------------------------------------------

bool QuireCOM::IsLoaded()
{
    return m_comError == S_OK;
}

long QuireCOM::GetCOMError()
{
    return m_comError;
}

long QuireCOM::Connect(const QString &server, const QString &user, const QString &password, long option)
{
    if (!IsLoaded())
        return -1;
    Disconnect();
    const long result = SignOn(server, user, password, static_cast<LONG>(option));
    if (result >= 0)
        GetDir(QStringLiteral("."));
    return result;
}

long QuireCOM::SignOn(const QString &server, const QString &user, const QString &password, LONG option)
{
    const Platform::SecretBstr passwordText(password);
    const Platform::Bstr serverText(server);
    const QuireCOMMutex lock("QuireCOM::Connect");
    SetConnectInfo(QString(), QString(), QString()); // Disconnect leaves them when the server has ended the connection
    const Platform::Bstr userText(user);
    const HRESULT result = m_signon->Connect(userText.get(), passwordText.get(), serverText.get(), option);
    if (FAILED(result))
        return result;
    ++signOns;
    Platform::Bstr ownName;
    const bool named = SUCCEEDED(m_signon->get_ServerName(ownName.out())) && !ownName.isNull();
    SetConnectInfo(named ? ownName.toString() : server, user, password);
    return result;
}

quint32 QuireCOM::SignOnCount()
{
    return signOns;
}

void QuireCOM::Disconnect()
{
    if (!IsConnected())
        return;
    const QuireCOMMutex lock("QuireCOM::Disconnect");
    m_signon->Disconnect();
    SetConnectInfo(QString(), QString(), QString());
    m_cache->Clear();
    m_sysReadRate = -1;
    m_sysWordLength = -1;
}

bool QuireCOM::IsConnected()
{
    if (!IsLoaded())
        return false;
    const QuireCOMMutex lock("QuireCOM::IsConnected");
    VARIANT_BOOL connected = VARIANT_FALSE;
    m_signon->get_Connected(&connected); // a failed question leaves the answer at false
    return connected != VARIANT_FALSE;
}

void QuireCOM::GetConnectInfo(QString &server, QString &user, QString &password)
{
    CopyConnectInfo(server, user, password);
}

Orvex::ISignon4Ptr QuireCOM::GetSignon()
{
    return m_signon;
}

IConnectionPointContainer *QuireCOM::GetConnectionPoint()
{
    IConnectionPointContainer *container = nullptr;
    const HRESULT result =
        m_signon->QueryInterface(__uuidof(IConnectionPointContainer), reinterpret_cast<void **>(&container));
    if (SUCCEEDED(result))
        return container;
    if (result != E_NOINTERFACE)
        _com_issue_error(result);
    return nullptr;
}

void QuireCOM::SetConnectInfo(const QString &server, const QString &user, const QString &password)
{
    const MutexLocker guard(m_connectInfoMutex);
    m_server = server;
    m_user = user;
    Platform::forget(m_password);
    m_password = Platform::copyOfSecret(password);
}

void QuireCOM::CopyConnectInfo(QString &server, QString &user, QString &password) const
{
    const MutexLocker guard(m_connectInfoMutex);
    server = m_server;
    user = m_user;
    password = m_password;
}

} // namespace Quire
