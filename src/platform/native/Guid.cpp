#include <quire/platform/native/Guid.h>

#include <quire/platform/native/Results.h>
#include <quire/platform/native/System.h>

#include <QUuid>

#include <string_view>

namespace {

constexpr int braced = 38; // characters of the text form, without the NUL

int hexDigit(OLECHAR character)
{
    if (character >= u'0' && character <= u'9')
        return character - u'0';
    if (character >= u'a' && character <= u'f')
        return character - u'a' + 10;
    if (character >= u'A' && character <= u'F')
        return character - u'A' + 10;
    return -1;
}

/// "x" in the pattern stands for a digit.
constexpr std::u16string_view pattern = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";

bool parse(std::u16string_view text, GUID *guid)
{
    if (text.size() != pattern.size())
        return false;
    BYTE bytes[16] = {};
    unsigned digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (pattern[i] != u'x') {
            if (text[i] != pattern[i])
                return false;
            continue;
        }
        const int digit = hexDigit(text[i]);
        if (digit < 0)
            return false;
        bytes[digits / 2] = static_cast<BYTE>(bytes[digits / 2] << 4 | digit);
        ++digits;
    }
    guid->Data1 = static_cast<ULONG>(bytes[0]) << 24 | static_cast<ULONG>(bytes[1]) << 16 |
                  static_cast<ULONG>(bytes[2]) << 8 | bytes[3];
    guid->Data2 = static_cast<USHORT>(bytes[4] << 8 | bytes[5]);
    guid->Data3 = static_cast<USHORT>(bytes[6] << 8 | bytes[7]);
    std::memcpy(guid->Data4, bytes + 8, 8);
    return true;
}

} // namespace

int StringFromGUID2(REFGUID guid, LPOLESTR text, int size)
{
    if (!text || size <= braced)
        return 0;
    const BYTE bytes[16] = {static_cast<BYTE>(guid.Data1 >> 24),
                            static_cast<BYTE>(guid.Data1 >> 16),
                            static_cast<BYTE>(guid.Data1 >> 8),
                            static_cast<BYTE>(guid.Data1),
                            static_cast<BYTE>(guid.Data2 >> 8),
                            static_cast<BYTE>(guid.Data2),
                            static_cast<BYTE>(guid.Data3 >> 8),
                            static_cast<BYTE>(guid.Data3),
                            guid.Data4[0],
                            guid.Data4[1],
                            guid.Data4[2],
                            guid.Data4[3],
                            guid.Data4[4],
                            guid.Data4[5],
                            guid.Data4[6],
                            guid.Data4[7]};
    unsigned digits = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != u'x') {
            text[i] = pattern[i];
            continue;
        }
        const BYTE byte = bytes[digits / 2];
        text[i] = u"0123456789ABCDEF"[digits % 2 == 0 ? byte >> 4 : byte & 0xF];
        ++digits;
    }
    text[braced] = 0;
    return braced + 1;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR *text)
{
    if (!text)
        return E_INVALIDARG;
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc((braced + 1) * sizeof(OLECHAR)));
    if (!*text)
        return E_OUTOFMEMORY;
    StringFromGUID2(clsid, *text, braced + 1);
    return S_OK;
}

HRESULT StringFromIID(REFIID iid, LPOLESTR *text)
{
    return StringFromCLSID(iid, text);
}

HRESULT CLSIDFromString(LPCOLESTR text, LPCLSID clsid)
{
    if (!clsid)
        return E_INVALIDARG;
    *clsid = CLSID_NULL;
    return !text || parse(text, clsid) ? S_OK : CO_E_CLASSSTRING;
}

HRESULT IIDFromString(LPCOLESTR text, LPIID iid)
{
    if (!iid)
        return E_INVALIDARG;
    *iid = IID_NULL;
    if (!text)
        return S_OK;
    if (std::u16string_view(text).size() != pattern.size())
        return E_INVALIDARG;
    return parse(text, iid) ? S_OK : CO_E_IIDSTRING;
}

HRESULT CLSIDFromProgID(LPCOLESTR programId, LPCLSID clsid)
{
    if (!programId || !clsid)
        return E_INVALIDARG;
    *clsid = CLSID_NULL;
    return CO_E_CLASSSTRING;
}

HRESULT CoCreateGuid(GUID *guid)
{
    if (!guid)
        return E_INVALIDARG;
    const QUuid uuid = QUuid::createUuid();
    guid->Data1 = uuid.data1;
    guid->Data2 = uuid.data2;
    guid->Data3 = uuid.data3;
    std::memcpy(guid->Data4, uuid.data4, 8);
    return S_OK;
}
