#include "support/FakeServer.h"

#include <utility>

#include <QMutexLocker>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/session/QuireCOM.h>

namespace FakeServer {

namespace {

BSTR answerText(const QString &text)
{
    return text.isNull() ? nullptr : Platform::toBstr(text);
}

QString text(BSTR value)
{
    return value ? Platform::toQString(value) : QStringLiteral("(null)");
}

/// What all of the server's objects share: the count of references, the identity, and an empty IDispatch.
template<typename Interface, Kind kind>
class Object : public Interface
{
public:
    Object(Server &server, const QString &path)
        : m_server(server)
        , m_path(path)
    {
        m_server.born();
    }
    virtual ~Object() { m_server.died(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        *object = nullptr;
        const HRESULT refusal = m_server.refusal(kind, iid);
        if (FAILED(refusal))
            return refusal;
        *object = find(iid);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return E_NOTIMPL;
    }

protected:
    virtual void *find(REFIID iid)
    {
        if (IsEqualGUID(iid, __uuidof(IUnknown)) || IsEqualGUID(iid, __uuidof(IDispatch)))
            return static_cast<IDispatch *>(this);
        return kind != Kind::Bare && IsEqualGUID(iid, __uuidof(Interface)) ? static_cast<Interface *>(this) : nullptr;
    }

    HRESULT enter(const char *operation, const QString &arguments = QString())
    {
        const QString name = QString::fromLatin1(operation);
        const QString owner = m_path.isNull() ? QString() : m_path + QLatin1Char('.');
        return m_server.enter(name, owner + name + QLatin1Char('(') + arguments + QLatin1Char(')'));
    }

    Server &m_server;
    const QString m_path;

private:
    std::atomic<ULONG> m_references{1};
};

template<typename Interface, Kind kind>
class TreeObject : public Object<Interface, kind>
{
public:
    using Object<Interface, kind>::Object;

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, VARIANT *item) override
    {
        const bool number = index.vt == VT_I4;
        const QString argument = number ? QString::number(index.lVal) : QStringLiteral("type %1").arg(index.vt);
        const HRESULT result = this->enter("get_Item", argument);
        if (FAILED(result))
            return result;
        const QStringList children = this->m_server.children(this->m_path);
        if (!number || index.lVal < 0 || index.lVal >= children.size())
            return static_cast<HRESULT>(0x8004040B);
        item->vt = VT_DISPATCH;
        item->pdispVal = newEntry(static_cast<int>(index.lVal));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG *count) override
    {
        const HRESULT result = this->enter("get_Count");
        if (SUCCEEDED(result))
            *count = size();
        return result;
    }
    HRESULT STDMETHODCALLTYPE GetList(LONG first, LONG count, VARIANT *list) override
    {
        const HRESULT result = this->enter("GetList", QStringLiteral("%1, %2").arg(first).arg(count));
        if (FAILED(result))
            return result;
        if (this->m_server.getList)
            return this->m_server.getList(first, count, list);
        const LONG last = qMin(first + count, size());
        list->vt = VT_ARRAY | VT_DISPATCH;
        list->parray = SafeArrayCreateVector(VT_DISPATCH, 0, static_cast<ULONG>(qMax(last - first, LONG{0})));
        const Platform::SafeArrayAccess access(list->parray);
        for (LONG index = first; index < last; ++index)
            access.as<IDispatch *>()[index - first] = newEntry(static_cast<int>(index));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR *name) override
    {
        const HRESULT result = this->enter("get_Name");
        if (SUCCEEDED(result) || this->m_server.failsWithAnswer)
            *name = Platform::toBstr(this->m_path);
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override
    {
        const HRESULT result = this->enter("get_Flags");
        if (FAILED(result))
            return result;
        const EntryData data = this->m_server.data.value(this->m_path);
        *flags1 = data.flags[0];
        *flags2 = data.flags[1];
        *flags3 = data.flags[2];
        return result;
    }

protected:
    virtual LONG size() const { return static_cast<LONG>(this->m_server.children(this->m_path).size()); }
    /// A new object for an entry that is there, with one reference.
    virtual IDispatch *newEntry(int index) const
    {
        QString path;
        const Kind childKind = this->m_server.kindOf(this->m_server.children(this->m_path).at(index), &path);
        return this->m_server.newObject(childKind, path);
    }
};

using DirectoryObject = TreeObject<Orvex::IDirectory2, Kind::Directory>;

class QueueObject : public TreeObject<Orvex::IQueue2, Kind::Queue>
{
public:
    using TreeObject::TreeObject;

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, VARIANT *item) override
    {
        const bool number = index.vt == VT_INT || index.vt == VT_I4;
        const HRESULT result = enter("get_Item", describe(index));
        if (FAILED(result))
            return result;
        const QVector<QueueEntry> entries = m_server.queues.value(m_path);
        if (!number || index.intVal < 0 || index.intVal >= entries.size())
            return m_server.endOfQueue;
        const QueueEntry &entry = entries.at(index.intVal);
        if (SUCCEEDED(entry.result))
            handOut(entry, item);
        return entry.result;
    }
    HRESULT STDMETHODCALLTYPE get_QueueID(Orvex::QueueIdentifier *id) override
    {
        const HRESULT result = enter("get_QueueID");
        const LONG number = data().number;
        if (SUCCEEDED(result))
            *id = {number, number + 1, number + 2, number + 3};
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_FormName(BSTR *name) override
    {
        const HRESULT result = enter("get_FormName");
        if (SUCCEEDED(result))
            *name = answerText(data().formName);
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_Update(VARIANT_BOOL *on) override
    {
        const HRESULT result = enter("get_Update");
        if (SUCCEEDED(result))
            *on = data().reports ? this->m_server.yes : VARIANT_FALSE;
        return result;
    }
    HRESULT STDMETHODCALLTYPE put_Update(VARIANT_BOOL on) override
    {
        const HRESULT result = enter("put_Update", QString::number(on));
        if (SUCCEEDED(result))
            m_server.data[m_path].reports = on != VARIANT_FALSE;
        return result;
    }
    HRESULT STDMETHODCALLTYPE CreateStory(LONG position, VARIANT *story) override
    {
        const HRESULT result = enter("CreateStory", QString::number(position));
        if (SUCCEEDED(result))
            handOut({m_server.created}, story);
        return result;
    }
    HRESULT STDMETHODCALLTYPE Delete(VARIANT index) override { return enter("Delete", describe(index)); }
    HRESULT STDMETHODCALLTYPE DeleteAll() override { return enter("DeleteAll"); }

protected:
    void *find(REFIID iid) override
    {
        if (IsEqualGUID(iid, __uuidof(Orvex::IQueue)))
            return static_cast<Orvex::IQueue *>(this);
        return TreeObject::find(iid);
    }
    LONG size() const override { return static_cast<LONG>(m_server.queues.value(m_path).size()); }
    IDispatch *newEntry(int index) const override
    {
        const QueueEntry entry = m_server.queues.value(m_path).at(index);
        return entry.form == QueueEntry::Null ? nullptr : m_server.newStory(m_path, entry.story);
    }

private:
    EntryData data() const { return m_server.data.value(m_path); }

    static QString describe(const VARIANT &index)
    {
        const char *const type = index.vt == VT_INT ? "VT_INT " : index.vt == VT_I4 ? "VT_I4 " : "other ";
        return QLatin1String(type) + QString::number(index.intVal);
    }

    void handOut(const QueueEntry &entry, VARIANT *item) const
    {
        switch (entry.form) {
        case QueueEntry::Dispatch:
            item->vt = VT_DISPATCH;
            item->pdispVal = m_server.newStory(m_path, entry.story);
            break;
        case QueueEntry::Unknown:
            item->vt = VT_UNKNOWN;
            item->punkVal = m_server.newStory(m_path, entry.story);
            break;
        case QueueEntry::Null:
            item->vt = VT_DISPATCH;
            item->pdispVal = nullptr;
            break;
        case QueueEntry::Number:
            item->vt = VT_I4;
            item->lVal = 7;
            break;
        case QueueEntry::Text:
            item->vt = VT_BSTR;
            item->bstrVal = Platform::toBstr(QStringLiteral("story"));
            break;
        case QueueEntry::Nothing:
            item->vt = VT_EMPTY;
            break;
        }
    }
};

/// An object that is neither directory nor queue nor story.
using BareObject = Object<IDispatch, Kind::Bare>;

class StoryObject : public Object<Orvex::IStory2, Kind::Story>
{
public:
    StoryObject(Server &server, const QString &path, StoryDataPtr story)
        : Object(server, path)
        , m_story(std::move(story))
    {
        ++m_story->objects;
        ++m_story->references;
    }
    ~StoryObject() override { --m_story->objects; }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        ++m_story->references;
        return Object::AddRef();
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        --m_story->references;
        return Object::Release();
    }

    HRESULT STDMETHODCALLTYPE get_StoryName(BSTR *name) override
    {
        return answer("get_StoryName", QString(), name, [this] { return m_story->name; });
    }
    HRESULT STDMETHODCALLTYPE get_StoryUnique(BSTR *identifier) override
    {
        return answer("get_StoryUnique", QString(), identifier, [this] { return m_story->unique; });
    }
    HRESULT STDMETHODCALLTYPE Unlock() override { return enter("Unlock"); }
    HRESULT STDMETHODCALLTYPE get_FormName(BSTR *name) override
    {
        return answer("get_FormName", QString(), name, [this] { return m_story->formName; });
    }
    HRESULT STDMETHODCALLTYPE get_Field(BSTR name, BSTR *value) override
    {
        return answer("get_Field", text(name), value, [&] { return m_story->fields.value(text(name)); });
    }
    HRESULT STDMETHODCALLTYPE put_Field(BSTR name, BSTR value) override
    {
        const HRESULT result = enter("put_Field", text(name) + QStringLiteral(", ") + text(value));
        if (SUCCEEDED(result))
            m_story->fields[text(name)] = text(value);
        return result;
    }
    HRESULT STDMETHODCALLTYPE Save(VARIANT_BOOL flag) override { return enter("Save", QString::number(flag)); }
    HRESULT STDMETHODCALLTYPE IsLocked(LONG lockType, VARIANT_BOOL *locked) override
    {
        const HRESULT result = enter("IsLocked", QString::number(lockType));
        if (SUCCEEDED(result) || m_server.failsWithAnswer)
            *locked = m_story->locked;
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_Section(LONG section, BSTR *text) override
    {
        return answer("get_Section", QString::number(section), text, [&] { return m_story->plain.value(section); });
    }
    HRESULT STDMETHODCALLTYPE put_Section(LONG section, BSTR text) override
    {
        return put("put_Section", section, text, &m_story->plain);
    }
    HRESULT STDMETHODCALLTYPE get_SectionXml(LONG section, BSTR *text) override
    {
        return answer("get_SectionXml", QString::number(section), text, [&] { return m_story->markup.value(section); });
    }
    HRESULT STDMETHODCALLTYPE put_SectionXml(LONG section, BSTR text) override
    {
        return put("put_SectionXml", section, text, &m_story->markup);
    }
    HRESULT STDMETHODCALLTYPE Lock(LONG lockType, BSTR *holder) override
    {
        const HRESULT result = enter("Lock", QString::number(lockType));
        *holder = answerText(m_story->holder);
        return result;
    }

private:
    template<typename Value>
    HRESULT answer(const char *operation, const QString &arguments, BSTR *out, const Value &value)
    {
        *out = nullptr;
        const HRESULT result = enter(operation, arguments);
        if (SUCCEEDED(result) || m_server.failsWithAnswer)
            *out = answerText(value());
        return result;
    }

    HRESULT put(const char *operation, LONG section, BSTR value, QMap<int, QString> *sections)
    {
        const HRESULT result = enter(operation, QStringLiteral("%1, %2").arg(section).arg(text(value)));
        if (SUCCEEDED(result))
            (*sections)[section] = text(value);
        return result;
    }

    const StoryDataPtr m_story;
};

/// The sign-on object. Its kind counts as Bare in refusals of queries.
class SignonObject : public Object<Orvex::ISignon4, Kind::Bare>, public IConnectionPointContainer
{
public:
    explicit SignonObject(Server &server)
        : Object(server, QString())
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        return Object::QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Object::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Object::Release(); }

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint **point) override
    {
        return m_server.findConnectionPoint ? m_server.findConnectionPoint(iid, point) : E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE Reserved1() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Disconnect() override
    {
        const HRESULT result = enter("Disconnect");
        m_server.connected = false;
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_Connected(VARIANT_BOOL *connected) override
    {
        const HRESULT result = enter("get_Connected");
        if (SUCCEEDED(result))
            *connected = m_server.connected ? m_server.yes : VARIANT_FALSE;
        return result;
    }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDirectory(BSTR path, IDispatch **directory) override
    {
        *directory = nullptr;
        const HRESULT result = enter("GetDirectory", text(path));
        if (empty(result) || !m_server.directoriesExist)
            return result;
        QString properPath;
        const Kind kind = m_server.kindOf(Platform::toQString(path), &properPath);
        if (properPath.isNull())
            return static_cast<HRESULT>(0x8004040B);
        *directory = m_server.newObject(kind, properPath);
        return result;
    }
    HRESULT STDMETHODCALLTYPE Search(BSTR query, LONG *searchId) override
    {
        const HRESULT result = enter("Search", text(query));
        if (!empty(result))
            *searchId = m_server.searchId;
        return result;
    }
    HRESULT STDMETHODCALLTYPE StopSearch(LONG searchId) override
    {
        return enter("StopSearch", QString::number(searchId));
    }
    HRESULT STDMETHODCALLTYPE GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2, IDispatch **story) override
    {
        *story = nullptr;
        const HRESULT result =
            enter("GetStory", QStringLiteral("%1, %2, %3, %4").arg(text(queuePath)).arg(number).arg(zero1).arg(zero2));
        if (empty(result))
            return result;
        if (m_server.direct.contains(number))
            *story = m_server.newStory(Platform::toQString(queuePath), m_server.direct.value(number));
        else if (m_server.storiesExist)
            *story = m_server.newObject(Kind::Story, Platform::toQString(queuePath));
        return result;
    }
    HRESULT STDMETHODCALLTYPE DeleteStory(BSTR queuePath, LONG part1, LONG part2, LONG part3) override
    {
        return enter("DeleteStory",
                     QStringLiteral("%1, %2, %3, %4").arg(text(queuePath)).arg(part1).arg(part2).arg(part3));
    }
    HRESULT STDMETHODCALLTYPE LoadBlob(BSTR name, SAFEARRAY **data, LONG *value) override
    {
        *data = nullptr;
        const HRESULT result = enter("LoadBlob", text(name));
        return empty(result) ? result : handOut(Platform::toQString(name), data, value, result);
    }
    HRESULT STDMETHODCALLTYPE SaveBlob(BSTR name, SAFEARRAY *data, LONG *value) override
    {
        const HRESULT result = enter("SaveBlob", text(name) + QStringLiteral(", ") + describe(data));
        return FAILED(result) ? result : keep(Platform::toQString(name), data, value);
    }
    HRESULT STDMETHODCALLTYPE DeleteBlob(BSTR name) override { return enter("DeleteBlob", text(name)); }
    HRESULT STDMETHODCALLTYPE GetSystemForm(BSTR name, BSTR *form) override
    {
        const HRESULT result = enter("GetSystemForm", text(name));
        *form = empty(result) ? nullptr : answerText(m_server.form);
        return result;
    }
    HRESULT STDMETHODCALLTYPE Reserved15() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ServerName(BSTR *name) override
    {
        const HRESULT result = enter("get_ServerName");
        *name = empty(result) ? nullptr : answerText(m_server.serverName);
        return result;
    }
    HRESULT STDMETHODCALLTYPE GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1,
                                          LONG *number2) override
    {
        const HRESULT result = enter("GetUserInfo");
        *text1 = answerText(m_server.texts[0]);
        *text2 = answerText(m_server.texts[1]);
        *text3 = answerText(m_server.texts[2]);
        *text4 = answerText(m_server.texts[3]);
        if (m_server.answerNumbers) {
            *number1 = m_server.numbers[0];
            *number2 = m_server.numbers[1];
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE LoadUserBlob(SAFEARRAY **data, LONG *value) override
    {
        *data = nullptr;
        const HRESULT result = enter("LoadUserBlob");
        return empty(result) ? result : handOut(QString(), data, value, result);
    }
    HRESULT STDMETHODCALLTYPE SaveUserBlob(SAFEARRAY *data, LONG *value) override
    {
        const HRESULT result = enter("SaveUserBlob", describe(data));
        return FAILED(result) ? result : keep(QString(), data, value);
    }
    HRESULT STDMETHODCALLTYPE get_SysReadRate(LONG *rate) override
    {
        const HRESULT result = enter("get_SysReadRate");
        if (SUCCEEDED(result) && m_server.answerReadRate)
            *rate = m_server.readRate;
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_SysWordLength(LONG *length) override
    {
        const HRESULT result = enter("get_SysWordLength");
        if (SUCCEEDED(result))
            *length = m_server.wordLength;
        return result;
    }
    HRESULT STDMETHODCALLTYPE Connect(BSTR user, BSTR password, BSTR server, LONG option) override
    {
        const HRESULT result = enter(
            "Connect", QStringLiteral("%1, %2, %3, %4").arg(text(user), text(password), text(server)).arg(option));
        m_server.connected = SUCCEEDED(result);
        return result;
    }

protected:
    void *find(REFIID iid) override
    {
        if (m_server.connectionPoints && IsEqualGUID(iid, __uuidof(IConnectionPointContainer)))
            return static_cast<IConnectionPointContainer *>(this);
        if (IsEqualGUID(iid, __uuidof(Orvex::ISignon4)))
            return static_cast<Orvex::ISignon4 *>(this);
        return Object::find(iid);
    }

private:
    static QString describe(SAFEARRAY *data)
    {
        VARTYPE type = VT_EMPTY;
        LONG lower = -1;
        SafeArrayGetVartype(data, &type);
        SafeArrayGetLBound(data, 1, &lower);
        const Platform::SafeArrayAccess access(data);
        return QStringLiteral("%1 of type %2 from %3").arg(access.size()).arg(type).arg(lower);
    }

    HRESULT keep(const QString &name, SAFEARRAY *data, LONG *value)
    {
        const Platform::SafeArrayAccess access(data);
        m_server.blobs[name] = QByteArray(access.as<const char>(), static_cast<int>(access.size()));
        *value = 99; // nobody's to use
        return S_OK;
    }

    /// True when the call leaves its out-parameters empty.
    bool empty(HRESULT result) const { return FAILED(result) && !m_server.failsWithAnswer; }

    HRESULT handOut(const QString &name, SAFEARRAY **data, LONG *value, HRESULT result)
    {
        const QByteArray blob = m_server.blobs.value(name);
        *value = m_server.blobValue;
        if (m_server.nullBlobs)
            return result;
        if (m_server.blobArray) {
            *data = m_server.blobArray();
            return result;
        }
        *data = SafeArrayCreateVector(m_server.blobType, 0, static_cast<ULONG>(blob.size()));
        const Platform::SafeArrayAccess access(*data);
        if (!blob.isEmpty())
            std::copy(blob.begin(), blob.end(), access.as<char>());
        return result;
    }
};

/// Creates sign-on objects for CoCreateInstance.
class Factory : public IClassFactory
{
public:
    explicit Factory(Server &server)
        : m_server(server)
    {}
    virtual ~Factory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        const bool known = IsEqualGUID(iid, __uuidof(IUnknown)) || IsEqualGUID(iid, __uuidof(IClassFactory));
        *object = known ? static_cast<IClassFactory *>(this) : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID iid, void **object) override
    {
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        if (m_server.creation != S_OK)
            return m_server.creation;
        auto *signon = new SignonObject(m_server);
        const HRESULT result = static_cast<Orvex::ISignon4 *>(signon)->QueryInterface(iid, object);
        static_cast<Orvex::ISignon4 *>(signon)->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    Server &m_server;
    std::atomic<ULONG> m_references{1};
};

QString parentOf(const QString &path)
{
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? path.left(dot) : QStringLiteral(".");
}

} // namespace

Server::Server()
{
    m_entries.append({QStringLiteral("."), Kind::Directory});
    auto *factory = new Factory(*this);
    CoRegisterClassObject(__uuidof(Orvex::Signon), factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_registration);
    factory->Release();
}

Server::~Server()
{
    CoRevokeClassObject(m_registration);
}

void Server::add(Kind kind, const QString &path)
{
    const QMutexLocker guard(&m_mutex);
    m_entries.append({path, kind});
}

void Server::remove(const QString &path)
{
    const QMutexLocker guard(&m_mutex);
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).first == path)
            m_entries.removeAt(i--);
    }
}

void Server::fail(const QString &operation, HRESULT result)
{
    const QMutexLocker guard(&m_mutex);
    m_failures[operation] = result;
}

void Server::raise(const QString &operation, HRESULT result)
{
    const QMutexLocker guard(&m_mutex);
    m_raised.insert(operation, result);
}

void Server::refuse(Kind kind, REFIID iid, HRESULT result)
{
    const QMutexLocker guard(&m_mutex);
    m_refusals.append({kind, iid, result});
}

void Server::mend()
{
    const QMutexLocker guard(&m_mutex);
    m_failures.clear();
    m_raised.clear();
    m_refusals.clear();
}

QStringList Server::calls() const
{
    const QMutexLocker guard(&m_mutex);
    QStringList all;
    for (const Call &call : m_calls)
        all.append(call.text);
    return all;
}

QVector<Call> Server::callsWithLocks() const
{
    const QMutexLocker guard(&m_mutex);
    return m_calls;
}

int Server::count(const QString &text) const
{
    return calls().count(text);
}

void Server::forgetCalls()
{
    const QMutexLocker guard(&m_mutex);
    m_calls.clear();
}

HRESULT Server::enter(const QString &operation, const QString &text)
{
    Call call{text, QString(), Quire::QuireCOM::m_LockThreadID == GetCurrentThreadId()};
    if (call.lockedByCaller)
        call.label = Quire::QuireCOM::m_LockStr;
    {
        const QMutexLocker guard(&m_mutex);
        m_calls.append(call);
    }
    if (onCall)
        onCall(operation);
    const QMutexLocker guard(&m_mutex);
    if (m_raised.contains(operation))
        throw _com_error(m_raised.value(operation));
    return m_failures.value(text, m_failures.value(operation, S_OK));
}

HRESULT Server::refusal(Kind kind, REFIID iid) const
{
    const QMutexLocker guard(&m_mutex);
    for (const Refusal &refusal : m_refusals) {
        if (refusal.kind == kind && IsEqualGUID(refusal.iid, iid))
            return refusal.result;
    }
    return S_OK;
}

Kind Server::kindOf(const QString &path, QString *properPath) const
{
    const QMutexLocker guard(&m_mutex);
    for (const auto &entry : m_entries) {
        if (entry.first.compare(path, Qt::CaseInsensitive) == 0) {
            *properPath = entry.first;
            return entry.second;
        }
    }
    *properPath = QString();
    return Kind::Bare;
}

QStringList Server::children(const QString &path) const
{
    const QMutexLocker guard(&m_mutex);
    QStringList found;
    for (const auto &entry : m_entries) {
        if (entry.first != QLatin1String(".") && parentOf(entry.first) == path)
            found.append(entry.first);
    }
    return found;
}

IDispatch *Server::newObject(Kind kind, const QString &path)
{
    switch (kind) {
    case Kind::Directory:
        return new DirectoryObject(*this, path);
    case Kind::Queue:
        return new QueueObject(*this, path);
    case Kind::Story:
        return new StoryObject(*this, path, std::make_shared<StoryData>(QString()));
    case Kind::Bare:
        break;
    }
    return new BareObject(*this, path);
}

IDispatch *Server::newStory(const QString &path, const StoryDataPtr &story)
{
    if (!story)
        return new BareObject(*this, path);
    const QString number = story->unique.section(QLatin1Char(':'), 0, 0);
    return new StoryObject(*this, path + QLatin1Char('#') + number, story);
}

} // namespace FakeServer
