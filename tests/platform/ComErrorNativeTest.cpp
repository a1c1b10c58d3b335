#include <gtest/gtest.h>

#include <quire/platform/Automation.h>
#include <quire/platform/Bstr.h>

namespace {

QString messageOf(HRESULT result)
{
    const _com_error error(result);
    const TCHAR *first = error.ErrorMessage();
    // Kept by the error: asking again gives the same text at the same place.
    EXPECT_EQ(first, error.ErrorMessage());
    QString message;
    for (const TCHAR *character = first; *character; ++character)
        message += QChar(static_cast<ushort>(*character));
    return message;
}

} // namespace

TEST(ComErrorNative, MessageOfACodeThatTheSystemKnowsHasNoLineEnd)
{
    const QString message = messageOf(E_ACCESSDENIED);
    EXPECT_FALSE(message.isEmpty());
    EXPECT_EQ(message, message.trimmed());
}

TEST(ComErrorNative, MessageOfAnAutomationCodeTellsItsNumber)
{
    EXPECT_EQ(messageOf(_com_error::WCodeToHRESULT(7)), QStringLiteral("IDispatch error #7"));
}

TEST(ComErrorNative, MessageOfAnUnknownCodeTellsItInHexadecimal)
{
    EXPECT_EQ(messageOf(static_cast<HRESULT>(0x8ABCDEF0)), QStringLiteral("Unknown error 0x8ABCDEF0"));
}

TEST(ComErrorNative, ShortCodesGoThereAndBack)
{
    EXPECT_EQ(_com_error(_com_error::WCodeToHRESULT(0x1234)).WCode(), 0x1234);
    EXPECT_EQ(_com_error(E_FAIL).WCode(), 0);
    EXPECT_EQ(_com_error::WCodeToHRESULT(0xFE00), _com_error::WCodeToHRESULT(0xFFFF));
}

TEST(ComErrorNative, HelpAndInterfaceComeFromTheInformation)
{
    ICreateErrorInfoPtr writer;
    ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
    writer->SetHelpContext(42);
    writer->SetGUID(IID_IDispatch);
    const IErrorInfoPtr information = writer;
    const _com_error error(E_FAIL, information, true);
    EXPECT_EQ(error.HelpContext(), 42u);
    EXPECT_EQ(error.GUID_(), IID_IDispatch);
}

TEST(ComErrorNative, WithoutInformationThereIsNeitherHelpNorInterface)
{
    const _com_error error(E_FAIL);
    EXPECT_EQ(error.HelpContext(), 0u);
    EXPECT_EQ(error.GUID_(), GUID_NULL);
}
