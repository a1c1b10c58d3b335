// Script hosts drive the newsroom by names alone: a real one, and one of our own that knows no header of the server's.

#include <algorithm>
#include <vector>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <quire/Quire.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>

#include "windows/ServerFolder.h"

using Platform::Bstr;
using Platform::Variant;

namespace {

class ScriptHost : public testing::Test
{
protected:
    void SetUp() override
    {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        ASSERT_TRUE(Quire::QuireCOM::registerCOM(m_folder.path()));
    }

    void TearDown() override
    {
        CoFreeUnusedLibrariesEx(0, 0);
        CoUninitialize();
    }

private:
    ServerFolder m_folder;
};

/// A text that somebody else handed out, to be freed here.
Bstr adopted(BSTR text)
{
    Bstr owner;
    owner.reset(text);
    return owner;
}

/// Calls a member by its name, the arguments in the order of their writing.
HRESULT call(const IDispatchPtr &object, const wchar_t *member, WORD how, std::vector<VARIANT> arguments,
             Variant &result)
{
    auto *name = const_cast<LPOLESTR>(member);
    DISPID id = 0;
    HRESULT answer = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(answer))
        return answer;
    std::reverse(arguments.begin(), arguments.end());
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters, result.out(), nullptr, nullptr);
}

/// A text that the caller keeps.
VARIANT argument(const Bstr &text)
{
    VARIANT value{};
    VariantInit(&value);
    value.vt = VT_BSTR;
    value.bstrVal = text.get();
    return value;
}

VARIANT argument(LONG number)
{
    VARIANT value{};
    VariantInit(&value);
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

IDispatchPtr signOnByName()
{
    CLSID clsid{};
    IDispatchPtr signon;
    if (SUCCEEDED(CLSIDFromProgID(L"Orvex.Signon", &clsid)))
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void **>(&signon));
    return signon;
}

const char script[] = R"(
Set signon = CreateObject("Orvex.Signon")
signon.Connect "journalist", "news", "", 0
WScript.Echo "connected " & signon.Connected
Set root = signon.GetDirectory(".")
WScript.Echo "entries " & (root.Count > 0)
signon.Disconnect
WScript.Echo "connected " & signon.Connected
)";

} // namespace

TEST_F(ScriptHost, ReadsAStoryByNamesAlone)
{
    const IDispatchPtr signon = signOnByName();
    ASSERT_TRUE(signon);
    const Bstr user(QStringLiteral("journalist"));
    const Bstr password(QStringLiteral("news"));
    const Bstr nothing{QString()};
    Variant result;
    ASSERT_EQ(call(signon, L"Connect", DISPATCH_METHOD,
                   {argument(user), argument(password), argument(nothing), argument(0)}, result),
              S_OK);
    ASSERT_EQ(call(signon, L"Connected", DISPATCH_PROPERTYGET, {}, result), S_OK);
    EXPECT_EQ(result.get().boolVal, VARIANT_TRUE);

    IDispatchPtr entry;
    const Bstr root(QStringLiteral("."));
    ASSERT_EQ(call(signon, L"GetDirectory", DISPATCH_METHOD, {argument(root)}, result), S_OK);
    entry = result.toDispatch();
    Bstr section;
    while (entry && section.isNull()) { // the first entry, and the first of that, down to a story
        Variant text;
        if (SUCCEEDED(call(entry, L"SectionXml", DISPATCH_PROPERTYGET, {argument(8)}, text))) {
            section.reset(text.release().bstrVal);
            break;
        }
        ASSERT_EQ(call(entry, L"Item", DISPATCH_PROPERTYGET, {argument(0)}, result), S_OK);
        entry = result.toDispatch();
    }
    EXPECT_TRUE(section.toString().startsWith(QLatin1String("<body>")));
}

TEST_F(ScriptHost, IsToldAnUnknownName)
{
    const IDispatchPtr signon = signOnByName();
    ASSERT_TRUE(signon);
    Variant result;
    EXPECT_EQ(call(signon, L"NoSuchMember", DISPATCH_METHOD, {}, result), DISP_E_UNKNOWNNAME);
}

TEST_F(ScriptHost, IsToldARefusalWithItsWords)
{
    const IDispatchPtr signon = signOnByName();
    ASSERT_TRUE(signon);
    auto *name = const_cast<LPOLESTR>(L"GetDirectory");
    DISPID id = 0;
    ASSERT_EQ(signon->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    const Bstr path(QStringLiteral("NO.SUCH.PLACE"));
    VARIANT arguments[] = {argument(path)};
    DISPPARAMS parameters{arguments, nullptr, 1, 0};
    EXCEPINFO refusal{};
    EXPECT_EQ(
        signon->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, &refusal, nullptr),
        DISP_E_EXCEPTION);
    const Bstr source = adopted(refusal.bstrSource);
    const Bstr description = adopted(refusal.bstrDescription);
    const Bstr help = adopted(refusal.bstrHelpFile);
    EXPECT_LT(refusal.scode, 0);
    EXPECT_FALSE(description.toString().isEmpty());
}

TEST_F(ScriptHost, OfTheSystemRunsAScript)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.vbs"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.close();
    QProcess host;
    host.start(QStringLiteral("cscript"), {QStringLiteral("//nologo"), path});
    ASSERT_TRUE(host.waitForFinished(60000));
    const QString output = QString::fromLocal8Bit(host.readAllStandardOutput()).simplified();
    EXPECT_EQ(host.exitCode(), 0) << qPrintable(QString::fromLocal8Bit(host.readAllStandardError()));
    EXPECT_EQ(output, QStringLiteral("connected True entries True connected False")) << qPrintable(output);
}
