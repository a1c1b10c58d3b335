#include "InstantServer.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

namespace InstantServer {

namespace {

std::atomic<int> callDelay{0};

void delay()
{
    if (const int microseconds = callDelay.load(std::memory_order_relaxed))
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

HRESULT answer(const QString &text, BSTR *out)
{
    delay();
    *out = Platform::toBstr(text);
    return S_OK;
}

/// The reference count, and the questions of an object with one interface of the server's.
template<class Interface>
class Object : public Interface
{
public:
    virtual ~Object() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void **out) override
    {
        const bool known = iid == __uuidof(Interface) || iid == IID_IUnknown || iid == IID_IDispatch || alsoIs(iid);
        *out = known ? static_cast<Interface *>(this) : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return E_NOTIMPL;
    }

protected:
    virtual bool alsoIs(REFIID) const { return false; }

private:
    std::atomic<ULONG> m_references{1};
};

QString storyMarkup()
{
    QString text = QStringLiteral("<story><head><storyid>0f3a</storyid><formname>RUNDOWN</formname>"
                                  "<meta words=\"112\" rate=\"180\" break=\"\" float=\"y\" wire=\"\" mail=\"\" "
                                  "locked=\"\" hold=\"\"></head><fields>");
    for (int field = 0; field < 25; ++field)
        text += QStringLiteral("<f id=field-%1>Value of field %1</f>").arg(field);
    text += QStringLiteral("</fields><body>");
    for (int paragraph = 0; paragraph < 8; ++paragraph)
        text += QStringLiteral("<p>The engineers say that the water is still coming in through the joint.</p>");
    return text + QStringLiteral("</body></story>");
}

class Story : public Object<Orvex::IStory2>
{
public:
    explicit Story(int number)
        : m_number(number)
    {}
    STDMETHODIMP get_StoryName(BSTR *name) override
    {
        return answer(QStringLiteral("Story number %1").arg(m_number), name);
    }
    STDMETHODIMP get_StoryUnique(BSTR *id) override { return answer(QStringLiteral("%1:101:0").arg(m_number), id); }
    STDMETHODIMP get_SectionXml(LONG, BSTR *text) override
    {
        static const QString markup = storyMarkup();
        return answer(markup, text);
    }
    STDMETHODIMP Unlock() override { return E_NOTIMPL; }
    STDMETHODIMP get_FormName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Field(BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP put_Field(BSTR, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Save(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP IsLocked(LONG, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Section(LONG, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP put_Section(LONG, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_SectionXml(LONG, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Lock(LONG, BSTR *) override { return E_NOTIMPL; }

private:
    const int m_number;
};

template<class Make>
HRESULT answerList(LONG first, LONG count, LONG size, VARIANT *list, Make make)
{
    delay();
    const LONG number = std::max<LONG>(0, std::min(count, size - first));
    Platform::SafeArray array(SafeArrayCreateVector(VT_DISPATCH, 0, static_cast<ULONG>(number)));
    {
        const Platform::SafeArrayAccess access(array.get());
        for (LONG index = 0; index < number; ++index)
            access.as<IDispatch *>()[index] = make(first + index);
    }
    VariantInit(list);
    V_VT(list) = VT_ARRAY | VT_DISPATCH;
    V_ARRAY(list) = array.release();
    return S_OK;
}

class Queue : public Object<Orvex::IQueue2>
{
public:
    Queue(const QString &name, int size)
        : m_name(name)
        , m_size(size)
    {}
    STDMETHODIMP get_Name(BSTR *name) override { return answer(m_name, name); }
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override
    {
        delay();
        *flags1 = 1 << 6;
        *flags2 = *flags3 = 0;
        return S_OK;
    }
    STDMETHODIMP get_QueueID(Orvex::QueueIdentifier *id) override
    {
        delay();
        *id = {101, 0, 0, 0};
        return S_OK;
    }
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override
    {
        return answerList(first, count, m_size, list, [](LONG number) { return new Story(int(number)); });
    }
    STDMETHODIMP get_Item(VARIANT, VARIANT *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Count(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FormName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Update(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_Update(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CreateStory(LONG, VARIANT *) override { return E_NOTIMPL; }
    STDMETHODIMP Delete(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteAll() override { return E_NOTIMPL; }

private:
    bool alsoIs(REFIID iid) const override { return iid == __uuidof(Orvex::IQueue); }

    const QString m_name;
    const int m_size;
};

class Directory : public Object<Orvex::IDirectory2>
{
public:
    Directory(const QString &name, int size)
        : m_name(name)
        , m_size(size)
    {}
    STDMETHODIMP get_Name(BSTR *name) override { return answer(m_name, name); }
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override
    {
        delay();
        *flags1 = 1 << 0;
        *flags2 = *flags3 = 0;
        return S_OK;
    }
    STDMETHODIMP get_Count(LONG *count) override
    {
        delay();
        *count = m_size;
        return S_OK;
    }
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override
    {
        return answerList(first, count, m_size, list, [](LONG number) -> IDispatch * {
            const QString name = QStringLiteral("ENTRY-%1").arg(number);
            return number % 2 ? static_cast<IDispatch *>(new Queue(name, 0)) : new Directory(name, int(number));
        });
    }
    STDMETHODIMP get_Item(VARIANT, VARIANT *) override { return E_NOTIMPL; }

private:
    const QString m_name;
    const int m_size;
};

} // namespace

void setDelay(int microseconds)
{
    callDelay = microseconds;
}

IDispatchPtr makeQueue(int stories)
{
    return IDispatchPtr(new Queue(QStringLiteral("NEWS.WIRE"), stories), false);
}

IDispatchPtr makeDirectory(int entries)
{
    return IDispatchPtr(new Directory(QStringLiteral("NEWS"), entries), false);
}

} // namespace InstantServer
