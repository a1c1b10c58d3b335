#include <quire/newsroom/server/SignonObject.h>

#include <quire/newsroom/server/EntryObject.h>
#include <quire/newsroom/server/Enumerator.h>
#include <quire/newsroom/server/Results.h>
#include <quire/newsroom/server/SearchJob.h>
#include <quire/newsroom/server/Session.h>
#include <quire/newsroom/server/StoryObject.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

namespace Newsroom {

using Platform::toQString;

namespace {

const CallInterface SignonInterface{"ISignon4", __uuidof(Orvex::ISignon4)};
const CallInterface ContainerInterface{"IConnectionPointContainer", IID_IConnectionPointContainer};
const CallInterface EnumeratorInterface{"IEnumConnectionPoints", IID_IEnumConnectionPoints};

Platform::SafeArray arrayOf(const QByteArray &bytes)
{
    auto array = Platform::SafeArray::ofBytes(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (!array)
        throw std::bad_alloc();
    return array;
}

/// Copies the bytes out of an in-argument: a one-dimensional array of VT_UI1.
HRESULT readBytes(SAFEARRAY *array, QByteArray *bytes)
{
    if (!array)
        return E_INVALIDARG;
    VARTYPE type = VT_EMPTY;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)) || type != VT_UI1)
        return DISP_E_TYPEMISMATCH;
    const Platform::SafeArrayAccess access(array);
    if (!access.ok())
        return access.result();
    *bytes = QByteArray(access.as<const char>(), static_cast<int>(access.size()));
    return S_OK;
}

/// Hands a blob out as bytes and the number kept with it.
HRESULT handOverBlob(const Answer<Blob> &answer, SAFEARRAY **data, LONG *value)
{
    return handOver(answer, [&](const Blob &blob) {
        *data = arrayOf(blob.data).release();
        *value = blob.value;
    });
}

} // namespace

Owned<SignonObject> SignonObject::make(const std::shared_ptr<ServerCore> &core)
{
    const auto connections = std::make_shared<Connections>(core->sharedCensus());
    core->add(connections);
    return makeOwned<SignonObject>(core, connections);
}

SignonObject::SignonObject(const std::shared_ptr<ServerCore> &core, const std::shared_ptr<Connections> &connections)
    : ComObject(core, ObjectKind::Signon, SignonInterface)
    , m_connections(connections)
    , m_fast(*this, core, connections, Connections::Point::Fast)
    , m_fast2(*this, core, connections, Connections::Point::Fast2)
{}

SignonObject::~SignonObject()
{
    if (const std::shared_ptr<Session> session = takeSession())
        session->end();
    m_connections->close();
}

std::shared_ptr<Session> SignonObject::session() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_session;
}

std::shared_ptr<Session> SignonObject::takeSession()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::move(m_session);
}

// ---- signing on and off ---------------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::Connect(BSTR user, BSTR password, BSTR server, LONG option)
{
    return call("Connect").in(user).inSecret().in(server).in(option).run(
        [&] { return connect(toQString(user), toQString(password), toQString(server)); });
}

HRESULT SignonObject::connect(const QString &user, const QString &password, const QString &server)
{
    // Whoever signs on again gives up the old session, also when the new one is refused.
    if (const std::shared_ptr<Session> before = takeSession())
        before->end();
    const Answer<SessionId> id = core()->model().signOn(user, password, server);
    if (!id.ok())
        return toResult(id.refusal);
    const auto session = std::make_shared<Session>(core(), m_connections, id.value, user);
    core()->add(session);
    std::shared_ptr<Session> displaced; // by another thread's Connect
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        displaced = std::exchange(m_session, session);
    }
    if (displaced)
        displaced->end();
    if (!core()->isOpen()) // closed meanwhile, and may have overlooked the new session
        session->end();
    return S_OK;
}

STDMETHODIMP SignonObject::Disconnect()
{
    const auto user = session();
    return call("Disconnect").within(user).run([&] {
        user->end();
        return S_OK;
    });
}

STDMETHODIMP SignonObject::get_Connected(VARIANT_BOOL *connected)
{
    const auto user = session();
    return call("get_Connected").out(connected).run([&] {
        *connected = user && user->isOpen() ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    });
}

// ---- the tree and its stories ---------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::GetDirectory(BSTR path, IDispatch **directory)
{
    const auto user = session();
    return call("GetDirectory").in(path).out(directory).within(user).run([&] {
        return handOver(core()->model().entry(toQString(path)),
                        [&](const Entry &entry) { *directory = makeEntryObject(user, entry).release(); });
    });
}

STDMETHODIMP SignonObject::GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2, IDispatch **story)
{
    const auto user = session();
    return call("GetStory").in(queuePath).in(number).in(zero1).in(zero2).out(story).within(user).run([&] {
        if (zero1 != 0 || zero2 != 0)
            return E_INVALIDARG;
        return handOver(core()->model().story(toQString(queuePath), number), [&](const StoryPointer &found) {
            *story = makeOwned<StoryObject>(user, found->id()).release();
        });
    });
}

STDMETHODIMP SignonObject::DeleteStory(BSTR queuePath, LONG part1, LONG part2, LONG part3)
{
    const auto user = session();
    return call("DeleteStory").in(queuePath).in(part1).in(part2).in(part3).within(user).run([&] {
        const Answer<StoryPointer> story = core()->model().story(toQString(queuePath), part1);
        if (!story.ok())
            return toResult(story.refusal);
        if (story.value->id() != StoryId{part1, part2, part3})
            return toResult(Refusal::EntryGone);
        return toResult(core()->model().deleteStory(user->id(), part1));
    });
}

// ---- searches -------------------------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::Search(BSTR query, LONG *searchId)
{
    const auto user = session();
    return call("Search").in(query).out(searchId).within(user).run([&] {
        const Answer<Query> parsed = Query::parse(toQString(query));
        if (!parsed.ok())
            return toResult(parsed.refusal);
        return handOver(core()->model().scope(parsed.value), [&](const QVector<StoryPointer> &stories) {
            const auto job = std::make_shared<SearchJob>(user, core()->nextSearchId(), parsed.value, stories);
            user->add(job);
            *searchId = job->id();
            job->start();
        });
    });
}

STDMETHODIMP SignonObject::StopSearch(LONG searchId)
{
    const auto user = session();
    return call("StopSearch").in(searchId).within(user).run([&] {
        return user->stopSearch(searchId) ? S_OK : toResult(Refusal::EntryGone);
    });
}

// ---- blobs ----------------------------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::LoadBlob(BSTR name, SAFEARRAY **data, LONG *value)
{
    const auto user = session();
    return call("LoadBlob").in(name).out(data).out(value).within(user).run([&] {
        return handOverBlob(core()->model().blob(user->id(), toQString(name)), data, value);
    });
}

STDMETHODIMP SignonObject::SaveBlob(BSTR name, SAFEARRAY *data, LONG *value)
{
    const auto user = session();
    return call("SaveBlob").in(name).in(data).out(value).within(user).run([&] {
        QByteArray bytes;
        const HRESULT result = readBytes(data, &bytes);
        if (FAILED(result))
            return result;
        return handOver(core()->model().saveBlob(user->id(), toQString(name), bytes),
                        [&](qint32 kept) { *value = kept; });
    });
}

STDMETHODIMP SignonObject::DeleteBlob(BSTR name)
{
    const auto user = session();
    return call("DeleteBlob").in(name).within(user).run([&] {
        return toResult(core()->model().deleteBlob(user->id(), toQString(name)));
    });
}

STDMETHODIMP SignonObject::LoadUserBlob(SAFEARRAY **data, LONG *value)
{
    const auto user = session();
    return call("LoadUserBlob").out(data).out(value).within(user).run([&] {
        return handOverBlob(core()->model().userBlob(user->id()), data, value);
    });
}

STDMETHODIMP SignonObject::SaveUserBlob(SAFEARRAY *data, LONG *value)
{
    const auto user = session();
    return call("SaveUserBlob").in(data).out(value).within(user).run([&] {
        QByteArray bytes;
        const HRESULT result = readBytes(data, &bytes);
        if (FAILED(result))
            return result;
        return handOver(core()->model().saveUserBlob(user->id(), bytes), [&](qint32 kept) { *value = kept; });
    });
}

// ---- forms, users, system values ------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::GetSystemForm(BSTR name, BSTR *form)
{
    const auto user = session();
    return call("GetSystemForm").in(name).out(form).within(user).run([&] {
        return handOver(core()->model().form(toQString(name)),
                        [&](const QString &markup) { *form = core()->toText(markup); });
    });
}

STDMETHODIMP SignonObject::get_ServerName(BSTR *name)
{
    const auto user = session();
    return call("get_ServerName").out(name).within(user).run([&] {
        *name = core()->toText(core()->model().system().serverName);
        return S_OK;
    });
}

STDMETHODIMP SignonObject::GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1, LONG *number2)
{
    const auto user = session();
    CallScope scope = call("GetUserInfo");
    scope.out(text1).out(text2).out(text3).out(text4).out(number1).out(number2).within(user);
    return scope.run([&] {
        return handOver(core()->model().user(user->id()), [&](const User &found) {
            Platform::Bstr texts[4];
            texts[0].reset(core()->toText(found.name));
            texts[1].reset(core()->toText(found.fullName));
            texts[2].reset(core()->toText(found.mailQueue));
            texts[3].reset(core()->toText(found.device));
            *text1 = texts[0].release();
            *text2 = texts[1].release();
            *text3 = texts[2].release();
            *text4 = texts[3].release();
            *number1 = found.number;
            *number2 = found.rights;
        });
    });
}

STDMETHODIMP SignonObject::get_SysReadRate(LONG *rate)
{
    const auto user = session();
    return call("get_SysReadRate").out(rate).within(user).run([&] {
        *rate = core()->model().system().readRate;
        return S_OK;
    });
}

STDMETHODIMP SignonObject::get_SysWordLength(LONG *length)
{
    const auto user = session();
    return call("get_SysWordLength").out(length).within(user).run([&] {
        *length = core()->model().system().wordLength;
        return S_OK;
    });
}

// ---- reserved places ------------------------------------------------------------------------------------------------

HRESULT SignonObject::reserved(const char *operation)
{
    return call(operation).run([] { return E_NOTIMPL; });
}

STDMETHODIMP SignonObject::Reserved1()
{
    return reserved("Reserved1");
}

STDMETHODIMP SignonObject::Reserved4()
{
    return reserved("Reserved4");
}

STDMETHODIMP SignonObject::Reserved5()
{
    return reserved("Reserved5");
}

STDMETHODIMP SignonObject::Reserved15()
{
    return reserved("Reserved15");
}

// ---- connection points ----------------------------------------------------------------------------------------------

STDMETHODIMP SignonObject::EnumConnectionPoints(IEnumConnectionPoints **points)
{
    return CallScope(core(), ContainerInterface, "EnumConnectionPoints").out(points).run([&] {
        using Points = Enumerator<IEnumConnectionPoints, IConnectionPoint *>;
        std::vector<IConnectionPoint *> all{&m_fast, &m_fast2};
        for (IConnectionPoint *point : all)
            point->AddRef();
        *points = makeOwned<Points>(core(), EnumeratorInterface, std::move(all)).release();
        return S_OK;
    });
}

STDMETHODIMP SignonObject::FindConnectionPoint(REFIID iid, IConnectionPoint **point)
{
    return CallScope(core(), ContainerInterface, "FindConnectionPoint").in(iid).out(point).run([&] {
        if (iid == Connections::eventInterface(Connections::Point::Fast))
            *point = share<IConnectionPoint>(&m_fast).release();
        else if (iid == Connections::eventInterface(Connections::Point::Fast2))
            *point = share<IConnectionPoint>(&m_fast2).release();
        else
            return CONNECT_E_NOCONNECTION;
        return S_OK;
    });
}

} // namespace Newsroom
