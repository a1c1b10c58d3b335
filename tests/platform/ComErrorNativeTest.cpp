#include <gtest/gtest.h>

#include <quire/platform/Automation.h>
#include <quire/platform/Bstr.h>

namespace {

QString messageKeptBy(const _com_error &error)
{
    const TCHAR *first = error.ErrorMessage();
    // Kept by the error: asking again gives the same text at the same place.
    EXPECT_EQ(first, error.ErrorMessage());
    QString message;
    for (const TCHAR *character = first; *character; ++character)
        message += QChar(static_cast<ushort>(*character));
    return message;
}

QString errorMessage(HRESULT result)
{
    return messageKeptBy(_com_error(result));
}

} // namespace

TEST(ComErrorNative, MessageOfACodeThatTheSystemKnowsHasNoLineEnd)
{
    const QString message = errorMessage(E_ACCESSDENIED);
    EXPECT_FALSE(message.isEmpty());
    EXPECT_EQ(message, message.trimmed());
}

TEST(ComErrorNative, MessageOfAnAutomationCodeTellsItsNumber)
{
    EXPECT_EQ(errorMessage(_com_error::WCodeToHRESULT(7)), QStringLiteral("IDispatch error #7"));
}

TEST(ComErrorNative, MessageOfAnUnknownCodeTellsItInHexadecimal)
{
    EXPECT_EQ(errorMessage(static_cast<HRESULT>(0x8ABCDEF0)), QStringLiteral("Unknown error 0x8ABCDEF0"));
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

TEST(ComErrorNative, HelpFileComesFromTheInformation)
{
    ICreateErrorInfoPtr writer;
    ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
    OLECHAR file[] = u"help.chm";
    writer->SetHelpFile(file);
    const _com_error error(E_FAIL, IErrorInfoPtr(writer), true);
    EXPECT_EQ(Platform::toQString(error.HelpFile().copy(false)), QStringLiteral("help.chm"));
    EXPECT_TRUE(!_com_error(E_FAIL).HelpFile());
}

TEST(ComErrorNative, AssignedItselfStays)
{
    ICreateErrorInfoPtr writer;
    ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
    _com_error error(E_FAIL, IErrorInfoPtr(writer), true);
    const _com_error &same = error;
    error = same;
    const IErrorInfoPtr kept(error.ErrorInfo(), false);
    EXPECT_TRUE(kept == writer);
}

TEST(ComErrorNative, AssignedReleasesItsInformationAndForgetsItsMessage)
{
    ICreateErrorInfoPtr writer;
    ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
    _com_error error(E_FAIL, IErrorInfoPtr(writer), true);
    const QString before = messageKeptBy(error);
    error = _com_error(E_ACCESSDENIED);
    EXPECT_EQ(error.ErrorInfo(), nullptr);
    EXPECT_EQ(writer->AddRef(), 2u);
    EXPECT_EQ(writer->Release(), 1u);
    EXPECT_NE(messageKeptBy(error), before);
}
