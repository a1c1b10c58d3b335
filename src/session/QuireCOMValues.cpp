#include <quire/session/QuireCOM.h>

#include <algorithm>
#include <memory>
#include <new>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/session/QuireCOMMutex.h>

// What the session passes through to the server: system values, the user's details, forms, blobs and searches.

namespace Quire {

namespace {

const qint32 assumedReadRate = 180;

/// The bytes as an array of the server's, empty when they cannot be one.
Platform::SafeArray arrayOfBytes(const char *data, long size)
{
    return size < 0 ? Platform::SafeArray() : Platform::SafeArray::ofBytes(data, static_cast<std::size_t>(size));
}

/// The number of bytes in the array that is accessed: 0 for none, and for what a server should not answer, other than
/// one row of bytes.
ULONG byteCount(const Platform::SafeArray &array, const Platform::SafeArrayAccess &access)
{
    const bool bytes = SafeArrayGetDim(array.get()) == 1 && SafeArrayGetElemsize(array.get()) == 1;
    return bytes ? access.size() : 0;
}

/// What the host gets of a blob that the server handed out: a buffer of its bytes, null when memory runs out.
char *handOut(const Platform::SafeArray &data, LONG value, long *size, long *extra)
{
    const Platform::SafeArrayAccess access(data.get());
    const ULONG count = byteCount(data, access);
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[count]);
    if (!buffer)
        return nullptr;
    std::copy_n(access.as<const char>(), count, buffer.get());
    if (size)
        *size = static_cast<long>(count);
    if (extra)
        *extra = value;
    return buffer.release();
}

void storeUnlessNull(const Platform::Bstr &text, QString &field)
{
    if (!text.isNull())
        field = text.toString();
}

} // namespace

// ---- system values --------------------------------------------------------------------------------------------------

long QuireCOM::GetSysReadRate()
{
    qint32 rate = m_sysReadRate;
    if (rate < 0 && IsConnected()) {
        const QuireCOMMutex lock("QuireCOM::GetSysReadRate");
        LONG answer = 0;
        const HRESULT result = m_signon->get_SysReadRate(&answer);
        if (FAILED(result))
            _com_issue_errorex(result, m_signon, __uuidof(Orvex::ISignon4));
        rate = static_cast<qint32>(answer);
        m_sysReadRate = rate;
    }
    return rate > 0 ? rate : assumedReadRate;
}

long QuireCOM::GetSysWordLength()
{
    qint32 length = -1;
    m_sysWordLength = length;
    if (IsConnected()) {
        const QuireCOMMutex lock("QuireCOM::GetSysWordLength");
        LONG answer = 0;
        const HRESULT result = m_signon->get_SysWordLength(&answer);
        if (FAILED(result))
            _com_issue_errorex(result, m_signon, __uuidof(Orvex::ISignon4));
        length = static_cast<qint32>(answer);
        m_sysWordLength = length;
    }
    return std::max(length, 0);
}

void QuireCOM::GetSystemForm(const QString &name, QString &form)
{
    const Platform::Bstr nameText(name); // before the form is emptied: both may be the same string
    form = QString();
    if (!IsConnected())
        return;
    const QuireCOMMutex lock("QuireCOM::GetSystemForm");
    Platform::Bstr answer;
    if (SUCCEEDED(m_signon->GetSystemForm(nameText.get(), answer.out())))
        storeUnlessNull(answer, form);
}

void QuireCOM::GetUserInfo(UserInfo &info)
{
    if (!IsConnected())
        return;
    const QuireCOMMutex lock("QuireCOM::GetUserInfo");
    Platform::Bstr text1;
    Platform::Bstr text2;
    Platform::Bstr text3;
    Platform::Bstr text4;
    LONG number1 = info.number1;
    LONG number2 = info.number2;
    const HRESULT result =
        m_signon->GetUserInfo(text1.out(), text2.out(), text3.out(), text4.out(), &number1, &number2);
    info.number1 = static_cast<qint32>(number1); // whatever the result: the server writes them in place
    info.number2 = static_cast<qint32>(number2);
    if (FAILED(result))
        return;
    storeUnlessNull(text1, info.text1);
    storeUnlessNull(text2, info.text2);
    storeUnlessNull(text3, info.text3);
    storeUnlessNull(text4, info.text4);
}

// ---- blobs ----------------------------------------------------------------------------------------------------------

bool QuireCOM::SaveBlob(const QString &name, const char *data, long size)
{
    if (!IsConnected())
        return false;
    const Platform::SafeArray bytes = arrayOfBytes(data, size);
    if (!bytes)
        return false;
    const Platform::Bstr nameText(name);
    const QuireCOMMutex lock("QuireCOM::SaveBlob");
    LONG unused = 0;
    return SUCCEEDED(m_signon->SaveBlob(nameText.get(), bytes.get(), &unused));
}

char *QuireCOM::LoadBlob(const QString &name, long *size, long *extra)
{
    if (!IsConnected())
        return nullptr;
    const Platform::Bstr nameText(name);
    const QuireCOMMutex lock("QuireCOM::LoadBlob");
    Platform::SafeArray data;
    LONG value = 0;
    if (FAILED(m_signon->LoadBlob(nameText.get(), data.out(), &value)))
        return nullptr;
    return handOut(data, value, size, extra);
}

bool QuireCOM::DeleteBlob(const QString &name)
{
    if (!IsConnected())
        return false;
    const Platform::Bstr nameText(name);
    const QuireCOMMutex lock("QuireCOM::DeleteBlob");
    return SUCCEEDED(m_signon->DeleteBlob(nameText.get()));
}

bool QuireCOM::SaveUserBlob(const char *data, long size)
{
    if (!IsConnected())
        return false;
    const Platform::SafeArray bytes = arrayOfBytes(data, size);
    if (!bytes)
        return false;
    const QuireCOMMutex lock("QuireCOM::SaveUserBlob");
    LONG unused = 0;
    return SUCCEEDED(m_signon->SaveUserBlob(bytes.get(), &unused));
}

char *QuireCOM::LoadUserBlob(long *size, long *extra)
{
    if (!IsConnected())
        return nullptr;
    const QuireCOMMutex lock("QuireCOM::LoadUserBlob");
    Platform::SafeArray data;
    LONG value = 0;
    if (FAILED(m_signon->LoadUserBlob(data.out(), &value)))
        return nullptr;
    return handOut(data, value, size, extra);
}

void FreeBlob(char *blob)
{
    delete[] blob;
}

// ---- searches -------------------------------------------------------------------------------------------------------

long QuireCOM::Search(const QString &query)
{
    const Platform::Bstr queryText(query);
    const QuireCOMMutex lock("QuireCOM::Search");
    LONG id = 0;
    return SUCCEEDED(m_signon->Search(queryText.get(), &id)) ? id : 0;
}

bool QuireCOM::StopSearch(long id)
{
    const auto searchId = static_cast<LONG>(id);
    if (searchId == 0)
        return false;
    const QuireCOMMutex lock("QuireCOM::StopSearch");
    return SUCCEEDED(m_signon->StopSearch(searchId));
}

} // namespace Quire
